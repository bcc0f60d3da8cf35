# bench_canvas: one full repaint of a document window's canvas (the stretch of the visible
# part and the paint onto the window) for a 24-megapixel image in a 1600 x 1000 window, at
# 1 : 1, at "Fit in window" and zoomed in, on the offscreen platform.
if(TARGET ostrivex_document)
  file(GLOB CANVAS_BENCH_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/canvas/*.cpp)
  add_executable(bench_canvas ${CANVAS_BENCH_SOURCES})
  target_link_libraries(bench_canvas PRIVATE ostrivex_document benchmark::benchmark)
endif()
