#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# Builds tarvik and runs it on a network of its own: a throwaway XMPP server on loopback,
# the daemon tarvikd, and a friend who answers every tarvik. With --simulator the daemon
# simulator stands in for the network instead.
#
# Usage: scripts/run.sh [options] [-- simulator options]
#   --no-build        do not run scripts/build.sh first
#   --headless        use Xvfb even when a display is available
#   --keep            headless only: keep running after the screenshot (until Ctrl-C)
#   --screenshot FILE headless only: where the screenshot goes (default: <build>/screenshot.png)
#   --home DIR        HOME for the client and the daemon (default: <build>/run-home);
#                     the database and the log live in DIR/.tarvik/
#   --fresh           empty DIR/.tarvik first
#   --unregistered    no demo account: the client opens on registration, and the daemon
#                     registers the number you enter
#   --simulator       the daemon simulator tarvik-simd instead of the network
#   --private-bus     start a private session bus even when one is given
#   -- ...            further options for tarvik-simd (see tarvik-simd --help)
#
# What it does: installs missing packages and builds (scripts/build.sh), then starts
#  - a private D-Bus session bus when DBUS_SESSION_BUS_ADDRESS is empty (or --private-bus),
#  - Xvfb (800x450) when there is no DISPLAY (or --headless),
#  - on the network (the default):
#      a prosody on 127.0.0.1 with a certificate made for this run (tools/xmpp/localprosody.sh,
#      under DIR/.run-prosody/), tarvikd for you, and the friend (tools/xmpp/friend.py,
#      +447700900200, "Friend") who answers each tarvik you send with one of its own.
#      Unless --unregistered, the demo account +447700900100 ("Demo") is registered through
#      the daemon before the client starts, and the friend sends it a welcome.
#  - with --simulator: tarvik-simd, which creates the database and writes a registered demo
#    account and demo messages (--register-at-start --seed-demo) unless --unregistered,
#  - the client.
# With a display it runs until the client is closed. Headless it waits until the client
# reports its main window shown, writes the screenshot and stops everything.
# Logs: <build>/run-logs/ (server, daemon, friend and client output) and DIR/.tarvik/tarvik.log.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${TARVIK_BUILD_DIR:-$root/build}

do_build=1 headless=0 keep=0 fresh=0 unregistered=0 private_bus=0 simulator=0
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
    --simulator) simulator=1 ;;
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
tarvikd=$build/bin/tarvikd
[ -x "$simd" ] || die "$simd is missing; the build did not produce the simulator"
[ -x "$tarvikd" ] || die "$tarvikd is missing; the build did not produce the daemon"
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
  if [ -n "${prosody_dir:-}" ]; then
    "$root/tools/xmpp/localprosody.sh" stop "$prosody_dir" || true
  fi
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

# Waits until the daemon started last prints "ready" on $1.
wait_ready() {
  local out=$1 pid=$2 what=$3 log=$4
  for _ in $(seq 200); do
    grep -q '^ready$' "$out" 2>/dev/null && return 0
    kill -0 "$pid" 2>/dev/null || break
    sleep 0.05
  done
  cat "$log" >&2
  die "$what did not come up; see $log"
}

if [ "$simulator" = 1 ]; then
  # Simulator, ready before the client so the demo account is in place.
  sim_opts=(--seed 5)
  if [ "$unregistered" = 0 ]; then
    sim_opts+=(--register-at-start --seed-demo)
  fi
  HOME=$home "$simd" "${sim_opts[@]}" "${sim_args[@]}" >"$logs/simd.out" 2>"$logs/simd.log" &
  sim_pid=$!
  pids+=("$sim_pid")
  wait_ready "$logs/simd.out" "$sim_pid" "the simulator" "$logs/simd.log"
  say "simulator up (log: $logs/simd.log)"
else
  # The server: made anew for every run, so its accounts are those of this run.
  prosody_dir=$home/.run-prosody
  rm -rf "$prosody_dir"
  port=$("$root/tools/xmpp/localprosody.sh" start "$prosody_dir") ||
    die "prosody did not start; see $prosody_dir/prosody.log"
  export TARVIK_XMPP_DOMAIN=tarvik.localhost TARVIK_XMPP_SERVER=127.0.0.1:$port \
    TARVIK_XMPP_CA_FILE=$prosody_dir/ca.pem
  say "XMPP server on 127.0.0.1:$port for $TARVIK_XMPP_DOMAIN (log: $prosody_dir/prosody.log)"

  friend_number=447700900200
  "$root/tools/xmpp/localprosody.sh" register "$prosody_dir" "$friend_number" friend-password
  /usr/bin/python3 "$root/tools/xmpp/friend.py" --dir "$prosody_dir" \
    --jid "$friend_number@$TARVIK_XMPP_DOMAIN" --password friend-password --nick Friend \
    >"$logs/friend.log" 2>&1 &
  pids+=($!)
  say "the friend +$friend_number answers your tarviks (log: $logs/friend.log)"

  HOME=$home "$tarvikd" >"$logs/tarvikd.out" 2>"$logs/tarvikd.log" &
  daemon_pid=$!
  pids+=("$daemon_pid")
  wait_ready "$logs/tarvikd.out" "$daemon_pid" "tarvikd" "$logs/tarvikd.log"
  say "tarvikd up (log: $logs/tarvikd.log)"

  if [ "$unregistered" = 0 ]; then
    # The demo account, registered the way the registration form does it.
    own=447700900100
    db=$home/.tarvik/tarvikdb.sqlite
    sqlite3 "$db" "UPDATE settings SET value='+$own' WHERE name='mynumber';
                   UPDATE settings SET value='Demo' WHERE name='screenname';
                   UPDATE settings SET value='0' WHERE name='regflag';"
    dbus-send --session --type=signal /com/qel/tarvik com.qel.TarvikClient.RegistrationRequest
    for _ in $(seq 300); do
      [ "$(sqlite3 "$db" "SELECT value FROM settings WHERE name='regflag'")" = 1 ] && break
      sleep 0.1
    done
    [ "$(sqlite3 "$db" "SELECT value FROM settings WHERE name='regflag'")" = 1 ] ||
      die "the demo account was not registered; see $logs/tarvikd.log"
    say "demo account +$own registered"
    /usr/bin/python3 "$root/tools/xmpp/xmppclient.py" send --dir "$prosody_dir" \
      --jid "$friend_number" --password friend-password --to "$own" --id welcome \
      --body "Welcome to tarvik!
Send me a tarvik and I will answer from where I am.
geo:51.500729,-0.124625" >>"$logs/friend.log" 2>&1 ||
      say "the welcome could not be sent (see $logs/friend.log)"
  fi
fi

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
