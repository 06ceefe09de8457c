#!/usr/bin/env bash
# Configures and builds one preset: scripts/build.sh PRESET [CMake arguments ...] [-- TARGET ...]
set -euo pipefail
cd "$(dirname "$0")/.."

preset=$1
shift
arguments=()
while [ $# -gt 0 ] && [ "$1" != "--" ]; do
    arguments+=("$1")
    shift
done
[ $# -eq 0 ] || shift

if command -v ccache >/dev/null; then
    arguments+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
echo "build: preset $preset"
cmake --preset "$preset" "${arguments[@]}" >/dev/null || { echo "build: configuring preset $preset failed" >&2; exit 1; }
if [ $# -gt 0 ]; then
    cmake --build "build/$preset" --target "$@"
else
    cmake --build "build/$preset"
fi
