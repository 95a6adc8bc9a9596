#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

# Runs one fuzz target for a bounded time from its seed corpus.
#   run-fuzzer.sh <fuzzer> <work dir> <seed dir> <seconds>
# Every seed runs first (old findings stay fixed); new inputs go to <work dir>/corpus and a
# crashing input to <work dir>/crash-*. The exit status is the fuzzer's: 0 means no finding.
set -euo pipefail
fuzzer=$1 work=$2 seeds=$3 seconds=$4
mkdir -p "$work/corpus"
rm -f "$work"/crash-* "$work"/leak-* "$work"/timeout-* "$work"/oom-*
exec "$fuzzer" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=4096 \
  -print_final_stats=1 -artifact_prefix="$work/" "$work/corpus" "$seeds"
