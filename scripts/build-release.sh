#!/usr/bin/env bash
# Installs what is missing and builds the optimised tree in build/release.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/install-deps.sh
mkdir -p build
cmake -S . -B build/release -G Ninja -DCMAKE_BUILD_TYPE=Release > build/release.configure.log 2>&1 ||
  { cat build/release.configure.log; exit 1; }
cmake --build build/release -j "$(nproc)"
