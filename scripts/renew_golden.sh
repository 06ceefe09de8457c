#!/usr/bin/env bash
# Writes the golden files of the tests of generated code anew: scripts/renew_golden.sh [PATH OF quiver-gen]
# What changed is to be read before it is committed.
set -euo pipefail
cd "$(dirname "$0")/.."

program=$(realpath "${1:-build/release/tools/quiver-gen}")
cd tests/tools/gen/golden
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# generate SCHEMA [OPTION ...]: the same calls as in GeneratedCode of Golden_test.cpp.
generate()
{
    local name=${1%.xsd}
    "$program" "$@" -o "$folder/$name" 2>/dev/null
    rm -rf "$name"
    mkdir "$name"
    local file
    for file in "$folder/$name"/*; do
        # Nothing that looks for sources may take these for its own.
        cp "$file" "$name/$(basename "$file").txt"
    done
}

generate order.xsd
generate shapes.xsd --split type
generate mail.xsd --split none --text utf8 --namespace =post --factory post::CDocuments
echo "renew_golden: done"
