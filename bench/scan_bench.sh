#!/usr/bin/env bash
# `fileinfo scan --jsonl` over COUNT small drawing documents, against the
# cost of merely reading the same files (bench/read_loop: walk, open, read
# whole, close) and against ExifTool on the same files when it is
# installed. Every figure comes from this one run, so the ratios hold on a
# shared, noisy machine: each command runs RUNS times, interleaved, and the
# fastest run counts. The documents come from the test writers (mksamples of
# a test build); the timing uses the Release tool and the bench build.
# The last rows come from bench/thumb_bench.sh: a 256-pixel thumbnail against
# Pillow, and its SSIM against Pillow's LANCZOS result.
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

# "WALL CPU": seconds of wall time and of processor time (user and system)
# of one run of the command, its output discarded. On a machine shared with
# other work the processor time is the steadier measure of cost; the wall
# time is what the jobs divide.
measure() {
  local TIMEFORMAT='%3R %3U %3S'  # bash's own timing, to the millisecond
  { time "$@" >/dev/null 2>&1; } 2>"$dir/time"
  awk '{ printf "%.3f %.3f", $1, $2 + $3 }' "$dir/time"
}
# The fastest of the runs, by wall time or by CPU time (field 1 or 2).
best() { local field=$1; shift; printf '%s\n' "$@" | awk -v f="$field" '{ print $f }' | sort -g | head -n 1; }
# Arithmetic in awk (bc is not on every machine): calc EXPRESSION DECIMALS.
calc() { awk "BEGIN { printf \"%.${2}f\", $1 }"; }

have_exiftool=0
command -v exiftool >/dev/null && have_exiftool=1
cat "$dir"/docs/* >/dev/null  # warm the page cache
"$tool" scan "$dir/docs" --jobs 1 --jsonl >/dev/null 2>&1
loop_t=() scan1_t=() scan2_t=() exif_t=()
for ((run = 0; run < runs; ++run)); do
  loop_t+=("$(measure "$loop" "$dir/docs")")
  scan1_t+=("$(measure "$tool" scan "$dir/docs" --jobs 1 --jsonl)")
  scan2_t+=("$(measure "$tool" scan "$dir/docs" --jobs 2 --jsonl)")
  # ExifTool takes some twenty times longer: two runs are enough.
  if ((have_exiftool && run < 2)); then exif_t+=("$(measure exiftool -fast -json -r -ext '*' "$dir/docs")"); fi
done

# Peak resident memory of a scan on two jobs, in KiB.
peak=$( { /usr/bin/time -v "$tool" scan "$dir/docs" --jobs 2 --jsonl >/dev/null; } 2>&1 |
  awk -F: '/Maximum resident set size/ { gsub(/ /, "", $2); print $2 }')

us() { calc "$1 * 1000000 / $files" 1; }
ratio() { calc "$1 / $2" 2; }
met() { if (($(calc "($1) ? 1 : 0" 0))); then echo yes; else echo no; fi; }
loop_w=$(best 1 "${loop_t[@]}") loop_c=$(best 2 "${loop_t[@]}")
scan1_w=$(best 1 "${scan1_t[@]}") scan1_c=$(best 2 "${scan1_t[@]}")
scan2_w=$(best 1 "${scan2_t[@]}") scan2_c=$(best 2 "${scan2_t[@]}")
row() { echo "| $1 | $2 | $3 | $(us "$3") | $(ratio "$2" "$loop_w") | $(ratio "$3" "$loop_c") |"; }

echo "date: $(date -u '+%Y-%m-%d %H:%M UTC')"
echo "machine: $(nproc) cores, $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ //'), load $(cut -d' ' -f1-3 /proc/loadavg)"
echo "corpus: $files drawing documents, $((bytes / files)) bytes each on average; fastest of $runs runs"
echo
echo "| command | wall s | CPU s | CPU us per file | wall vs read loop | CPU vs read loop |"
echo "|---|---|---|---|---|---|"
row "read loop (open, read whole, close)" "$loop_w" "$loop_c"
row "fileinfo scan --jsonl, 1 job" "$scan1_w" "$scan1_c"
row "fileinfo scan --jsonl, 2 jobs" "$scan2_w" "$scan2_c"
if ((have_exiftool)); then
  exif_w=$(best 1 "${exif_t[@]}") exif_c=$(best 2 "${exif_t[@]}")
  row "exiftool -fast -json -r -ext '*'" "$exif_w" "$exif_c"
fi
echo
echo "| target | measured | met |"
echo "|---|---|---|"
r1=$(ratio "$scan1_w" "$loop_w")
r1c=$(ratio "$scan1_c" "$loop_c")
r2=$(ratio "$scan1_w" "$scan2_w")
echo "| scan on 1 job within 3x the read loop (wall) | $r1 x | $(met "$r1 <= 3") |"
echo "| the same in CPU time | $r1c x | $(met "$r1c <= 3") |"
echo "| 2 jobs at least 1.8x as fast as 1 job (wall) | $r2 x | $(met "$r2 >= 1.8") |"
echo "| peak memory of scan at most 32 MiB | $((peak / 1024)) MiB | $(met "$peak <= 32768") |"
if ((have_exiftool)); then
  echo "| ExifTool / scan on 1 job (wall) | $(ratio "$exif_w" "$scan1_w") x | |"
fi
"$(dirname "$0")/thumb_bench.sh" "$benchbuild" 30 3 --rows
