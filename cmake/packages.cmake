# SPDX-License-Identifier: Apache-2.0
# Debian packages of the three components: `cpack` in the build folder makes them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kvvesk)
set(CPACK_PACKAGE_VERSION ${KVVESK_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library development)
if(KVVESK_PROGRAM)
  list(APPEND CPACK_COMPONENTS_ALL program)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
# Debian sorts what is not released before what is by this sign.
string(REPLACE "-" "~" version "${KVVESK_VERSION}")
set(CPACK_DEBIAN_PACKAGE_VERSION ${version})
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The KvVesk maintainers <maintainers@kvvesk.invalid>")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(exactly "(= ${version}-1)")

set(library libkvvesk${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${library})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "Keeps a register of controlled documents in a file or on a server.
This is the library that programs use.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libkvvesk-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "${library} ${exactly}, libargon2-dev, libfmt-dev, libpq-dev, libsqlite3-dev, libutf8proc-dev")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Headers and static library of a register of controlled documents.
What programs in C++ are built with, by CMake or pkg-config.")

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME kvvesk)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION "Keeps a register of controlled documents, from the shell.
With manual pages, and completion for bash, zsh, fish and PowerShell.")

# Where Debian has them.
set(documents ${CMAKE_INSTALL_DATADIR}/doc)
foreach(component library:${library} development:libkvvesk-dev program:kvvesk)
  string(REGEX REPLACE ":.*" "" name ${component})
  string(REGEX REPLACE ".*:" "" folder ${component})
  install(FILES ${PROJECT_SOURCE_DIR}/LICENSE RENAME copyright DESTINATION ${documents}/${folder} COMPONENT ${name})
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/CHANGELOG.md DESTINATION ${documents}/libkvvesk-dev COMPONENT development)
include(CPack)
