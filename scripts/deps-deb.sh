#!/usr/bin/env bash
# Installs what building the Debian packages needs: the packaging tools and
# the build dependencies that debian/control names. Quiet when all is there.
set -euo pipefail
cd "$(dirname "$0")/.."
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
missing=()
for p in dpkg-dev debhelper lintian; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -ne 0 ]; then
  echo "installing: ${missing[*]}" >&2
  $sudo apt-get update -qq >/dev/null
  $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi
# dpkg-checkbuilddeps names what is missing; apt reads debian/control itself.
if ! dpkg-checkbuilddeps >/dev/null 2>&1; then
  $sudo apt-get update -qq >/dev/null
  $sudo apt-get build-dep -y -qq ./ >/dev/null
fi
