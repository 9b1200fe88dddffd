#!/usr/bin/env bash
# Installs what is missing, builds with warnings as errors and runs every
# test headless. BUILD_DIR, KELMAR_SANITIZE and KELMAR_BUILD_BENCH may be set
# from outside (the CI runs the suite a second time under the sanitizers).
set -euo pipefail
cd "$(dirname "$0")/.."
[ "${1:-}" = "--no-deps" ] || scripts/install-deps.sh

build="${BUILD_DIR:-build-test}"
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DKELMAR_WERROR=ON \
      -DKELMAR_SANITIZE="${KELMAR_SANITIZE:-OFF}" -DKELMAR_BUILD_BENCH="${KELMAR_BUILD_BENCH:-ON}"
cmake --build "$build"
export QT_QPA_PLATFORM=offscreen
ctest --test-dir "$build" --output-on-failure -j2
