# 32-bit ARM with hardware floating point.
set(triplet arm-linux-gnueabihf)
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm-static -L /usr/arm-linux-gnueabihf)
include(${CMAKE_CURRENT_LIST_DIR}/cross_linux.cmake)
