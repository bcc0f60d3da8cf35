# bench_browser: the Browser Box's thumbnail pipeline on a folder of 12-megapixel photos
# (500 by default): per file cold (helper decode and cache write) and from the shared
# cache, a plain full decode for comparison, and the whole folder through the worker
# threads (time to the first thumbnail, to the last, and the longest pause of the window's
# event loop meanwhile).
if(TARGET ostrivex_utilities)
  file(GLOB BROWSER_BENCH_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/browser/*.cpp)
  add_executable(bench_browser ${BROWSER_BENCH_SOURCES})
  target_link_libraries(bench_browser PRIVATE ostrivex_utilities benchmark::benchmark)
  add_dependencies(bench_browser ostrivex-devil)
endif()
