# SPDX-License-Identifier: Apache-2.0
# The library as programs link it: all floors in one, static or shared, with the headers that are for everybody and no
# others. Within another build KvVesk::kvvesk is the one that BUILD_SHARED_LIBS asks for; here both are made.

# ---- headers: kvvesk.h and what it reaches, included as <kvvesk/...>

set(KVVESK_INCLUDE "${PROJECT_BINARY_DIR}/include")
set(stamp "${PROJECT_BINARY_DIR}/public_headers")
add_custom_command(
  OUTPUT "${stamp}"
  COMMAND ${CMAKE_COMMAND} "-DSOURCE=${KVVESK_SOURCE}" "-DGENERATED=${KVVESK_BINARY}" "-DOUTPUT=${KVVESK_INCLUDE}/kvvesk"
          "-DSTAMP=${stamp}" -P "${PROJECT_SOURCE_DIR}/cmake/public_headers.cmake"
  DEPENDS "${PROJECT_SOURCE_DIR}/cmake/public_headers.cmake"
  DEPFILE "${stamp}.d"
  COMMENT "Collecting the public headers"
  VERBATIM)
add_custom_target(kvvesk_headers ALL DEPENDS "${stamp}")

# ---- what the floors are, and what they need of others

# Names the floors that `target` needs, itself included, and what they need of others.
function(kv_needs target floors others)
  set(known ${${floors}})
  set(outside ${${others}})
  list(APPEND known ${target})
  get_target_property(needs ${target} LINK_LIBRARIES)
  foreach(need IN LISTS needs)
    if(need MATCHES "^kv_")
      if(NOT need IN_LIST known)
        kv_needs(${need} known outside)
      endif()
    elseif(need AND NOT need STREQUAL "kvvesk_warnings")
      list(APPEND outside ${need})
    endif()
  endforeach()
  list(REMOVE_DUPLICATES outside)
  set(${floors} ${known} PARENT_SCOPE)
  set(${others} ${outside} PARENT_SCOPE)
endfunction()
set(KVVESK_FLOORS "")
set(KVVESK_OUTSIDE "")
kv_needs(kv_vesk KVVESK_FLOORS KVVESK_OUTSIDE)

# ---- the libraries

list(TRANSFORM KVVESK_FLOORS REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>" OUTPUT_VARIABLE objects)
set(map "${PROJECT_BINARY_DIR}/kvvesk.map")
configure_file("${PROJECT_SOURCE_DIR}/cmake/kvvesk.map.in" "${map}" @ONLY)
function(kv_library name type)
  add_library(${name} ${type} ${objects})
  add_dependencies(${name} kvvesk_headers)
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX OUTPUT_NAME kvvesk EXPORT_NAME ${name})
  target_compile_features(${name} INTERFACE cxx_std_20)
  target_include_directories(${name} INTERFACE $<BUILD_INTERFACE:${KVVESK_INCLUDE}>
                                               $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_link_libraries(${name} PRIVATE ${KVVESK_OUTSIDE})
  if(type STREQUAL "SHARED" AND NOT WIN32)
    set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} LINK_DEPENDS
                                                                                                      "${map}")
    target_link_options(${name} PRIVATE LINKER:--version-script=${map} LINKER:-z,defs)
  endif()
  add_library(KvVesk::${name} ALIAS ${name})
endfunction()

if(KVVESK_INSTALL AND NOT WIN32 AND NOT KVVESK_SANITIZE)
  kv_library(kvvesk_static STATIC)
  kv_library(kvvesk_shared SHARED)
elseif(BUILD_SHARED_LIBS AND NOT WIN32)
  kv_library(kvvesk_shared SHARED)
elseif(NOT PROJECT_IS_TOP_LEVEL)
  kv_library(kvvesk_static STATIC)
endif()
if(TARGET kvvesk_shared AND (BUILD_SHARED_LIBS OR NOT TARGET kvvesk_static))
  add_library(KvVesk::kvvesk ALIAS kvvesk_shared)
elseif(TARGET kvvesk_static)
  add_library(KvVesk::kvvesk ALIAS kvvesk_static)
endif()

# For what is installed.
set(KVVESK_INCLUDE "${KVVESK_INCLUDE}" PARENT_SCOPE)
set(KVVESK_OUTSIDE "${KVVESK_OUTSIDE}" PARENT_SCOPE)
