# The Debian packages: CPack packs what is installed, dpkg-shlibdeps finds the libraries it needs.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME serimonde)
set(CPACK_PACKAGE_VENDOR "The Serimonde developers")
set(CPACK_PACKAGE_CONTACT "The Serimonde developers <${SERIMONDE_EMAIL}>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "test and monitor serial (RS232) communication")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL window cli)
set(CPACK_DEBIAN_WINDOW_PACKAGE_NAME serimonde)
set(CPACK_DEBIAN_CLI_PACKAGE_NAME serimonde-cli)
file(READ description.txt CPACK_DEBIAN_WINDOW_DESCRIPTION)
file(READ description-cli.txt CPACK_DEBIAN_CLI_DESCRIPTION)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION comm)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${SERIMONDE_WEB}")
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Plug-ins that no link names (the data base of the help); the font of the views, and
# that of everything else: with the former alone a bare system shows all of it in a fixed pitch.
set(CPACK_DEBIAN_WINDOW_PACKAGE_DEPENDS
    "libqt6sql6-sqlite, fonts-liberation, fonts-dejavu-core")
set(CPACK_DEBIAN_WINDOW_PACKAGE_RECOMMENDS "serimonde-cli, ca-certificates")
set(CPACK_DEBIAN_WINDOW_PACKAGE_SUGGESTS "qt6-wayland")
# Whom a server over TLS may be certified by.
set(CPACK_DEBIAN_CLI_PACKAGE_RECOMMENDS "ca-certificates")
set(CPACK_DEBIAN_CLI_PACKAGE_SUGGESTS "wireshark")

include(CPack)
