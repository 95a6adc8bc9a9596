#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# Builds the Debian packages from a copy of the source tree, runs lintian on them, installs
# them into this machine, checks that the installed client starts from the installed paths
# (plugins from the installed libdir, the desktop file's Exec, D-Bus activation, validators
# on the installed files), that the installed client has the bus start the installed daemon,
# which registers at a loopback prosody, and purges them again, checking that nothing is
# left behind.
#
# Usage: test-deb-package.sh <source dir> <work dir>
# Needs root (apt-get install/purge). Exits 77 (skipped) when not root or when a tarvik
# package is already installed, which this test must not replace. Either skip prints the
# line that scripts/test.sh counts as a root skip, so CI (root, clean machine) fails on it.
set -euo pipefail
src=$(cd "${1:?source dir}" && pwd)
work=${2:?work dir}
mkdir -p "$work"
work=$(cd "$work" && pwd)

say() { echo "deb-package: $*"; }
fail() {
  echo "deb-package: FAIL: $*" >&2
  exit 1
}
skip() {
  echo "SKIP   : DebPackageTest NEEDS ROOT WITH MOUNT: $*"
  exit 77
}
# Waits for another package operation on the machine instead of failing on its lock.
apt_get() {
  DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=300 -y -qq "$@"
}

[ "$(id -u)" -eq 0 ] || skip "installing packages needs root"
for tool in dpkg-buildpackage dh lintian apt-get desktop-file-validate appstreamcli dbus-daemon \
  dbus-send dbus-update-activation-environment systemd-analyze sqlite3 prosody; do
  command -v "$tool" >/dev/null || fail "$tool is missing (scripts/install-deps.sh installs it)"
done
# A run that was killed half-way leaves its stamp; what it installed is purged first.
stamp=$work/installed-by-test
if [ -e "$stamp" ]; then
  apt_get purge tarvik tarvikd tarvik-simd >/dev/null 2>&1 || true
  rm -f "$stamp"
fi
for p in tarvik tarvikd tarvik-simd; do
  if dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    skip "$p is already installed on this machine; not replacing it"
  fi
done

version=$(dpkg-parsechangelog -l "$src/debian/changelog" -S Version)
arch=$(dpkg-architecture -qDEB_HOST_ARCH)
multiarch=$(dpkg-architecture -qDEB_HOST_MULTIARCH)

# A fixed path for the copy keeps compiler caches warm between runs.
tree=$work/tarvik-$version
rm -rf "$work"/tarvik-* "$work"/tarvik_*
mkdir -p "$tree"
if git -C "$src" rev-parse --is-inside-work-tree >/dev/null 2>&1; then
  git -C "$src" ls-files -z -co --exclude-standard | tar -C "$src" -c --null -T - -f - |
    tar -x -C "$tree"
else
  tar -C "$src" -c --exclude='./build*' --exclude='./obj-*' -f - . | tar -x -C "$tree"
fi

say "building $version"
if command -v ccache >/dev/null; then
  export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi
export DEB_BUILD_OPTIONS="nocheck noddebs parallel=$(nproc)"
start=$(date +%s)
(cd "$tree" && dpkg-buildpackage -us -uc >"$work/build.log" 2>&1) || {
  tail -n 60 "$work/build.log" >&2
  fail "dpkg-buildpackage failed; see $work/build.log"
}
say "built in $(($(date +%s) - start)) s"
changes=$work/tarvik_${version}_${arch}.changes
debs=("$work/tarvik_${version}_${arch}.deb" "$work/tarvik-simd_${version}_${arch}.deb"
  "$work/tarvikd_${version}_${arch}.deb")
for d in "${debs[@]}"; do
  [ -s "$d" ] || fail "not built: $d"
  say "$(basename "$d"): $(stat -c %s "$d") bytes, installed size $(dpkg-deb -f "$d" Installed-Size) KiB"
done

