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

# What a relative link names is there, and so is the heading or the anchor that it leads to.
anchors_of()
{
    awk '/^```/ { inside = !inside } !inside && /^#+ / { sub(/^#+ /, ""); print tolower($0) }' "$1" |
        sed -e 's/[^a-z0-9 _-]//g' -e 's/ /-/g'
    sed -n 's/.*<a id="\([^"]*\)">.*/\1/p' "$1"
}
while IFS=: read -r page link; do
    path=${link%%#*}
    target=$(dirname "$page")/$path
    if [ -z "$path" ]; then
        target=$page
    fi
    if [ ! -e "$target" ]; then
        complain "$page links to $link, which is not there"
    elif [[ $link == *'#'* ]] && ! anchors_of "$target" | grep -xF -- "${link#*#}" >/dev/null; then
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

# Names on the page of the architecture are in the sources: of `A::B` a file that defines A has B, and paths exist.
names_of_architecture()
{
    {
        grep -oE '`[A-Za-z_][A-Za-z0-9_:/.-]*(\(true\))?`' docs/architecture.md | sed -e 's/(true)`/`/' -e 's/`//g'
        grep -ohE '\bC[A-Z][A-Za-z]+' docs/images/document_flow.svg
    } | sort -u
}
while IFS= read -r path; do
    [ -e "$path" ] || [ -e "quiver/$path" ] || complain "docs/architecture.md names $path, which is not there"
done < <(names_of_architecture | grep /)
mapfile -t sources < <(git ls-files 'quiver/*.h' 'quiver/*.cpp' 'tools/*.h' 'tools/*.cpp')
names_of_architecture | grep -v -e / -e - | awk '
    FILENAME == "-" { names[$0]; n = split($0, part, "::"); wanted[part[n]]; next }
    {
        isDefinition = /^ *(template <.*> )?(class|struct|namespace|enum) /
        gsub(/[^A-Za-z0-9_]+/, " ")
        n = split($0, word, " ")
        for (k = 1; k <= n; ++k) {
            if (word[k] in wanted) { has[FILENAME, word[k]]; exists[word[k]] }
            if (isDefinition) homes[word[k]] = homes[word[k]] FILENAME " "
        }
    }
    END {
        for (name in names) {
            n = split(name, part, "::")
            found = n == 1 && name in exists
            if (n > 1) {
                count = split(homes[part[1]], home, " ")
                for (k = 1; k <= count; ++k) if ((home[k], part[n]) in has) found = 1
            }
            if (!found) { print "check: docs/architecture.md names " name ", which is not in the sources" > "/dev/stderr"; failed = 1 }
        }
        exit failed
    }' - "${sources[@]}" || failed=1

exit "$failed"
