#!/usr/bin/env bash
# Builds Quiver for 64-bit Windows on Debian 12 and tries its tools under Wine.
#
#   scripts/windows.sh [STEP ...]     steps: setup, dependencies, build, try; all of them by default
#
# The libraries that Quiver needs there are built from Debian's own sources into a prefix outside of the checkout:
# QUIVER_WINDOWS_PREFIX, by default ~/.cache/quiver/windows.
set -euo pipefail
cd "$(dirname "$0")/.."

export QUIVER_WINDOWS_PREFIX=${QUIVER_WINDOWS_PREFIX:-$HOME/.cache/quiver/windows}
toolchain=$PWD/cmake/toolchains/mingw-w64.cmake
sources=$QUIVER_WINDOWS_PREFIX/src
# Wine keeps its own world beside the prefix, shows no window and waits for no click.
export WINEPREFIX=${WINEPREFIX:-$QUIVER_WINDOWS_PREFIX/wine} WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES="mscoree,mshtml="
export DISPLAY=
# Where the DLLs of the compiler and of zlib lie.
export WINEPATH="Z:/usr/lib/gcc/x86_64-w64-mingw32/12-posix;Z:/usr/x86_64-w64-mingw32/lib"

fail()
{
    echo "windows: $1" >&2
    exit 1
}

setup()
{
    scripts/setup.sh --windows
}

# Fetches a Debian source package and unpacks it as $sources/NAME. A version from the security archive whose patches are
# not to be had is built as its authors released it.
fetch()
{
    local name=$1
    [ ! -d "$sources/$name" ] || return 0
    echo "windows: fetching $name"
    local apt=$QUIVER_WINDOWS_PREFIX/apt
    if [ ! -d "$apt/lists" ]; then
        mkdir -p "$apt/lists/partial" "$apt/sources"
        local list
        for list in /etc/apt/sources.list.d/*.sources; do
            sed 's/^Types:.*/Types: deb-src/' "$list" >"$apt/sources/$(basename "$list")"
        done
        [ ! -s /etc/apt/sources.list ] || sed -n 's/^deb /deb-src /p' /etc/apt/sources.list >"$apt/sources/sources.list"
    fi
    local options=(-q -o Dir::Etc::SourceList=/dev/null -o "Dir::Etc::SourceParts=$apt/sources"
        -o "Dir::State::Lists=$apt/lists" -o APT::Sandbox::User=)
    mkdir -p "$sources/fetched"
    (
        cd "$sources/fetched"
        [ -e "$apt/updated" ] || { apt-get "${options[@]}" update >/dev/null && touch "$apt/updated"; }
        apt-get "${options[@]}" --download-only source "$name" >"$name.log" 2>&1 || true
        local description
        description=$(find . -name "${name}_*.dsc" | head -1)
        if [ -n "$description" ] && dpkg-source --no-check -x "$description" "$sources/$name" >>"$name.log" 2>&1; then
            return 0
        fi
        rm -rf "${sources:?}/$name"
        local archive
        archive=$(find . -name "${name}_*.orig.tar.*" ! -name '*.asc' | head -1)
        [ -n "$archive" ] || fail "the sources of $name could not be fetched; see $sources/fetched/$name.log"
        echo "windows: Debian's patches to $name are not to be had; its released sources are built without them"
        mkdir "$sources/$name"
        tar -xf "$archive" -C "$sources/$name" --strip-components=1
    )
}

# Builds a library that has CMake files: NAME FOLDER ARGUMENTS.
build_dependency()
{
    local name=$1 folder=$2
    shift 2
    [ ! -e "$QUIVER_WINDOWS_PREFIX/.built-$name" ] || return 0
    fetch "$name"
    echo "windows: building $name"
    local log=$sources/$name.log
    {
        cmake -S "$sources/$name/$folder" -B "$sources/$name-build" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
            -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$QUIVER_WINDOWS_PREFIX" -DBUILD_SHARED_LIBS=OFF "$@" &&
            cmake --build "$sources/$name-build" --target install
    } >"$log" 2>&1 || { tail -20 "$log" >&2; fail "$name was not built; see $log"; }
    touch "$QUIVER_WINDOWS_PREFIX/.built-$name"
}

# The numbers of the reference tests: GMP is configured, not described by CMake.
build_gmp()
{
    [ ! -e "$QUIVER_WINDOWS_PREFIX/.built-gmp" ] || return 0
    fetch gmp
    echo "windows: building gmp"
    local log=$sources/gmp.log
    mkdir -p "$sources/gmp-build"
    # Debian's sources come without the manual, whose place the makefiles visit all the same.
    mkdir -p "$sources/gmp/doc"
    [ -e "$sources/gmp/doc/Makefile.in" ] || printf 'all install:\n' >"$sources/gmp/doc/Makefile.in"
    (
        cd "$sources/gmp-build"
        "$sources/gmp/configure" --host=x86_64-w64-mingw32 --prefix="$QUIVER_WINDOWS_PREFIX" --enable-cxx --disable-shared \
            --disable-assembly CC=x86_64-w64-mingw32-gcc-posix CXX=x86_64-w64-mingw32-g++-posix CC_FOR_BUILD=gcc &&
            make -j"$(nproc)" && make install
    ) >"$log" 2>&1 || { tail -20 "$log" >&2; fail "gmp was not built; see $log"; }
    touch "$QUIVER_WINDOWS_PREFIX/.built-gmp"
}

dependencies()
{
    mkdir -p "$sources"
    build_dependency expat expat -DEXPAT_BUILD_TOOLS=OFF -DEXPAT_BUILD_EXAMPLES=OFF -DEXPAT_BUILD_TESTS=OFF \
        -DEXPAT_BUILD_DOCS=OFF -DEXPAT_SHARED_LIBS=OFF
    build_dependency pcre3 . -DPCRE_BUILD_PCREGREP=OFF -DPCRE_BUILD_TESTS=OFF -DPCRE_BUILD_PCRECPP=OFF \
        -DPCRE_BUILD_PCRE16=ON -DPCRE_BUILD_PCRE32=ON -DPCRE_SUPPORT_UTF=ON -DPCRE_SUPPORT_UNICODE_PROPERTIES=ON \
        -DPCRE_SUPPORT_JIT=ON
    build_dependency googletest . -Dgtest_disable_pthreads=OFF
    build_gmp
}

# The DLL with its import library, and the tools.
build()
{
    scripts/build.sh mingw -- QvXmlLib9 quiver-fi quiver_gen_tool
}

# The tools run, and the generator writes what it writes on Linux.
try()
{
    local tools=build/mingw/tools scratch
    scratch=$(mktemp -d)
    wine "$tools/quiver-fi.exe" --version
    wine "$tools/quiver-gen.exe" examples/invoice/invoice.xsd -o "$scratch/windows" --factory invoice::CRoots
    scripts/build.sh release -- quiver_gen_tool >/dev/null
    build/release/tools/quiver-gen examples/invoice/invoice.xsd -o "$scratch/linux" --factory invoice::CRoots
    diff -r "$scratch/linux" "$scratch/windows" || fail "the classes differ from those made on Linux"
    rm -rf "$scratch"
}

[ $# -gt 0 ] || set -- setup dependencies build try
for step in "$@"; do
    case "$step" in
    setup | dependencies | build | try) ;;
    *) fail "there is no step '$step'; the steps are setup, dependencies, build and try" ;;
    esac
    echo "windows: $step"
    "$step"
done
