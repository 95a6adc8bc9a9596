#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# Cold-start benchmark of the client: from its exec to the first frame of its window on the
# X server, for a registered account with an existing database and no map, next to a bare
# Qt Widgets program that shows an empty 800x450 window. Both run alternately under Xvfb
# in the same session; the medians and their ratio are printed (target: the client within
# 1.25x of the bare program), then the resident memory of each, idle with the window shown
# (the client's after its address book has loaded; target: within 1.5x of the bare one).
#
# Usage: bench/startup/run-startup-bench.sh [-n runs] [build dir]
#   runs defaults to 9; the build dir to $TARVIK_BUILD_DIR or ./build.
#
# The time is taken from outside the programs, as a person would see it: an X client
# (tarvik-bench-firstframe) starts the program and waits for the first drawing into its
# mapped top-level window, through the X DAMAGE extension; it then ends the program.
# Each program runs once untimed first, so the page cache is warm for both alike.
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
runs=9
while getopts "n:h" opt; do
  case "$opt" in
    n) runs=$OPTARG ;;
    *) sed -n '2,/^set -euo/p' "$0" | sed '$d; s/^# \{0,1\}//'; exit 2 ;;
  esac
done
shift $((OPTIND - 1))
build=${1:-${TARVIK_BUILD_DIR:-$root/build}}

die() { echo "run-startup-bench: $*" >&2; exit 1; }

if [ ! -f "$build/CMakeCache.txt" ]; then
  TARVIK_BUILD_DIR=$build "$root/scripts/build.sh"
fi
targets=(tarvik tarvikcontacts tarvik-bench-bare tarvik-bench-firstframe tarvik-simd)
cmake --build "$build" --target "${targets[@]}" >/dev/null ||
  die "could not build ${targets[*]} in $build"
client=$build/bin/tarvik
bare=$build/bin/tarvik-bench-bare
observer=$build/bin/tarvik-bench-firstframe
simd=$build/bin/tarvik-simd

