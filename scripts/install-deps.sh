#!/usr/bin/env bash
# Installs the Debian packages the project builds and tests with. Does nothing
# when every one of them is already present, so it is safe to run every time.
set -euo pipefail

packages=(
  cmake
  g++
  pkg-config
  libxerces-c-dev
  libicu-dev
  libgtest-dev
  libbenchmark-dev
  libcli11-dev
  libcsv-dev
  python3
)

missing=()
for pkg in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$pkg")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

if [ "$(id -u)" -ne 0 ]; then
  echo "install-deps: missing packages: ${missing[*]}; run this script as root" >&2
  exit 1
fi

echo "install-deps: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq
apt-get install -y -qq --no-install-recommends "${missing[@]}"
