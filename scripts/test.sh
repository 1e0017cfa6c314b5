#!/usr/bin/env bash
# Installs what is missing, builds and runs every test three ways: under AddressSanitizer with
# UndefinedBehaviorSanitizer, the threaded tests under ThreadSanitizer, and the optimised build
# that the application ships. Warnings are errors in all three.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/install-deps.sh

jobs=$(nproc)
configure_and_build() {
  local dir=$1
  shift
  cmake -S . -B "$dir" -G Ninja -DWAVELUME_WERROR=ON "$@" > "$dir.configure.log" 2>&1 ||
    { cat "$dir.configure.log"; exit 1; }
  cmake --build "$dir" -j "$jobs"
}
mkdir -p build

echo "== AddressSanitizer + UndefinedBehaviorSanitizer"
configure_and_build build/asan -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DWAVELUME_SANITIZE=address,undefined -DWAVELUME_BUILD_BENCH=OFF
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  ctest --test-dir build/asan -j "$jobs" --output-on-failure

echo "== ThreadSanitizer (threaded tests)"
configure_and_build build/tsan -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DWAVELUME_SANITIZE=thread -DWAVELUME_BUILD_BENCH=OFF
TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1 \
  ctest --test-dir build/tsan -j "$jobs" --output-on-failure -R 'Concurrency'

echo "== Release"
configure_and_build build/release -DCMAKE_BUILD_TYPE=Release
ctest --test-dir build/release -j "$jobs" --output-on-failure