work=$(mktemp -d)
home=$work/home
mkdir -p "$home"
pids=()
cleanup() {
  local p
  for p in "${pids[@]}"; do kill "$p" 2>/dev/null || true; done
  for p in "${pids[@]}"; do wait "$p" 2>/dev/null || true; done
  [ -n "${bus_pid:-}" ] && kill "$bus_pid" 2>/dev/null
  rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

# A private session bus and display, so nothing else on the machine takes part.
bus_info=$(dbus-daemon --session --fork --print-address=1 --print-pid=1) ||
  die "could not start a session bus"
export DBUS_SESSION_BUS_ADDRESS=$(sed -n 1p <<<"$bus_info")
bus_pid=$(sed -n 2p <<<"$bus_info")
n=80
while [ -e "/tmp/.X11-unix/X$n" ] || [ -e "/tmp/.X$n-lock" ]; do n=$((n + 1)); done
Xvfb ":$n" -screen 0 800x450x24 -nolisten tcp >"$work/xvfb.log" 2>&1 &
pids+=($!)
for _ in $(seq 100); do [ -e "/tmp/.X11-unix/X$n" ] && break; sleep 0.05; done
[ -e "/tmp/.X11-unix/X$n" ] || die "Xvfb did not start"
export DISPLAY=":$n" QT_QPA_PLATFORM=xcb
unset WAYLAND_DISPLAY
export XDG_RUNTIME_DIR=$work/runtime
mkdir -m 700 "$XDG_RUNTIME_DIR"

# The daemon simulator writes a registered account into a new database and stays up
# idle, as the real daemon would.
HOME=$home "$simd" --register-at-start --seed-demo >"$work/simd.out" 2>"$work/simd.log" &
pids+=($!)
for _ in $(seq 200); do grep -q '^ready$' "$work/simd.out" && break; sleep 0.05; done
grep -q '^ready$' "$work/simd.out" || die "the simulator did not start: $(cat "$work/simd.log")"

# One timed start: prints milliseconds to the first frame and to the end of the process.
run_once() {
  local prog=$1 out=$work/run.out frame end
  HOME=$home "$observer" -t 30 -- "$prog" >"$out" 2>>"$work/programs.err" ||
    die "$prog showed no frame; see $work/programs.err"
  frame=$(sed -n 's/^frame //p' "$out")
  end=$(sed -n 's/^exit //p' "$out")
  echo "$frame $end"
}

median() { sort -n | awk '{ v[NR] = $1 } END { if (NR % 2) print v[(NR + 1) / 2]; else printf "%.1f\n", (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }

run_once "$bare" >/dev/null
run_once "$client" >/dev/null
grep -q "^regflag|1$" < <(sqlite3 "$home/.tarvik/tarvikdb.sqlite" "select name, value from settings" 2>/dev/null) ||
  echo "run-startup-bench: warning: the account is not registered; the client shows registration"

: >"$work/bare.txt"
: >"$work/client.txt"
for ((i = 1; i <= runs; i++)); do
  run_once "$bare" >>"$work/bare.txt"
  run_once "$client" >>"$work/client.txt"
done

bare_shown=$(cut -d' ' -f1 "$work/bare.txt" | median)
bare_exit=$(cut -d' ' -f2 "$work/bare.txt" | median)
client_shown=$(cut -d' ' -f1 "$work/client.txt" | median)
client_exit=$(cut -d' ' -f2 "$work/client.txt" | median)
ratio=$(awk -v c="$client_shown" -v b="$bare_shown" 'BEGIN { printf "%.2f", c / b }')
# On a busy machine single runs stray far: the fastest runs and the run-by-run ratios are
# shown beside the medians.
bare_min=$(cut -d' ' -f1 "$work/bare.txt" | sort -n | head -1)
client_min=$(cut -d' ' -f1 "$work/client.txt" | sort -n | head -1)
pair_ratio=$(paste -d' ' "$work/client.txt" "$work/bare.txt" | awk '{ printf "%.4f\n", $1 / $3 }' | median)
verdict=$(awk -v r="$ratio" 'BEGIN { print (r <= 1.25) ? "met" : "NOT met" }')

# Resident memory of the program and every process it started, 2 s after its first frame;
# the client's once its address book plugin is in (it loads after the first frame).
idle_memory() {
  local out=$work/idle.out
  HOME=$home "$observer" -t 30 -m 2 "$@" >"$out" 2>>"$work/programs.err" ||
    die "no idle memory figure for $*; see $work/programs.err"
  awk '/^resident / { r = $2 } /^proportional / { p = $2 } END { printf "%.1f %.1f", r / 1024, p / 1024 }' "$out"
}
read -r bare_mem bare_pss <<<"$(idle_memory -- "$bare")"
read -r client_mem client_pss <<<"$(idle_memory -l libtarvikcontacts -- "$client")"
mem_ratio=$(awk -v c="$client_mem" -v b="$bare_mem" 'BEGIN { printf "%.2f", c / b }')
mem_verdict=$(awk -v r="$mem_ratio" 'BEGIN { print (r <= 1.5) ? "met" : "NOT met" }')

echo "Start-up to the first frame of the window on the X server, median of $runs runs under Xvfb ($(nproc) CPUs, load $(cut -d' ' -f1-3 /proc/loadavg)):"
printf '  bare Qt Widgets 800x450 window: %8.1f ms  (process end %.1f ms)\n' "$bare_shown" "$bare_exit"
printf '  tarvik, registered, no map:     %8.1f ms  (process end %.1f ms)\n' "$client_shown" "$client_exit"
echo "  ratio tarvik / bare: ${ratio}x  (target within 1.25x: $verdict)"
printf '  fastest runs: bare %.1f ms, tarvik %.1f ms (%.2fx); median of run-by-run ratios %.2fx\n' \
  "$bare_min" "$client_min" "$(awk -v c="$client_min" -v b="$bare_min" 'BEGIN { print c / b }')" "$pair_ratio"
echo "Idle resident memory, window shown (program and the processes it started):"
printf '  bare:                           %8.1f MB  (proportional %.1f MB)\n' "$bare_mem" "$bare_pss"
printf '  tarvik, address book loaded:    %8.1f MB  (proportional %.1f MB)\n' "$client_mem" "$client_pss"
echo "  ratio tarvik / bare: ${mem_ratio}x  (target within 1.5x: $mem_verdict)"
echo "All runs (ms to first frame, ms to end):"
paste -d' ' <(sed 's/^/  bare /' "$work/bare.txt") <(sed 's/^/| tarvik /' "$work/client.txt")
