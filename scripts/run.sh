#!/usr/bin/env bash
# Installs what is missing, builds, and opens the wizard in kelmar-host on
# the embedded sample problem (or on the problem file given as arguments).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
cmake -S . -B build-release -G Ninja -DCMAKE_BUILD_TYPE=Release \
      -DKELMAR_BUILD_TESTS=OFF -DKELMAR_BUILD_BENCH=OFF >/dev/null
cmake --build build-release --target kelmar-host
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
  echo "kelmar-host needs a desktop session (no DISPLAY or WAYLAND_DISPLAY is set)." >&2
  exit 1
fi
exec build-release/app/kelmar-host "$@"
