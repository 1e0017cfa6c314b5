#!/usr/bin/env bash
# Builds the optimised tree and runs every benchmark; each prints its figures and its ratios
# against the reference library measured in the same process. Run on an otherwise idle machine.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/install-deps.sh
mkdir -p build
cmake -S . -B build/release -G Ninja -DCMAKE_BUILD_TYPE=Release > build/release.configure.log 2>&1 ||
  { cat build/release.configure.log; exit 1; }
cmake --build build/release -j "$(nproc)"
for benchmark in build/release/bench/bench_*; do
  echo "== ${benchmark##*/}"
  "$benchmark" "$@"
done
