#!/usr/bin/env bash
# Builds Quiver for machines that store numbers otherwise than those at hand and runs its tests there, under qemu, on Debian 12.
#
#   scripts/other_machines.sh [MACHINE ...]     machines: s390x (64 bits, big-endian), armhf (32 bits, little-endian); both by
#                                               default. libcxx is this machine with another C++ library, that of clang
#
# The compilers are Debian's cross compilers; the libraries are Debian's packages for the machine, unpacked into a prefix
# outside of the checkout, QUIVER_MACHINES, by default ~/.cache/quiver/machines.
#
# QUIVER_MACHINE_TESTS, a regular expression, leaves only the tests whose names it matches.
set -euo pipefail
cd "$(dirname "$0")/.."

machines=${QUIVER_MACHINES:-$HOME/.cache/quiver/machines}

fail()
{
    echo "other_machines: $1" >&2
    exit 1
}

# Unpacks Debian's packages for the machine: MACHINE TRIPLET
fetch()
{
    local machine=$1 triplet=$2 prefix=$machines/$1
    [ ! -e "$prefix/.complete" ] || return 0
    echo "other_machines: fetching the libraries for $machine"
    local apt=$machines/apt-$machine
    rm -rf "$prefix"
    mkdir -p "$prefix/usr/lib" "$apt/lists/partial" "$apt/archives" "$apt/sources"
    # Only Debian's own archives have packages for other machines.
    local list
    for list in $(grep -l debian.org /etc/apt/sources.list.d/*.sources); do
        cp "$list" "$apt/sources"
    done
    [ ! -s /etc/apt/sources.list ] || grep debian.org /etc/apt/sources.list >"$apt/sources/sources.list" || true
    local options=(-q -o Dir::Etc::SourceList=/dev/null -o "Dir::Etc::SourceParts=$apt/sources"
        -o "Dir::State::Lists=$apt/lists" -o APT::Sandbox::User= -o "APT::Architecture=$machine"
        -o "APT::Architectures::=$machine" -o Dir::State::Status=/dev/null -o "Dir::Cache=$apt")
    # An archive whose list is not to be had is done without, as long as the others have the packages.
    apt-get "${options[@]}" update >"$apt/update.log" 2>&1 || echo "other_machines: not all lists were fetched; see $apt/update.log"
    local packages=(
        libexpat1 libexpat1-dev zlib1g zlib1g-dev
        libpcre3 libpcre3-dev libpcre16-3 libpcre32-3 libpcre2-8-0 libpcre2-dev
        libgmp10 libgmpxx4ldbl libgmp-dev libgtest-dev libgmock-dev
    )
    (cd "$apt/archives" && apt-get "${options[@]}" download "${packages[@]}" >/dev/null)
    ln -s usr/lib "$prefix/lib"
    local package
    for package in "$apt"/archives/*.deb; do
        dpkg-deb --fsys-tarfile "$package" | tar -x --keep-directory-symlink -C "$prefix"
    done
    # Links of the packages are meant for their own machine.
    find "$prefix" -type l -lname '/*' -printf '%p %l\n' | while read -r link target; do
        ln -sfn "$prefix$target" "$link"
    done
    # The cross compiler looks for headers in its own folder of the machine only.
    [ ! -d "$prefix/usr/include/$triplet" ] || cp -r "$prefix/usr/include/$triplet/." "$prefix/usr/include"
    [ -d "$prefix/usr/lib/$triplet" ] || fail "the packages for $machine have no $triplet"
    touch "$prefix/.complete"
}

# Builds GoogleTest with the C++ library of clang, from the sources that Debian packs.
fetch_libcxx()
{
    local prefix=$machines/libcxx
    [ ! -e "$prefix/.complete" ] || return 0
    echo "other_machines: building GoogleTest"
    local build
    build=$(mktemp -d)
    rm -rf "$prefix"
    cmake -G Ninja -S /usr/src/googletest -B "$build" -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER=clang++ \
        -DCMAKE_CXX_FLAGS=-stdlib=libc++ -DCMAKE_INSTALL_PREFIX="$prefix" >/dev/null
    cmake --build "$build" --target install >/dev/null
    rm -rf "$build"
    touch "$prefix/.complete"
}

# Builds and tests with clang and its C++ library.
try_libcxx()
{
    fetch_libcxx
    export QUIVER_MACHINE_PREFIX=$machines/libcxx
    scripts/build.sh libcxx
    # Left out: the commands of the pages, which compile programs with the other library.
    ctest --preset libcxx -j "$(nproc)" -E '^page_' ${QUIVER_MACHINE_TESTS:+-R "$QUIVER_MACHINE_TESTS"}
}

# Builds and tests: MACHINE TRIPLET
try()
{
    local machine=$1 triplet=$2
    fetch "$machine" "$triplet"
    export QUIVER_MACHINE_PREFIX=$machines/$machine
    scripts/build.sh "$machine"
    # Left out: tests that a shell runs the tools for, which takes qemu's help; the one whose bound is seconds; and those in
    # the locale of this machine, whose files are not for that one.
    local filter='-*AsAProcess:*FromItsCommandLine:Generator.TheProgram*:*HostileSchemas*ManyElements'
    # The library asks for the state of a file by the name that the call has with times of 64 bits, the test fails the other.
    [ "$machine" != armhf ] || filter+=:Kinds/FileFaults.EndInAMessageAndLeaveNothing/status
    LC_ALL=C GTEST_FILTER=$filter \
        ctest --preset "$machine" -j "$(nproc)" -E 'German|^page_' ${QUIVER_MACHINE_TESTS:+-R "$QUIVER_MACHINE_TESTS"}
}

scripts/setup.sh --machines
[ $# -gt 0 ] || set -- s390x armhf
for machine in "$@"; do
    case "$machine" in
    s390x) try s390x s390x-linux-gnu ;;
    armhf) try armhf arm-linux-gnueabihf ;;
    libcxx) try_libcxx ;;
    *) fail "there is no machine '$machine'; the machines are s390x, armhf and libcxx" ;;
    esac
done
