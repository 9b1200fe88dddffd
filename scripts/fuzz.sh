#!/usr/bin/env bash
# Reads problem files mutated at random from the project's own and checks
# that each is taken (every value within the value range) or refused with
# one line; a dozen mutants and the files that once aborted also go through
# kelmar-host itself.
#   scripts/fuzz.sh [SEED] [COUNT]
# SEED defaults to the time of day, COUNT to 100000. Failing inputs are kept
# in the temporary folder and named in the report; the same seed repeats the
# same run. BUILD_DIR picks the build (build-test).
set -euo pipefail
cd "$(dirname "$0")/.."

seed="${1:-$(date +%s)}"
count="${2:-100000}"
. scripts/long-run.sh
build_for_run kelmar_host_tests kelmar-host

echo "fuzz: seed $seed, $count cases"
KELMAR_FUZZ_SEED="$seed" KELMAR_FUZZ_COUNT="$count" \
  "$build/tests/kelmar_host_tests" --gtest_filter='FuzzTest.*' 2>&1 |
  grep -v -e '^This plugin does not support' -e '^QStandardPaths:'
exit "${PIPESTATUS[0]}"
