#!/usr/bin/env bash
# Installs what Quiver needs to build and to test itself, on Debian 12. Does nothing for what is already there.
set -euo pipefail

packages=(
    g++ cmake ninja-build pkg-config
    libexpat1-dev libpcre3-dev libpcre2-dev zlib1g-dev
    libgtest-dev libgmock-dev libbenchmark-dev libgmp-dev
    locales
)
if [ "${1:-}" = "--checks" ]; then
    # What only the checks of continuous integration need.
    packages+=(clang clang-format libclang-rt-14-dev python3 python3-clang-14 default-jdk-headless libfastinfoset-java)
    packages+=(libxml2-utils libxerces-c-dev bc binutils gdb lintian doxygen valgrind)
fi
if [ "${1:-}" = "--machines" ]; then
    # What building for other machines, and running there, needs beside; and for another C++ library.
    packages+=(g++-s390x-linux-gnu g++-arm-linux-gnueabihf qemu-user-static)
    packages+=(clang libc++-14-dev libc++abi-14-dev googletest)
fi
if [ "${1:-}" = "--windows" ]; then
    # What building for Windows, and running there, needs beside.
    packages+=(g++-mingw-w64-x86-64-posix libz-mingw-w64-dev wine wine64 dpkg-dev m4 make zip)
    packages+=(clang default-jdk-headless libfastinfoset-java)
fi

fail()
{
    echo "setup: $1" >&2
    exit 1
}

command -v dpkg-query >/dev/null || fail "this script installs Debian packages, and this machine has no dpkg; install by hand: ${packages[*]}"

missing=()
for package in "${packages[@]}"; do
    if [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)" != installed ]; then
        missing+=("$package")
    fi
done
if [ "${#missing[@]}" -eq 0 ]; then
    echo "setup: all packages are installed"
    exit 0
fi

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || fail "these packages are missing, and installing them takes root or sudo: ${missing[*]}"
    as_root=(sudo)
fi

echo "setup: installing ${missing[*]}"
"${as_root[@]}" apt-get update -qq || fail "the package lists could not be fetched; is the package registry reachable?"
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null ||
    fail "the packages could not be installed: ${missing[*]}"
echo "setup: done"
