#!/usr/bin/env bash
# Builds the libFuzzer targets of fuzz/ with clang (build/fuzz: coverage,
# AddressSanitizer with leak detection, UndefinedBehaviorSanitizer) and runs
# each for a bounded time on a scratch copy of its seed corpus, then prints a
# table of executions per second and total executions per target.
#
# Exits non-zero when a target does not build or finds a crash, a leak, a
# time-out, an allocation beyond the limit or a broken invariant; the input
# that did it is kept under build/fuzz/artifacts/<target>/ and its path is
# printed. Replaying it: build/fuzz/fuzz/<target>_fuzzer <path>. Once fixed,
# copy it into fuzz/corpus/<target>/ so that the tests replay it for good.
#
# Environment: FUZZ_SECONDS (default 30) per target; FUZZ_TARGETS (default
# all) a space-separated subset; JOBS (default 2) the build parallelism.
set -uo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

seconds=${FUZZ_SECONDS:-30}
targets=(${FUZZ_TARGETS:-metadata summaries field format printable xml cache profile})
jobs=${JOBS:-2}
build=build/fuzz

# The library carries the coverage instrumentation and the sanitizers too;
# the fuzzer's own runtime is linked into the fuzz binaries only.
sanitize="-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer"
cmake -S . -B "$build" \
  -DCMAKE_CXX_COMPILER=clang++ \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  "-DCMAKE_CXX_FLAGS=-fsanitize=fuzzer-no-link $sanitize" \
  "-DCMAKE_EXE_LINKER_FLAGS=$sanitize" \
  "-DCMAKE_SHARED_LINKER_FLAGS=$sanitize" \
  -DDMCOMMON_BUILD_FUZZERS=ON \
  -DDMCOMMON_BUILD_TESTS=OFF \
  -DDMCOMMON_BUILD_TOOLS=ON \
  -DDMCOMMON_BUILD_BENCHMARKS=OFF \
  -DDMCOMMON_PACKAGING_TESTS=OFF \
  -DDMCOMMON_INSTALL=OFF >/dev/null || {
  echo "fuzz.sh: configuring $build failed" >&2
  exit 1
}
if ! cmake --build "$build" --parallel "$jobs" --target "${targets[@]/%/_fuzzer}"; then
  echo "fuzz.sh: building the fuzz targets failed" >&2
  exit 1
fi

# Settings of their own, not those a caller (scripts/test.sh) exported for
# its test suites.
export ASAN_OPTIONS=detect_leaks=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1

rows=()
failed=()
for target in "${targets[@]}"; do
  run="$build/run/$target"
  artifacts="$build/artifacts/$target"
  rm -rf "$run"
  mkdir -p "$run/corpus" "$artifacts"
  cp fuzz/corpus/"$target"/* "$run/corpus/"
  # The readers of documents share a dictionary of the XML vocabulary.
  dict=()
  if [ "$target" != cache ]; then
    dict=(-dict=fuzz/xml.dict)
  fi
  log="$run/fuzz.log"
  echo "=== $target: ${seconds}s"
  # -close_fd_mask=1 silences the XML layer's one-line complaints about
  # malformed documents on standard output. No input needs more than 10
  # seconds or a single allocation of 256 MiB: larger is a finding.
  "$build/fuzz/${target}_fuzzer" "$run/corpus" \
    -max_total_time="$seconds" -print_final_stats=1 -close_fd_mask=1 \
    -timeout=10 -rss_limit_mb=2048 -malloc_limit_mb=256 \
    "${dict[@]}" -artifact_prefix="$artifacts/" >"$log" 2>&1
  status=$?
  execs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  speed=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log" | tail -1)
  verdict=ok
  if [ $status -ne 0 ]; then
    verdict=FAILED
    failed+=("$target")
    grep -E "invariant violated|ERROR: |SUMMARY: |Test unit written to" "$log" >&2
    echo "fuzz.sh: $target failed (status $status); log: $log" >&2
    for artifact in $(sed -n 's/.*Test unit written to \(.*\)$/\1/p' "$log"); do
      echo "fuzz.sh: reproducer: $artifact" >&2
    done
  fi
  rows+=("$(printf '%-10s %12s %14s  %s' "$target" "${speed:-?}" "${execs:-?}" "$verdict")")
done

echo
printf '%-10s %12s %14s  %s\n' target "execs/s" "executions" result
printf '%s\n' "${rows[@]}"

if [ ${#failed[@]} -ne 0 ]; then
  echo "fuzz.sh: FAILED: ${failed[*]}" >&2
  exit 1
fi
echo "fuzz.sh: all targets ran ${seconds}s without a finding"
