#!/usr/bin/env bash
# Runs the main job on the bundled sample documents: properties, thumbnails
# and text of every file in samples/. Thumbnails go to the folder given.
set -uo pipefail
build=${1:-build/release}
out=${2:-demo-output}
tool="$build/tools/fileinfo/fileinfo"
mkdir -p "$out"
if [ ! -x "$tool" ]; then
  echo "the fileinfo tool is not built yet; the library is at $build/libfileinfo.so"
  exit 0
fi
shopt -s nullglob
for f in samples/*; do
  [ -f "$f" ] || continue
  case "$f" in *.md|*.sh|*.py) continue;; esac
  name=$(basename "$f")
  echo "== $name"
  "$tool" props "$f" || true
  "$tool" thumbnail "$f" -o "$out/$name.png" && echo "thumbnail: $out/$name.png"
  "$tool" text "$f" 2>/dev/null | head -n 20 || true
done
echo
echo "thumbnails are in $(cd "$out" && pwd)"
