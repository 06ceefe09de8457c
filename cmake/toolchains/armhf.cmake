# 32-bit little-endian machine from Debian's cross compiler, with qemu to run what is built. The libraries are those that
# scripts/other_machines.sh has put into QUIVER_MACHINE_PREFIX.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
set(_triplet arm-linux-gnueabihf)
set(_emulator qemu-arm-static)
include("${CMAKE_CURRENT_LIST_DIR}/DebianCross.cmake")
