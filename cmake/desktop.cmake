# Desktop integration of an installed editor: a menu entry in Graphics that declares every
# image type the program reads (so a file manager's "Open With" offers it), the MIME types
# of the formats the shared database lacks (the layered file among them), and an icon in
# the hicolor theme.
include(GNUInstallDirs)
install(FILES ${CMAKE_SOURCE_DIR}/desktop/ostrivex.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${CMAKE_SOURCE_DIR}/desktop/ostrivex-mime.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages RENAME ostrivex.xml)
install(FILES ${CMAKE_SOURCE_DIR}/desktop/ostrivex.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
