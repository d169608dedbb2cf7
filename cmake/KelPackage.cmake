# A Debian package of the whole: `cpack --config build/CPackConfig.cmake`
# (from a build configured with CMAKE_INSTALL_PREFIX=/usr) gives
# kel_<version>_<arch>.deb, which `apt-get install ./kel_*.deb` installs with
# its run-time dependencies (found by dpkg-shlibdeps).
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kel)
set(CPACK_PACKAGE_VENDOR "KEL")
set(CPACK_PACKAGE_CONTACT "KEL developers <kel@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "KEL graphical class library for network-management consoles, with zed")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Found from the installed libraries' own folder while the dependencies are computed.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR}/lib)
# The headers need Qt's for KEL::kel to be usable.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-base-dev")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES OFF)
include(CPack)
