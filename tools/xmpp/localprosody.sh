#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# A throwaway prosody on loopback for tarvikd's tests, the benchmark and the demo.
#
# Usage: tools/xmpp/localprosody.sh COMMAND DIR [ARGS]
#   start DIR [PORT] [DOMAIN]     create DIR (config, data, certificate) when needed, start
#                                 prosody in the background and print the c2s port.
#                                 PORT: 0 or empty picks a free one; DOMAIN defaults to
#                                 tarvik.localhost. Writes DIR/port, DIR/pid, DIR/domain,
#                                 DIR/ca.pem (the self-signed certificate clients trust).
#   register DIR USER PASSWORD    create (or re-password) the account USER@DOMAIN
#   stop DIR                      SIGTERM, wait for the exit (SIGKILL after 10 s)
#   kill DIR                      SIGKILL, for fault tests (data stays as it was)
#   restart DIR                   stop if running, start again with the same port,
#                                 domain, certificate and data
#   status DIR                    exit 0 when running (prints the port), 1 when not
#
# Environment: LOCALPROSODY_LOGLEVEL (default info; debug logs every stanza).
#   LOCALPROSODY_SMACKS_HIBERNATION: seconds a stream-management session whose client
#   vanished is kept for resumption (prosody's default 600). Messages to the account
#   go into that session meanwhile, not to offline storage: a client that logs in
#   again without resuming gets them only after this time.
# Everything prosody says goes to DIR/prosody.log, nothing to the terminal.
# Several instances can run at once in different DIRs. Works as root (run_as_root)
# and as a normal user.
set -euo pipefail

die() {
  echo "localprosody: $*" >&2
  exit 1
}

usage() {
  sed -n '/^# Usage/,/^set -euo/p' "$0" | sed '$d; s/^# \{0,1\}//' >&2
  exit 2
}

# Whether process PID exists and is not a zombie.
running() {
  local state
  state=$(sed 's/^.*) //' "/proc/$1/stat" 2>/dev/null | cut -d' ' -f1) || return 1
  [ -n "$state" ] && [ "$state" != Z ]
}

# The pid in DIR/pid when that process is alive and is our prosody (guards against a
# reused pid). A zombie counts as gone: the parent of a detached prosody is whoever
# adopted it, and that may never reap it.
live_pid() {
  local dir=$1 pid state
  [ -f "$dir/pid" ] || return 1
  pid=$(cat "$dir/pid")
  [[ $pid =~ ^[0-9]+$ ]] || return 1
  [ -r "/proc/$pid/stat" ] || return 1
  state=$(sed 's/^.*) //' "/proc/$pid/stat" 2>/dev/null | cut -d' ' -f1) || return 1
  [ "$state" != Z ] || return 1
  tr '\0' ' ' <"/proc/$pid/cmdline" 2>/dev/null | grep -qF -- "$dir/prosody.cfg.lua" || return 1
  echo "$pid"
}

wait_gone() {
  local dir=$1 tenths=$2 i
  for ((i = 0; i < tenths; i++)); do
    live_pid "$dir" >/dev/null || return 0
    sleep 0.1
  done
  return 1
}

# A free port below the kernel's ephemeral range: a client that connects while the server
# is down could otherwise be given the server's own port as its source and connect to itself
# (TCP self-connect), holding the port so that the server cannot come back.
free_port() {
  /usr/bin/python3 -c 'import random, socket
low = int(open("/proc/sys/net/ipv4/ip_local_port_range").read().split()[0])
for port in random.sample(range(10000, low), 200):
    s = socket.socket()
    try:
        s.bind(("127.0.0.1", port))
    except OSError:
        continue
    finally:
        s.close()
    print(port)
    break'
}

make_cert() {
  local dir=$1 domain=$2
  [ -s "$dir/certs/$domain.crt" ] && [ -s "$dir/certs/$domain.key" ] && return 0
  # CA:TRUE (openssl's v3_ca default) lets clients use the certificate itself as the
  # trust anchor; the SAN carries both the domain and 127.0.0.1 because clients
  # connect to the address but verify the domain.
  openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 3650 \
    -subj "/CN=$domain" \
    -addext "subjectAltName=DNS:$domain,IP:127.0.0.1" \
    -addext "keyUsage=critical,digitalSignature,keyCertSign" \
    -addext "extendedKeyUsage=serverAuth" \
    -keyout "$dir/certs/$domain.key" -out "$dir/certs/$domain.crt" >/dev/null 2>&1 ||
    die "openssl could not make a certificate for $domain"
  chmod 600 "$dir/certs/$domain.key"
}

