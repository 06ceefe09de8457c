#!/usr/bin/env bash
# Checks that need no build: formatting, and the rules of the layout.
set -euo pipefail
cd "$(dirname "$0")/.."

failed=0
complain()
{
    echo "check: $1" >&2
    failed=1
}

mapfile -t sources < <(git ls-files '*.h' '*.cpp')

if ! clang-format --dry-run -Werror "${sources[@]}"; then
    complain "the files above are not formatted; run clang-format -i on them"
fi

# Operating-system headers stand in the platform layer only.
os_headers='#include <(aio|dirent|dlfcn|errno|fcntl|poll|pthread|signal|sys/[a-z]+|unistd|windows)\.h>'
if git grep -nE "$os_headers" -- 'quiver/*.h' 'quiver/*.cpp' ':!quiver/foundation/platform/*'; then
    complain "the operating system's headers belong into quiver/foundation/platform"
fi

# A source includes its own header first, which proves that the header stands on its own.
while IFS= read -r source; do
    header=${source%.cpp}.h
    if [ -f "$header" ]; then
        first=$(grep -m1 '^#include' "$source")
        [ "$first" = "#include \"$header\"" ] || complain "$source does not include $header first"
    fi
done < <(git ls-files 'quiver/*.cpp')

# A name that begins with str owns its text; a view begins with sv or is a plain word.
if git grep -nE 'string_view *[&*]* *([a-z]_)?str[A-Z]|[^_a-z](string|wstring) *[&*]* *([a-z]_)?sv[A-Z]' -- '*.h' '*.cpp'; then
    complain "str is for strings that own their text, sv for views"
fi

# The layers, from the ground: a unit includes its own and those before it.
layers=(foundation values output fastinfoset document collections metadata core generated)

# Includes that go up all the same, each list for one reason. One that is gone has to leave its list.
known_upward_includes=(
    # A collection is an object: its base is in core, which every object has.
    "quiver/collections/XmlCollection.h quiver/core/XmlObjectBase.h"
    # A record reads and writes properties of the class that it describes, and the class holds the record.
    "quiver/metadata/AttributeInfo.cpp quiver/core/XmlGeneratedClass.h"
    "quiver/metadata/ElementInfo.cpp quiver/core/XmlGeneratedClass.h"
)
upward_includes()
{
    git grep -E '^#include "quiver/[^/"]+/' -- 'quiver/*/*.h' 'quiver/*/*.cpp' |
        awk -F '[:"]' -v layers="${layers[*]}" '
            BEGIN { for (n = split(layers, name, " "); n > 0; --n) rank[name[n]] = n }
            {
                split($1, unit, "/")
                split($3, header, "/")
                if (!(unit[2] in rank) || !(header[2] in rank) || rank[header[2]] > rank[unit[2]])
                    print $1, $3
            }'
}
layer_changes=$(diff <(printf '%s\n' "${known_upward_includes[@]}" | LC_ALL=C sort) <(upward_includes | LC_ALL=C sort) || true)
while read -r mark unit header; do
    case "$mark" in
    '>') complain "$unit includes $header, which is of a higher layer or of none" ;;
    '<') complain "$unit no longer includes $header; take it off the known upward includes" ;;
    esac
done <<<"$layer_changes"

# Every unit has a test of its stem.
while IFS= read -r source; do
    stem=$(basename "${source%.cpp}")
    case "$source" in
    quiver/foundation/platform/*) stem=Platform ;;
    quiver/foundation/PatternEngine*) stem=Pattern ;;
    esac
    [ -n "$(git ls-files "tests/*/${stem}_test.cpp" "tests/${stem}_test.cpp")" ] || complain "$source has no test tests/*/${stem}_test.cpp"
done < <(git ls-files 'quiver/*.cpp')

# The list of public headers is what the umbrella header reaches.
diff -u cmake/public_headers.txt <(scripts/list_public_headers.sh) || complain "cmake/public_headers.txt is out of date"

# A behaviour that looks wrong is cited by the name of its entry.
while IFS= read -r name; do
    grep -qxF "### $name" docs/compatibility.md || complain "docs/compatibility.md has no entry \"$name\""
done < <(git grep -ohE 'docs/compatibility\.md: [A-Z][^).:]*' -- '*.h' '*.cpp' | sed -e 's/^[^:]*: //' -e 's/ *$//' | sort -u)
while IFS= read -r name; do
    git grep -qF "docs/compatibility.md: $name" -- 'quiver/*.h' 'quiver/*.cpp' 'tools/*.cpp' 'tools/*.h' ||
        complain "no source cites \"$name\" of docs/compatibility.md"
done < <(sed -n 's/^### //p' docs/compatibility.md)

# What the pages say is in the sources.
scripts/check_docs.sh || complain "the pages above are not true"

# What debuggers show are members that classes have.
while IFS= read -r member; do
    git grep -qwF "$member" -- 'quiver/*.h' || complain "tools/debugger names $member, which no class has"
done < <(grep -ohE '\b(m_[A-Za-z0-9]+|p?str[A-Z][A-Za-z]+)\b' tools/debugger/quiver.natvis tools/debugger/quiver_gdb.py | sort -u)

# No macro defines a function or a class.
if git grep -nE '^\s*#define .*\{' -- 'quiver/*.h' 'quiver/*.cpp'; then
    complain "the macros above hold code"
fi

[ "$failed" -eq 0 ] && echo "check: ok"
exit "$failed"
