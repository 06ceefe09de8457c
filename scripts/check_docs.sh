#!/usr/bin/env bash
# Checks what the pages say against the sources: blocks, links, and names in backticks.
set -euo pipefail
cd "$(dirname "$0")/.."

failed=0
complain()
{
    echo "check: $1" >&2
    failed=1
}
mapfile -t pages < <(git ls-files README.md 'docs/*.md')

mapfile -t tests < <(git ls-files 'tests/docs/*.cpp' 'tests/docs/*.h')
awk -f scripts/check_docs.awk "${tests[@]}" "${pages[@]}" || failed=1

# What a relative link names is there, and so is the heading that it leads to.
anchors_of()
{
    awk '/^```/ { inside = !inside } !inside && /^#+ / { sub(/^#+ /, ""); print tolower($0) }' "$1" |
        sed -e 's/[^a-z0-9 _-]//g' -e 's/ /-/g'
}
while IFS=: read -r page link; do
    path=${link%%#*}
    target=$(dirname "$page")/$path
    if [ -z "$path" ]; then
        target=$page
    fi
    if [ ! -e "$target" ]; then
        complain "$page links to $link, which is not there"
    elif [[ $link == *'#'* ]] && ! anchors_of "$target" | grep -qxF -- "${link#*#}"; then
        complain "$page links to $link, and there is no such heading"
    fi
done < <(awk '/^ *```/ { inside = !inside; next }
    !inside {
        while (match($0, /\]\([^)]*\)/)) {
            link = substr($0, RSTART + 2, RLENGTH - 3)
            if (link !~ /^[a-z]+:/) print FILENAME ":" link
            $0 = substr($0, RSTART + RLENGTH)
        }
    }' "${pages[@]}")

# Every page is reached from the first one.
while IFS= read -r page; do
    grep -qF "](${page#docs/}" docs/index.md || complain "docs/index.md does not lead to $page"
done < <(git ls-files 'docs/*.md' ':!docs/index.md')

exit "$failed"
