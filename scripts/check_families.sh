#!/usr/bin/env bash
# Reads the documents of real schemas with quiver-gen: scripts/check_families.sh [--at-most N], as check_cases.sh tells.
#
# SCHEMA_FAMILIES names the folder with families.tsv and a folder for each family. It is not part of the project: without it
# there is nothing to check.
set -euo pipefail
cd "$(dirname "$0")/.."

families=${SCHEMA_FAMILIES:-../shared/schemas}
if [ ! -e "$families/families.tsv" ]; then
    echo "check_families: skipped, since there is no $families/families.tsv"
    exit 0
fi
cases=$(mktemp)
trap 'rm -f "$cases"' EXIT
while IFS=$'\t' read -r family _ schema _; do
    case $family in "#"* | "") continue ;; esac
    for verdict in valid invalid; do
        for document in "$families/$family/$verdict"/*.xml; do
            printf '%s\t-\t-\t%s\t%s\t%s\t-\n' "$family" "$family/$schema" "${document#"$families/"}" "$verdict"
        done
    done
done <"$families/families.tsv" >"$cases"
scripts/check_cases.sh "$cases" "$families" "$@"
