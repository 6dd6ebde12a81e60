# 32-bit Windows.
set(triplet i686-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine ${triplet})
include(${CMAKE_CURRENT_LIST_DIR}/cross_windows.cmake)
