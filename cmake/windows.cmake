# Debian's cross compiler for 32-bit Windows, the variant with POSIX threads. Its libraries are linked in, so that
# an executable needs nothing that Windows does not have.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/i686-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# 8 MiB, the main thread's stack on Linux too: the limits on recursion are made for it. Other threads reserve as
# much of the 2 GiB that a process has, so it is no larger.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--stack,8388608")
