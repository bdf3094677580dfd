#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the tools need.
# Idempotent and quiet: when everything is present it prints nothing and
# touches no package index.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config g++ clang libclang-rt-14-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  zlib1g-dev libpugixml-dev libpng-dev libjpeg62-turbo-dev libtiff-dev
  libpixman-1-dev libicu-dev libcli11-dev nlohmann-json3-dev
  gettext zip unzip python3 libimage-exiftool-perl ccache gcovr
  libglib2.0-bin shared-mime-info
  python3-dev pybind11-dev python3-pytest python3-dask python3-distributed python3-pandas
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

[ ${#missing[@]} -eq 0 ] && exit 0

echo "installing: ${missing[*]}" >&2
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq >/dev/null
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
