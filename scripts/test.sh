#!/usr/bin/env bash
# The project's test command. Installs the build dependencies, then builds and
# tests twice, then fuzzes:
#   build/ci-normal  RelWithDebInfo with libstdc++ assertions, warnings as
#                    errors; the whole suite, packaging tests included, then
#                    the suite again under the de_DE.UTF-8 locale, then every
#                    GoogleTest suite under valgrind's memcheck.
#   build/ci-asan    Debug with AddressSanitizer (leaks included) and
#                    UndefinedBehaviorSanitizer, warnings as errors; the whole
#                    suite except the packaging tests.
#   build/fuzz       clang with libFuzzer: each fuzz target for a bounded
#                    time (scripts/fuzz.sh; FUZZ_SECONDS per target).
# Every phase runs even when an earlier one failed (a failed build skips only
# its own tests); the exit status is non-zero when any phase failed.
#
# Environment: JOBS (default 2) sets the build and test parallelism.
set -uo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

jobs=${JOBS:-2}
failures=()
timings=()

# Runs one named phase, prints its wall time and records a failure.
phase() {
  local name=$1
  shift
  local start=$SECONDS
  echo
  echo "=== $name"
  "$@"
  local status=$?
  local elapsed=$((SECONDS - start))
  timings+=("$(printf '%-22s %4ds  %s' "$name" "$elapsed" "$([ $status -eq 0 ] && echo ok || echo FAILED)")")
  echo "=== $name: $([ $status -eq 0 ] && echo ok || echo "FAILED ($status)") in ${elapsed}s"
  if [ $status -ne 0 ]; then
    failures+=("$name")
  fi
  return $status
}

configure_and_build() {
  local dir=$1
  shift
  cmake -S . -B "$dir" -DDMCOMMON_WERROR=ON "$@" && cmake --build "$dir" --parallel "$jobs"
}

run_tests() {
  local dir=$1
  ctest --test-dir "$dir" --output-on-failure --parallel "$jobs" --timeout 600
}

total_start=$SECONDS

phase "install dependencies" scripts/install-deps.sh || {
  echo "test.sh: cannot go on without the build dependencies" >&2
  exit 1
}

if phase "normal: build" configure_and_build build/ci-normal \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    "-DCMAKE_CXX_FLAGS=-D_GLIBCXX_ASSERTIONS"; then
  phase "normal: test" run_tests build/ci-normal
  # Once more with a decimal comma in the process locale, which must change
  # nothing the library writes or reads.
  phase "normal: test, de_DE" env DMCOMMON_TEST_LOCALE=de_DE.UTF-8 \
    ctest --test-dir build/ci-normal --output-on-failure --parallel "$jobs" --timeout 600 \
    --label-exclude packaging
  phase "normal: valgrind" scripts/valgrind.sh build/ci-normal
fi

sanitize="-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=all"
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1:strict_string_checks=1:detect_stack_use_after_return=1:check_initialization_order=1:strict_init_order=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
# The build runs the test executables too (test discovery), so the sanitizer
# settings above are already in force for it.
if phase "asan: build" configure_and_build build/ci-asan \
    -DCMAKE_BUILD_TYPE=Debug \
    "-DCMAKE_CXX_FLAGS=$sanitize" \
    "-DCMAKE_EXE_LINKER_FLAGS=$sanitize" \
    "-DCMAKE_SHARED_LINKER_FLAGS=$sanitize" \
    -DDMCOMMON_PACKAGING_TESTS=OFF \
    -DDMCOMMON_BUILD_BENCHMARKS=OFF; then
  phase "asan: test" run_tests build/ci-asan
fi

phase "fuzz" scripts/fuzz.sh

echo
echo "=== wall times"
printf '%s\n' "${timings[@]}"
echo "total                  $((SECONDS - total_start))s"

if [ ${#failures[@]} -ne 0 ]; then
  echo "test.sh: FAILED: ${failures[*]}" >&2
  exit 1
fi
echo "test.sh: all phases passed"
