"""Scanning on a Dask cluster: one row per document, written as JSON lines."""
import json
import os
import shutil

import pytest

dask = pytest.importorskip("dask")
distributed = pytest.importorskip("distributed")

import fileinfo.dask as fd  # noqa: E402

SAMPLES = os.environ["FILEINFO_SAMPLES"]


@pytest.fixture(scope="module")
def cluster():
    # One in-process cluster of two workers for the module: a second one made
    # in the same process after the first has closed cannot be reached.
    with distributed.Client(distributed.LocalCluster(n_workers=2, threads_per_worker=1, processes=False,
                                                     dashboard_address=None)) as client:
        yield client


def test_dataframe_and_files_on_a_local_cluster(tmp_path, cluster):
    docs = tmp_path / "docs"
    docs.mkdir()
    for f in os.listdir(SAMPLES):
        if not f.endswith(".md"):
            shutil.copy(os.path.join(SAMPLES, f), docs)
    (docs / "notes.txt").write_text("skipped")
    expected = {r["file"] for r in fileinfo_scan(docs)}
    gone = docs / "gone.kvd"  # listed, then removed before a worker reads it
    shutil.copy(os.path.join(SAMPLES, "plan-v12.kvd"), gone)

    lazy = fd.scan_dataframe(str(docs), partition_size=2)
    gone.unlink()
    frame = lazy.compute()
    written = fd.scan_to_files(str(docs), str(tmp_path / "out"), format="jsonl")

    assert set(frame["file"]) == expected | {str(gone)}
    row = frame[frame["file"] == str(gone)].iloc[0]
    assert "cannot be read" in row["error"] and row["type"] is None
    plan = frame[frame["file"].str.endswith("plan-v12.kvd")].iloc[0]
    assert plan["type"] == "drawing" and plan["error"] is None
    assert plan["System.Keywords"] == "plan; ground floor; site"
    rows = [json.loads(line) for path in written for line in open(path)]
    assert sorted(r["file"] for r in rows) == sorted(expected)


def fileinfo_scan(folder):
    import fileinfo
    return list(fileinfo.scan([str(folder)], jobs=1))


def test_thousand_documents_on_two_workers_equal_the_tool(tmp_path, cluster):
    import subprocess
    samples = sorted(f for f in os.listdir(SAMPLES) if not f.endswith(".md"))
    for i in range(1000):
        name = samples[i % len(samples)]
        shutil.copy(os.path.join(SAMPLES, name), tmp_path / f"{i:04d}-{name}")
    out = subprocess.run([os.environ["FILEINFO_TOOL"], "scan", str(tmp_path), "--jsonl"],
                         capture_output=True, text=True, check=True).stdout
    tool = {r["file"]: r for r in map(json.loads, out.splitlines())}

    frame = fd.scan_dataframe(str(tmp_path), partition_size=100).compute()

    assert len(frame) == 1000 and set(frame["file"]) == set(tool)
    for row in frame.to_dict("records"):
        record = tool[row["file"]]
        assert row["type"] == record["type"] and row["error"] is None
        values = {p["name"]: p["value"] for p in record["properties"] if p["hr"] == "0x00000000"}
        for column in ("System.Title", "System.Keywords", "System.Author"):
            value = values.get(column)
            if isinstance(value, list):
                value = "; ".join(str(v) for v in value)
            assert row[column] == value, (row["file"], column)
