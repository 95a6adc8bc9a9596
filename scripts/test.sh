#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# Builds everything and runs every test. Extra arguments go to ctest (e.g. -R Storage).
# Tests that need root or a mount skip with "NEEDS ROOT WITH MOUNT"; their number is printed
# at the end, and with TARVIK_FORBID_ROOT_SKIPS=1 (CI, which runs as root) any such skip fails.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${TARVIK_BUILD_DIR:-$root/build}
"$root/scripts/build.sh"
cd "$build"
status=0
ctest --output-on-failure --parallel "$(nproc)" "$@" || status=$?
log=Testing/Temporary/LastTest.log
skips=$(grep -c '^SKIP .*NEEDS ROOT WITH MOUNT' "$log" 2>/dev/null || true)
echo "Skipped for want of root or a mount: ${skips:-0}"
grep '^SKIP .*NEEDS ROOT WITH MOUNT' "$log" 2>/dev/null || true
if [ "${TARVIK_FORBID_ROOT_SKIPS:-0}" = 1 ] && [ "${skips:-0}" != 0 ]; then
    echo "These tests must run here: run CI as root with permission to mount tmpfs." >&2
    status=1
fi
exit "$status"
