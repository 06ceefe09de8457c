#!/usr/bin/env bash
# Checks the Debian packages in a directory: lintian has no error to tell; they can be unpacked, configured and used with
# nothing else of ours on the machine; and removed, they leave nothing.
# tests/package/check_debian.sh DIRECTORY
set -euo pipefail

directory=$(realpath "$1")
sources=$(realpath "$(dirname "$0")")
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail()
{
    echo "check_debian: $1" >&2
    exit 1
}
packages=("$directory"/libqvxmllib9_*.deb "$directory"/libqvxmllib9-dev_*.deb "$directory"/quiver-tools_*.deb)

allow_root=()
[ "$(id -u)" -ne 0 ] || allow_root=(--allow-root)
lintian "${allow_root[@]}" --fail-on error "${packages[@]}" || fail "lintian found errors"

# A system of its own, whose other packages are those of this machine: dpkg resolves dependencies as it would here.
root=$scratch/root
mkdir -p "$root/var/lib/dpkg/updates" "$root/var/lib/dpkg/info" "$root/var/lib/dpkg/triggers"
cp /var/lib/dpkg/status "$root/var/lib/dpkg/status"
run_dpkg()
{
    dpkg --root="$root" --force-not-root --force-script-chrootless --log=/dev/null "$@" >"$scratch/dpkg.log" 2>&1 ||
        { cat "$scratch/dpkg.log" >&2; fail "dpkg $* failed"; }
}
list_files()
{
    (cd "$root" && find . -path ./var/lib/dpkg -prune -o \( -type f -o -type l \) -print | LC_ALL=C sort)
}
run_dpkg --install "${packages[@]}"
[ "$(list_files | wc -l)" -gt 50 ] || fail "the packages hold next to nothing"

# The programs and a consumer run from what is unpacked.
"$root/usr/bin/quiver-fi" --version >/dev/null
[ -n "$(gzip -dc "$root/usr/share/man/man1/quiver-gen.1.gz" | grep 'split HOW')" ] || fail "the manual page is empty"
cmake -S "$sources" -B "$scratch/build" -G Ninja -DCMAKE_PREFIX_PATH="$root/usr" >/dev/null
cmake --build "$scratch/build" --target parcel_none >/dev/null
"$scratch/build/parcel_none"

run_dpkg --purge libqvxmllib9-dev quiver-tools libqvxmllib9
[ -z "$(list_files)" ] || { list_files >&2; fail "the files above are left behind"; }
echo "check_debian: ok"
