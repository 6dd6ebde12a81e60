# 64-bit ARM.
set(triplet aarch64-linux-gnu)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64-static -L /usr/aarch64-linux-gnu)
include(${CMAKE_CURRENT_LIST_DIR}/cross_linux.cmake)
