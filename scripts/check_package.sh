#!/usr/bin/env bash
# Shows Quiver in somebody else's build: installs the release build into a fresh prefix and uses it from there by find_package,
# shared and static, by quiver_generate and by pkg-config; uses its sources as a part of another project, with PCRE2; makes the
# Debian packages, installs, uses and removes them; and checks the recipes of packaging as far as that goes offline. Compares
# the installed files with the list that is checked in, and what each part says of its version with the project's.
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

echo "check_package: version"
version=$(sed -nE 's/^project\(Quiver VERSION ([0-9.]+).*/\1/p' CMakeLists.txt)
expect_version()
{
    [ "$2" = "$version" ] || { echo "check_package: $1 has the version $2, not $version" >&2; exit 1; }
}
for program in quiver-fi quiver-gen; do
    expect_version "$program" "$("$prefix/bin/$program" --version | sed "s/^$program //")"
done
pc=$(find "$prefix" -name quiver.pc)
expect_version quiver.pc "$(PKG_CONFIG_PATH=$(dirname "$pc") pkg-config --modversion quiver)"
expect_version "the shared library" "$(basename "$prefix"/lib*/libQvXmlLib9.so.*.*.* | sed 's/.*\.so\.//')"
grep -q "^## $version" CHANGELOG.md || { echo "check_package: CHANGELOG.md has no section $version" >&2; exit 1; }

echo "check_package: find_package"
cmake -S tests/package -B "$scratch/build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$scratch/build" >/dev/null
"$scratch/build/consumer_QvXmlLib9"
"$scratch/build/consumer_QvXmlLib9_static"
"$scratch/build/parcel_none"
"$scratch/build/parcel_namespace"

echo "check_package: quiver_generate"
stays=$(cmake --build "$scratch/build")
[[ $stays == *"no work to do"* ]] || { echo "check_package: the classes are generated for no reason: $stays" >&2; exit 1; }
cp -r tests/package "$scratch/changed"
cmake -S "$scratch/changed" -B "$scratch/changed/build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$scratch/changed/build" --target parcel_none >/dev/null
# The schema that changes is one that the given one imports.
sed -i 's/31500/40000/' "$scratch/changed/units.xsd"
cmake --build "$scratch/changed/build" --target parcel_none >/dev/null
generated=$scratch/changed/build/parcel_none_generated/Parcel.cpp
grep -q 40000 "$generated" || { echo "check_package: a changed schema leaves its classes as they were" >&2; exit 1; }

echo "check_package: add_subdirectory"
# The flags of the build that is there, so that a compiler cache has the objects.
# This part takes PCRE2, the installed one PCRE.
flags=(-DCMAKE_BUILD_TYPE=Release -DQUIVER_WARNINGS_AS_ERRORS=ON -DQUIVER_PCRE=2)
if command -v ccache >/dev/null; then
    flags+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
cmake -S tests/package -B "$scratch/part" -G Ninja -DQUIVER_SUBPROJECT="$PWD" "${flags[@]}" >/dev/null
cmake --build "$scratch/part" --target parcel_none >/dev/null
"$scratch/part/parcel_none"

echo "check_package: pkg-config"
export PKG_CONFIG_PATH
PKG_CONFIG_PATH=$(dirname "$pc")
read -ra flags < <(pkg-config --cflags --libs quiver)
g++ -std=c++17 tests/package/consumer.cpp "${flags[@]}" -o "$scratch/consumer"
LD_LIBRARY_PATH=$(pkg-config --variable=libdir quiver) "$scratch/consumer"

echo "check_package: Debian packages"
command -v lintian >/dev/null || { echo "check_package: lintian is missing; scripts/setup.sh --checks installs it" >&2; exit 1; }
(cd build/release && cpack -B "$scratch/packages" >/dev/null 2>&1) || { echo "check_package: cpack failed" >&2; exit 1; }
tests/package/check_debian.sh "$scratch/packages"

echo "check_package: recipes"
scripts/check_packaging.py
