#!/usr/bin/env bash
# The benchmark command: installs the build dependencies, builds the library,
# dmtool and the benchmarks in Release (build/bench), runs every benchmark
# program with repetitions and prints one table (bench/report.py): each path,
# the median of our time, the median of its anchor's time from the same run of
# the same program, their ratio, the target and whether it is met.
#
#   scripts/bench.sh [SUBJECT...]     # e.g. scripts/bench.sh cache stats
#
# Without subjects every program runs (about 25 minutes on two cores, mostly
# the million-field documents). The JSON of each program stays in
# <build>/results/<subject>.json; `bench/report.py build/bench/results` prints
# the table again.
# Environment: JOBS (default 2) sets the build parallelism, REPETITIONS
# (default 5) the repetitions per benchmark, BENCH_BUILD_DIR (default
# build/bench) the build directory, TMPDIR where generated files go.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

jobs=${JOBS:-2}
build=${BENCH_BUILD_DIR:-build/bench}
repetitions=${REPETITIONS:-5}
subjects=("$@")
if [ ${#subjects[@]} -eq 0 ]; then
  subjects=(number_format date_format stats metadata cache profile)
fi

scripts/install-deps.sh
mkdir -p build

cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release \
  -DDMCOMMON_BUILD_TESTS=OFF -DDMCOMMON_BUILD_BENCHMARKS=ON -DDMCOMMON_BUILD_TOOLS=ON \
  >"$build.configure.log" 2>&1 || { cat "$build.configure.log" >&2; exit 1; }
cmake --build "$build" --parallel "$jobs" >"$build.build.log" 2>&1 ||
  { cat "$build.build.log" >&2; exit 1; }

results=$build/results
mkdir -p "$results"
for subject in "${subjects[@]}"; do
  echo "bench: $subject (${repetitions} repetitions)" >&2
  # A failed program leaves its rows empty in the table rather than stopping
  # the others.
  "$build/bench/${subject}_benchmark" --benchmark_repetitions="$repetitions" \
    --benchmark_format=json >"$results/$subject.json.part" 2>"$results/$subject.log" &&
    mv "$results/$subject.json.part" "$results/$subject.json" ||
    echo "bench: $subject failed; see $results/$subject.log" >&2
done

echo
python3 bench/report.py "$results"
