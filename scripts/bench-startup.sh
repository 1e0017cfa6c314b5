#!/usr/bin/env bash
# Start-up time of the desktop application: from process start to the first paint of a Custom IQ
# page with its default waveform. Runs the optimised build a few times under Xvfb (or offscreen
# without xvfb-run) and prints each run, the minimum and the median, in milliseconds.
set -euo pipefail
cd "$(dirname "$0")/.."
runs=${RUNS:-7}
app=${WAVELUME_APP:-build/release/src/main/wavelume}
if [[ ! -x $app ]]; then
  ./scripts/build-release.sh
fi

# Each run prints "startup_ms=<n>" and quits after its first paint.
loop="for i in \$(seq $runs); do WAVELUME_STARTUP_PROBE=1 '$app' | sed -n 's/^startup_ms=//p'; done"
if command -v xvfb-run > /dev/null; then
  mapfile -t times < <(xvfb-run -a -s "-screen 0 1600x1000x24" bash -c "$loop")
else
  mapfile -t times < <(QT_QPA_PLATFORM=offscreen bash -c "$loop")
fi
# The first run fills the disk cache; it is shown but not counted.
echo "runs (ms): ${times[*]}"
printf '%s\n' "${times[@]:1}" | grep -v '^$' | sort -n | awk '
  { v[NR] = $1 }
  END {
    if (NR == 0) { print "no measurement"; exit 1 }
    median = (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2
    printf "startup to first painted Custom IQ page: min %d ms, median %d ms (target < 1000 ms)\n", v[1], median
  }'
