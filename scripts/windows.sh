#!/usr/bin/env bash
# Builds Quiver for 64-bit Windows on Debian 12 and tests it under Wine.
#
#   scripts/windows.sh [STEP ...]     all of these by default, in this order:
#
#   setup           installs the compiler and Wine
#   dependencies    builds the libraries that Quiver needs there
#   build           builds everything: the library, the tools, the examples and the tests
#   try             runs the tools, the examples, and the inputs that the fuzzers have found
#   test            runs every test program, and compares the tests with those of Linux: they are as many
#   hygiene         compiles the public headers, the sources and generated classes with the warnings about what other
#                   compilers would not take
#   zip             packs what a user of Windows needs, and builds and runs a program with what it unpacks
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
# Where the DLLs of the compiler, of zlib and of Quiver lie.
export WINEPATH="Z:/usr/lib/gcc/x86_64-w64-mingw32/12-posix;Z:/usr/x86_64-w64-mingw32/lib;Z:$PWD/build/mingw/quiver"
# File names of all alphabets come from the command line.
export LC_ALL=C.UTF-8

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

# Builds a library that has CMake files: NAME FOLDER ARGUMENTS. What is built and installed is install_target.
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
            cmake --build "$sources/$name-build" --target "${install_target:-install}"
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
    # The library alone: its samples and tests are many programs.
    install_target=src/install build_dependency xerces-c . -Dnetwork=OFF -Dtranscoder=windows -Dmessage-loader=inmemory
}

# Classes are generated by the program of this machine.
build()
{
    scripts/build.sh release -- quiver_gen_tool
    scripts/build.sh mingw
}

# One Wine server for all programs, which takes a second to start and would end with each of them. It keeps the streams that
# it is started with, so whoever waited for the end of one would wait for the server.
start_wine()
{
    [ -z "${wine_started:-}" ] || return 0
    wine_started=1
    mkdir -p "$WINEPREFIX"
    # It fails where one runs already.
    wineserver -p </dev/null >/dev/null 2>&1 || true
    wine cmd /c exit </dev/null >/dev/null 2>&1 || fail "Wine does not start"
    trap 'wineserver -k || true' EXIT
}

# The tools run, and the generator writes what it writes on Linux; the examples do with their samples what they do there,
# whatever alphabet a name is in.
try()
{
    local tools=build/mingw/tools scratch
    start_wine
    scratch=$(mktemp -d)
    wine "$tools/quiver-fi.exe" --version
    wine "$tools/quiver-gen.exe" examples/invoice/invoice.xsd -o "$scratch/windows" --factory invoice::CRoots
    scripts/build.sh release -- quiver_gen_tool >/dev/null
    build/release/tools/quiver-gen examples/invoice/invoice.xsd -o "$scratch/linux" --factory invoice::CRoots
    diff -r "$scratch/linux" "$scratch/windows" || fail "the classes differ from those made on Linux"

    scripts/build.sh release -- gpx_track invoice large_file open_content purchase_order >/dev/null
    local example sample
    for example in gpx_track invoice large_file open_content purchase_order; do
        for sample in examples/"$example"/*.xml examples/"$example"/*.gpx; do
            [ -e "$sample" ] || continue
            cp "$sample" "$scratch/заказ.xml"
            "build/release/examples/$example" "$scratch/заказ.xml" >"$scratch/linux.out" 2>&1 || true
            wine "build/mingw/examples/$example.exe" "Z:$scratch/заказ.xml" 2>&1 | tr -d '\r' >"$scratch/windows.out" || true
            # The memory that was needed differs.
            diff <(grep -v '^peak memory' "$scratch/linux.out") <(grep -v '^peak memory' "$scratch/windows.out") ||
                fail "$example says of $sample what it does not say on Linux"
        done
    done
    wine build/mingw/tools/quiver-fi.exe encode "Z:$scratch/заказ.xml" "Z:$scratch/заказ.finf"
    [ -s "$scratch/заказ.finf" ] || fail "quiver-fi did not write a file of this name"
    local program name inputs
    for program in build/mingw/fuzz/replay_*.exe; do
        name=$(basename "$program" .exe)
        inputs=$(find "fuzz/corpus/${name#replay_}" -type f | wc -l)
        wine "$program" "Z:$PWD/fuzz/corpus/${name#replay_}" >"$scratch/replay" 2>&1 </dev/null || true
        tr -d '\r' <"$scratch/replay" | grep -qx "$inputs inputs" || { tail -3 "$scratch/replay" >&2; fail "$name did not come to its end"; }
    done
    rm -rf "$scratch"
    echo "windows: the tools and the examples do what they do on Linux, and the inputs of the fuzzers pass"
}

# The names of the tests of a program, one a line, out of its --gtest_list_tests.
list_tests()
{
    "$1" --gtest_list_tests 2>/dev/null | tr -d '\r' | sed 's/  *#.*//' |
        awk '/^[^ ]/ { suite = $1; next } { print suite $1 }' || fail "$1 lists no tests"
}

