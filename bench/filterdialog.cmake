# bench_filter_dialog: one thumbnail run (160 x 110) of every row of the filter dialog with
# its starting values, which must stay well under a frame so a moving slider never waits.
add_executable(bench_filter_dialog ${CMAKE_CURRENT_SOURCE_DIR}/filterdialog/thumbnail_runs.cpp)
target_link_libraries(bench_filter_dialog PRIVATE ostrivex_operations benchmark::benchmark
  benchmark::benchmark_main)
