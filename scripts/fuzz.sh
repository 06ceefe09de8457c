#!/usr/bin/env bash
# Fuzzes one target, or all of them, each for so many seconds: scripts/fuzz.sh TARGET|all SECONDS
#
# As many targets run at a time as there are processors. What a target prints is in build/fuzz/logs.
#
# QUIVER_FUZZ_SEED is the number that the choices of a run begin with; without it each run makes others.
#
# A target starts from its seeds in fuzz/corpus and keeps what it learns in build/fuzz/learnt. An input that fails is kept in
# build/fuzz/failures; put it into the corpus together with the fix, so that it is replayed by every test run.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ $# -ne 2 ]; then
    echo "usage: scripts/fuzz.sh TARGET|all SECONDS" >&2
    exit 2
fi
if ! command -v clang++ >/dev/null; then
    echo "fuzz: clang++ is missing; scripts/setup.sh --checks installs it" >&2
    exit 1
fi
targets=("$1")
seconds=$2
if [ "$1" = all ]; then
    mapfile -t targets < <(sed -nE 's/^ *quiver_fuzz_target\(([a-z_]+).*/\1/p' fuzz/CMakeLists.txt)
fi

scripts/build.sh fuzz -- "${targets[@]/#/fuzz_}"

fuzz_one()
{
    local target=$1 seconds=$2
    local learnt=build/fuzz/learnt/$target failures=build/fuzz/failures/$target log=build/fuzz/logs/$target
    mkdir -p "$learnt" "$failures" build/fuzz/logs
    if build/fuzz/fuzz/"fuzz_$target" "$learnt" "fuzz/corpus/$target" -dict="fuzz/$target.dict" \
        -max_total_time="$seconds" -seed="${QUIVER_FUZZ_SEED:-0}" -max_len=4096 -timeout=20 -rss_limit_mb=2048 \
        -artifact_prefix="$failures/" -print_final_stats=1 >"$log" 2>&1; then
        echo "fuzz: $target: $(sed -nE 's/^Done ([0-9]+) runs in ([0-9]+) .*/\1 runs in \2 s/p' "$log")"
    else
        tail -n 60 "$log"
        echo "fuzz: $target: failed; the input is in $failures, the rest of the output in $log"
        return 1
    fi
}
export -f fuzz_one

echo "fuzz: ${#targets[@]} target(s), $seconds s each"
printf '%s\n' "${targets[@]}" | xargs -P "$(nproc)" -I TARGET bash -c 'fuzz_one "$@"' fuzz TARGET "$seconds" || exit 1
echo "fuzz: no failures"
