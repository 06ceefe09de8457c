# 64-bit big-endian machine from Debian's cross compiler, with qemu to run what is built. The libraries are those that
# scripts/other_machines.sh has put into QUIVER_MACHINE_PREFIX.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR s390x)
set(CMAKE_LIBRARY_ARCHITECTURE s390x-linux-gnu)
set(_triplet s390x-linux-gnu)
set(_emulator qemu-s390x-static)
include("${CMAKE_CURRENT_LIST_DIR}/DebianCross.cmake")
