#!/usr/bin/env bash
# Compares what gdb shows of the values of a program with expected.txt: tests/debugger/check.sh PROGRAM
set -euo pipefail

program=$(realpath "$1")
cd "$(dirname "$0")"
commands=$(mktemp)
trap 'rm -f "$commands" "$commands.out"' EXIT
{
    echo "set charset UTF-8"
    echo "set debuginfod enabled off"
    echo "source ../../tools/debugger/quiver_gdb.py"
    echo "break Stop"
    echo "run"
    echo "up"
    # The name first, since gdb prints no name beside a value.
    sed -E 's/^([*A-Za-z]+) = .*/printf "\1 = "\noutput \1\necho \\n/' expected.txt
    # A pointer shows the object, at whatever address it is.
    echo 'echo spElement shows'
    echo 'output spElement'
    echo 'echo \n'
} >"$commands"
PYTHONDONTWRITEBYTECODE=1 LC_ALL=C.UTF-8 gdb -nx -batch -x "$commands" "$program" >"$commands.out" 2>&1 || true
diff -u expected.txt <(grep -E '^[*A-Za-z]+ = ' "$commands.out") || { echo "check: gdb shows otherwise:" >&2; cat "$commands.out" >&2; exit 1; }
grep -qE '^spElement shows.*0x[0-9a-f]+ = \{object = <\{urn:a\}order id="7" kind="x"> = \{' "$commands.out" || { cat "$commands.out" >&2; exit 1; }
echo "check: gdb shows $(wc -l <expected.txt) values as expected"
