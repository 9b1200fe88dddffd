#!/usr/bin/env bash
# Installs the Debian 12 packages that building, running and testing need.
# Does nothing when they are all present.
set -euo pipefail

packages=(build-essential cmake ninja-build pkg-config qt6-base-dev libgl-dev
          libgtest-dev libgmock-dev libbenchmark-dev libgsl-dev fonts-dejavu-core)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
