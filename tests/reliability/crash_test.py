#!/usr/bin/env python3
"""Writes killed at any moment: `fileinfo set FILE NAME=VALUE` on copies of a
container drawing document, a paint image and a fill file, killed with
SIGKILL at uniformly random moments of an unkilled run's duration, and at
the two moments around the rename (stopped there by the preloaded pause
shim). After each kill the file must be byte-identical to the original or a
complete new file that reads the new value back. Then a full file system
and a read-only folder must make `set` fail with one error line and leave
the original intact.

Temporaries a kill leaves beside the document are counted and reported; the
library does not clean them up (docs/decisions.md says why).

  crash_test.py --tool fileinfo --documents reliability_documents \
                --shim libfi_pause_shim.so --samples samples --kills 100
Exit 0 when every check held, 1 otherwise.
"""
import argparse
import json
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

NEW_VALUE = "written by the crash test \u00e9\u2603"
FAILURES = []


def fail(message):
    FAILURES.append(message)
    print("FAIL: " + message, file=sys.stderr)


def tool_env(**extra):
    # A preloaded library stands before the address sanitizer's runtime.
    return dict(os.environ, ASAN_OPTIONS=os.environ.get("ASAN_OPTIONS", "") +
                ":verify_asan_link_order=0:detect_leaks=0", **extra)


def props(tool, path):
    r = subprocess.run([tool, "props", path, "--json"], capture_output=True, env=tool_env(), timeout=60)
    return {p["name"]: p for p in json.loads(r.stdout)["properties"]} if r.returncode == 0 else {}


class Case:
    def __init__(self, label, source, work, tool):
        self.label, self.tool, self.new_versions = label, tool, set()
        self.dir = os.path.join(work, label)
        os.makedirs(self.dir)
        self.path = os.path.join(self.dir, os.path.basename(source))
        with open(source, "rb") as f:
            self.original = f.read()
        self.reset()
        found = props(tool, self.path)
        # The first of the comment or the title that the reader lets one set.
        self.name = next((n for n in ("System.Comment", "System.Title") if n in found and not found[n]["readonly"]), None)

    def command(self, path=None):
        return [self.tool, "set", path or self.path, self.name + "=" + NEW_VALUE]

    def reset(self):
        for leftover in os.listdir(self.dir):
            os.unlink(os.path.join(self.dir, leftover))
        with open(self.path, "wb") as f:
            f.write(self.original)

    def leftovers(self):
        return sorted(n for n in os.listdir(self.dir) if n != os.path.basename(self.path))

    def outcome(self):
        """'old', 'new' or None for a damaged file."""
        with open(self.path, "rb") as f:
            now = f.read()
        if now == self.original:
            return "old"
        if now in self.new_versions or props(self.tool, self.path).get(self.name, {}).get("display") == NEW_VALUE:
            self.new_versions.add(now)
            return "new"
        return None

    def keep_damaged(self, why):
        kept = os.path.join(os.path.dirname(self.dir), "damaged-%s-%d" % (self.label, len(FAILURES)))
        shutil.copyfile(self.path, kept)
        fail("%s: %s (kept as %s)" % (self.label, why, kept))


def timed_run(case):
    case.reset()
    start = time.monotonic()
    r = subprocess.run(case.command(), capture_output=True, env=tool_env(), timeout=120)
    took = time.monotonic() - start
    if r.returncode != 0:
        fail("%s: the unkilled set failed: %s" % (case.label, r.stderr.decode(errors="replace")))
    elif case.outcome() != "new":
        case.keep_damaged("the unkilled set did not write the new value")
    if case.leftovers():
        fail("%s: the unkilled set left %s" % (case.label, case.leftovers()))
    return took


def kill_and_check(case, p, why, expected=("old", "new")):
    p.send_signal(signal.SIGKILL)
    p.wait()
    result = case.outcome()
    if result not in expected:
        case.keep_damaged("killed %s: %s, expected %s" % (why, result, " or ".join(expected)))
    return result


def random_kills(case, count, duration, rng):
    tally = {"old": 0, "new": 0, None: 0, "finished": 0, "temporaries": 0, "names": set()}
    for _ in range(count):
        case.reset()
        delay = rng.uniform(0, duration)
        p = subprocess.Popen(case.command(), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=tool_env())
        time.sleep(delay)
        tally["finished"] += p.poll() is not None
        tally[kill_and_check(case, p, "at %.4f s" % delay)] += 1
        tally["temporaries"] += bool(case.leftovers())
        tally["names"].update(re.sub(r"-[0-9]+-[0-9A-Fa-f-]{8,}", "-*", n) for n in case.leftovers())
    return tally


def paused_kills(case, shim):
    """Kills at the moments around the rename; answers the outcomes."""
    outcomes = {}
    mark = os.path.join(os.path.dirname(case.dir), "pause-mark")
    for moment, expected in (("before-rename", "old"), ("after-rename", "new")):
        case.reset()
        if os.path.exists(mark):
            os.unlink(mark)
        env = tool_env(LD_PRELOAD=shim, FI_PAUSE_AT=moment, FI_PAUSE_MARK=mark,
                       FI_PAUSE_NAME=os.path.basename(case.path))
        p = subprocess.Popen(case.command(), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=env)
        deadline = time.monotonic() + 60
        while not os.path.exists(mark) and p.poll() is None and time.monotonic() < deadline:
            time.sleep(0.005)
        if os.path.exists(mark):
            outcomes[moment] = kill_and_check(case, p, moment, (expected,))
        else:
            p.kill()
            p.wait()
            fail("%s: the commit never reached %s" % (case.label, moment))
    return outcomes


