#!/usr/bin/env bash
# The project's main job in one command: installs the build dependencies,
# builds dmtool in Release (build/demo), profiles the shipped Seattle weather
# data into a metadata document and shows its dictionary table.
#
#   scripts/demo.sh [DATA.csv [META.xml]]
#
# Defaults: examples/data/seattle-weather.csv into build/demo/seattle-weather.xml.
# Environment: JOBS (default 2) sets the build parallelism.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

jobs=${JOBS:-2}
data=${1:-examples/data/seattle-weather.csv}
output=${2:-build/demo/$(basename "${data%.*}").xml}

scripts/install-deps.sh
mkdir -p build

# The demo needs the library and the tool only.
cmake -S . -B build/demo -DCMAKE_BUILD_TYPE=Release \
  -DDMCOMMON_BUILD_TESTS=OFF -DDMCOMMON_BUILD_BENCHMARKS=OFF -DDMCOMMON_BUILD_TOOLS=ON \
  >build/demo.configure.log 2>&1 || { cat build/demo.configure.log >&2; exit 1; }
cmake --build build/demo --parallel "$jobs" --target dmtool >build/demo.build.log 2>&1 ||
  { cat build/demo.build.log >&2; exit 1; }

echo "\$ dmtool profile $data -o $output"
build/demo/tools/dmtool profile "$data" -o "$output"
echo
echo "The document is in $output; try also:"
echo "  build/demo/tools/dmtool show $output"
echo "  build/demo/tools/dmtool check $output"
