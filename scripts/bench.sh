#!/usr/bin/env bash
# Builds the optimised tree and runs every benchmark; each prints its figures and its ratios
# against the reference library measured in the same process. Run on an otherwise idle machine.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/build-release.sh
for benchmark in build/release/bench/bench_*; do
  echo "== ${benchmark##*/}"
  "$benchmark" "$@"
done
