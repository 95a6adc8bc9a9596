#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# Runs tools/add-licence-headers.sh on a scratch repository holding one file of each kind
# and checks that the files still work for their tools afterwards, that the art licence
# goes where it belongs, that unknown types are reported, and that a second run changes
# nothing.
# Usage: test-licence-headers.sh <source dir>
set -euo pipefail
src=$(cd "${1:?source dir}" && pwd)
fail() {
  echo "licence-headers: FAIL: $*" >&2
  exit 1
}

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
repo=$scratch/repo
mkdir "$repo"
cd "$repo"
git init -q .
mkdir -p tools app dist
cp -r "$src/LICENSES" "$src/.reuse" .
cp "$src/tools/add-licence-headers.sh" tools/

printf '#include <cstdio>\nint main() { return 0; }\n' >app/main.cpp
printf '#!/bin/sh\necho hi\n' >app/run.sh
chmod +x app/run.sh
cat >app/iface.xml <<'EOF'
<!DOCTYPE node PUBLIC "-//freedesktop//DTD D-BUS Object Introspection 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/introspect.dtd">
<node>
  <interface name="org.example.Probe">
    <method name="Ping"/>
  </interface>
</node>
EOF
cat >dist/app.metainfo.xml <<'EOF'
<?xml version="1.0" encoding="UTF-8"?>
<component type="desktop-application"/>
EOF
printf '<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 1 1"/>\n' >dist/badge.svg
printf '.TH PROBE 1\n.SH NAME\nprobe \\- a probe\n' >app/probe.1
printf '\x89PNG\r\n\x1a\n' >app/pixel.png
printf '{"a": 1}\n' >app/data.json
printf 'opaque\n' >app/blob.xyz

if tools/add-licence-headers.sh >"$scratch/out.txt" 2>&1; then
  fail "a file of unknown type was not reported"
fi
grep -q 'no header style for app/blob.xyz' "$scratch/out.txt" ||
  fail "unknown type not named: $(cat "$scratch/out.txt")"
rm app/blob.xyz

[ "$(head -n 1 app/run.sh)" = '#!/bin/sh' ] || fail "shebang is no longer the first line"
[ -x app/run.sh ] || fail "script lost its mode"
[ "$(head -c 9 app/iface.xml)" = '<!DOCTYPE' ] || fail "D-Bus interface no longer starts with DOCTYPE"
[ "$(head -c 5 dist/app.metainfo.xml)" = '<?xml' ] || fail "XML declaration is no longer first"
grep -q 'License-Identifier: CC0-1.0' dist/app.metainfo.xml || fail "metadata is not CC0-1.0"
grep -q 'License-Identifier: CC0-1.0' dist/badge.svg || fail "art is not CC0-1.0"
grep -q 'License-Identifier: GPL-3.0-or-later' app/main.cpp || fail "code is not GPL-3.0-or-later"
[ -f app/pixel.png.license ] && [ -f app/data.json.license ] || fail "no .license beside binary files"
cmp -s app/pixel.png <(printf '\x89PNG\r\n\x1a\n') || fail "binary file was changed"

qdbusxml2cpp=$(command -v qdbusxml2cpp6 || ls /usr/lib/qt6/bin/qdbusxml2cpp 2>/dev/null || true)
if [ -n "$qdbusxml2cpp" ]; then
  "$qdbusxml2cpp" -p "$scratch/probe" app/iface.xml >/dev/null 2>&1 || fail "qdbusxml2cpp rejects the interface"
fi
if command -v groff >/dev/null; then
  warn=$(groff -man -ww -z app/probe.1 2>&1)
  [ -z "$warn" ] || fail "manual page: $warn"
fi
python3 -c 'import xml.dom.minidom, sys; [xml.dom.minidom.parse(f) for f in sys.argv[1:]]' \
  app/iface.xml dist/app.metainfo.xml dist/badge.svg || fail "XML no longer parses"
reuse lint >"$scratch/lint.txt" || fail "reuse lint: $(cat "$scratch/lint.txt")"

before=$(find . -path ./.git -prune -o -type f -print0 | sort -z | xargs -0 sha1sum)
tools/add-licence-headers.sh || fail "second run failed"
after=$(find . -path ./.git -prune -o -type f -print0 | sort -z | xargs -0 sha1sum)
[ "$before" = "$after" ] || fail "second run changed files: $(diff <(echo "$before") <(echo "$after"))"
echo "licence-headers: all checks passed"
