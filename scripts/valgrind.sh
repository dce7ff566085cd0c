#!/usr/bin/env bash
# Runs every GoogleTest suite of a build under valgrind's memcheck: no error
# and no definitely lost block may remain. The suites run whole, one process
# each; the very large inputs of the robustness suite are left out, since
# under valgrind they take many minutes and add nothing the smaller ones do
# not show.
#
#   scripts/valgrind.sh [BUILD_DIR]    (default build/ci-normal, built first)
set -uo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
build=${1:-build/ci-normal}

if ! command -v valgrind >/dev/null; then
  echo "valgrind.sh: valgrind is not installed (apt-get install valgrind)" >&2
  exit 2
fi

suites=("$build"/tests/*_test)
if [ ! -x "${suites[0]}" ]; then
  echo "valgrind.sh: no test suites in $build/tests; build it first" >&2
  exit 2
fi

failed=()
for suite in "${suites[@]}"; do
  name=$(basename "$suite")
  filter=()
  if [ "$name" = robustness_test ]; then
    filter=(--gtest_filter=-*Huge*:*Million*)
  fi
  start=$SECONDS
  log="$build/valgrind-$name.log"
  valgrind --tool=memcheck --error-exitcode=99 --leak-check=full \
    --errors-for-leak-kinds=definite --show-leak-kinds=definite \
    --log-file="$log" "$suite" --gtest_brief=1 "${filter[@]}" >/dev/null
  status=$?
  summary=$(grep -E "ERROR SUMMARY" "$log" | tail -1 | sed 's/^==[0-9]*== //')
  printf '%-20s %4ds  %s\n' "$name" $((SECONDS - start)) "$summary"
  if [ $status -ne 0 ]; then
    failed+=("$name (see $log)")
  fi
done

if [ ${#failed[@]} -ne 0 ]; then
  echo "valgrind.sh: FAILED: ${failed[*]}" >&2
  exit 1
fi
echo "valgrind.sh: no errors and no definite leaks"
