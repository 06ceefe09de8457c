#!/usr/bin/env bash
# Compares the tables of documents that the tests of generated classes read with what xmllint says of each. The README beside
# the tables tells their words.
set -euo pipefail
cd "$(dirname "$0")/../tests/tools/gen/constructs"

if ! command -v xmllint >/dev/null; then
    echo "check_constructs: xmllint is missing; scripts/setup.sh --checks installs it" >&2
    exit 1
fi
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

failed=0
count=0
# One run of xmllint for all documents of a schema: it reads the schema once.
for table in *.docs; do
    schema=${table%.docs}
    scope="xmlns=\"urn:test:$schema\" xmlns:t=\"urn:test:$schema\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
    rm -f "$folder"/*
    number=0
    while IFS= read -r line; do
        number=$((number + 1))
        case $line in "#"* | "") continue ;; esac
        document=${line#* }
        document=${document%% ==> *}
        printf '%s\n' "${document/\$ns/$scope}" >"$folder/$number.xml"
        printf '%s\n' "${line%% *}" >"$folder/$number.verdict"
    done <"$table"
    xmllint --nonet --noout --schema "$schema.xsd" "$folder"/*.xml >/dev/null 2>"$folder/messages" || true
    if grep -q 'failed to compile' "$folder/messages"; then
        echo "check_constructs: $schema.xsd: xmllint does not take the schema:" >&2
        head -5 "$folder/messages" >&2
        failed=1
        continue
    fi
    for document in "$folder"/*.xml; do
        number=$(basename "$document" .xml)
        count=$((count + 1))
        expected=no
        case $(cat "$folder/$number.verdict") in ok | "no!" | "loose!") expected=ok ;; esac
        verdict=no
        ! grep -qxF "$document validates" "$folder/messages" || verdict=ok
        if [ "$verdict" != "$expected" ]; then
            echo "check_constructs: $table:$number: the table says $(cat "$folder/$number.verdict"), xmllint says $verdict:" >&2
            grep -F "$document:" "$folder/messages" | head -2 >&2 || true
            failed=1
        fi
    done
done
[ "$count" -gt 0 ] || failed=1
[ "$failed" -ne 0 ] || echo "check_constructs: xmllint agrees on $count documents"
exit "$failed"
