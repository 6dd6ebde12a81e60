# 64-bit Windows.
set(triplet x86_64-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine ${triplet})
include(${CMAKE_CURRENT_LIST_DIR}/cross_windows.cmake)
