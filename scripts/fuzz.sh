#!/usr/bin/env bash
# Fuzzes one target, or all of them, each for so many seconds: scripts/fuzz.sh TARGET|all SECONDS
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

failed=()
for target in "${targets[@]}"; do
    learnt=build/fuzz/learnt/$target
    failures=build/fuzz/failures/$target
    mkdir -p "$learnt" "$failures"
    echo "fuzz: $target for $seconds s"
    build/fuzz/fuzz/"fuzz_$target" "$learnt" "fuzz/corpus/$target" -dict="fuzz/$target.dict" -max_total_time="$seconds" \
        -max_len=4096 -timeout=20 -rss_limit_mb=2048 -artifact_prefix="$failures/" -print_final_stats=1 ||
        failed+=("$target")
done
if [ "${#failed[@]}" -ne 0 ]; then
    echo "fuzz: failed: ${failed[*]}; the inputs are in build/fuzz/failures" >&2
    exit 1
fi
echo "fuzz: no failures"
