# The desktop's services: the portal over D-Bus, and the X server's window list (xcb).
find_package(Qt6 REQUIRED COMPONENTS DBus)
find_package(PkgConfig REQUIRED)
pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb)
target_link_libraries(ostrivex_utilities PUBLIC Qt6::DBus PRIVATE PkgConfig::XCB)
