#!/usr/bin/env bash
# Installs what is missing, builds the optimised tree and starts the desktop application,
# Wavelume. Arguments go to the application: a .project or .state file to open.
set -euo pipefail
cd "$(dirname "$0")/.."
./scripts/build-release.sh
if [[ -z ${DISPLAY:-} && -z ${WAYLAND_DISPLAY:-} ]]; then
  echo "No display found (DISPLAY and WAYLAND_DISPLAY are empty): start Wavelume from a desktop" \
    "session, or try it without one with: xvfb-run -a build/release/src/main/wavelume" >&2
  exit 1
fi
exec build/release/src/main/wavelume "$@"
