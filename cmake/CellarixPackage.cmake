# The .deb: the tree under the prefix, and links to it where the system looks (cmake/CellarixPackageLinks.cmake).
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME cellarix)
set(CPACK_PACKAGE_VENDOR "Lumora")
set(CPACK_PACKAGE_CONTACT "Cellarix developers <dev@cellarix.example>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "get Windows applications to run under Wine")
set(CPACK_PACKAGE_DESCRIPTION
"Cellarix takes a Windows program and gets it to run under Wine with as little
help from the user as it can. It prepares a bottle for it, starts it, watches
for its window, reads Wine's log when none comes, finds out which components
or fonts are missing, and installs them.
.
It keeps a library of installed programs, installs from an application store,
configures each bottle, and packs a bottle into a deb package.")

# Everything has an absolute place under CELLARIX_PREFIX.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/CellarixPackageLinks.cmake)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
string(CONCAT CPACK_DEBIAN_PACKAGE_DEPENDS
  "wine, wine64-preloader | wine32-preloader, python3:any, python3-pefile, python3-yaml, icoutils, file, "
  "xdg-utils, xz-utils, zstd, hicolor-icon-theme, libqt5sql5-sqlite, default-dbus-session-bus | dbus-session-bus")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "wine32, wine32-preloader, libvulkan1, mesa-vulkan-drivers, pciutils, fonts-noto-cjk, qttranslations5-l10n")
# For the components that the catalogue has no files for.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "winetricks")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# What the script needs to know reaches it by these names.
set(CPACK_CELLARIX_PREFIX ${CELLARIX_PREFIX})
set(CPACK_CELLARIX_SOURCE ${PROJECT_SOURCE_DIR})
include(CPack)
