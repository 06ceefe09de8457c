#!/usr/bin/env bash
# Compiles each public header alone, and a second time in the same unit, by g++ and clang++, as C++17 and as C++20, with
# warnings as errors; and checks that none of them needs a header of the libraries that only our sources use.
set -euo pipefail
cd "$(dirname "$0")/.."

for compiler in g++ clang++; do
    command -v "$compiler" >/dev/null || { echo "check_headers: $compiler is missing; scripts/setup.sh --checks installs it" >&2; exit 1; }
done

compile_alone()
{
    printf '#include "%s"\n#include "%s"\n' "$3" "$3" |
        "$1" -std="$2" -fsyntax-only -Wall -Wextra -Wpedantic -Werror -I. -x c++ - ||
        { echo "check_headers: $3 does not compile alone with $1 -std=$2" >&2; return 1; }
}
export -f compile_alone

for header in $(cat cmake/public_headers.txt); do
    for compiler in g++ clang++; do
        printf '%s\n' "$compiler c++17 $header" "$compiler c++20 $header"
    done
done | xargs -P "$(nproc)" -L 1 bash -c 'compile_alone "$@"' check_headers

if g++ -std=c++17 -I. -M quiver/QvXmlLib.h | grep -E '/(expat|pcre|pcre2|zlib|zconf)[a-z_]*\.h'; then
    echo "check_headers: a public header includes those above" >&2
    exit 1
fi
echo "check_headers: ok"
