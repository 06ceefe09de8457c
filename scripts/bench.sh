#!/usr/bin/env bash
# Builds the benchmarks and runs them all, or those whose names are given: scripts/bench.sh [NAME ...]
# Run it while nothing else does: CPU time is what counts, but a loaded machine shares its caches too.
set -euo pipefail
cd "$(dirname "$0")/.."

names=("$@")
if [ "${#names[@]}" -eq 0 ]; then
    mapfile -t names < <(basename -s .cpp bench/*_bench.cpp)
fi
scripts/build.sh release -- "${names[@]}" >/dev/null
for name in "${names[@]}"; do
    echo "== $name"
    "build/release/bench/$name" 2>/dev/null
done
