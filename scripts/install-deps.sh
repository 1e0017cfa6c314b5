#!/usr/bin/env bash
# Installs the Debian packages that the quick start (scripts/start.sh) and the tests with the
# benchmarks (scripts/test.sh) need; scripts that need more install it themselves (scripts/fuzz.sh:
# clang). Packages may be named as arguments to install them the same way.
# Idempotent: when everything is present it only asks dpkg and returns.
set -euo pipefail

packages=(
  build-essential cmake ninja-build ccache pkg-config
  qtbase5-dev qtbase5-private-dev
  libqt5svg5        # the icons are SVG files
  fonts-dejavu-core # offscreen widget tests lay out text
  libfftw3-dev libpugixml-dev zlib1g-dev libssl-dev
  libgtest-dev libbenchmark-dev libliquid-dev
  xvfb xauth       # xvfb-run: the display that start.sh offers and bench-startup.sh uses
  python3-numpy    # tests/cli/arb_spectrum.py
  python3-scipy    # tests/toolkit: MAT-files written by an independent writer (savemat)
  # The simulator's checks against independent clients (tests/comm/simulator): rpcinfo, and
  # unshare with ip for a private network namespace.
  rpcbind iproute2 util-linux python3-pyvisa python3-pyvisa-py
)
if (($# > 0)); then
  packages=("$@")
fi

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if ((${#missing[@]} == 0)); then
  exit 0
fi

echo "Installing: ${missing[*]}"
SUDO=""
if [[ $(id -u) -ne 0 ]]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
