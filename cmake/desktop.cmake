# Desktop integration of an installed editor: a menu entry in Graphics and an icon in the
# hicolor theme. The program opens no file named on its command line, so the entry
# declares no MIME types.
include(GNUInstallDirs)
install(FILES ${CMAKE_SOURCE_DIR}/desktop/ostrivex.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${CMAKE_SOURCE_DIR}/desktop/ostrivex.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
