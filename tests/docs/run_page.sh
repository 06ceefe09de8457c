#!/usr/bin/env bash
# Does what a page tells its reader to do, in a directory that goes afterwards: run_page.sh SOURCE-TREE BUILD-TREE PAGE
set -euo pipefail
QUIVER_SOURCE_DIR=$1
build=$2
page=$QUIVER_SOURCE_DIR/$3

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export QUIVER_SOURCE_DIR PATH="$build/tools:$PATH" CMAKE_GENERATOR=Ninja
if grep -qF '<!-- file: CMakeLists.txt -->' "$page"; then
    cmake --install "$build" --prefix "$scratch/prefix" >/dev/null
    export CMAKE_PREFIX_PATH="$scratch/prefix"
fi

awk -f "$QUIVER_SOURCE_DIR/tests/docs/page_commands.awk" "$page" >"$scratch/commands"
grep -q commands_of_block "$scratch/commands" || { echo "$page has no commands" >&2; exit 1; }
mkdir "$scratch/work"
cd "$scratch/work"
bash -u "$scratch/commands"
