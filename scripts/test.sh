#!/usr/bin/env bash
# Sets the machine up, builds Quiver and runs every test. Another preset can be named: scripts/test.sh asan
set -euo pipefail
cd "$(dirname "$0")/.."

preset=${1:-release}
scripts/setup.sh
scripts/build.sh "$preset"
ctest --preset "$preset" -j "$(nproc)"
