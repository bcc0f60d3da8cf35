# bench_files: the image file code's own parts on a 24-megapixel picture (the PPM, JPEG
# and PNG codecs from memory-cached files) and selection files of growing size. The
# whole-process comparison with libvips and ImageMagick is bench/files.sh.
if(TARGET ostrivex_imagefile)
  add_executable(bench_files ${CMAKE_CURRENT_SOURCE_DIR}/files/bench_files.cpp)
  target_link_libraries(bench_files PRIVATE ostrivex_imagefile benchmark::benchmark)
  target_compile_options(bench_files PRIVATE -O3)
endif()
