#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# Cold-start benchmark of the client: from process start to the main window shown, for a
# registered account with an existing database and no map, measured as a whole process
# under Xvfb next to a bare Qt Widgets program that shows an empty 800x450 window. Both
# run alternately in the same session; the medians and their ratio are printed (target:
# the client within 1.5x of the bare program), then the resident memory of the idle client.
#
# Usage: bench/startup/run-startup-bench.sh [-n runs] [build dir]
#   runs defaults to 9; the build dir to $TARVIK_BUILD_DIR or ./build.
#
# "Shown" is reported by the programs themselves (TARVIK_EXIT_WHEN_SHOWN=1: they print the
# wall-clock time once their first top-level window is exposed and painted, then quit).
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
cmake --build "$build" --target tarvik tarvik-bench-bare tarvik-simd >/dev/null ||
  die "could not build tarvik, tarvik-bench-bare and tarvik-simd in $build"
client=$build/bin/tarvik
bare=$build/bin/tarvik-bench-bare
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

# One timed start: prints milliseconds to shown and to exit.
run_once() {
  local prog=$1 out=$work/run.out t0 t1 shown pid watchdog
  : >"$out"
  t0=$EPOCHREALTIME
  HOME=$home TARVIK_EXIT_WHEN_SHOWN=1 "$prog" >"$out" 2>>"$work/programs.err" &
  pid=$!
  (sleep 30 && kill "$pid" 2>/dev/null) &
  watchdog=$!
  wait "$pid" || true
  t1=$EPOCHREALTIME
  kill "$watchdog" 2>/dev/null || true
  wait "$watchdog" 2>/dev/null || true
  shown=$(sed -n 's/^tarvik: main window shown at //p' "$out")
  [ -n "$shown" ] || die "$prog did not report its window shown; see $work/programs.err"
  awk -v a="$t0" -v s="$shown" -v b="$t1" 'BEGIN { printf "%.1f %.1f\n", (s - a) * 1000, (b - a) * 1000 }'
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
verdict=$(awk -v r="$ratio" 'BEGIN { print (r <= 1.5) ? "met" : "NOT met" }')

# Resident memory once the window is up and the program sits idle.
idle_memory() {
  local prog=$1 out=$work/idle.out pid kb pss
  : >"$out"
  HOME=$home TARVIK_REPORT_SHOWN=1 "$prog" >"$out" 2>>"$work/programs.err" &
  pid=$!
  for _ in $(seq 600); do grep -q 'main window shown' "$out" && break; sleep 0.05; done
  sleep 2
  kb=$(awk '/^VmRSS:/ { print $2 }' "/proc/$pid/status" 2>/dev/null || echo 0)
  pss=$(awk '/^Pss:/ { print $2 }' "/proc/$pid/smaps_rollup" 2>/dev/null || echo 0)
  kill "$pid" 2>/dev/null || true
  wait "$pid" 2>/dev/null || true
  awk -v r="$kb" -v p="$pss" 'BEGIN { printf "%.1f MB resident (%.1f MB proportional)", r / 1024, p / 1024 }'
}
bare_mem=$(idle_memory "$bare")
client_mem=$(idle_memory "$client")

echo "Start-up to main window shown, median of $runs runs under Xvfb ($(nproc) CPUs):"
printf '  bare Qt Widgets 800x450 window: %8.1f ms  (process end %.1f ms)\n' "$bare_shown" "$bare_exit"
printf '  tarvik, registered, no map:     %8.1f ms  (process end %.1f ms)\n' "$client_shown" "$client_exit"
echo "  ratio tarvik / bare: ${ratio}x  (target within 1.5x: $verdict)"
echo "Idle memory after the window is shown:"
echo "  bare:   $bare_mem"
echo "  tarvik: $client_mem"
echo "All runs (ms to shown, ms to end):"
paste -d' ' <(sed 's/^/  bare /' "$work/bare.txt") <(sed 's/^/| tarvik /' "$work/client.txt")
