#!/usr/bin/env bash
# A 256-pixel thumbnail of a drawing document whose preview is a 1024 x 768
# DIB, end to end (bench/thumb_time: open, read, decode, scale, bitmap out),
# against Pillow opening a BMP of the same picture and making its thumbnail,
# in the same run; and the SSIM of our thumbnail against Pillow's LANCZOS
# result. The two take turns ROUNDS times, RUNS thumbnails each; the fastest
# counts. Then the scaler candidates of bench/scaler_compare, each timed and
# compared with the same SSIM. Pillow and numpy are Debian's (installed here
# when missing: they are for this benchmark only).
# Usage: bench/thumb_bench.sh [BENCH_BUILD] [RUNS] [ROUNDS] [--rows]
# With --rows only the rows of the targets table are printed (scan_bench.sh
# puts them into its own table).
set -euo pipefail
benchbuild=${1:-build/bench}
runs=${2:-30}
rounds=${3:-3}
rows_only=${4:-}
here=$(cd "$(dirname "$0")" && pwd)
python=/usr/bin/python3  # Debian's, where python3-pil puts Pillow

if ! "$python" -c 'import PIL, numpy' 2>/dev/null; then
  sudo=""
  [ "$(id -u)" -ne 0 ] && sudo="sudo"
  echo "installing python3-pil python3-numpy for the benchmark" >&2
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends python3-pil python3-numpy >/dev/null
fi
cmake --build "$benchbuild" -j2 --target thumb_time scaler_compare >/dev/null
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

calc() { awk "BEGIN { printf \"%.${2}f\", $1 }"; }
ours=() pillow=() ssim=""
for ((round = 0; round < rounds; ++round)); do
  ours+=("$("$benchbuild/bench/thumb_time" "$dir" "$runs")")
  read -r best median s < <("$python" "$here/thumb_bench.py" "$dir" "$runs")
  pillow+=("$best $median")
  ssim=$s
done
best() { local f=$1; shift; printf '%s\n' "$@" | awk -v f="$f" '{ print $f }' | sort -g | head -n 1; }
ours_best=$(best 1 "${ours[@]}") ours_median=$(best 2 "${ours[@]}")
pillow_best=$(best 1 "${pillow[@]}") pillow_median=$(best 2 "${pillow[@]}")
ratio=$(calc "$ours_best / $pillow_best" 2)
met() { if (($(calc "($1) ? 1 : 0" 0))); then echo yes; else echo no; fi; }

if [ "$rows_only" != "--rows" ]; then
  echo "date: $(date -u '+%Y-%m-%d %H:%M UTC')"
  echo "machine: $(nproc) cores, $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ //'), load $(cut -d' ' -f1-3 /proc/loadavg)"
  echo "picture: 1024 x 768, 24 bits, to 256 x 192; fastest of $rounds x $runs runs (median in brackets), ms"
  echo
  echo "| thumbnail | ms |"
  echo "|---|---|"
  echo "| GetBitmap of the drawing document, end to end | $ours_best ($ours_median) |"
  echo "| Pillow $("$python" -c 'import PIL; print(PIL.__version__)'): open the BMP, thumbnail | $pillow_best ($pillow_median) |"
fi
if [ "$rows_only" != "--rows" ]; then
  mkdir "$dir/scalers"
  "$benchbuild/bench/scaler_compare" "$dir/scalers" "$runs" >"$dir/scalers.txt"
  "$python" "$here/thumb_bench.py" "$dir" 1 "$dir"/scalers/*.ppm | tail -n +2 >"$dir/ssim.txt"
  echo
  echo "| scaler, 1024 x 768 to 256 x 192 | ms | SSIM |"
  echo "|---|---|---|"
  join <(sort "$dir/scalers.txt") <(sort "$dir/ssim.txt") | sort -k2 -g | awk '{ printf "| %s | %s | %s |\n", $1, $2, $3 }'
  echo
  echo "| target | measured | met |"
  echo "|---|---|---|"
fi
echo "| thumbnail end to end at most Pillow's time | $ratio x ($ours_best / $pillow_best ms) | $(met "$ratio <= 1") |"
echo "| SSIM against Pillow's LANCZOS at least 0.98 | $ssim | $(met "$ssim >= 0.98") |"
