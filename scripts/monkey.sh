#!/usr/bin/env bash
# Sends random input to every page of the wizard and checks every function
# after each event.
#   scripts/monkey.sh [SEED] [EVENTS_PER_PAGE]
# SEED defaults to the time of day, EVENTS_PER_PAGE to 10000. The run stops at
# the first broken rule and prints it with the events that led to it; the
# same seed repeats the same run. BUILD_DIR picks the build (build-test).
set -euo pipefail
cd "$(dirname "$0")/.."

seed="${1:-$(date +%s)}"
events="${2:-10000}"
. scripts/long-run.sh
build_for_run kelmar_monkey_tests

echo "monkey: seed $seed, $events events per page"
KELMAR_MONKEY_SEED="$seed" KELMAR_MONKEY_EVENTS="$events" \
  "$build/tests/kelmar_monkey_tests" 2>&1 | grep -v '^This plugin does not support'
exit "${PIPESTATUS[0]}"
