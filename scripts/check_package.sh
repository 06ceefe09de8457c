#!/usr/bin/env bash
# Installs the release build into a directory of its own and uses it from there as others would: by find_package, shared and
# static, and by pkg-config; and then its sources as a part of another project. Each CMake project has classes made of a
# schema too. Compares the installed files with the list that is checked in.
set -euo pipefail
cd "$(dirname "$0")/.."

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
prefix=$scratch/prefix

cmake --install build/release --prefix "$prefix" >/dev/null

(cd "$prefix" && find . -type f -o -type l | sed 's|^\./||' | sed "s|lib/$(gcc -print-multiarch 2>/dev/null)|lib|" | LC_ALL=C sort) >"$scratch/installed"
if ! diff -u cmake/installed_files.txt "$scratch/installed"; then
    echo "check_package: the installed files differ from cmake/installed_files.txt" >&2
    exit 1
fi

# Runs all programs of the foreign project in a folder that it was built in.
run_programs()
{
    local program
    for program in consumer_QvXmlLib9 consumer_QvXmlLib9_static generated_QvXmlLib9 generated_QvXmlLib9_static; do
        "$1/$program"
    done
}

echo "check_package: find_package"
cp -r tests/package "$scratch/source"
cmake -S "$scratch/source" -B "$scratch/build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$scratch/build" >/dev/null
run_programs "$scratch/build"

echo "check_package: a schema that changes"
sed -i 's/name="title"/name="heading"/' "$scratch/source/book.xsd"
if cmake --build "$scratch/build" --target generated_QvXmlLib9 >/dev/null 2>&1; then
    echo "check_package: the classes were not made anew when an included schema changed" >&2
    exit 1
fi
sed -i 's/name="heading"/name="title"/' "$scratch/source/book.xsd"
cmake --build "$scratch/build" --target generated_QvXmlLib9 >/dev/null
"$scratch/build/generated_QvXmlLib9"

echo "check_package: add_subdirectory"
launcher=()
if command -v ccache >/dev/null; then
    launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
cmake -S "$scratch/source" -B "$scratch/part" -G Ninja -DCMAKE_BUILD_TYPE=Release -DQUIVER_SUBPROJECT="$PWD" "${launcher[@]}" >/dev/null
cmake --build "$scratch/part" >/dev/null
run_programs "$scratch/part"

echo "check_package: pkg-config"
pc=$(find "$prefix" -name quiver.pc)
export PKG_CONFIG_PATH
PKG_CONFIG_PATH=$(dirname "$pc")
read -ra flags < <(pkg-config --define-variable=prefix="$prefix" --cflags --libs quiver)
g++ -std=c++17 tests/package/consumer.cpp "${flags[@]}" -o "$scratch/consumer"
LD_LIBRARY_PATH=$(pkg-config --define-variable=prefix="$prefix" --variable=libdir quiver) "$scratch/consumer"