# Runs a test program, whose lines go into a log.
run_under_wine()
{
    (cd build/mingw/tests && timeout --kill-after=10 "${QUIVER_TEST_TIMEOUT:-600}" wine "$1.exe") >"$2" 2>&1 </dev/null || true
}

# Runs every test program and adds up the lines in which each says how many tests passed: the exit status of a program that
# crashed may be 0 under Wine.
test()
{
    local logs=$PWD/build/mingw/test-logs programs=0 run=0 passed=0 failed=() program name log
    start_wine
    rm -rf "$logs"
    mkdir -p "$logs"
    : >"$logs/tests"
    for program in build/mingw/tests/*_test.exe; do
        name=$(basename "$program" .exe)
        log=$logs/$name.log
        run_under_wine "$name" "$log"
        # On a busy machine Wine may not come to the program's first line.
        [ -s "$log" ] || run_under_wine "$name" "$log"
        sed -i 's/\r$//' "$log"
        local started through
        started=$(sed -nE 's/^\[==========\] Running ([0-9]+) tests? from .*/\1/p' "$log")
        through=$(sed -nE 's/^\[  PASSED  \] ([0-9]+) tests?\.$/\1/p' "$log")
        sed -nE 's/^\[ RUN      \] ([^ ]+)$/\1/p' "$log" >>"$logs/tests"
        programs=$((programs + 1))
        run=$((run + ${started:-0}))
        passed=$((passed + ${through:-0}))
        [ -n "$started" ] && [ "$started" = "$through" ] || failed+=("$name: ${through:-0} of ${started:-?}")
    done
    in_time_zones "$logs" || failed+=("LocalTime_test: not all in other time zones")
    for name in "${failed[@]}"; do
        echo "windows: failed in $logs/${name/: */.log}: ${name#*: } tests passed" >&2
        grep -E '^\[  FAILED  \] [^ ]+( \(|,|$)' "$logs/${name/: */.log}" | sort -u >&2 || true
    done
    local same=1
    compare_with_linux "$logs/tests" || same=0
    echo "windows: $passed of $run tests passed in $programs programs"
    [ "$same" -eq 1 ] && [ "$programs" -gt 0 ] && [ "$passed" -eq "$run" ] && [ "${#failed[@]}" -eq 0 ]
}

# What depends on the time zone passes in others too: their names, and how many seconds they are ahead in winter.
in_time_zones()
{
    local zone seconds
    while read -r zone seconds; do
        TZ=$zone QUIVER_ZONE_OFFSET=$seconds wine build/mingw/tests/LocalTime_test.exe >"$1/zone.log" 2>&1 </dev/null || true
        grep -q '^\[  PASSED  \] 5 tests' "$1/zone.log" || { cat "$1/zone.log" >&2; return 1; }
    done <<<'Pacific/Auckland 46800
America/New_York -18000
Asia/Kolkata 19800'
}

