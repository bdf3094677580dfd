#!/usr/bin/env python3
"""The desktop files under test: data/fileinfo-mime.xml and
data/fileinfo.thumbnailer installed into a temporary XDG data folder, the
MIME database built with update-mime-database, then `gio info` on every
sample and generated document, with its extension and without it: each
must get the media type whose magic in fileinfo-mime.xml matches its first
bytes. Every media type the .thumbnailer claims must have such a document,
which its Exec line (run with the built thumbnailer) turns into a PNG.

  desktop_test.py --thumbnailer fileinfo-thumbnailer --documents reliability_documents \
                  --data data --samples samples
Exit 77 (skipped) without gio or update-mime-database.
"""
import argparse
import codecs
import os
import shlex
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ET

NS = "{http://www.freedesktop.org/standards/shared-mime-info}"


def matches(match, data):
    if match.get("type") != "string":
        raise SystemExit("desktop_test: only string matches are understood, not %r" % match.get("type"))
    offset, value = int(match.get("offset")), codecs.escape_decode(match.get("value").encode())[0]  # \003, \n, \\
    if data[offset:offset + len(value)] != value:
        return False
    children = match.findall(NS + "match")
    return not children or any(matches(child, data) for child in children)


def expected_type(types, data):
    """The type of highest priority whose magic matches; None when no type of ours does."""
    best = None
    for name, priority, rules in types:
        if any(matches(rule, data) for rule in rules) and (best is None or priority > best[0]):
            best = (priority, name)
    return best and best[1]


def main():
    parser = argparse.ArgumentParser()
    for option in ("--thumbnailer", "--documents", "--data", "--samples"):
        parser.add_argument(option, required=True)
    args = parser.parse_args()
    for program in ("gio", "update-mime-database"):
        if not shutil.which(program):
            print("SKIP: %s is not installed (scripts/deps.sh installs it)" % program)
            return 77

    work = tempfile.mkdtemp(prefix="fi-desktop-")
    share = os.path.join(work, "share")
    os.makedirs(os.path.join(share, "mime", "packages"))
    os.makedirs(os.path.join(share, "thumbnailers"))
    shutil.copy(os.path.join(args.data, "fileinfo-mime.xml"), os.path.join(share, "mime", "packages"))
    shutil.copy(os.path.join(args.data, "fileinfo.thumbnailer"), os.path.join(share, "thumbnailers"))
    env = dict(os.environ, XDG_DATA_HOME=share, XDG_DATA_DIRS="/usr/local/share:/usr/share")
    subprocess.run(["update-mime-database", os.path.join(share, "mime")], check=True, env=env)

    root = ET.parse(os.path.join(args.data, "fileinfo-mime.xml")).getroot()
    types = []
    for mime in root.findall(NS + "mime-type"):
        types += [(mime.get("type"), int(m.get("priority", 50)), m.findall(NS + "match")) for m in mime.findall(NS + "magic")]
        types += [(mime.get("type"), 0, [])] if not mime.findall(NS + "magic") else []

    generated = os.path.join(work, "generated")
    subprocess.run([args.documents, generated], check=True)
    documents = [os.path.join(args.samples, n) for n in sorted(os.listdir(args.samples)) if not n.endswith(".md")]
    documents += [os.path.join(generated, n) for n in sorted(os.listdir(generated)) if n not in os.listdir(args.samples)]

    failures, checked, of_type = [], 0, {}
    bare = os.path.join(work, "bare")
    os.makedirs(bare)
    for path in documents:
        with open(path, "rb") as f:
            data = f.read(4096)
        name = os.path.basename(path)
        expected = expected_type(types, data)
        bare_expected = expected
        if not expected and data.startswith(b"II*\0") and name.endswith(".qpx"):
            # The oldest paint images are plain TIFF files: the name makes them paint images.
            expected, bare_expected = "application/x-vnd.brimo.qpx", "image/tiff"
        if not expected:
            failures.append("%s: no media type of fileinfo-mime.xml matches its content" % name)
            continue
        of_type.setdefault(expected, path)
        without = os.path.join(bare, "%d-%s" % (len(of_type), os.path.splitext(name)[0]))
        shutil.copyfile(path, without)
        for candidate, want in ((path, expected), (without, bare_expected)):
            r = subprocess.run(["gio", "info", "-a", "standard::content-type", candidate], capture_output=True,
                               text=True, env=env)
            got = [l.split(":", 3)[-1].strip() for l in r.stdout.splitlines() if "standard::content-type" in l]
            checked += 1
            if got != [want]:
                failures.append("%s: gio says %s, expected %s" % (os.path.basename(candidate), got or r.stderr.strip(),
                                                                   want))

    with open(os.path.join(args.data, "fileinfo.thumbnailer")) as f:
        entry = dict(line.strip().split("=", 1) for line in f if "=" in line)
    claimed = [t for t in entry.get("MimeType", "").split(";") if t]
    exec_line = shlex.split(entry.get("Exec", ""))
    if not exec_line or exec_line[0] != "fileinfo-thumbnailer":
        failures.append("the .thumbnailer runs %r, not fileinfo-thumbnailer" % exec_line[:1])
    thumbnails = 0
    for media_type in claimed:
        document = of_type.get(media_type)
        if not document:
            failures.append("%s: claimed by the .thumbnailer, but no document has it" % media_type)
            continue
        out = os.path.join(work, "thumbnail.png")
        argv = [args.thumbnailer] + [{"%s": "128", "%i": document, "%o": out, "%u": "file://" + document}.get(a, a)
                                     for a in exec_line[1:]]
        r = subprocess.run(argv, capture_output=True, text=True, timeout=60)
        png = os.path.exists(out) and open(out, "rb").read(8) == b"\x89PNG\r\n\x1a\n"
        thumbnails += r.returncode == 0 and png
        if r.returncode != 0 or not png:
            failures.append("%s: the thumbnailer made no PNG of %s (exit %d: %s)" %
                            (media_type, os.path.basename(document), r.returncode, r.stderr.strip()))
        if os.path.exists(out):
            os.unlink(out)

    for f in failures:
        print("FAIL: " + f)
    print("%d documents, %d gio answers checked, %d of %d media types in fileinfo-mime.xml seen; "
          "%d of %d types the .thumbnailer claims turned into a PNG" %
          (len(documents), checked, len(of_type), len({t[0] for t in types}), thumbnails, len(claimed)))
    shutil.rmtree(work)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