write_config() {
  local dir=$1 port=$2 domain=$3 as_root=false
  [ "$(id -u)" = 0 ] && as_root=true
  cat >"$dir/prosody.cfg.lua" <<EOF
-- Written by localprosody.sh; rewritten on every start.
run_as_root = $as_root
pidfile = "$dir/prosody.pid"
data_path = "$dir/data"
certificates = "$dir/certs"
log = { { levels = { min = "${LOCALPROSODY_LOGLEVEL:-info}" }, to = "file", filename = "$dir/prosody.log" } }

c2s_ports = { $port }
c2s_interfaces = { "127.0.0.1" }
s2s_ports = {}
s2s_interfaces = {}
http_ports = {}
https_ports = {}
c2s_direct_tls_ports = {}
modules_disabled = { "s2s" }
modules_enabled = {
  "roster"; "saslauth"; "tls"; "disco"; "ping"; "register"; "offline"; "smacks"; "posix";
  "csi_simple";
}
c2s_require_encryption = true
authentication = "internal_hashed"
storage = "internal"
-- prosody 0.12 leaves Nagle on: a client that waits for each answer (send, then ping)
-- then stalls ~40 ms per round trip against the peer's delayed ACK, even on loopback.
network_settings = { nagle = false }
smacks_hibernation_time = ${LOCALPROSODY_SMACKS_HIBERNATION:-600}

-- In-band registration for tarvikd's own account creation, as often as the tests like.
-- Checked on 0.12.3: mod_register_limits throttles only addresses outside
-- registration_allowlist, which holds 127.0.0.1 and ::1 by default (spelt out here so
-- that stays true); min_seconds_between_registrations = 0 turns that throttle into
-- 1 per 0 s, an infinite rate that turns NaN (refusing everything after) should two
-- requests ever fall in the same clock tick, so the throttle is set to a rate that
-- never bites instead. 50 registrations from 127.0.0.1 took 0.24 s, none refused.
-- Stanzas up to 256 KiB are accepted after login (c2s_stanza_size_limit default).
allow_registration = true
min_seconds_between_registrations = 0
registration_allowlist = { "127.0.0.1", "::1" }
registration_throttle_max = 1000000
registration_throttle_period = 1

VirtualHost "$domain"
  ssl = { key = "$dir/certs/$domain.key", certificate = "$dir/certs/$domain.crt" }
EOF
}

# prosody's output without its multi-line notice about the missing lua-unbound
# (harmless: it falls back to its own DNS resolver), empty lines and frames.
without_notice() {
  awk '/unable to find lua-unbound/ { skip = 1 } skip && /doc\/depends/ { skip = 0; next }
       !skip && NF && !/^\*+$/'
}

# The last lines this run wrote to the log.
log_tail() {
  tail -n +"$(($2 + 1))" "$1/prosody.log" | without_notice | tail -n 20 >&2
}

