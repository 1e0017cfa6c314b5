#!/usr/bin/env bash
# Installs every Debian package the build, the tests and the benchmarks need.
# Idempotent: when everything is present it only asks dpkg and returns.
set -euo pipefail

packages=(
  build-essential cmake ninja-build ccache pkg-config
  qtbase5-dev qtbase5-private-dev libqt5svg5-dev
  libfftw3-dev libpugixml-dev zlib1g-dev libssl-dev
  libgtest-dev libgmock-dev libbenchmark-dev libliquid-dev
  xvfb xauth
  clang libomp-dev
  python3-numpy python3-scipy
  rpcbind iproute2 util-linux python3-pyvisa python3-pyvisa-py
  fonts-dejavu-core desktop-file-utils shared-mime-info
)

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
