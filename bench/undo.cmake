# bench_undo: the undo store on a 24-megapixel image (6000 x 4000, a 96 MB slot file): a
# commit and a jump in the history of a document (its slot file written and read) next to
# a plain copy of a file of the same size, all in a fresh folder under the temporary folder.
if(TARGET ostrivex_model)
  file(GLOB UNDO_BENCH_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/undo/*.cpp)
  add_executable(bench_undo ${UNDO_BENCH_SOURCES})
  target_link_libraries(bench_undo PRIVATE ostrivex_model benchmark::benchmark)
  target_compile_options(bench_undo PRIVATE -O3)
endif()
