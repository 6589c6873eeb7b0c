# How CPack makes the Debian package.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tarnwick)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_VENDOR "Tarnwick developers")
set(CPACK_PACKAGE_CONTACT "Tarnwick developers <tarnwick@localhost.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "complete Linux desktop in a window of your own computer")
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/package")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION x11)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_LIST_DIR}/postrm")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Tarnwick starts a Linux desktop of its own for its user and shows it in a
window: one press checks the container engine, downloads the desktop's image,
starts it for this user alone and opens it. It can be stopped, updated and
removed with one press too, and every flavor of the desktop keeps its own
files.
.
It drives the tools colima and docker, and can have Homebrew install them. The
desktop is reachable from this computer only.")

# The libraries are found in the binaries; the rest are programs and plug-ins that no binary names.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "hicolor-icon-theme, libqt6svg6, lsof, qt6-qpa-plugins")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "fonts-dejavu-core, gnome-keyring | keepassxc | libkf5wallet-bin, qt6-wayland, xdg-utils")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "docker.io")
include(CPack)
