#!/usr/bin/env bash
# Installs what is missing, builds and runs every test three ways: under AddressSanitizer with
# UndefinedBehaviorSanitizer (with the fuzz targets replaying their corpus), the threaded tests
# under ThreadSanitizer, and the optimised build that the application ships (with the benchmarks).
# Warnings are errors in all three. The ThreadSanitizer build compiles only the executables that
# hold Concurrency tests (the wavelume_concurrency_tests target collects them).
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/install-deps.sh

jobs=$(nproc)
configure() {
  local dir=$1
  shift
  cmake -S . -B "$dir" -G Ninja -DWAVELUME_WERROR=ON "$@" > "$dir.configure.log" 2>&1 ||
    { cat "$dir.configure.log"; exit 1; }
}
mkdir -p build
stage_done() { echo "== $1: ${SECONDS} s since the start"; }
# The sanitizers need no more than -O1 to report, and line tables for their stack traces: the
# AddressSanitizer build takes over a third less processor time than at -O2 with full
# debug information.
sanitizer_flags=(-DCMAKE_BUILD_TYPE=RelWithDebInfo "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O1 -g1 -DNDEBUG"
  -DWAVELUME_BUILD_BENCH=OFF)

echo "== AddressSanitizer + UndefinedBehaviorSanitizer"
configure build/asan "${sanitizer_flags[@]}" -DWAVELUME_SANITIZE=address,undefined \
  -DWAVELUME_BUILD_FUZZ_REPLAY=ON
cmake --build build/asan -j "$jobs"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  ctest --test-dir build/asan -j "$jobs" --output-on-failure
stage_done "AddressSanitizer build and tests"

echo "== ThreadSanitizer (threaded tests)"
configure build/tsan "${sanitizer_flags[@]}" -DWAVELUME_SANITIZE=thread -DWAVELUME_BUILD_FUZZ_REPLAY=OFF
cmake --build build/tsan -j "$jobs" --target wavelume_concurrency_tests
TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1 \
  ctest --test-dir build/tsan -j "$jobs" --output-on-failure --no-tests=error -R 'Concurrency'
stage_done "ThreadSanitizer build and tests"

# Without precompiled headers: the shipped build is also the one where a source that relies on a
# header it does not include still fails.
echo "== Release"
configure build/release -DCMAKE_BUILD_TYPE=Release -DWAVELUME_BUILD_FUZZ_REPLAY=OFF -DWAVELUME_PCH=OFF
cmake --build build/release -j "$jobs"
ctest --test-dir build/release -j "$jobs" --output-on-failure
stage_done "Release build and tests"
