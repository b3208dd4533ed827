#!/usr/bin/env bash
# Installs the Debian packages Velkaro's build and tests need, when missing.
# Usage: scripts/install-deps.sh [extra packages...]
set -euo pipefail

packages=(cmake ninja-build g++ libgtest-dev libbenchmark-dev clang libclang-rt-14-dev qt6-base-dev libcli11-dev fonts-dejavu-core poppler-utils "$@")
missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -q
$sudo apt-get install -y -q --no-install-recommends "${missing[@]}"
