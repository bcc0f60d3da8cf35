# bench_text: one redraw of a 1000 x 300 text layer by each text dialog's drawing routine,
# and by the dialogs themselves (drawing and showing), with the font the tests ship.
if(TARGET ostrivex_text)
  add_executable(bench_text ${CMAKE_CURRENT_SOURCE_DIR}/text/bench_text.cpp)
  target_link_libraries(bench_text PRIVATE ostrivex_text benchmark::benchmark)
  target_compile_definitions(bench_text PRIVATE
    OSTRIVEX_TEST_FONT="${CMAKE_SOURCE_DIR}/tests/data/fonts/DejaVuSans.ttf")
endif()
