#!/usr/bin/env bash
# Reads the sample of the W3C test suite for XML Schema with quiver-gen: scripts/check_w3c.sh [--at-most N], as
# check_cases.sh tells.
#
# W3C_SAMPLE names the folder with cases.tsv and suite. It is not part of the project: without it there is nothing to check.
set -euo pipefail
cd "$(dirname "$0")/.."

sample=${W3C_SAMPLE:-../shared/schemas/xsdtests}
if [ ! -e "$sample/cases.tsv" ]; then
    echo "check_w3c: skipped, since there is no $sample/cases.tsv"
    exit 0
fi
exec scripts/check_cases.sh "$sample/cases.tsv" "$sample/suite" "$@"
