# Resource folders (Images, ClipArt, Stamps, Selections, Palettes, Filters, Help) copied
# beside the binaries, so that a program run from the build tree finds them as an installed
# one does. One copy rule per file: a build copies only what changed, and a file added under
# assets/ joins at the next configure (CONFIGURE_DEPENDS re-runs it). Empty folders hold a
# .keep file so that they exist too. "Temp" is not shipped: the program makes it on need.
file(GLOB_RECURSE OSTRIVEX_ASSET_FILES CONFIGURE_DEPENDS LIST_DIRECTORIES false
     RELATIVE ${CMAKE_SOURCE_DIR}/assets ${CMAKE_SOURCE_DIR}/assets/*)
set(OSTRIVEX_ASSET_OUTPUTS)
foreach(rel ${OSTRIVEX_ASSET_FILES})
  set(src ${CMAKE_SOURCE_DIR}/assets/${rel})
  set(dst ${OSTRIVEX_BIN_DIR}/${rel})
  add_custom_command(OUTPUT ${dst}
                     COMMAND ${CMAKE_COMMAND} -E copy_if_different ${src} ${dst}
                     DEPENDS ${src}
                     COMMENT "Copying asset ${rel}"
                     VERBATIM)
  list(APPEND OSTRIVEX_ASSET_OUTPUTS ${dst})
endforeach()
add_custom_target(ostrivex_assets ALL DEPENDS ${OSTRIVEX_ASSET_OUTPUTS})

# An installed program cannot write beside itself; at first start it seeds the user's own
# folder from this copy (see AppFolder).
include(GNUInstallDirs)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/assets/ DESTINATION ${CMAKE_INSTALL_DATADIR}/ostrivex)