say "lintian"
lintian --fail-on error --display-info "$changes" | tee "$work/lintian.log" ||
  fail "lintian reports errors"

# The client package must carry no test programs and its dependencies must come from
# the linker's view, so check both before installing.
dpkg-deb -c "${debs[0]}" | grep -E 'bin/tarvik-(simd|fakes|bench|gallery)|/tst_' &&
  fail "the client package carries development programs"
dpkg-deb -f "${debs[0]}" Depends | grep -q 'libqt6widgets6' ||
  fail "Depends misses the Qt libraries the client links: $(dpkg-deb -f "${debs[0]}" Depends)"

cleanup() {
  if dpkg-query -W -f='${Status}' tarvik 2>/dev/null | grep -q installed ||
    dpkg-query -W -f='${Status}' tarvik-simd 2>/dev/null | grep -q installed ||
    dpkg-query -W -f='${Status}' tarvikd 2>/dev/null | grep -q installed; then
    apt_get purge tarvik tarvikd tarvik-simd >/dev/null 2>&1 &&
      rm -f "$stamp"
  fi
  for p in "${pids[@]}"; do kill "$p" 2>/dev/null || true; done
  rm -rf "${scratch:-/nonexistent}"
}
pids=()
trap cleanup EXIT

say "installing"
touch "$stamp"
apt_get install --no-install-recommends "${debs[@]}" \
  >"$work/install.log" 2>&1 || {
  cat "$work/install.log" >&2
  fail "apt-get install failed"
}
dpkg -L tarvik tarvikd tarvik-simd | sort -u >"$work/installed-files.txt"

id=com.qel.tarvik
plugindir=/usr/lib/$multiarch/tarvik
for f in /usr/bin/tarvik /usr/bin/tarvik-simd "$plugindir/libtarvikcontacts.so" "$plugindir/tarvik-addressbook" \
  /usr/share/applications/$id.desktop /usr/share/metainfo/$id.metainfo.xml \
  /usr/share/dbus-1/services/$id.service /usr/share/icons/hicolor/scalable/apps/$id.svg \
  /usr/share/man/man1/tarvik.1.gz /usr/share/man/man1/tarvik-simd.1.gz \
  /usr/share/doc/tarvik/copyright /usr/bin/tarvikd /usr/share/man/man1/tarvikd.1.gz \
  /usr/share/dbus-1/services/com.qel.tarvikdaemon.service /usr/lib/systemd/user/tarvikd.service \
  /etc/xdg/autostart/com.qel.tarvikd.desktop; do
  [ -s "$f" ] || fail "not installed: $f"
done
desktop-file-validate /etc/xdg/autostart/com.qel.tarvikd.desktop || fail "installed autostart entry"
# The installed unit as systemd reads it, its man page included; it reports what it ignores
# without failing, so any output fails.
mkdir -p "$work/verify-run" && chmod 700 "$work/verify-run"
man_check=no
command -v man >/dev/null && man_check=yes
out=$(XDG_RUNTIME_DIR=$work/verify-run systemd-analyze --user verify --man=$man_check \
  /usr/lib/systemd/user/tarvikd.service 2>&1) || fail "systemd-analyze verify: $out"
[ -z "$out" ] || fail "systemd-analyze verify: $out"
desktop-file-validate /usr/share/applications/$id.desktop || fail "installed desktop file"
appstreamcli validate --no-net /usr/share/metainfo/$id.metainfo.xml ||
  fail "installed AppStream metadata"
