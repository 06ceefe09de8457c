#!/usr/bin/env bash
# Writes docs/schema_support.md anew, from the tables of tools/quiver-gen/binding: scripts/renew_support.sh [PATH OF SchemaSupport_test]
set -euo pipefail
cd "$(dirname "$0")/.."

QUIVER_RENEW_SUPPORT=1 "${1:-build/release/tests/SchemaSupport_test}" --gtest_filter=SchemaSupport.IsThePageOfTheDocumentation
