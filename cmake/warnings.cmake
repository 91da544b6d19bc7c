# SPDX-License-Identifier: Apache-2.0
# Warnings are errors, in our own code: system headers are not ours to mend. Within another build they are not: its
# compiler may know more of them than ours.
add_library(kvvesk_warnings INTERFACE)
target_compile_options(
  kvvesk_warnings
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            # Only variables of functions: names of enumerators may be those of other things.
            $<$<CXX_COMPILER_ID:GNU>:-Wshadow=local>
            $<$<CXX_COMPILER_ID:Clang>:-Wshadow>
            $<$<CXX_COMPILER_ID:GNU>:-Wzero-as-null-pointer-constant>
            $<$<CXX_COMPILER_ID:Clang>:-Wreserved-identifier>
            -Wconversion
            -Wsign-conversion
            -Wold-style-cast
            -Wnon-virtual-dtor
            -Woverloaded-virtual
            -Wswitch-enum
            $<$<BOOL:${KVVESK_WERROR}>:-Werror>
            # Designated initializers name what they set; the rest is meant to have its default.
            -Wno-missing-field-initializers
            # g++ 12 sees overlaps in joined strings that are not there (its bug 105651).
            $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(KVVESK_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
# Here, not beside the targets: the whole library is to be watched.
if(KVVESK_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
