#!/usr/bin/env bash
# Regenerates samples/ with the project's document writers (tools/mksamples).
# Usage: scripts/make_samples.sh [BUILD_DIR]   (a build with the tests, default build/test)
set -euo pipefail
build=${1:-build/test}
cmake --build "$build" -j2 --target mksamples
rm -f samples/*.kvd samples/*.kvt samples/*.jmv samples/*.qpx samples/*.fill
"$build/tools/mksamples/mksamples" samples
