#!/usr/bin/env bash
# Builds Velkaro and runs every test: the optimised build, a short run of each
# fuzz target, and the debug build under AddressSanitizer and
# UndefinedBehaviorSanitizer. Installs the Debian packages it needs first.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
jobs=$(nproc)

# The engines and formats stay free of the window toolkit.
if grep -rlE '#include\s*<Q' src tests --include='*.h' --include='*.cpp' | grep -vE '^(src|tests)/ui/'; then
  echo "Qt headers are included outside src/ui and tests/ui" >&2
  exit 1
fi

cmake --preset release >/dev/null
cmake --build --preset release -j "$jobs"
ctest --preset release -j "$jobs"

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j "$jobs"
for fuzzer in build/fuzz/tests/fuzz/*_fuzz; do
  echo "Fuzzing with $(basename "$fuzzer") for ${VELKARO_FUZZ_SECONDS:-20} s"
  "$fuzzer" -max_total_time="${VELKARO_FUZZ_SECONDS:-20}" -print_final_stats=0 2>&1 | tail -n 1
done

cmake --preset asan >/dev/null
cmake --build --preset asan -j "$jobs"
ctest --preset asan -j "$jobs"
