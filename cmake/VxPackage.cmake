# The Debian package, made by CPack from the install rules (`cpack --preset
# release`, or `make package`). Its dependencies are read from the programs
# themselves, so they follow whatever the build links.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vantrelix-app-builder)
set(CPACK_PACKAGE_VENDOR Vantrelix)
set(CPACK_PACKAGE_CONTACT "Vantrelix <packages@vantrelix.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Packs a web app's folder into a Vantrelix app package")
set(CPACK_PACKAGE_DESCRIPTION
    "Vantrelix is a desktop host for web apps. The App Builder packs a web app's folder into one .vxpk package that the host opens, and extracts such packages again.")
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The icon is drawn through the toolkit's SVG image plugin, which is loaded
# at run time and so escapes the reading of the programs' libraries.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6svg6")
# The desktop's caches of file types, menu entries and icons are rebuilt by
# the packages that own them, once, at the end of the installation.
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/dist/debian/triggers")

include(CPack)
