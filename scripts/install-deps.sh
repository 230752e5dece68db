#!/usr/bin/env bash
# Installs the Debian packages that building, testing and benchmarking need, and only those
# that are missing, so that running it again changes nothing.
set -euo pipefail

packages=(
  cmake ninja-build g++ make clang-format clang libclang-rt-14-dev
  libgtest-dev libbenchmark-dev
  libcli11-dev nlohmann-json3-dev
  ngspice
  qt6-base-dev fonts-dejavu-core
  librsvg2-bin poppler-utils dpkg-dev file groff-base
  desktop-file-utils appstream shared-mime-info libglib2.0-bin
)

missing=()
for package in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$'; then
    missing+=("$package")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "Installing missing packages: ${missing[*]}"
run_as_root=()
if [ "$(id -u)" -ne 0 ]; then
  run_as_root=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${run_as_root[@]}" apt-get update -qq
"${run_as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
