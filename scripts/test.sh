#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# Builds everything and runs every test, then does the same in the sanitizer build
# (./build-asan: clang, Debug, AddressSanitizer + UndefinedBehaviorSanitizer, and the fuzz
# targets). Extra arguments go to both ctest runs (e.g. -R Storage).
# TARVIK_SANITIZE=0 skips the sanitizer build.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${TARVIK_BUILD_DIR:-$root/build}
asan=${TARVIK_ASAN_BUILD_DIR:-$root/build-asan}
"$root/scripts/build.sh"
cd "$build"
ctest --output-on-failure --parallel "$(nproc)" "$@"

[ "${TARVIK_SANITIZE:-1}" = 0 ] && exit 0
if [ ! -f "$asan/CMakeCache.txt" ]; then
  CC=clang CXX=clang++ cmake -S "$root" -B "$asan" -G Ninja -DCMAKE_BUILD_TYPE=Debug \
    -DTARVIK_SANITIZE=ON
fi
cmake --build "$asan" --parallel "$(nproc)"
cd "$asan"
# Not run twice: the licence checks read files, not our code in action, and the package
# test builds its own packages from the sources.
ctest --output-on-failure --parallel "$(nproc)" \
  -E '^(ReuseLintTest|LicenceHeaderScriptTest|DebPackageTest)$' "$@"
