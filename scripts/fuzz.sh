#!/usr/bin/env bash
# Builds the libFuzzer targets with clang (AddressSanitizer + UndefinedBehaviorSanitizer, coverage
# on all of the code under test) in build/fuzz and fuzzes each for a while, starting from its
# checked-in corpus. Not part of CI: CI replays the same corpus as ordinary tests.
#   scripts/fuzz.sh [seconds per target, default 600] [target...]
# New inputs found go to build/fuzz/corpus/<target>; crashes to build/fuzz/crashes/<target>.
# Copy a small, telling input into fuzz/corpus/<target>/ to keep it in the replay.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-600}
shift || true
targets=("$@")
if ((${#targets[@]} == 0)); then
  targets=(fuzz_protocol_state fuzz_custom_iq_xml)
fi

./scripts/install-deps.sh
# clang with its runtimes (libFuzzer, the sanitizers: only recommended by clang) and OpenMP.
./scripts/install-deps.sh clang libclang-rt-dev libomp-dev

mkdir -p build
CXX=clang++ cmake -S . -B build/fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DWAVELUME_SANITIZE=address,undefined -DWAVELUME_BUILD_FUZZERS=ON -DWAVELUME_BUILD_TESTS=OFF \
  -DWAVELUME_BUILD_BENCH=OFF > build/fuzz.configure.log 2>&1 ||
  { cat build/fuzz.configure.log; exit 1; }
cmake --build build/fuzz -j "$(nproc)" --target "${targets[@]}"

for target in "${targets[@]}"; do
  echo "== $target: ${seconds} s"
  mkdir -p "build/fuzz/corpus/$target" "build/fuzz/crashes/$target"
  ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
    "build/fuzz/fuzz/$target" -max_total_time="$seconds" -timeout=30 -rss_limit_mb=4096 \
    -artifact_prefix="build/fuzz/crashes/$target/" \
    "build/fuzz/corpus/$target" "fuzz/corpus/$target"
done
