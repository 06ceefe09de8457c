#!/usr/bin/env bash
# Reads documents with `quiver-gen --check`: is every valid one read, and every invalid one refused? Prints each case that
# deviates, and sums.
#
#   scripts/check_cases.sh CASES FOLDER [--at-most N]     fails if more than N cases deviate (0)
#
# CASES has a line for each document, with tabs between: who gave it, set, group, schemas, document, `valid` or `invalid`, and
# more that does not matter here. Cases of a group stand together, and have the same schemas. Names of files are relative to
# FOLDER. QUIVER_GEN names the program (build/release/tools/quiver-gen).
set -euo pipefail
cd "$(dirname "$0")/.."

limit=0
if [ $# -eq 4 ] && [ "$3" = --at-most ] && [[ $4 =~ ^[0-9]+$ ]]; then
    limit=$4
elif [ $# -ne 2 ]; then
    echo "usage: scripts/check_cases.sh CASES FOLDER [--at-most N]" >&2
    exit 2
fi
cases=$1 folder=$2
program=${QUIVER_GEN:-build/release/tools/quiver-gen}
if [ ! -x "$program" ]; then
    echo "check_cases: there is no program $program" >&2
    exit 1
fi
messages=$(mktemp)
trap 'rm -f "$messages"' EXIT

declare -A sums=([valid]=0 [invalid]=0)
groups=0 unusable=0 deviations=0

deviate()
{
    deviations=$((deviations + 1))
    echo "$1"
}

# One run for all documents of a group, which are in the list `documents` and what is expected of each in `verdicts`.
check_group()
{
    local status=0 number
    local -a files=("${documents[@]/#/$folder/}") list
    read -ra list <<<"$schemas"
    groups=$((groups + 1))
    "$program" --check "${list[@]/#/$folder/}" -- "${files[@]}" >/dev/null 2>"$messages" || status=$?
    # A schema that is wrong and a document that is refused have the same status; only the latter has a line of its own.
    if [ "$status" -gt 1 ] || { [ "$status" -eq 1 ] && ! grep -qF -f <(printf '%s: error: \n' "${files[@]}") "$messages"; }; then
        unusable=$((unusable + 1))
        for number in "${!documents[@]}"; do
            deviate "not read: ${documents[$number]}: $({ grep -m 1 '^quiver-gen: ' "$messages" || grep -m 1 ': error: ' "$messages"; } | cut -c 1-160)"
        done
        return
    fi
    for number in "${!documents[@]}"; do
        local verdict=valid expected=${verdicts[$number]}
        ! grep -qF "${files[$number]}: error: " "$messages" || verdict=invalid
        if [ "$verdict" = "$expected" ]; then
            sums[$expected]=$((sums[$expected] + 1))
        elif [ "$expected" = invalid ]; then
            deviate "read, and a refusal was due: ${documents[$number]}"
        else
            deviate "refused, and is valid: ${documents[$number]}: $(grep -F -A 9 "${files[$number]}: error: " "$messages" |
                sed -n '2,${/^    /!q};p' | tail -n 1 | cut -c 1-160)"
        fi
    done
}

documents=() verdicts=()
last="" schemas=""
valid=0 invalid=0
while IFS=$'\t' read -r contributor set group group_schemas document expected _; do
    case $contributor in "#"* | "") continue ;; esac
    if [ "$contributor/$set/$group" != "$last" ]; then
        [ -z "$last" ] || check_group
        last=$contributor/$set/$group schemas=$group_schemas documents=() verdicts=()
    fi
    documents+=("$document") verdicts+=("$expected")
    if [ "$expected" = valid ]; then valid=$((valid + 1)); else invalid=$((invalid + 1)); fi
done <"$cases"
[ -z "$last" ] || check_group

echo "check_cases: $groups groups, $unusable not read; valid read ${sums[valid]} of $valid; invalid refused ${sums[invalid]} of $invalid; $deviations deviations, $limit known"
[ "$groups" -gt 0 ] && [ "$deviations" -le "$limit" ]
