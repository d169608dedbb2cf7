# SPDX-License-Identifier: BSD-3-Clause
# Installation: libraries, public headers, modules, tools, the shipped
# network, the docs, a CMake package (KEL::kel, KEL::zed) and pkg-config files.
# The documentation is the kel-doc package's.
set(CMAKE_INSTALL_DOCDIR share/doc/kel-doc CACHE PATH "Documentation root (DATAROOTDIR/doc/kel-doc)")
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# Headers that only the libraries' own sources include: never installed, and
# no installed header may include one (the install check compiles each
# installed header on its own).
set(KEL_PRIVATE_HEADERS
  zed/dict/TDictionaryLoader.h
  zed/dict/ZedJsonReader.h
  zed/value/ZedValueJson.h
  zed/snmp/ZedSnmpLibrary.h
  zed/snmp/ZedSnmpPdu.h
  zed/snmp/TSnmpAnswers.h
  zed/snmp/TSnmpCallBook.h
  zed/snmp/TSnmpJobs.h
  zed/mib/TMibFaults.h
  zed/mib/TMibSyntax.h
  zed/mib/TMibDictionaryParts.h
  zed/value/ZedCivilDate.h
  kel/config/KELFileWriter.h
  kel/config/KELNameIndex.h
  kel/config/KELSectionMerge.h
  kel/config/KELTextTrim.h
  kel/frame/KELModule.h
  kel/frame/KELRankedTable.h
  kel/forms/KELIdlePass.h
  kel/forms/KELUndoRecorder.h
)

# Installs the public headers under a source folder (kel or zed), keeping
# their paths: include/kel/fields/IField.h.
function(kel_install_headers folder)
  file(GLOB_RECURSE headers RELATIVE ${PROJECT_SOURCE_DIR} CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.h)
  foreach(header IN LISTS headers)
    if(NOT header IN_LIST KEL_PRIVATE_HEADERS)
      get_filename_component(dir ${header} DIRECTORY)
      install(FILES ${PROJECT_SOURCE_DIR}/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${dir} COMPONENT devel)
    endif()
  endforeach()
endfunction()

# Installed programs find the libraries in the library folder beside theirs.
file(RELATIVE_PATH _kel_bin_to_lib ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set(KEL_PROGRAM_RPATH "$ORIGIN/${_kel_bin_to_lib}")
# And the shipped network in the data folder beside theirs.
file(RELATIVE_PATH KEL_BIN_TO_DATA ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_DATADIR}/kel/network)
# An installed library finds the system configuration files in the layout's
# configuration folder, told installed by its data folder: beside the library
# within the prefix (/opt/kel/etc/kel), or the system's own when the layout
# puts it outside (/etc/kel for /usr), wherever the files were then copied.
string(FIND "${CMAKE_INSTALL_FULL_SYSCONFDIR}/" "${CMAKE_INSTALL_PREFIX}/" _kel_sysconf_inside)
if(_kel_sysconf_inside EQUAL 0)
  file(RELATIVE_PATH KEL_LIB_TO_SYSCONF ${CMAKE_INSTALL_FULL_LIBDIR} ${CMAKE_INSTALL_FULL_SYSCONFDIR}/kel)
else()
  set(KEL_LIB_TO_SYSCONF ${CMAKE_INSTALL_FULL_SYSCONFDIR}/kel)
endif()
file(RELATIVE_PATH KEL_LIB_TO_DATA ${CMAKE_INSTALL_FULL_LIBDIR} ${CMAKE_INSTALL_FULL_DATADIR}/kel)

# The API reference (Doxygen): `cmake --build build --target api-docs`
# writes build/docs/api/html; warnings other than undocumented members fail it.
find_package(Doxygen QUIET)
if(DOXYGEN_FOUND)
  set(KEL_API_OUTPUT ${PROJECT_BINARY_DIR}/docs/api)
  set(KEL_API_PAGES "")
  foreach(page zed frame config model fields controls forms output console)
    string(APPEND KEL_API_PAGES " ${PROJECT_SOURCE_DIR}/docs/api/${page}.md")
  endforeach()
  set(KEL_API_EXCLUDE "")
  foreach(header IN LISTS KEL_PRIVATE_HEADERS)
    string(APPEND KEL_API_EXCLUDE " ${PROJECT_SOURCE_DIR}/${header}")
  endforeach()
  configure_file(${PROJECT_SOURCE_DIR}/docs/api/Doxyfile.in ${KEL_API_OUTPUT}/Doxyfile @ONLY)
  add_custom_target(api-docs
    COMMAND ${CMAKE_COMMAND} -E rm -f ${KEL_API_OUTPUT}/warnings.log
    COMMAND Doxygen::doxygen ${KEL_API_OUTPUT}/Doxyfile
    COMMAND ${CMAKE_COMMAND} -DLOG=${KEL_API_OUTPUT}/warnings.log -P ${PROJECT_SOURCE_DIR}/cmake/CheckApiWarnings.cmake
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
    COMMENT "API reference in ${KEL_API_OUTPUT}/html"
    VERBATIM)
endif()
# Installed with the docs when it has been made.
install(DIRECTORY ${PROJECT_BINARY_DIR}/docs/api/html/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/api OPTIONAL COMPONENT doc)
