#!/usr/bin/env bash
# Makes the reference of the public headers by Doxygen, whose warnings are errors: scripts/make_docs.sh [DIRECTORY]
set -euo pipefail
cd "$(dirname "$0")/.."

output=${1:-build/docs}
command -v doxygen >/dev/null || { echo "make_docs: doxygen is missing; scripts/setup.sh --checks installs it" >&2; exit 1; }
mkdir -p "$output"
version=$(sed -nE 's/^project\(Quiver VERSION ([0-9.]+).*/\1/p' CMakeLists.txt)
{
    cat docs/Doxyfile
    echo "PROJECT_NUMBER = $version"
    echo "OUTPUT_DIRECTORY = $output"
    echo "INPUT = $(tr '\n' ' ' <cmake/public_headers.txt)"
} | doxygen - || { echo "make_docs: the comments above are wrong" >&2; exit 1; }
[ -f "$output/html/index.html" ]
echo "make_docs: $output/html/index.html"
