"""Scanning on a Dask cluster: one row per document, written as JSON lines."""
import json
import os
import shutil

import pytest

dask = pytest.importorskip("dask")
distributed = pytest.importorskip("distributed")

import fileinfo.dask as fd  # noqa: E402

SAMPLES = os.environ["FILEINFO_SAMPLES"]


def test_dataframe_and_files_on_a_local_cluster(tmp_path):
    docs = tmp_path / "docs"
    docs.mkdir()
    for f in os.listdir(SAMPLES):
        if not f.endswith(".md"):
            shutil.copy(os.path.join(SAMPLES, f), docs)
    (docs / "notes.txt").write_text("skipped")
    expected = {r["file"] for r in fileinfo_scan(docs)}
    gone = docs / "gone.kvd"  # listed, then removed before a worker reads it
    shutil.copy(os.path.join(SAMPLES, "plan-v12.kvd"), gone)

    with distributed.Client(distributed.LocalCluster(n_workers=2, threads_per_worker=1, processes=False,
                                                     dashboard_address=None)):
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
