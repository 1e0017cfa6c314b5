#!/usr/bin/env bash
# Installs what is missing, builds the optimised tree and starts what exists today: the
# command-line twin's self-check of the signal library on this machine.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/build-release.sh
exec build/release/src/cli/wavelume-cli selfcheck
