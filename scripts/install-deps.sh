#!/usr/bin/env bash
# Installs the Debian packages the project builds and tests with, and
# generates the German locale the tests run under once more (a decimal comma
# must never reach a document). Does nothing when everything is already
# present, so it is safe to run every time.
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
  locales
  valgrind
  clang
  libclang-rt-14-dev
)

# The locale the suite is run under a second time.
test_locale=de_DE.UTF-8

has_test_locale() {
  locale -a 2>/dev/null | grep -qix 'de_DE\.utf-\?8'
}

missing=()
for pkg in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$pkg")
  fi
done

if [ ${#missing[@]} -eq 0 ] && has_test_locale; then
  exit 0
fi

if [ "$(id -u)" -ne 0 ]; then
  echo "install-deps: missing packages: ${missing[*]:-none}; locale $test_locale:" \
    "$(has_test_locale && echo present || echo missing); run this script as root" >&2
  exit 1
fi

if [ ${#missing[@]} -ne 0 ]; then
  echo "install-deps: installing ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -qq
  apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

if ! has_test_locale; then
  echo "install-deps: generating the locale $test_locale"
  localedef -i de_DE -f UTF-8 "$test_locale"
fi
