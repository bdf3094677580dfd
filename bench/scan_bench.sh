#!/usr/bin/env bash
# `fileinfo scan --jsonl` over COUNT small drawing documents, against the
# cost of merely reading the same files (bench/read_loop: walk, open, read
# whole, close) and against ExifTool on the same files when it is
# installed. Every figure comes from this one run, so the ratios hold on a
# shared, noisy machine: each command runs RUNS times, interleaved, and the
# fastest run counts. The documents come from the test writers (mksamples of
# a test build); the timing uses the Release tool and the bench build.
# Usage: bench/scan_bench.sh [RELEASE_BUILD] [TEST_BUILD] [BENCH_BUILD] [COUNT] [RUNS]
set -euo pipefail
release=${1:-build/release}
testbuild=${2:-build/test}
benchbuild=${3:-build/bench}
count=${4:-10000}
runs=${5:-5}
cmake --build "$testbuild" -j2 --target mksamples >/dev/null
cmake --build "$release" -j2 --target fileinfo_tool >/dev/null
cmake --build "$benchbuild" -j2 --target read_loop >/dev/null
tool="$release/tools/fileinfo/fileinfo"
loop="$benchbuild/bench/read_loop"
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
mkdir "$dir/docs"
"$testbuild/tools/mksamples/mksamples" "$dir/docs" "$count" >/dev/null
files=$(find "$dir/docs" -type f | wc -l)
bytes=$(du -sb "$dir/docs" | cut -f1)

# Seconds of wall time of one run of the command, its output discarded.
seconds() {
  local start=$EPOCHREALTIME
  "$@" >/dev/null 2>&1
  calc "$EPOCHREALTIME - $start" 4
}
# Arithmetic in awk (bc is not on every machine): calc EXPRESSION DECIMALS.
calc() { awk "BEGIN { printf \"%.${2}f\", $1 }"; }
min() { printf '%s\n' "$@" | sort -g | head -n 1; }

have_exiftool=0
command -v exiftool >/dev/null && have_exiftool=1
cat "$dir"/docs/* >/dev/null  # warm the page cache
"$tool" scan "$dir/docs" --jobs 1 --jsonl >/dev/null 2>&1
loop_t=() scan1_t=() scan2_t=() exif_t=()
for ((run = 0; run < runs; ++run)); do
  loop_t+=("$(seconds "$loop" "$dir/docs")")
  scan1_t+=("$(seconds "$tool" scan "$dir/docs" --jobs 1 --jsonl)")
  scan2_t+=("$(seconds "$tool" scan "$dir/docs" --jobs 2 --jsonl)")
  # ExifTool takes some forty times longer: two runs are enough.
  if ((have_exiftool && run < 2)); then exif_t+=("$(seconds exiftool -fast -json -r -ext "*" "$dir/docs")"); fi
done
loop_s=$(min "${loop_t[@]}")
scan1_s=$(min "${scan1_t[@]}")
scan2_s=$(min "${scan2_t[@]}")

# Peak resident memory of a scan on two jobs, in KiB.
peak=$( { /usr/bin/time -v "$tool" scan "$dir/docs" --jobs 2 --jsonl >/dev/null; } 2>&1 |
  awk -F: '/Maximum resident set size/ { gsub(/ /, "", $2); print $2 }')

us() { calc "$1 * 1000000 / $files" 1; }
ratio() { calc "$1 / $2" 2; }
echo "date: $(date -u '+%Y-%m-%d %H:%M UTC')"
echo "machine: $(nproc) cores, $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ //'), load $(cut -d' ' -f1-3 /proc/loadavg)"
echo "corpus: $files drawing documents, $((bytes / files)) bytes each on average; fastest of $runs runs"
echo
echo "| command | seconds | us per file | vs read loop |"
echo "|---|---|---|---|"
echo "| read loop (open, read whole, close) | $loop_s | $(us "$loop_s") | 1.00 |"
echo "| fileinfo scan --jsonl, 1 job | $scan1_s | $(us "$scan1_s") | $(ratio "$scan1_s" "$loop_s") |"
echo "| fileinfo scan --jsonl, 2 jobs | $scan2_s | $(us "$scan2_s") | $(ratio "$scan2_s" "$loop_s") |"
if ((have_exiftool)); then
  exif_s=$(min "${exif_t[@]}")
  echo "| exiftool -fast -json -r -ext '*' | $exif_s | $(us "$exif_s") | $(ratio "$exif_s" "$loop_s") |"
fi
echo
echo "| target | measured | met |"
echo "|---|---|---|"
r1=$(ratio "$scan1_s" "$loop_s")
r2=$(ratio "$scan1_s" "$scan2_s")
met() { if (($(calc "($1) ? 1 : 0" 0))); then echo yes; else echo no; fi; }
echo "| scan on 1 job within 3x the read loop | $r1 x | $(met "$r1 <= 3") |"
echo "| 2 jobs at least 1.8x as fast as 1 job | $r2 x | $(met "$r2 >= 1.8") |"
echo "| peak memory of scan at most 32 MiB | $((peak / 1024)) MiB | $(met "$peak <= 32768") |"
if ((have_exiftool)); then
  echo "| ExifTool / scan on 1 job | $(ratio "$exif_s" "$scan1_s") x | |"
fi
