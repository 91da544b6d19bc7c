# SPDX-License-Identifier: Apache-2.0
# 64-bit Windows by mingw-w64, with threads of the C++ library. What is built needs nothing but the system: libraries of
# the compiler and outside ones (scripts/windows-libraries) are linked statically.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(target x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${target}-gcc-posix)
set(CMAKE_CXX_COMPILER ${target}-g++-posix)
set(CMAKE_RC_COMPILER ${target}-windres)

set(libraries "${CMAKE_CURRENT_LIST_DIR}/../build/windows-libraries")
set(CMAKE_FIND_ROOT_PATH "${libraries}" /usr/${target})
set(CMAKE_PREFIX_PATH /)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} "${libraries}/lib/pkgconfig")

# Windows 10, and its functions for wide text. Code of large template headers has more sections than the older form of
# object files can count.
set(CMAKE_CXX_FLAGS_INIT "-D_WIN32_WINNT=0x0A00 -DUNICODE -D_UNICODE -DNOMINMAX -DWIN32_LEAN_AND_MEAN -Wa,-mbig-obj")
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-static -Wl,--gc-sections")
endforeach()
