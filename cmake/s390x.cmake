# 64-bit and big-endian.
set(triplet s390x-linux-gnu)
set(CMAKE_SYSTEM_PROCESSOR s390x)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-s390x-static -L /usr/s390x-linux-gnu)
include(${CMAKE_CURRENT_LIST_DIR}/cross_linux.cmake)
