#!/usr/bin/env bash
# Changes the library in one place at a time and asks the tests whether they notice; scripts/mutants.py tells how.
set -euo pipefail
cd "$(dirname "$0")/.."

if ! /usr/bin/python3 -c 'import clang.cindex' 2>/dev/null; then
    echo "mutants: the Python bindings of libclang are missing; scripts/setup.sh --checks installs them" >&2
    exit 1
fi
exec /usr/bin/python3 scripts/mutants.py "$@"
