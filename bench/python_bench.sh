#!/usr/bin/env bash
# Files per second of the Python package beside the tool on one corpus:
# `fileinfo scan --jsonl` (1 job), `fileinfo.scan` on 1 and 2 threads, and
# the Dask scan on a LocalCluster of two workers (in-process: a script read
# from standard input cannot be imported by worker processes). Ratios to the tool matter
# more than the rates on a shared machine.
# Usage: bench/python_bench.sh [RELEASE_BUILD] [TEST_BUILD] [COUNT]
set -euo pipefail
release=${1:-build/release}
testbuild=${2:-build/test}
count=${3:-5000}
cmake --build "$testbuild" -j2 --target mksamples >/dev/null
cmake --build "$release" -j2 --target fileinfo_tool fileinfo_python >/dev/null
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
"$testbuild/tools/mksamples/mksamples" "$dir" "$count" >/dev/null
echo "date: $(date -u +%Y-%m-%d)"
echo "machine: $(nproc) cores, $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ //')"
export PYTHONPATH="$release/python" TOOL="$release/tools/fileinfo/fileinfo" DIR="$dir"
"${PYTHON:-/usr/bin/python3}" - <<'PY'
import os, subprocess, time
import fileinfo
d, tool = os.environ["DIR"], os.environ["TOOL"]
subprocess.run([tool, "scan", d, "--jsonl"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)  # warm
def timed(label, f):
    t = time.perf_counter(); n = f(); s = time.perf_counter() - t
    return label, n, s
rows = [timed("tool scan --jsonl, 1 job",
              lambda: subprocess.run([tool, "scan", d, "--jsonl", "--jobs", "1"], capture_output=True, text=True).stdout.count("\n"))]
for jobs in (1, 2):
    rows.append(timed(f"fileinfo.scan, {jobs} thread(s)", lambda: sum(1 for _ in fileinfo.scan([d], jobs=jobs))))
try:
    from dask.distributed import Client, LocalCluster
    import fileinfo.dask as fd
    with Client(LocalCluster(n_workers=2, threads_per_worker=1, processes=False, dashboard_address=None)):
        rows.append(timed("fileinfo.dask, LocalCluster of 2 workers", lambda: len(fd.scan_dataframe(d).compute())))
except ImportError:
    pass
base = rows[0][2]
print(f"| run | documents | seconds | files/s | time / tool |")
print(f"|---|---|---|---|---|")
for label, n, s in rows:
    print(f"| {label} | {n} | {s:.2f} | {n / s:.0f} | {s / base:.2f} |")
PY