def check_refused(cases, folder, why, prepare=None):
    """`set` on copies in `folder` must fail with one error line and leave each copy whole."""
    for case in cases:
        shutil.copyfile(case.path, os.path.join(folder, os.path.basename(case.path)))
    if prepare:
        prepare()
    for case in cases:
        path = os.path.join(folder, os.path.basename(case.path))
        r = subprocess.run(case.command(path), capture_output=True, env=tool_env(), timeout=120)
        lines = r.stderr.decode(errors="replace").splitlines()
        with open(path, "rb") as f:
            intact = f.read() == case.original
        if r.returncode != 1 or len(lines) != 1 or not lines[0].startswith("fileinfo: ") or not intact:
            fail("%s, %s: exit %d, intact %s, errors %r" % (case.label, why, r.returncode, intact, lines))
        print("%s, %s: %s" % (case.label, why, lines[:1]))


def fill_up(folder):
    try:
        with open(os.path.join(folder, "filler"), "wb") as f:
            while True:
                f.write(bytes(1 << 16))
                f.flush()
    except OSError:
        pass  # no space left: what the check needs


def inside_mount(args):
    """Run in a private mount namespace on a fresh tmpfs: full, then read-only."""
    folder, work = args.inside_mount, tempfile.mkdtemp(prefix="fi-crash-mount-")
    cases = make_cases(args, work)
    check_refused(cases, folder, "full file system", lambda: fill_up(folder))
    os.unlink(os.path.join(folder, "filler"))
    check_refused(cases, folder, "read-only mount",
                  lambda: subprocess.run(["mount", "-o", "remount,ro", folder], check=True))
    shutil.rmtree(work)
    return 1 if FAILURES else 0


def full_file_system(args):
    """A small tmpfs in a private mount namespace (unprivileged where user namespaces allow)."""
    mount_point = tempfile.mkdtemp(prefix="fi-mount-")
    prefix = [] if os.geteuid() == 0 else ["unshare", "--user", "--map-root-user"]
    mount = prefix + ["unshare", "--mount", "sh", "-c", 'mount -t tmpfs -o size=1m tmpfs "$1" && shift && exec "$@"',
                      "sh", mount_point]
    probe = subprocess.run(mount + ["true"], capture_output=True)
    if probe.returncode != 0:
        print("SKIP full file system and read-only mount: no tmpfs can be mounted here (%s)" %
              probe.stderr.decode(errors="replace").strip().replace("\n", "; "))
    elif subprocess.run(mount + [sys.executable, os.path.abspath(__file__), "--tool", args.tool, "--documents",
                                 args.documents, "--shim", args.shim, "--samples", args.samples,
                                 "--inside-mount", mount_point]).returncode != 0:
        fail("full file system or read-only mount: see above")
    os.rmdir(mount_point)


def make_cases(args, work):
    generated = os.path.join(work, "generated")
    subprocess.run([args.documents, generated], check=True)
    # The paint image is the writer's large newest-generation file: older
    # generations (and the TIFF one) have no writable property.
    sources = [("container", os.path.join(args.samples, "garden-zip.kvd")),
               ("paint", os.path.join(generated, "large.qpx")), ("fill", os.path.join(args.samples, "sunset.fill"))]
    cases = [Case(label, source, work, args.tool) for label, source in sources]
    for case in cases:
        if not case.name:
            fail("%s: neither the comment nor the title can be set" % case.label)
    return [c for c in cases if c.name]


def main():
    parser = argparse.ArgumentParser()
    for option in ("--tool", "--documents", "--shim", "--samples"):
        parser.add_argument(option, required=True)
    parser.add_argument("--kills", type=int, default=100)
    parser.add_argument("--seed", type=int, default=None)
    parser.add_argument("--inside-mount", help=argparse.SUPPRESS)
    args = parser.parse_args()
    if args.inside_mount:
        return inside_mount(args)

    seed = args.seed if args.seed is not None else random.randrange(1 << 30)
    rng = random.Random(seed)
    work = tempfile.mkdtemp(prefix="fi-crash-")
    print("seed %d, %d kills per format, in %s" % (seed, args.kills, work))
    cases = make_cases(args, work)
    for case in cases:
        # The median of a few runs: kills after a run's end teach nothing.
        duration = sorted(timed_run(case) for _ in range(5))[2]
        tally = random_kills(case, args.kills, duration, rng)
        paused = paused_kills(case, args.shim)
        print("%s (%s, %s): unkilled run %.3f s; %d of %d kills survived (%d old, %d new, %d had finished); "
              "%d left a temporary %s; killed before the rename: %s, after: %s" %
              (case.label, os.path.basename(case.path), case.name, duration, tally["old"] + tally["new"], args.kills,
               tally["old"], tally["new"], tally["finished"], tally["temporaries"], sorted(tally["names"]),
               paused.get("before-rename"), paused.get("after-rename")))
        case.reset()
    if os.geteuid() == 0:
        print("SKIP read-only folder by permissions: root writes anyway (the read-only mount stands for it)")
    else:
        folder = os.path.join(work, "read-only")
        os.makedirs(folder)
        try:
            check_refused(cases, folder, "read-only folder", lambda: os.chmod(folder, 0o555))
        finally:
            os.chmod(folder, 0o755)
    full_file_system(args)
    if FAILURES:
        print("%d failures; files kept in %s" % (len(FAILURES), work))
        return 1
    shutil.rmtree(work)
    return 0


if __name__ == "__main__":
    sys.exit(main())
