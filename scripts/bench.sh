#!/usr/bin/env bash
# Builds the benchmarks and runs them all, or those whose names are given: scripts/bench.sh [NAME ...]
#
#     scripts/bench.sh --peers [--install] [--rounds N]
#
# compares with other libraries: builds their programs, runs them in turn, and replaces bench/peers/figures.csv, and by
# that the table and the plot in docs/performance.md. The libraries are Debian's; --install installs those that are missing.
#
# Run it while nothing else does: CPU time is what counts, but a loaded machine shares its caches too.
set -euo pipefail
cd "$(dirname "$0")/.."

peer_packages=(libpugixml-dev libxml2-dev libxerces-c-dev xsdcxx gsoap libgsoap-dev pkg-config python3)

fail()
{
    echo "bench: $1" >&2
    exit 1
}

# What --peers needs beyond scripts/setup.sh is there, or gets there if that was asked for.
need_peer_packages()
{
    command -v dpkg-query >/dev/null || fail "the comparison takes Debian's packages, and this machine has no dpkg"
    local missing=() package
    for package in "${peer_packages[@]}"; do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)" = installed ] || missing+=("$package")
    done
    [ "${#missing[@]}" -gt 0 ] || return 0
    [ "$1" = yes ] ||
        fail "the comparison needs these Debian packages, which are not installed: ${missing[*]}. 'scripts/bench.sh --peers --install' installs them."
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    echo "bench: installing ${missing[*]}"
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null ||
        fail "the packages could not be installed: ${missing[*]}"
}

compare_with_peers()
{
    local install=no run=(bench/peers/run.py build/peers)
    while [ "$#" -gt 0 ]; do
        case $1 in
        --install) install=yes ;;
        --rounds)
            [ "$#" -gt 1 ] || fail "--rounds takes a number"
            run+=(--rounds "$2")
            shift
            ;;
        *) fail "--peers takes --install and --rounds N, not $1" ;;
        esac
        shift
    done
    need_peer_packages "$install"
    cmake -S . -B build/peers -G Ninja -DCMAKE_BUILD_TYPE=Release -DQUIVER_BUILD_PEERS=ON -DQUIVER_BUILD_TESTS=OFF \
        -DQUIVER_BUILD_EXAMPLES=OFF -DQUIVER_BUILD_TOOLS=OFF >/dev/null
    ninja -C build/peers quiver_peers >/dev/null || fail "the programs do not build; ninja -C build/peers quiver_peers says why"
    python3 "${run[@]}"
    python3 bench/plot.py
    echo "bench: bench/peers/figures.csv, docs/peers.svg and the table in docs/performance.md are new"
}

if [ "${1:-}" = "--peers" ]; then
    shift
    compare_with_peers "$@"
    exit 0
fi

names=("$@")
if [ "${#names[@]}" -eq 0 ]; then
    mapfile -t names < <(basename -s .cpp bench/*_bench.cpp)
fi
scripts/build.sh release -- "${names[@]}" >/dev/null
for name in "${names[@]}"; do
    echo "== $name"
    "build/release/bench/$name" 2>/dev/null
done
