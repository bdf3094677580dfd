#!/usr/bin/env bash
# Files per second of `fileinfo scan` over 10 000 small drawing documents,
# with 1 and with 2 jobs. The documents come from the test writers
# (mksamples of a test build); the timing uses the Release tool.
# Usage: bench/scan_bench.sh [RELEASE_BUILD] [TEST_BUILD] [COUNT]
set -euo pipefail
release=${1:-build/release}
testbuild=${2:-build/test}
count=${3:-10000}
cmake --build "$testbuild" -j2 --target mksamples >/dev/null
cmake --build "$release" -j2 --target fileinfo_tool >/dev/null
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
"$testbuild/tools/mksamples/mksamples" "$dir" "$count"
echo "date: $(date -u +%Y-%m-%d)"
echo "machine: $(nproc) cores, $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ //')"
for jobs in 1 2; do
  "$release/tools/fileinfo/fileinfo" scan "$dir" --jobs $jobs --jsonl >/dev/null  # warm the page cache
  for run in 1 2 3; do
    "$release/tools/fileinfo/fileinfo" scan "$dir" --jobs $jobs --jsonl 2>&1 >/dev/null | tail -n 1
  done
done
