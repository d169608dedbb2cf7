# SPDX-License-Identifier: BSD-3-Clause
# Debian packages the Debian way, from a build configured for /usr (the
# default preset is): `cpack --config build/CPackConfig.cmake` in build/ gives
#   libkel0       the run-time libraries (multiarch), the resource module and
#                 the launch plugin
#   libkel-dev    headers, the CMake package, pkg-config files, the .so links
#   kel-tools     kelbrowser, kelconf, zedsh, the shipped network and schemas
#   kel-doc       the documentation and the API reference
# each with its copyright file, and the debug symbols apart in -dbgsym .ddebs.
# Run-time dependencies are computed by dpkg-shlibdeps; the packages depend
# on each other at the same version.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kel)
set(CPACK_PACKAGE_VENDOR "KEL")
set(CPACK_PACKAGE_CONTACT "KEL developers <kel@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "KEL graphical class library for network-management consoles, with zed")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_DEBIAN_PACKAGE_LICENSE BSD-3-Clause)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime devel tools doc)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
# Found from the installed libraries' own folder while the dependencies are computed.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR}/lib)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
# The symbols go to the -dbgsym packages, which strip the binaries themselves
# (a binary stripped before would leave them nothing to take).
set(CPACK_STRIP_FILES OFF)
set(CPACK_DEBIAN_DEBUGINFO_PACKAGE ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libkel0)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "KEL and zed run-time libraries
 The shared libraries a host application of KEL loads: KEL (generated forms,
 outputs, console and workspace on Qt 6) and zed (the access library with its
 embedded simulated network, and its SNMP module on net-snmp), the resource
 module and the launch plugin.")
set(CPACK_DEBIAN_DEVEL_PACKAGE_NAME libkel-dev)
set(CPACK_DEBIAN_DEVEL_PACKAGE_SECTION libdevel)
# The headers need Qt's for KEL::kel to be usable.
set(CPACK_DEBIAN_DEVEL_PACKAGE_DEPENDS "qt6-base-dev")
set(CPACK_COMPONENT_DEVEL_DESCRIPTION "KEL and zed development files
 Headers, the CMake package (find_package(KEL)), pkg-config files (kel, zed)
 and the links to build a host application against KEL.")
set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME kel-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION net)
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "KEL browser, kelconf and zedsh
 kelbrowser, an operator's console on KEL; kelconf, which reads KEL
 configuration files; zedsh, the access library from the command line; with
 the shipped simulated network and the JSON Schemas of its files.")
set(CPACK_DEBIAN_DOC_PACKAGE_NAME kel-doc)
set(CPACK_DEBIAN_DOC_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOC_PACKAGE_ARCHITECTURE all)
set(CPACK_COMPONENT_DOC_DESCRIPTION "KEL documentation and API reference
 How a host uses KEL, the file formats, and the API reference of the public
 headers.")
set(CPACK_COMPONENT_DEVEL_DEPENDS runtime)
set(CPACK_COMPONENT_TOOLS_DEPENDS runtime)

# Every package carries the copyright file Debian asks for.
set(_kel_packages libkel0 libkel-dev kel-tools kel-doc)
foreach(component package IN ZIP_LISTS CPACK_COMPONENTS_ALL _kel_packages)
  install(FILES ${PROJECT_SOURCE_DIR}/cmake/debian/copyright
          DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package} COMPONENT ${component})
endforeach()
include(CPack)
