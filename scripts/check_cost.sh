#!/usr/bin/env bash
# Measures how the cost of each entry point grows with the document or the schema, in many shapes, and fails where instructions
# or memory grow faster than n log n: scripts/check_cost.sh [quick|long] [arguments of quiver_cost ...]
#
# Needs the program quiver_cost of the release preset. Instructions are counted by the processor where the system lets a program
# ask for that, and otherwise by callgrind; where there is neither, the check fails.
set -euo pipefail
cd "$(dirname "$0")/.."

form=${1:-quick}
[ $# -eq 0 ] || shift
program=$PWD/build/release/tests/quiver_cost
[ -x "$program" ] || { echo "check_cost: build quiver_cost of the preset release first" >&2; exit 1; }

case $form in
    quick) lengths=(--doublings 2 --quick) ;;
    long) lengths=(--doublings 3 --scale 2) ;;
    *) echo "check_cost: $form is neither quick nor long" >&2; exit 2 ;;
esac

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export TMPDIR=$scratch

if "$program" --counter perf --entry none >/dev/null 2>&1 || [ $? -ne 3 ]; then
    counter=perf
elif command -v valgrind >/dev/null; then
    counter=callgrind
else
    echo "check_cost: the system refuses its counters of instructions, and valgrind is not installed" >&2
    exit 1
fi
echo "check_cost: $form, instructions as $counter counts them"

# A part for each processor.
parts=$(nproc)
for ((part = 1; part <= parts; ++part)); do
    command=("$program" --counter "$counter" "${lengths[@]}" --part "$part/$parts" "$@")
    if [ $counter = callgrind ]; then
        export QUIVER_CALLGRIND_OUT=$scratch/out.$part
        command=(valgrind -q --tool=callgrind "--callgrind-out-file=$QUIVER_CALLGRIND_OUT" "${command[@]}")
    fi
    "${command[@]}" >"$scratch/report.$part" 2>&1 &
    jobs[part]=$!
done
failed=0
for ((part = 1; part <= parts; ++part)); do
    wait "${jobs[part]}" || failed=1
    cat "$scratch/report.$part"
done
exit $failed
