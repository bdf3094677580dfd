#!/usr/bin/env bash
# Checks the Debian packages in DIR: the files each one carries, then the
# tool and the thumbnailer run from a temporary root the packages are
# unpacked into, on the samples; lintian must report no errors.
#   tests/packaging/check_packages.sh DIR
set -euo pipefail
dir=${1:?usage: check_packages.sh DIR}
here=$(cd "$(dirname "$0")/../.." && pwd)
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT

fail() { echo "check_packages: $*" >&2; exit 1; }
deb_of() { ls "$dir"/"$1"_*.deb 2>/dev/null | head -1; }

# Each package and a file that must be in it (grep -E over `dpkg-deb -c`).
declare -A must=(
  [libfileinfo0]='libfileinfo\.so\.0(\.[0-9.]+)?$|share/fileinfo/locale/de\.mo$'
  [libfileinfo-dev]='include/fileinfo/fileinfo/IFileInfo\.h$|libfileinfo\.so( -> .*)?$|cmake/fileinfo/fileinfoConfig\.cmake$|pkgconfig/fileinfo\.pc$'
  [python3-fileinfo]='dist-packages/fileinfo/__init__\.py$|dist-packages/fileinfo/dask\.py$|dist-packages/fileinfo/_fileinfo\..*\.so$'
  [fileinfo]='usr/bin/fileinfo$|usr/bin/fileinfo-thumbnailer$|thumbnailers/fileinfo\.thumbnailer$|mime/packages/fileinfo-mime\.xml$|man1/fileinfo\.1\.gz$'
)
for pkg in "${!must[@]}"; do
  deb=$(deb_of "$pkg")
  [ -n "$deb" ] || fail "no package $pkg in $dir"
  list=$(dpkg-deb -c "$deb")
  IFS='|' read -r -a patterns <<< "${must[$pkg]}"
  for p in "${patterns[@]}"; do
    grep -Eq "$p" <<< "$list" || fail "$pkg lacks a file matching $p"
  done
  # Nothing of the build tree, the tests or the samples slips in.
  if grep -Eq 'test_|/samples/|\.a$' <<< "$list"; then fail "$pkg carries build or test files"; fi
  dpkg-deb -x "$deb" "$root"
done

libdir=$(dirname "$(find "$root" -name 'libfileinfo.so.0' | head -1)")
export LD_LIBRARY_PATH="$libdir"
thumbs=0
for sample in "$here"/samples/*.*; do
  case "$sample" in *.md) continue ;; esac
  # The exchange metafile holds no properties, which props reports as a failure.
  why=$("$root/usr/bin/fileinfo" props "$sample" 2>&1 > /dev/null) || grep -q ': no properties$' <<< "$why" ||
    fail "fileinfo props failed on $sample: $why"
  out="$root/thumb.png"
  rm -f "$out"
  if "$root/usr/bin/fileinfo-thumbnailer" -s 128 "$sample" "$out"; then
    [ "$(head -c 8 "$out" | od -An -tx1 | tr -d ' \n')" = 89504e470d0a1a0a ] || fail "thumbnail of $sample is no PNG"
    thumbs=$((thumbs + 1))
  fi
done
[ "$thumbs" -gt 0 ] || fail "the thumbnailer made no thumbnail of any sample"

# The Python package from the unpacked root reads the samples as the tool does.
PYTHONPATH="$root/usr/lib/python3/dist-packages" /usr/bin/python3 - "$here/samples" <<'PY' || fail "the Python package failed"
import sys, fileinfo
records = list(fileinfo.scan([sys.argv[1]], jobs=2))
assert records and all("properties" in r for r in records), records
PY

if command -v lintian > /dev/null; then
  errors=$(lintian --no-tag-display-limit "$dir"/*.deb 2>&1 | grep '^E:' || true)
  [ -z "$errors" ] || fail "lintian errors:
$errors"
else
  echo "check_packages: lintian is not installed, not run" >&2
fi
echo "check_packages: packages good"
