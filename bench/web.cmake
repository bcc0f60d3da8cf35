# bench_web: the optimizer's presets on a 1- and a 24-megapixel photograph-like picture,
# its stages one by one, and the quantizers side by side with the error they leave.
if(TARGET ostrivex_web)
  file(GLOB WEB_BENCH_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/web/*.cpp)
  add_executable(bench_web ${WEB_BENCH_SOURCES})
  target_link_libraries(bench_web PRIVATE ostrivex_web benchmark::benchmark)
  target_compile_options(bench_web PRIVATE -O3)
endif()

# bench_web_view: the Optimize view after a brush stroke, end to end, with the window's
# thread running its events meanwhile.
if(TARGET ostrivex_webui)
  add_executable(bench_web_view ${CMAKE_CURRENT_SOURCE_DIR}/web_view/bench_web_view.cpp)
  target_link_libraries(bench_web_view PRIVATE ostrivex_webui benchmark::benchmark)
endif()
