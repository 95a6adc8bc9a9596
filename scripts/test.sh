#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# Builds everything and runs every test, then does the same in the sanitizer build
# (./build-asan: clang, Debug, AddressSanitizer + UndefinedBehaviorSanitizer, and the fuzz
# targets). Extra arguments go to both ctest runs (e.g. -R Storage).
# TARVIK_SANITIZE=0 skips the sanitizer build.
# Tests that need root or a mount skip with "NEEDS ROOT WITH MOUNT"; their number is printed
# at the end, and with TARVIK_FORBID_ROOT_SKIPS=1 (CI, which runs as root) any such skip fails.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${TARVIK_BUILD_DIR:-$root/build}
asan=${TARVIK_ASAN_BUILD_DIR:-$root/build-asan}
# How long each phase took, for keeping CI within its time.
phase() { echo "test.sh: $1 took $((SECONDS - started)) s"; started=$SECONDS; }
started=$SECONDS
"$root/scripts/build.sh"
phase "the build"
cd "$build"
status=0
ctest --output-on-failure --parallel "$(nproc)" "$@" || status=$?
phase "the tests"
log=Testing/Temporary/LastTest.log
skips=$(grep -c '^SKIP .*NEEDS ROOT WITH MOUNT' "$log" 2>/dev/null || true)
echo "Skipped for want of root or a mount: ${skips:-0}"
grep '^SKIP .*NEEDS ROOT WITH MOUNT' "$log" 2>/dev/null || true
if [ "${TARVIK_FORBID_ROOT_SKIPS:-0}" = 1 ] && [ "${skips:-0}" != 0 ]; then
    echo "These tests must run here: run CI as root with permission to mount tmpfs." >&2
    status=1
fi

if [ "${TARVIK_SANITIZE:-1}" != 0 ]; then
  if [ ! -f "$asan/CMakeCache.txt" ]; then
    CC=clang CXX=clang++ cmake -S "$root" -B "$asan" -G Ninja -DCMAKE_BUILD_TYPE=Debug \
      -DTARVIK_SANITIZE=ON
  fi
  cmake --build "$asan" --parallel "$(nproc)"
  phase "the sanitizer build"
  cd "$asan"
  # Not run twice: the licence checks read files, not our code in action, and the package
  # test builds its own packages from the sources.
  ctest --output-on-failure --parallel "$(nproc)" \
    -E '^(ReuseLintTest|LicenceHeaderScriptTest|DebPackageTest)$' "$@" || status=$?
  phase "the sanitizer tests"
fi
exit "$status"
