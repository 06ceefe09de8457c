#!/usr/bin/env bash
# Has calls of the system and allocations fail one after the other under reading, writing and the tools: scripts/check_faults.sh
# [quick|long] [PRESET ...]. The presets, release and asan if none is named, have to be built with FileFaults_test and
# MemoryFaults_test. The quick form is what ctest runs.
set -euo pipefail
cd "$(dirname "$0")/.."

form=${1:-quick}
[ $# -eq 0 ] || shift
case $form in
    quick) unset QUIVER_FAULTS ;;
    long) export QUIVER_FAULTS=long ;;
    *) echo "check_faults: $form is neither quick nor long" >&2; exit 2 ;;
esac
[ $# -gt 0 ] || set -- release asan

failed=0
for preset in "$@"; do
    for name in FileFaults_test MemoryFaults_test; do
        program=build/$preset/tests/$name
        [ -x "$program" ] || { echo "check_faults: build $name of the preset $preset first" >&2; exit 1; }
        echo "check_faults: $form, $preset, $name"
        report=$("$program" --gtest_brief=1 2>&1) || { failed=1; echo "$report" >&2; }
        awk '/^[0-9]+ faults/{faults += $1} END{print faults " faults"; exit faults == 0}' <<<"$report"
    done
done
exit $failed
