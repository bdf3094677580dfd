#!/usr/bin/env python3
"""Paths that are no document: a FIFO (which would block a reader that
opened it plainly), devices, a folder, an unreadable file, links to them.
`fileinfo props/thumbnail/text` and `fileinfo-thumbnailer` must each answer
at once with exit 1 and one error line, and write no output file. The
slowest answer is printed; a run that takes longer than the timeout fails.

  hostile_paths.py --tool fileinfo --thumbnailer fileinfo-thumbnailer --samples samples
"""
import argparse
import os
import shutil
import subprocess
import sys
import tempfile
import time

TIMEOUT = 10  # seconds: far above any answer, far below "blocked for ever"


def main():
    parser = argparse.ArgumentParser()
    for option in ("--tool", "--thumbnailer", "--samples"):
        parser.add_argument(option, required=True)
    args = parser.parse_args()

    work = tempfile.mkdtemp(prefix="fi-hostile-")
    paths = {"/dev/zero": "/dev/zero", "/dev/null": "/dev/null"}
    for name in ("fifo.kvd", "folder.kvd", "link-to-zero.kvd", "link-to-fifo.fill"):
        paths[name] = os.path.join(work, name)
    os.mkfifo(paths["fifo.kvd"])
    os.mkdir(paths["folder.kvd"])
    os.symlink("/dev/zero", paths["link-to-zero.kvd"])
    os.symlink(paths["fifo.kvd"], paths["link-to-fifo.fill"])
    # Root reads a file of mode 000 all the same; in a user namespace of its
    # own it is nobody, and the file is unreadable again.
    as_nobody = []
    if os.geteuid() == 0:
        if subprocess.run(["unshare", "--user", "true"], capture_output=True).returncode == 0:
            as_nobody = ["unshare", "--user"]
            os.chmod(work, 0o755)
        else:
            print("SKIP unreadable file: root reads it anyway, and no user namespace can be made")
    if os.geteuid() != 0 or as_nobody:
        paths["unreadable.kvd"] = os.path.join(work, "unreadable.kvd")
        shutil.copyfile(os.path.join(args.samples, "garden-zip.kvd"), paths["unreadable.kvd"])
        os.chmod(paths["unreadable.kvd"], 0)

    out = os.path.join(work, "out.png")
    runs = []
    for label, path in paths.items():
        prefix = as_nobody if label == "unreadable.kvd" else []
        for what, argv in (("props", [args.tool, "props", path, "--json"]),
                           ("thumbnail", [args.tool, "thumbnail", path, "-o", out]),
                           ("text", [args.tool, "text", path]),
                           ("thumbnailer", [args.thumbnailer, "-s", "128", path, out])):
            runs.append((label + " " + what, prefix + argv))
    failures, slowest = [], (0.0, "")
    for label, argv in runs:
        start = time.monotonic()
        try:
            r = subprocess.run(argv, capture_output=True, timeout=TIMEOUT)
        except subprocess.TimeoutExpired:
            failures.append("%s: no answer within %d s" % (label, TIMEOUT))
            continue
        took = time.monotonic() - start
        slowest = max(slowest, (took, label))
        lines = r.stderr.decode(errors="replace").splitlines()
        if r.returncode != 1 or len(lines) != 1 or not lines[0].startswith("fileinfo: "):
            failures.append("%s: exit %d, errors %r" % (label, r.returncode, lines))
        if os.path.exists(out):
            failures.append("%s: wrote %s" % (label, out))
            os.unlink(out)
    for f in failures:
        print("FAIL: " + f)
    print("%d runs on %d hostile paths: %d answered with one error line, slowest %.3f s (%s)" %
          (len(runs), len(paths), len(runs) - len(failures), slowest[0], slowest[1]))
    if "unreadable.kvd" in paths:
        os.chmod(paths["unreadable.kvd"], 0o600)
    shutil.rmtree(work)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
