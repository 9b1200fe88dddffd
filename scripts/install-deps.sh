#!/usr/bin/env bash
# Installs the Debian 12 packages that building, running and testing need.
# Does nothing when they are all present.
set -euo pipefail

# qt6-svg-dev: kelmar-host's SVG charts; poppler-utils: the report test
# reads the PDF's text and pictures back.
packages=(build-essential cmake ninja-build pkg-config qt6-base-dev qt6-svg-dev libgl-dev
          libgtest-dev libgmock-dev libbenchmark-dev libgsl-dev fonts-dejavu-core poppler-utils)

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
