#!/usr/bin/env bash
# Builds everything for the thread sanitizer and runs all tests there: scripts/tsan.sh
#
# Continuous integration does so for the programs that start threads alone. The library keeps tables, caches and counts
# for the whole process, so that any other test may still tell something about them.
#
# QUIVER_TSAN_TESTS, a regular expression, leaves only the tests whose names it matches.
set -euo pipefail
cd "$(dirname "$0")/.."

# What is not for the sanitizer, and why.
excluded=(
    # It keeps no call chain of 64 Ki calls.
    '*Depth.*'
    'XmlGeneratedClass.ADocumentNestedTooDeeplyForTheStackEndsInAnException'
    'XmlGeneratedClass.AChainTooLongForTheStackIsNotWrittenAndDiesSafely'
    'Documents/HostileDocuments.AreRefusedOrReadAndSoon/Deep*'
    # They count on the stack of a small thread, in which it keeps three quarters of a megabyte of its own.
    'DoctypeGuard.AChainOfEntitiesMayBeAsLongAsTheStackHolds'
    'DoctypeGuard.TheOrderOfTheDeclarationsDoesNotMatter'
    'DoctypeGuard.ManyReferencesSideBySideAreNotDeep'
    'DoctypeGuard.EntitiesThatReferToThemselvesAreLeftToTheParser'
    'ExpatReader.EntitiesInsideEachOtherAreExpandedAsFarAsTheStackGoes'
    'StackGuardTest.EndlessRecursionEndsInAnException'
    'StackGuardTest.SmallStacksKeepAQuarter'
    'StackGuardTest.RecursionIsPossibleAgainAfterwards'
    'StackGuardTest.WhatIsUsableIsWhatIsLeftLessTheReserve'
    # Their bounds are seconds, of which it takes more.
    'ExpatReader.OtherDeclarationsTakeLinearTime'
    'ExpatReader.PrefixedAttributesUnderALongNamespaceAreRefusedBeforeTheyAreWrittenOut'
    'Schemas/HostileSchemas.EndInAMessageOrInCode/ManyElements'
)

scripts/build.sh tsan
GTEST_FILTER="-$(IFS=: && echo "${excluded[*]}")" \
    ctest --preset tsan -j "$(nproc)" ${QUIVER_TSAN_TESTS:+-R "$QUIVER_TSAN_TESTS"}
