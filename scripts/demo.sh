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
  # Zip containers keep a preview per page; show them until one is missing.
  if [ "$(head -c 2 "$f")" = "PK" ]; then
    for page in 1 2 3 4; do
      "$tool" thumbnail "$f" --page "$page" -o "$out/$name.page$page.png" 2>/dev/null || break
      echo "page $page: $out/$name.page$page.png"
    done
  fi
  "$tool" text "$f" 2>/dev/null | head -n 20 || true
done
echo
echo "thumbnails are in $(cd "$out" && pwd)"
