# 32-bit x86. A 64-bit kernel runs its programs, by the loader of the compiler's own C library.
set(triplet i686-linux-gnu)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_CROSSCOMPILING_EMULATOR /usr/i686-linux-gnu/lib/ld-linux.so.2 --library-path /usr/i686-linux-gnu/lib)
include(${CMAKE_CURRENT_LIST_DIR}/cross_linux.cmake)
