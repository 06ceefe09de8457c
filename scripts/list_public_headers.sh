#!/usr/bin/env bash
# Prints the headers that quiver/QvXmlLib.h reaches, one a line, sorted: the list of cmake/public_headers.txt.
set -euo pipefail
cd "$(dirname "$0")/.."

declare -A seen
visit()
{
    [ -z "${seen[$1]:-}" ] || return 0
    seen[$1]=1
    echo "$1"
    local header
    while IFS= read -r header; do
        visit "$header"
    done < <(sed -nE 's/^#include "(quiver\/[^"]+)"/\1/p' "$1")
}
visit quiver/QvXmlLib.h | LC_ALL=C sort
