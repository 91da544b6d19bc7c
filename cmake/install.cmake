# What `cmake --install` puts where: the libraries, the headers their users need, the program, and what find_package
# and pkg-config need to find them.
include(CMakePackageConfigHelpers)

# The one thing to link, by the same name in this build and from the package.
add_library(kvvesk_library INTERFACE)
add_library(KvVesk::kvvesk ALIAS kvvesk_library)
set_target_properties(kvvesk_library PROPERTIES EXPORT_NAME kvvesk)
target_link_libraries(kvvesk_library INTERFACE kv_vesk)
target_include_directories(kvvesk_library INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)

# Names the libraries that `target` needs, each after those it needs itself, and the pkg-config modules of what they
# need of others.
function(kv_needs target libraries modules)
  set(libs ${${libraries}})
  set(mods ${${modules}})
  get_target_property(needs ${target} LINK_LIBRARIES)
  foreach(need IN LISTS needs)
    if(need MATCHES "^kv_" AND TARGET ${need})
      if(NOT need IN_LIST libs)
        kv_needs(${need} libs mods)
      endif()
    elseif(need STREQUAL "fmt::fmt")
      list(APPEND mods fmt)
    elseif(need STREQUAL "PostgreSQL::PostgreSQL")
      list(APPEND mods libpq)
    elseif(need STREQUAL "SQLite::SQLite3")
      list(APPEND mods sqlite3)
    elseif(need STREQUAL "PkgConfig::UTF8PROC")
      list(APPEND mods libutf8proc)
    elseif(need STREQUAL "PkgConfig::ARGON2")
      list(APPEND mods libargon2)
    elseif(need AND NOT need MATCHES "kvvesk_warnings")
      message(FATAL_ERROR "${target} needs ${need}: say here and in KvVeskConfig.cmake.in how users find it")
    endif()
  endforeach()
  list(APPEND libs ${target})
  list(REMOVE_DUPLICATES mods)
  set(${libraries} ${libs} PARENT_SCOPE)
  set(${modules} ${mods} PARENT_SCOPE)
endfunction()
set(KVVESK_LIBRARIES "")
set(KVVESK_MODULES "")
kv_needs(kv_vesk KVVESK_LIBRARIES KVVESK_MODULES)

install(TARGETS kvvesk)
install(TARGETS ${KVVESK_LIBRARIES} kvvesk_library EXPORT KvVeskTargets)
install(CODE "set(KVVESK_SOURCE \"${PROJECT_SOURCE_DIR}/src\")
set(KVVESK_INCLUDE \"${CMAKE_INSTALL_INCLUDEDIR}/kvvesk\")")
install(SCRIPT cmake/install_headers.cmake)

set(package ${CMAKE_INSTALL_LIBDIR}/cmake/KvVesk)
install(EXPORT KvVeskTargets NAMESPACE KvVesk:: DESTINATION ${package})
configure_package_config_file(cmake/KvVeskConfig.cmake.in KvVeskConfig.cmake INSTALL_DESTINATION ${package})
write_basic_package_version_file(KvVeskConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/KvVeskConfig.cmake ${PROJECT_BINARY_DIR}/KvVeskConfigVersion.cmake
        DESTINATION ${package})

# Static libraries: each before those it needs.
set(reversed ${KVVESK_LIBRARIES})
list(REVERSE reversed)
list(TRANSFORM reversed PREPEND "-l" OUTPUT_VARIABLE flags)
list(JOIN flags " " KVVESK_PC_LIBS)
list(JOIN KVVESK_MODULES ", " KVVESK_PC_REQUIRES)
file(RELATIVE_PATH KVVESK_PC_PREFIX "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" KVVESK_PC_PREFIX "${KVVESK_PC_PREFIX}")
configure_file(cmake/kvvesk.pc.in kvvesk.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kvvesk.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# An instrumented build is not for installing: its users would have to be instrumented too.
if(KVVESK_TESTS AND NOT KVVESK_SANITIZE)
  add_test(NAME install_check
           COMMAND ${PROJECT_SOURCE_DIR}/tests/install/check ${PROJECT_BINARY_DIR} ${CMAKE_CXX_COMPILER})
  set_tests_properties(install_check PROPERTIES LABELS install TIMEOUT 600)
endif()
