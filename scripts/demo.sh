#!/usr/bin/env bash
# Sets the machine up, builds the library and the purchase order example, and runs it on a document that keeps its schema
# and on one that does not.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
scripts/build.sh release -- purchase_order

example=build/release/examples/purchase_order
samples=examples/purchase_order

echo
echo "== $samples/order.xml: read, reported, changed, written =="
"$example" "$samples/order.xml"

echo
echo "== $samples/broken.xml: breaks the schema =="
if "$example" "$samples/broken.xml"; then
    echo "demo: a broken document was accepted" >&2
    exit 1
fi
echo
echo "demo: done; the broken document was refused with the chain of messages above"
