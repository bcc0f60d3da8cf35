# bench_web: the optimizer's presets on a 1- and a 24-megapixel photograph-like picture,
# its stages one by one, and the quantizers side by side with the error they leave.
if(TARGET ostrivex_web)
  file(GLOB WEB_BENCH_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/web/*.cpp)
  add_executable(bench_web ${WEB_BENCH_SOURCES})
  target_link_libraries(bench_web PRIVATE ostrivex_web benchmark::benchmark)
  target_compile_options(bench_web PRIVATE -O3)
endif()
