#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# A throwaway prosody on loopback, for tests, benchmarks and scripts/run.sh: its own
# configuration, certificate and data under DIR, client connections only, TLS required,
# in-band registration open.
#
#   localprosody.sh start DIR [PORT] [DOMAIN]   prints the port; DIR/ca.pem is the certificate
#   localprosody.sh register DIR USER PASSWORD  makes an account from outside
#   localprosody.sh stop DIR                     ends it (SIGTERM) and waits
#   localprosody.sh kill DIR                     SIGKILL, as a crash would
#   localprosody.sh restart DIR                  same port, same data
set -euo pipefail

die() { echo "localprosody.sh: $*" >&2; exit 1; }
command -v prosody >/dev/null || die "prosody is missing (package prosody)"

cmd=${1:-}
dir=${2:-}
[ -n "$cmd" ] && [ -n "$dir" ] || die "usage: $0 start|register|stop|kill|restart DIR ..."

free_port() {
  /usr/bin/python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1",0)); print(s.getsockname()[1])'
}

pid_of() { cat "$dir/pid" 2>/dev/null || true; }

alive() { local pid; pid=$(pid_of); [ -n "$pid" ] && kill -0 "$pid" 2>/dev/null; }

wait_gone() {
  local pid=$1
  for _ in $(seq 100); do
    kill -0 "$pid" 2>/dev/null || return 0
    sleep 0.05
  done
  return 1
}

launch() {
  local port domain
  port=$(cat "$dir/port")
  domain=$(cat "$dir/domain")
  # Detached from the caller's terminal and process group, so a test's end does not take
  # it along by accident and it does not hold the caller's output open.
  setsid prosody -F --config "$dir/prosody.cfg.lua" </dev/null >>"$dir/stdout.log" 2>&1 &
  echo $! >"$dir/pid"
  for _ in $(seq 200); do
    if (exec 3<>"/dev/tcp/127.0.0.1/$port") 2>/dev/null; then
      echo "$port"
      return 0
    fi
    alive || break
    sleep 0.05
  done
  tail -n 20 "$dir/prosody.log" "$dir/stdout.log" >&2 2>/dev/null || true
  die "prosody did not accept connections on 127.0.0.1:$port within 10 s"
}

case "$cmd" in
  start)
    port=${3:-$(free_port)}
    domain=${4:-tarvik.localhost}
    mkdir -p "$dir/data" "$dir/certs"
    dir=$(cd "$dir" && pwd)
    alive && die "a prosody already runs for $dir"
    echo "$port" >"$dir/port"
    echo "$domain" >"$dir/domain"
    if [ ! -s "$dir/certs/$domain.crt" ]; then
      openssl req -x509 -newkey rsa:2048 -nodes -days 30 -subj "/CN=$domain" \
        -addext "subjectAltName=DNS:$domain,IP:127.0.0.1" \
        -keyout "$dir/certs/$domain.key" -out "$dir/certs/$domain.crt" 2>/dev/null ||
        die "openssl could not make a certificate"
      cp "$dir/certs/$domain.crt" "$dir/ca.pem"
    fi
    root_line=""
    [ "$(id -u)" = 0 ] && root_line="run_as_root = true"
    cat >"$dir/prosody.cfg.lua" <<CFG
-- Made by localprosody.sh for one test or demo run.
pidfile = "$dir/prosody.pid"
data_path = "$dir/data"
certificates = "$dir/certs"
log = { info = "$dir/prosody.log" }
daemonize = false
$root_line
c2s_ports = { $port }
c2s_interfaces = { "127.0.0.1" }
s2s_ports = {}
http_ports = {}
https_ports = {}
modules_disabled = { "s2s" }
modules_enabled = { "roster", "saslauth", "tls", "disco", "ping", "register", "offline",
  "smacks", "posix" }
c2s_require_encryption = true
allow_registration = true
min_seconds_between_registrations = 0
-- Tests register many accounts from one address in a second.
registration_throttle_max = 1000000
VirtualHost "$domain"
  ssl = { key = "$dir/certs/$domain.key", certificate = "$dir/certs/$domain.crt" }
CFG
    launch
    ;;
  register)
    [ $# -eq 4 ] || die "usage: $0 register DIR USER PASSWORD"
    prosodyctl --config "$dir/prosody.cfg.lua" register "$3" "$(cat "$dir/domain")" "$4" \
      >/dev/null 2>>"$dir/stdout.log" || die "prosodyctl could not make $3"
    ;;
  stop | kill)
    pid=$(pid_of)
    [ -n "$pid" ] || exit 0
    if [ "$cmd" = kill ]; then
      kill -KILL "$pid" 2>/dev/null || true
    else
      kill -CONT "$pid" 2>/dev/null || true
      kill -TERM "$pid" 2>/dev/null || true
    fi
    wait_gone "$pid" || { kill -KILL "$pid" 2>/dev/null || true; wait_gone "$pid" || true; }
    rm -f "$dir/pid"
    ;;
  restart)
    "$0" stop "$dir"
    launch >/dev/null
    ;;
  *) die "unknown command $cmd" ;;
esac
