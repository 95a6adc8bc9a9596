#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# Builds everything and runs every test. Extra arguments go to ctest (e.g. -R Storage).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${TARVIK_BUILD_DIR:-$root/build}
"$root/scripts/build.sh"
cd "$build"
ctest --output-on-failure --parallel "$(nproc)" "$@"
