#!/usr/bin/env bash
# Installs what is missing, builds the optimised tree and starts what exists today: the
# command-line twin's self-check of the signal library on this machine.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/install-deps.sh
mkdir -p build
cmake -S . -B build/release -G Ninja -DCMAKE_BUILD_TYPE=Release > build/release.configure.log 2>&1 ||
  { cat build/release.configure.log; exit 1; }
cmake --build build/release -j "$(nproc)"
exec build/release/src/cli/wavelume-cli selfcheck
