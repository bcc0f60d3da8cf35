# bench_paint: the paint primitives on a 24-megapixel image (6000 x 4000): a flood fill of
# the whole image (plain and through an elliptic selection), long anti-aliased lines and
# brush strokes.
if(TARGET ostrivex_paint)
  file(GLOB PAINT_BENCH_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/paint/*.cpp)
  add_executable(bench_paint ${PAINT_BENCH_SOURCES})
  target_link_libraries(bench_paint PRIVATE ostrivex_paint benchmark::benchmark)
  target_compile_options(bench_paint PRIVATE -O3)
endif()
