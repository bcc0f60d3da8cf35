# bench_pixel: throughput of the pixel operations on 6000x4000 and 2000x1500 images, each
# next to a memcpy of the same bordered buffer measured in the same run.
file(GLOB PIXEL_BENCH_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/pixel/*.cpp)
add_executable(bench_pixel ${PIXEL_BENCH_SOURCES})
target_link_libraries(bench_pixel PRIVATE ostrivex_pixel benchmark::benchmark)
target_compile_options(bench_pixel PRIVATE -O3)
