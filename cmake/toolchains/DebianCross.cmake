# What the machines have in common whose compiler is one of Debian's cross compilers: _triplet names the machine, _emulator
# the program that runs what is built for it.
set(CMAKE_C_COMPILER ${_triplet}-gcc)
set(CMAKE_CXX_COMPILER ${_triplet}-g++)

# Debian's own packages for the machine, unpacked. The C and C++ libraries come with the compiler.
set(_prefix "$ENV{QUIVER_MACHINE_PREFIX}")
set(CMAKE_FIND_ROOT_PATH "${_prefix}" /usr/${_triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} "${_prefix}")
set(ENV{PKG_CONFIG_LIBDIR} "${_prefix}/usr/lib/${_triplet}/pkgconfig:${_prefix}/usr/share/pkgconfig")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,-rpath-link,${_prefix}/usr/lib/${_triplet}:${_prefix}/lib/${_triplet}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${CMAKE_EXE_LINKER_FLAGS_INIT}")

set(CMAKE_CROSSCOMPILING_EMULATOR ${_emulator} -L /usr/${_triplet}
    -E "LD_LIBRARY_PATH=/usr/${_triplet}/lib:${_prefix}/usr/lib/${_triplet}:${_prefix}/lib/${_triplet}")
