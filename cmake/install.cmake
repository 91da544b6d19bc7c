# SPDX-License-Identifier: Apache-2.0
# What `cmake --install` puts where, in three components: the shared library; what is needed to build with it; the
# program. Packages are made of them.
include(CMakePackageConfigHelpers)

set(package ${CMAKE_INSTALL_LIBDIR}/cmake/KvVesk)
install(
  TARGETS kvvesk_shared
  EXPORT KvVeskTargets
  LIBRARY COMPONENT library NAMELINK_COMPONENT development)
install(
  TARGETS kvvesk_static
  EXPORT KvVeskTargets
  ARCHIVE COMPONENT development)
install(
  DIRECTORY ${KVVESK_INCLUDE}/kvvesk
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  COMPONENT development)
install(
  EXPORT KvVeskTargets
  NAMESPACE KvVesk::
  DESTINATION ${package}
  COMPONENT development)
set(KVVESK_FIND_POSTGRES "")
if(KVVESK_POSTGRES)
  set(KVVESK_FIND_POSTGRES "  find_dependency(PostgreSQL)\n")
endif()
configure_package_config_file(cmake/KvVeskConfig.cmake.in KvVeskConfig.cmake INSTALL_DESTINATION ${package})
write_basic_package_version_file(KvVeskConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(
  FILES ${PROJECT_BINARY_DIR}/KvVeskConfig.cmake ${PROJECT_BINARY_DIR}/KvVeskConfigVersion.cmake
  DESTINATION ${package}
  COMPONENT development)
if(KVVESK_PROGRAM)
  install(TARGETS kvvesk COMPONENT program)
endif()

# ---- pkg-config: what a program with the static library links besides. The libraries are named and not their modules:
# pkg-config would add all that they need to be static themselves, which is not installed and is not wanted.

set(libraries "")
foreach(need IN LISTS KVVESK_OUTSIDE)
  if(need STREQUAL "fmt::fmt")
    list(APPEND libraries -lfmt)
  elseif(need STREQUAL "PostgreSQL::PostgreSQL")
    list(APPEND libraries -lpq)
  elseif(need STREQUAL "SQLite::SQLite3")
    list(APPEND libraries -lsqlite3)
  elseif(need STREQUAL "PkgConfig::UTF8PROC")
    list(APPEND libraries -lutf8proc)
  elseif(need STREQUAL "PkgConfig::ARGON2")
    list(APPEND libraries -largon2)
  else()
    message(FATAL_ERROR "the library needs ${need}: say here and in KvVeskConfig.cmake.in how users find it")
  endif()
endforeach()
list(JOIN libraries " " KVVESK_PC_LIBRARIES)
file(RELATIVE_PATH KVVESK_PC_PREFIX "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" KVVESK_PC_PREFIX "${KVVESK_PC_PREFIX}")
configure_file(cmake/kvvesk.pc.in kvvesk.pc @ONLY)
install(
  FILES ${PROJECT_BINARY_DIR}/kvvesk.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT development)

include(cmake/packages.cmake)

# ---- tests of what is delivered

function(kv_delivery_test name)
  add_test(NAME ${name} COMMAND ${ARGN})
  set_tests_properties(${name} PROPERTIES LABELS delivery TIMEOUT 1800)
endfunction()
if(KVVESK_TESTS)
  kv_delivery_test(consumers ${PROJECT_SOURCE_DIR}/tests/install/consumers ${PROJECT_BINARY_DIR} ${CMAKE_CXX_COMPILER})
  kv_delivery_test(symbols ${PROJECT_SOURCE_DIR}/tests/install/symbols ${PROJECT_BINARY_DIR})
  kv_delivery_test(packages ${PROJECT_SOURCE_DIR}/tests/install/packages ${PROJECT_BINARY_DIR} ${CMAKE_CXX_COMPILER})
  kv_delivery_test(reference ${PROJECT_SOURCE_DIR}/tests/install/reference ${PROJECT_BINARY_DIR})
  kv_delivery_test(sbom ${PROJECT_SOURCE_DIR}/tests/install/sbom ${PROJECT_BINARY_DIR})
  kv_delivery_test(reproducible ${PROJECT_SOURCE_DIR}/tests/install/reproducible ${PROJECT_BINARY_DIR})
endif()