cmd_start() {
  local dir=$1 port=${2:-} domain=${3:-} pid i
  [ -n "$domain" ] || domain=tarvik.localhost
  [[ $domain =~ ^[A-Za-z0-9.-]+$ ]] || die "bad domain: $domain"
  [[ ${LOCALPROSODY_LOGLEVEL:-info} =~ ^(debug|info|warn|error)$ ]] || die "bad LOCALPROSODY_LOGLEVEL"
  [[ ${LOCALPROSODY_SMACKS_HIBERNATION:-600} =~ ^[0-9]+$ ]] || die "bad LOCALPROSODY_SMACKS_HIBERNATION"
  mkdir -p "$dir"
  dir=$(cd "$dir" && pwd)
  if pid=$(live_pid "$dir"); then
    die "already running in $dir (pid $pid, port $(cat "$dir/port"))"
  fi
  if [ -z "$port" ] || [ "$port" = 0 ]; then
    port=$(free_port)
  fi
  if ! [[ $port =~ ^[0-9]+$ ]] || [ "$port" -lt 1 ] || [ "$port" -gt 65535 ]; then
    die "bad port: $port"
  fi
  (exec 3<>"/dev/tcp/127.0.0.1/$port") 2>/dev/null && die "port $port is already in use"

  mkdir -p "$dir/data" "$dir/certs"
  make_cert "$dir" "$domain"
  cp "$dir/certs/$domain.crt" "$dir/ca.pem"
  write_config "$dir" "$port" "$domain"
  echo "$port" >"$dir/port"
  echo "$domain" >"$dir/domain"
  rm -f "$dir/pid"

  # Mark where this run's log starts, so the checks below only read this run.
  local mark
  touch "$dir/prosody.log"
  mark=$(wc -l <"$dir/prosody.log")
  # setsid: a session of its own, so the terminal's signals and hang-up do not reach it.
  # A background child is not a process-group leader, so setsid execs in place and $!
  # is prosody itself. prosody's own console output (e.g. the lua-unbound notice) goes
  # to the log too.
  setsid prosody -F --config "$dir/prosody.cfg.lua" </dev/null >>"$dir/prosody.log" 2>&1 &
  pid=$!
  disown "$pid"
  echo "$pid" >"$dir/pid"

  # Up to 30 s: a loaded machine (two test suites at once) starts prosody slowly.
  for ((i = 0; i < 300; i++)); do
    # Our own child, so its pid cannot have been reused; but until setsid has exec'd,
    # its command line is still this script's: only its end (gone, or a zombie) counts.
    if ! running "$pid"; then
      echo "localprosody: prosody exited during start-up; log:" >&2
      log_tail "$dir" "$mark"
      rm -f "$dir/pid"
      exit 1
    fi
    # prosody keeps running when it cannot bind the port; it logs that instead.
    if tail -n +"$((mark + 1))" "$dir/prosody.log" | grep -q "Failed to open server port"; then
      echo "localprosody: prosody could not listen on port $port; log:" >&2
      log_tail "$dir" "$mark"
      cmd_kill "$dir"
      exit 1
    fi
    if (exec 3<>"/dev/tcp/127.0.0.1/$port") 2>/dev/null; then
      echo "$port"
      return 0
    fi
    sleep 0.1
  done
  echo "localprosody: port $port not open after 30 s; log:" >&2
  log_tail "$dir" "$mark"
  cmd_kill "$dir"
  exit 1
}

existing_dir() {
  [ -f "$1/prosody.cfg.lua" ] || die "no localprosody in $1 (run start first)"
  cd "$1" && pwd
}

cmd_stop() {
  local dir pid
  dir=$(existing_dir "$1")
  if pid=$(live_pid "$dir"); then
    kill -TERM "$pid" 2>/dev/null || true
    if ! wait_gone "$dir" 100; then
      echo "localprosody: prosody (pid $pid) still running 10 s after SIGTERM; killing it" >&2
      kill -KILL "$pid" 2>/dev/null || true
      wait_gone "$dir" 50 || die "pid $pid does not go away"
    fi
  fi
  rm -f "$dir/pid"
}

cmd_kill() {
  local dir pid
  dir=$(existing_dir "$1")
  if pid=$(live_pid "$dir"); then
    kill -KILL "$pid" 2>/dev/null || true
    wait_gone "$dir" 50 || die "pid $pid does not go away after SIGKILL"
  fi
  rm -f "$dir/pid"
}

cmd_restart() {
  local dir
  dir=$(existing_dir "$1")
  cmd_stop "$dir"
  cmd_start "$dir" "$(cat "$dir/port")" "$(cat "$dir/domain")"
}

cmd_register() {
  local dir user password out
  dir=$(existing_dir "$1")
  user=$2 password=$3
  # prosodyctl writes the account straight into the data store, running server or not.
  if ! out=$(prosodyctl --config "$dir/prosody.cfg.lua" register "$user" "$(cat "$dir/domain")" "$password" 2>&1); then
    echo "localprosody: prosodyctl register failed:" >&2
    echo "$out" | without_notice >&2
    exit 1
  fi
}

cmd_status() {
  local dir pid
  dir=$(existing_dir "$1")
  pid=$(live_pid "$dir") || exit 1
  cat "$dir/port"
}

[ $# -ge 2 ] || usage
command=$1
shift
case "$command" in
  start) [ $# -le 3 ] || usage; cmd_start "$@" ;;
  register) [ $# -eq 3 ] || usage; cmd_register "$@" ;;
  stop) [ $# -eq 1 ] || usage; cmd_stop "$1" ;;
  kill) [ $# -eq 1 ] || usage; cmd_kill "$1" ;;
  restart) [ $# -eq 1 ] || usage; cmd_restart "$1" ;;
  status) [ $# -eq 1 ] || usage; cmd_status "$1" ;;
  *) usage ;;
esac
