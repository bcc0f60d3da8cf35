# bench_effects: the layer effects: every node of the effect tree as the dialog's preview
# runs it on a thumbnail, and at full size on 2000 x 2000 and 6000 x 4000 layers.
add_executable(bench_effects ${CMAKE_CURRENT_SOURCE_DIR}/effects/bench_effects.cpp)
target_link_libraries(bench_effects PRIVATE ostrivex_effects benchmark::benchmark)
target_compile_options(bench_effects PRIVATE -O3)
