# The Debian package, built by `cpack -G DEB` in a build folder (scripts/package does it all).
# The shared libraries the programs link come into Depends through dpkg-shlibdeps; the QML modules
# the window loads at run time are no linked library, so they are named here.

# Packaging builds only what it installs (target package_contents), not every test program.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quorrin)
set(CPACK_PACKAGE_VENDOR "The Quorrin developers")
set(CPACK_PACKAGE_CONTACT "The Quorrin developers <packages@quorrin.io>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "keep your own folders in order")
set(CPACK_PACKAGE_DESCRIPTION
    "Quorrin scans the folders you connect, sorts loose files into seven numbered category\n"
    "folders with an undo history, finds byte-identical duplicates and sends verified copies to\n"
    "the Trash, flags unreadable images and PDFs, empty files and installers, lists old\n"
    "Downloads nobody has opened, and finds files by date. Nothing is ever deleted outright.\n"
    "Includes the desktop app quorrin and the command line quorrin-cli.")
string(REPLACE ";" "" CPACK_PACKAGE_DESCRIPTION "${CPACK_PACKAGE_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE https://quorrin.io/)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "qml6-module-qtquick, qml6-module-qtquick-controls, qml6-module-qtquick-layouts, qml6-module-qtquick-templates, qml6-module-qtquick-window, qml6-module-qtqml-workerscript")
# The desktop's folder chooser, "Open Trash", the interface font and Wayland sessions.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-desktop-portal, xdg-utils, fonts-inter, qt6-wayland")

include(CPack)