# Where the release build is there: what Windows lacks of its tests, or has beside, is in the list that gives the reasons.
compare_with_linux()
{
    local linux programs=0 program name
    linux=$(dirname "$1")/linux
    for program in build/mingw/tests/*_test.exe; do
        name=$(basename "$program" .exe)
        if [[ $name != *Win32_test && ! -x build/release/tests/$name ]]; then
            echo "windows: build/release does not have all tests, so that there is nothing to compare with"
            return 0
        fi
    done
    : >"$linux"
    for program in build/release/tests/*_test; do
        [ -x "$program" ] || continue
        list_tests "$program" >>"$linux"
        programs=$((programs + 1))
    done
    awk -v list=tests/windows.txt '
        # A name of the list may end in a star.
        function find(sign, name,    i)
        {
            for (i = 1; i <= entries; ++i)
            {
                if (signs[i] == sign && (names[i] == name || (names[i] ~ /\*$/ && index(name, substr(names[i], 1, length(names[i]) - 1)) == 1)))
                {
                    ++used[i]
                    return 1
                }
            }
            return 0
        }
        function complain(text)
        {
            if (++bad <= 20) print "windows: " text > "/dev/stderr"
        }
        BEGIN {
            while ((getline line < list) > 0)
            {
                split(line, words, " ")
                if (words[1] == "-" || words[1] == "+")
                {
                    signs[++entries] = words[1]
                    names[entries] = words[2]
                }
            }
        }
        FILENAME == ARGV[1] { windows[$1] = 1; ++here; next }
        { ++there; common[$1] = 1 }
        !($1 in windows) { ++lacking; if (!find("-", $1)) complain("no " $1 " on Windows, and tests/windows.txt does not say why") }
        END {
            for (name in windows)
                if (!(name in common)) { ++more; if (!find("+", name)) complain(name " is a test of Windows that tests/windows.txt does not have") }
            for (i = 1; i <= entries; ++i)
                if (!used[i]) complain("tests/windows.txt lists " names[i] " for nothing")
            printf "windows: Linux has %d tests; %d of them are not here, and %d are here alone: tests/windows.txt\n", there, lacking, more
            # What one system alone can do has its counterpart on the other.
            if (there != here) complain("Linux has " there " tests, and Windows " here)
            exit bad > 0
        }' "$1" "$linux" || { echo "windows: the tests are not those of Linux" >&2; return 1; }
    echo "windows: they are in $programs programs there"
}

# What clang says of a source read as for Windows, with the headers of MinGW: what Visual C++ or another compiler would not
# take, or take otherwise. It may say that a member is not imported which turns out to be inline behind its class.
portable()
{
    local gcc=/usr/lib/gcc/x86_64-w64-mingw32/12-posix/include/c++
    clang++ --target=x86_64-w64-windows-gnu -std=c++17 -fsyntax-only -Werror -Wall -Wextra -Wpedantic -Wgnu -Wmicrosoft \
        -Wno-ignored-attributes -Wshorten-64-to-32 -Wextra-semi -Wzero-length-array -Wvla-extension -Wold-style-cast \
        -isystem "$gcc" -isystem "$gcc/x86_64-w64-mingw32" -isystem "$QUIVER_WINDOWS_PREFIX/include" \
        -isystem /usr/x86_64-w64-mingw32/include -DXML_STATIC -DPCRE_STATIC \
        -DQUIVER_VERSION_MAJOR=0 -DQUIVER_VERSION_MINOR=0 -I. "$@" || fail "the source above is not portable"
}

hygiene()
{
    command -v clang++ >/dev/null || fail "clang++ is missing; scripts/setup.sh --checks installs it"
    local scratch source
    echo "windows: public headers, as users of the DLL and of the static library have them"
    printf '#include "quiver/QvXmlLib.h"\n' | portable -x c++ -
    printf '#include "quiver/QvXmlLib.h"\n' | portable -DQVXMLLIB_STATIC -x c++ -
    echo "windows: sources of the library"
    for source in $(git ls-files 'quiver/*.cpp' ':!*Posix.cpp' ':!*Pcre2.cpp'); do
        portable -DQVXMLLIB_BUILD "$source"
    done
    echo "windows: generated classes"
    scripts/build.sh release -- quiver_gen_tool >/dev/null
    scratch=$(mktemp -d)
    for source in examples/*/*.xsd; do
        build/release/tools/quiver-gen "$source" -o "$scratch/$(basename "$source" .xsd)" --factory sample::CRoots --split none \
            --program >/dev/null
    done
    for source in "$scratch"/*/*.cpp; do
        portable "$source"
        x86_64-w64-mingw32-g++-posix -std=c++17 -fsyntax-only -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -I. "$source"
    done
    rm -rf "$scratch"
}

# A zip, and a foreign project that has nothing of Quiver but what it unpacks.
zip()
{
    local scratch archive prefix program
    start_wine
    (cd build/mingw && cpack -G ZIP >/dev/null) || fail "cpack failed"
    archive=$(echo build/mingw/packages/quiver-*-win64.zip)
    scratch=$(mktemp -d)
    cmake -E chdir "$scratch" cmake -E tar xf "$PWD/$archive"
    prefix=$(echo "$scratch"/quiver-*-win64)
    cmake -S tests/package -B "$scratch/build" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DCMAKE_BUILD_TYPE=Release \
        -DQuiver_DIR="$prefix/lib/cmake/Quiver" -DQUIVER_GEN_EXECUTABLE="$PWD/build/release/tools/quiver-gen" >/dev/null
    cmake --build "$scratch/build" --target consumer_QvXmlLib9 parcel_none parcel_namespace >/dev/null
    for program in consumer_QvXmlLib9 parcel_none parcel_namespace; do
        WINEPATH="Z:$prefix/bin" wine "$scratch/build/$program.exe" || fail "$program failed with what is in $archive"
    done
    for program in quiver-fi quiver-gen; do
        WINEPATH='' wine "$prefix/bin/$program.exe" --version || fail "$program of $archive does not run"
    done
    rm -rf "$scratch"
    echo "windows: $archive, $(stat -c %s "$archive") bytes"
}

[ $# -gt 0 ] || set -- setup dependencies build try test hygiene zip
for step in "$@"; do
    case "$step" in
    setup | dependencies | build | try | test | hygiene | zip) ;;
    *) fail "there is no step '$step'; the steps are setup, dependencies, build, try, test, hygiene and zip" ;;
    esac
    echo "windows: $step"
    "$step"
done
