# Where `cmake --install` puts the program, and the Debian package `cpack -G DEB` makes of it.
include(GNUInstallDirs)

if(LW_BUILD_APPS)
  install(TARGETS ledgerwick ledgerwick-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES ${CMAKE_CURRENT_LIST_DIR}/ledgerwick.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES ${CMAKE_SOURCE_DIR}/src/ui/icons/ledgerwick.svg
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
endif()

set(CPACK_PACKAGE_NAME ledgerwick)
set(CPACK_PACKAGE_VENDOR "Ledgerwick")
set(CPACK_PACKAGE_CONTACT "Ledgerwick <ledgerwick@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_INSTALL_DIRECTORY ledgerwick)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://ledgerwick.example.org/")
# The libraries are found from the binaries; the plugins Qt loads at run time
# (the SVG icons, item pictures in TIFF) are named here.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6svg6, qt6-image-formats-plugins")
# Only the program: the tests, benchmarks and fuzzers are not installed.
set(CPACK_COMPONENTS_ALL Unspecified)
include(CPack)
