#!/usr/bin/env bash
# Sets the machine up and shows the whole way: a schema, the classes that are made of it, the program that uses them, and
# what that program does with a document that keeps the schema and with one that does not.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
scripts/build.sh release -- quiver_gen_tool QvXmlLib9

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
example=examples/purchase_order
classes=$scratch/classes

echo
echo "== the schema: $example/order.xsd =="
sed -n '/<xs:complexType name="Item">/,/<\/xs:complexType>/p' "$example/order.xsd"

echo
echo "== generation: quiver-gen $example/order.xsd -o classes =="
build/release/tools/quiver-gen "$example/order.xsd" -o "$classes"
(cd "$scratch" && wc -l classes/*)
echo
sed -n '/^class CItem :/,/SetPart/p' "$classes/Order.h"

echo
echo "== compilation: $example/main.cpp with the classes =="
g++ -std=c++17 -Wall -Wextra -I. -I"$classes" "$example/main.cpp" "$classes"/*.cpp \
    -Lbuild/release/quiver -lQvXmlLib9 -Wl,-rpath,"$PWD/build/release/quiver" -o "$scratch/purchase_order"
echo "done"

echo
echo "== $example/order.xml: read, reported, changed, written =="
"$scratch/purchase_order" "$example/order.xml"

echo
echo "== $example/broken.xml: breaks the schema =="
if "$scratch/purchase_order" "$example/broken.xml"; then
    echo "demo: a broken document was accepted" >&2
    exit 1
fi
echo
echo "demo: done; the broken document was refused with the chain of messages above"