# Every installed program and plugin finds all its libraries: ${shlibs:Depends} covered them.
for elf in /usr/bin/tarvik /usr/bin/tarvik-simd /usr/bin/tarvikd "$plugindir"/*.so; do
  if ldd "$elf" | grep 'not found'; then fail "$elf misses libraries"; fi
done

scratch=$(mktemp -d)
export HOME=$scratch/home XDG_RUNTIME_DIR=$scratch/run
mkdir -p "$HOME" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
unset TARVIK_PLUGIN_DIR DISPLAY WAYLAND_DISPLAY
export QT_QPA_PLATFORM=offscreen

# A private session bus that looks for services in the standard places, /usr/share included;
# programs it activates inherit this environment.
start_bus() {
  local info
  info=$(dbus-daemon --session --fork --print-address=1 --print-pid=1) || fail "no session bus"
  DBUS_SESSION_BUS_ADDRESS=$(sed -n 1p <<<"$info")
  export DBUS_SESSION_BUS_ADDRESS
  pids+=("$(sed -n 2p <<<"$info")")
}

wait_for() {  # wait_for <file> <pattern> <pid> <seconds>
  local i
  for ((i = 0; i < $4 * 10; i++)); do
    grep -q "$2" "$1" 2>/dev/null && return 0
    kill -0 "$3" 2>/dev/null || return 1
    sleep 0.1
  done
  return 1
}

start_bus
/usr/bin/tarvik-simd --register-at-start --seed-demo --delay 0 >"$scratch/simd.out" \
  2>"$scratch/simd.err" &
pids+=($!)
wait_for "$scratch/simd.out" '^ready$' "$!" 20 || {
  cat "$scratch/simd.err" >&2
  fail "installed tarvik-simd did not come up"
}

# Start the client the way a desktop does: the Exec line, field codes dropped, found on PATH.
exec_line=$(sed -n 's/^Exec=//p' /usr/share/applications/$id.desktop | head -n 1)
read -r -a exec_argv <<<"${exec_line//%[fFuUick]/}"
[ "$(PATH=/usr/local/bin:/usr/bin:/bin command -v "${exec_argv[0]}")" = /usr/bin/tarvik ] ||
  fail "desktop Exec '${exec_line}' does not start /usr/bin/tarvik"
(cd / && PATH=/usr/local/bin:/usr/bin:/bin TARVIK_REPORT_SHOWN=1 exec "${exec_argv[@]}") \
  >"$scratch/tarvik.out" 2>"$scratch/tarvik.err" &
client=$!
pids+=("$client")
wait_for "$scratch/tarvik.out" 'main window shown' "$client" 60 || {
  tail -n 30 "$HOME/.tarvik/tarvik.log" "$scratch/tarvik.err" >&2 || true
  fail "the installed client did not show its main window"
}
# The address book plugin loads in the background right after the window is up.
for _ in $(seq 100); do
  grep -q "$plugindir/libtarvikcontacts.so" "/proc/$client/maps" 2>/dev/null && break
  sleep 0.1
done
grep -q "$plugindir/libtarvikcontacts.so" "/proc/$client/maps" ||
  fail "the client did not load its plugin from $plugindir"
if grep -q 'cannot load the contacts plugin' "$HOME/.tarvik/tarvik.log"; then
  fail "$(grep 'cannot load the contacts plugin' "$HOME/.tarvik/tarvik.log")"
fi
kill -TERM "$client"
wait "$client" || fail "the client did not end cleanly on SIGTERM"
say "client started from the desktop file, plugin loaded from $plugindir"

# D-Bus activation through the installed service file.
dbus-send --session --print-reply --reply-timeout=30000 --dest=$id /com/qel/tarvik \
  org.freedesktop.DBus.Peer.Ping >/dev/null || fail "D-Bus activation of $id failed"
activated=$(dbus-send --session --print-reply --dest=org.freedesktop.DBus /org/freedesktop/DBus \
  org.freedesktop.DBus.GetConnectionUnixProcessID string:$id | awk '/uint32/ {print $2}')
[ "$(readlink "/proc/$activated/exe")" = /usr/bin/tarvik ] ||
  fail "the bus started $(readlink "/proc/$activated/exe") for $id"
kill -TERM "$activated"
for _ in $(seq 100); do
  kill -0 "$activated" 2>/dev/null || break
  sleep 0.1
done
say "D-Bus activation starts /usr/bin/tarvik"

# The installed client on a fresh session bus, no daemon running: its first call has the bus
# start the installed daemon, which registers an account at a loopback prosody.
server=$scratch/prosody
port=$("$src/tools/xmpp/localprosody.sh" start "$server" | tail -n 1) || fail "no loopback prosody"
stop_server() { "$src/tools/xmpp/localprosody.sh" stop "$server" >/dev/null 2>&1 || true; }
start_bus
TARVIK_XMPP_DOMAIN=tarvik.localhost TARVIK_XMPP_SERVER=127.0.0.1:$port \
  TARVIK_XMPP_CA_FILE=$server/ca.pem dbus-update-activation-environment HOME XDG_RUNTIME_DIR \
  TARVIK_XMPP_DOMAIN TARVIK_XMPP_SERVER TARVIK_XMPP_CA_FILE || fail "activation environment"
(cd / && PATH=/usr/local/bin:/usr/bin:/bin TARVIK_REPORT_SHOWN=1 exec /usr/bin/tarvik) \
  >"$scratch/tarvik2.out" 2>"$scratch/tarvik2.err" &
client=$!
pids+=("$client")
wait_for "$scratch/tarvik2.out" 'main window shown' "$client" 60 || {
  stop_server
  fail "the installed client did not come up again"
}
daemon=
for _ in $(seq 100); do
  daemon=$(dbus-send --session --print-reply --dest=org.freedesktop.DBus /org/freedesktop/DBus \
    org.freedesktop.DBus.GetConnectionUnixProcessID string:com.qel.tarvikdaemon 2>/dev/null |
    awk '/uint32/ {print $2}')
  [ -n "$daemon" ] && break
  sleep 0.1
done
[ -n "$daemon" ] && pids+=("$daemon")
[ -n "$daemon" ] && [ "$(readlink "/proc/$daemon/exe")" = /usr/bin/tarvikd ] || {
  stop_server
  fail "the client's start did not have the bus start /usr/bin/tarvikd (owner: ${daemon:-none})"
}
sqlite3 "$HOME/.tarvik/tarvikdb.sqlite" \
  "UPDATE settings SET value='+37255500999' WHERE name='mynumber'" || fail "cannot set the number"
dbus-send --session --type=signal /com/qel/tarvik com.qel.TarvikClient.RegistrationRequest
registered=
for _ in $(seq 300); do
  registered=$(sqlite3 "$HOME/.tarvik/tarvikdb.sqlite" \
    "SELECT value FROM settings WHERE name='regflag'" 2>/dev/null || true)
  [ "$registered" = 1 ] && break
  sleep 0.1
done
stop_server
[ "$registered" = 1 ] || fail "the activated daemon did not register the account"
kill -TERM "$client" "$daemon"
wait "$client" || fail "the client did not end cleanly on SIGTERM"
say "the client's start had the bus start /usr/bin/tarvikd, which registered at a loopback prosody"

say "purging"
apt_get purge tarvik tarvikd tarvik-simd >"$work/purge.log" 2>&1 || {
  cat "$work/purge.log" >&2
  fail "apt-get purge failed"
}
for p in tarvik tarvikd tarvik-simd; do
  state=$(dpkg-query -W -f='${db:Status-Abbrev}' "$p" 2>/dev/null || true)
  case "$state" in
    "" | un* | pn*) ;;
    *) fail "$p is not purged: dpkg state '$state'" ;;
  esac
done
left=()
while read -r f; do
  if [ -f "$f" ] || [ -L "$f" ]; then left+=("$f"); fi
done <"$work/installed-files.txt"
[ -d "$plugindir" ] && left+=("$plugindir")
[ ${#left[@]} -eq 0 ] || fail "left behind after purge: ${left[*]}"
rm -f "$stamp"
say "removed cleanly"
echo "deb-package: all checks passed"
