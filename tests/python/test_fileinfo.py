"""The Python package against the tool: the same records, typed values,
images, text, and clear exceptions for what cannot be read."""
import datetime
import json
import os
import shutil
import subprocess
import threading

import pytest

import fileinfo

SAMPLES = os.environ["FILEINFO_SAMPLES"]
TOOL = os.environ["FILEINFO_TOOL"]
PNG = b"\x89PNG\r\n\x1a\n"


def documents():
    return sorted(os.path.join(SAMPLES, f) for f in os.listdir(SAMPLES) if not f.endswith(".md"))


def tool_scan(path):
    out = subprocess.run([TOOL, "scan", "--jsonl", "--jobs", "1", path], check=True,
                         capture_output=True, text=True).stdout
    return sorted((json.loads(line) for line in out.splitlines()), key=lambda r: r["file"])


@pytest.mark.parametrize("jobs", [1, 3])
def test_scan_gives_the_tools_records(tmp_path, jobs):
    # A folder with every sample, a file of no supported type and a broken document.
    for f in documents():
        shutil.copy(f, tmp_path)
    (tmp_path / "notes.txt").write_text("not a document")
    (tmp_path / "broken.kvd").write_bytes(b"RIFF\x10\x00\x00\x00KVD5" + b"\x00" * 4)
    ours = sorted(fileinfo.scan([str(tmp_path)], jobs=jobs), key=lambda r: r["file"])
    assert ours == tool_scan(str(tmp_path))
    assert len(ours) == len(documents()) + 1


def test_properties_are_python_values():
    for path in documents():
        with fileinfo.open(path) as doc:
            record = json.loads(subprocess.run([TOOL, "props", "--json", path], capture_output=True,
                                               text=True).stdout or "{}")
            assert doc.type == record.get("type", doc.type)
            props = doc.properties
            names = [p["name"] for p in record.get("properties", [])]
            assert sorted(props) == sorted(set(names))
            for p in record.get("properties", []):
                value = props[p["name"]]
                if p["vt"] == "VT_FILETIME":
                    assert isinstance(value, datetime.datetime) and value.tzinfo is not None
                    assert value.strftime("%Y-%m-%dT%H:%M:%S") == p["value"][:19]
                elif p["vt"].startswith("VT_VECTOR"):
                    assert value == p["value"]
                elif isinstance(p["value"], (str, bool, int)) or p["value"] is None:
                    assert value == p["value"], p["name"]


def test_thumbnail_text_and_bytes():
    drawing = os.path.join(SAMPLES, "plan-v12.kvd")
    with fileinfo.open(drawing) as doc:
        png = doc.thumbnail(size=64)
        assert png.startswith(PNG)
        text = doc.text()
        assert all(isinstance(t, str) and brk in (0, 3, 4) for t, _, brk in text)
        props = doc.properties
    with open(drawing, "rb") as f:
        from_bytes = fileinfo.open(f.read())
    assert from_bytes.type == "drawing" and from_bytes.properties == props
    assert from_bytes.thumbnail(size=64) == png


@pytest.mark.parametrize("make, error", [
    (lambda d: d / "missing.kvd", fileinfo.UnreadableFileError),
    (lambda d: d, fileinfo.UnreadableFileError),
    (lambda d: (os.mkfifo(d / "pipe"), d / "pipe")[1], fileinfo.UnreadableFileError),
    (lambda d: ((d / "a.txt").write_text("hello"), d / "a.txt")[1], fileinfo.UnsupportedFileError),
])
def test_unreadable_and_unsupported_files_raise(tmp_path, make, error):
    path = make(tmp_path)
    with pytest.raises(error) as info:
        fileinfo.open(path)
    assert str(path) in str(info.value)
    assert isinstance(info.value, fileinfo.Error)


def test_bad_arguments_raise():
    with pytest.raises(ValueError):
        fileinfo.open(os.path.join(SAMPLES, "plan-v12.kvd"), type="spreadsheet")
    with fileinfo.open(os.path.join(SAMPLES, "plan-v12.kvd")) as doc:
        with pytest.raises(KeyError):
            doc.set(**{"No.Such.Name": "x"})
        with pytest.raises(TypeError):
            doc.set(**{"System.Title": object()})
        with pytest.raises(ValueError):
            doc.thumbnail(size=0)
    with pytest.raises(fileinfo.Error):
        doc.properties


def test_threads_read_at_once():
    paths = documents() * 8
    expected = {p: fileinfo.open(p).properties for p in documents()}
    failures = []

    def work(chunk):
        for p in chunk:
            if fileinfo.open(p).properties != expected[p]:
                failures.append(p)

    threads = [threading.Thread(target=work, args=(paths[k::4],)) for k in range(4)]
    for t in threads:
        t.start()
    for t in threads:
        t.join()
    assert not failures
