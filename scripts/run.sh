#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# Builds tarvik and runs it against the daemon simulator, so the client can be tried
# without the real service.
#
# Usage: scripts/run.sh [options] [-- simulator options]
#   --no-build        do not run scripts/build.sh first
#   --headless        use Xvfb even when a display is available
#   --keep            headless only: keep running after the screenshot (until Ctrl-C)
#   --screenshot FILE headless only: where the screenshot goes (default: <build>/screenshot.png)
#   --home DIR        HOME for the client and the simulator (default: <build>/run-home);
#                     the database and the log live in DIR/.tarvik/
#   --fresh           empty DIR/.tarvik first
#   --unregistered    no demo account or demo messages: the client opens on registration,
#                     and the simulator accepts the registration you enter
#   --private-bus     start a private session bus even when one is given
#   -- ...            further options for tarvik-simd (see tarvik-simd --help)
#
# What it does: installs missing packages and builds (scripts/build.sh), then starts
#  - a private D-Bus session bus when DBUS_SESSION_BUS_ADDRESS is empty (or --private-bus),
#  - Xvfb (800x450) when there is no DISPLAY (or --headless),
#  - the simulator tarvik-simd, which before the client starts creates the database and
#    writes a registered demo account (+447700900100, "Demo") and demo messages into
#    empty folders (--register-at-start --seed-demo), so the client opens on the main menu,
#  - the client.
# With a display it runs until the client is closed. Headless it waits until the client
# reports its main window shown, writes the screenshot and stops everything.
# Logs: <build>/run-logs/ (simulator and client output) and DIR/.tarvik/tarvik.log.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${TARVIK_BUILD_DIR:-$root/build}

do_build=1 headless=0 keep=0 fresh=0 unregistered=0 private_bus=0
screenshot=
home=
sim_args=()
while [ $# -gt 0 ]; do
  case "$1" in
    --no-build) do_build=0 ;;
    --headless) headless=1 ;;
    --keep) keep=1 ;;
    --screenshot) screenshot=${2:?--screenshot needs a file}; shift ;;
    --home) home=${2:?--home needs a directory}; shift ;;
    --fresh) fresh=1 ;;
    --unregistered) unregistered=1 ;;
    --private-bus) private_bus=1 ;;
    --) shift; sim_args=("$@"); break ;;
    -h|--help) sed -n '2,/^set -euo/p' "$0" | sed '$d; s/^# \{0,1\}//'; exit 0 ;;
    *) echo "run.sh: unknown option $1 (see --help)" >&2; exit 2 ;;
  esac
  shift
done

say() { echo "run.sh: $*"; }
die() { echo "run.sh: $*" >&2; exit 1; }

if [ "$do_build" = 1 ]; then
  "$root/scripts/build.sh"
fi
client=$build/bin/tarvik
simd=$build/bin/tarvik-simd
[ -x "$simd" ] || die "$simd is missing; the build did not produce the simulator"
[ -x "$client" ] || die "$client is missing; the client is not built yet (app/main), nothing to run"

home=${home:-$build/run-home}
screenshot=${screenshot:-$build/screenshot.png}
logs=$build/run-logs
mkdir -p "$home" "$logs"
home=$(cd "$home" && pwd)
if [ "$fresh" = 1 ]; then
  rm -rf "$home/.tarvik"
fi

pids=()
cleanup() {
  local i
  # Newest first, one at a time: the client says ApplicationClosed while the simulator
  # and the bus are still there to hear it.
  for ((i = ${#pids[@]} - 1; i >= 0; i--)); do
    kill "${pids[$i]}" 2>/dev/null || true
    wait "${pids[$i]}" 2>/dev/null || true
  done
  if [ -n "${bus_pid:-}" ]; then
    kill "$bus_pid" 2>/dev/null || true
  fi
}
trap cleanup EXIT
trap 'exit 130' INT TERM

# Session bus.
if [ -z "${DBUS_SESSION_BUS_ADDRESS:-}" ] || [ "$private_bus" = 1 ]; then
  command -v dbus-daemon >/dev/null || die "dbus-daemon is missing (package dbus-daemon)"
  bus_info=$(dbus-daemon --session --fork --print-address=1 --print-pid=1) ||
    die "could not start a private session bus"
  DBUS_SESSION_BUS_ADDRESS=$(sed -n 1p <<<"$bus_info")
  bus_pid=$(sed -n 2p <<<"$bus_info")
  export DBUS_SESSION_BUS_ADDRESS
  say "private session bus $DBUS_SESSION_BUS_ADDRESS"
fi

# Display.
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  headless=1
fi
if [ "$headless" = 1 ]; then
  command -v Xvfb >/dev/null || die "Xvfb is missing (package xvfb)"
  n=90
  while [ -e "/tmp/.X11-unix/X$n" ] || [ -e "/tmp/.X$n-lock" ]; do n=$((n + 1)); done
  Xvfb ":$n" -screen 0 800x450x24 -nolisten tcp >"$logs/xvfb.log" 2>&1 &
  pids+=($!)
  for _ in $(seq 100); do
    [ -e "/tmp/.X11-unix/X$n" ] && break
    sleep 0.05
  done
  [ -e "/tmp/.X11-unix/X$n" ] || die "Xvfb did not start; see $logs/xvfb.log"
  export DISPLAY=":$n"
  unset WAYLAND_DISPLAY
  export QT_QPA_PLATFORM=xcb
  say "headless: Xvfb on $DISPLAY"
fi

# Simulator, ready before the client so the demo account is in place.
sim_opts=(--seed 5)
if [ "$unregistered" = 0 ]; then
  sim_opts+=(--register-at-start --seed-demo)
fi
HOME=$home "$simd" "${sim_opts[@]}" "${sim_args[@]}" >"$logs/simd.out" 2>"$logs/simd.log" &
sim_pid=$!
pids+=("$sim_pid")
for _ in $(seq 200); do
  grep -q '^ready$' "$logs/simd.out" 2>/dev/null && break
  kill -0 "$sim_pid" 2>/dev/null || break
  sleep 0.05
done
if ! grep -q '^ready$' "$logs/simd.out" 2>/dev/null; then
  cat "$logs/simd.log" >&2
  die "the simulator did not come up; see $logs/simd.log"
fi
say "simulator up (log: $logs/simd.log)"

# Client.
HOME=$home TARVIK_REPORT_SHOWN=1 "$client" >"$logs/tarvik.out" 2>"$logs/tarvik.err" &
client_pid=$!
pids+=("$client_pid")
say "client started (log: $home/.tarvik/tarvik.log)"

if [ "$headless" = 0 ]; then
  say "close the tarvik window to stop"
  wait "$client_pid" || true
  exit 0
fi

for _ in $(seq 600); do
  grep -q 'main window shown' "$logs/tarvik.out" 2>/dev/null && break
  kill -0 "$client_pid" 2>/dev/null || break
  sleep 0.05
done
if ! grep -q 'main window shown' "$logs/tarvik.out" 2>/dev/null; then
  tail -n 20 "$home/.tarvik/tarvik.log" "$logs/tarvik.err" >&2 2>/dev/null || true
  die "the client did not show its main window within 30 s"
fi
sleep 0.7  # let the first frames of the start animation settle
mkdir -p "$(dirname "$screenshot")"
import -display "$DISPLAY" -window root "$screenshot" || die "could not take the screenshot"
say "main window shown; screenshot written to $screenshot"
if [ "$keep" = 1 ]; then
  say "running on $DISPLAY until Ctrl-C"
  wait "$client_pid" || true
fi
