#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# Validates the desktop integration files and checks that `cmake --install` puts them
# where desktops look for them, with names that refer to each other correctly.
# Usage: validate-dist.sh <dist source dir> <build dir>
set -euo pipefail
src=$1
build=$2
id=com.qel.tarvik
fail() { echo "validate-dist: $*" >&2; exit 1; }

command -v desktop-file-validate >/dev/null || fail "desktop-file-validate missing (desktop-file-utils)"
command -v appstreamcli >/dev/null || fail "appstreamcli missing (appstream)"
command -v systemd-analyze >/dev/null || fail "systemd-analyze missing (systemd)"

# desktop-file-validate prints hints but fails only on errors; take hints as failures too.
out=$(desktop-file-validate "$src/$id.desktop" 2>&1) || fail "desktop file: $out"
[ -z "$out" ] || fail "desktop file: $out"
appstreamcli validate --no-net "$src/$id.metainfo.xml" || fail "metainfo does not validate"

prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build" --component desktop --prefix "$prefix" >/dev/null
share=$prefix/share
for f in applications/$id.desktop metainfo/$id.metainfo.xml dbus-1/services/$id.service \
         icons/hicolor/scalable/apps/$id.svg; do
  [ -s "$share/$f" ] || fail "not installed: share/$f"
done

# The installed copies must still validate and agree with each other.
desktop-file-validate "$share/applications/$id.desktop" || fail "installed desktop file"
appstreamcli validate --no-net "$share/metainfo/$id.metainfo.xml" >/dev/null ||
  fail "installed metainfo"
grep -qx "Icon=$id" "$share/applications/$id.desktop" || fail "desktop Icon is not $id"
grep -q "<launchable type=\"desktop-id\">$id.desktop</launchable>" "$share/metainfo/$id.metainfo.xml" ||
  fail "metainfo launchable does not name $id.desktop"
grep -qx '\[D-BUS Service\]' "$share/dbus-1/services/$id.service" || fail "service group missing"
grep -qx "Name=$id" "$share/dbus-1/services/$id.service" || fail "service Name is not $id"
exec_line=$(sed -n 's/^Exec=//p' "$share/dbus-1/services/$id.service")
case "$exec_line" in
  /*/bin/tarvik) ;;
  *) fail "service Exec is not an absolute path to the client: $exec_line" ;;
esac
# The icon must be an SVG with a square view box that renders.
grep -q 'viewBox="0 0 256 256"' "$share/icons/hicolor/scalable/apps/$id.svg" || fail "icon view box"
if command -v rsvg-convert >/dev/null; then
  rsvg-convert -w 32 -h 32 "$share/icons/hicolor/scalable/apps/$id.svg" -o "$prefix/icon.png" ||
    fail "icon does not render"
fi

# The daemon's service files: installed where the bus, the systemd user manager and the
# session's autostart look, each starting the installed daemon.
cmake --install "$build" --component daemon --prefix "$prefix" >/dev/null
daemon_id=com.qel.tarvikdaemon
bus_file=$share/dbus-1/services/$daemon_id.service
unit=$prefix/lib/systemd/user/tarvikd.service
autostart=$(find "$prefix" -path '*/xdg/autostart/com.qel.tarvikd.desktop')
for f in "$bus_file" "$unit" "$autostart"; do
  [ -s "$f" ] || fail "not installed: ${f#"$prefix"/}"
done
grep -qx "Name=$daemon_id" "$bus_file" || fail "daemon service Name is not $daemon_id"
grep -qx "SystemdService=tarvikd.service" "$bus_file" || fail "daemon service names no unit"
daemon_exec=$(sed -n 's/^Exec=//p' "$bus_file")
case "$daemon_exec" in
  /*/bin/tarvikd) ;;
  *) fail "daemon service Exec is not an absolute path to tarvikd: $daemon_exec" ;;
esac
grep -qx "ExecStart=$daemon_exec" "$unit" || fail "the unit starts another program than the bus"
grep -qx "BusName=$daemon_id" "$unit" || fail "the unit's BusName is not $daemon_id"
out=$(desktop-file-validate "$autostart" 2>&1) || fail "autostart entry: $out"
[ -z "$out" ] || fail "autostart entry: $out"
grep -qx "Exec=tarvikd" "$autostart" || fail "autostart Exec is not tarvikd"
# systemd's own check of the unit. It wants the program to exist, so a copy of the unit
# points at the daemon installed into the scratch prefix; it reports what it ignores
# without failing, so any output fails.
[ -x "$prefix/bin/tarvikd" ] || fail "not installed: bin/tarvikd"
mkdir -p "$prefix/verify" "$prefix/run"
chmod 700 "$prefix/run"
sed "s|^ExecStart=.*|ExecStart=$prefix/bin/tarvikd|" "$unit" >"$prefix/verify/tarvikd.service"
out=$(XDG_RUNTIME_DIR=$prefix/run systemd-analyze --user verify --man=no \
  "$prefix/verify/tarvikd.service" 2>&1) || fail "systemd-analyze verify: $out"
[ -z "$out" ] || fail "systemd-analyze verify: $out"
echo "validate-dist: all files valid and installed"
