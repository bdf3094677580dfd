"""Scanning a collection of documents on a Dask cluster.

    from dask.distributed import Client, LocalCluster
    import fileinfo.dask as fd

    client = Client(LocalCluster(n_workers=4, threads_per_worker=2))
    frame = fd.scan_dataframe("/data/drawings")       # one row per document
    frame.compute()
    fd.scan_to_files("/data/drawings", "/data/index")  # Parquet or JSON lines

The paths are listed where the call is made; every worker must see the same
files at the same paths (a shared or network file system). The library
lets go of the GIL while reading, so threads per worker help as well.
"""
import os as _os

import dask.bag as _bag
import pandas as _pandas

import fileinfo as _fileinfo

# The properties most documents have, as columns of the frame. Others can be
# asked for with `columns=`.
COMMON_COLUMNS = (
    "System.Title",
    "System.Subject",
    "System.Author",
    "System.Keywords",
    "System.Comment",
    "System.Category",
    "System.Document.DateCreated",
    "System.Document.DateSaved",
    "System.Document.LastAuthor",
    "System.Document.PageCount",
    "System.ApplicationName",
)


def _plain(value):
    # Lists become one text, as in the tool's table, so that a column holds
    # scalars that Parquet and JSON lines both store.
    if isinstance(value, list):
        return "; ".join(str(v) for v in value)
    if isinstance(value, bytes):
        return None
    return value


def _row(path, columns, type):
    row = {"file": path, "type": None, "error": None}
    row.update({c: None for c in columns})
    try:
        with _fileinfo.open(path, type=type) as doc:
            row["type"] = doc.type
            props = doc.properties
            for c in columns:
                row[c] = _plain(props.get(c))
    except _fileinfo.UnsupportedFileError:
        return None  # not a document: skipped, as `fileinfo scan` skips it
    except Exception as e:  # an unreadable or damaged document is a row with its error
        row["error"] = str(e)
    return row


def list_files(paths):
    """Every regular file in the files and folders given, sorted."""
    return list(_fileinfo._files(paths))


def scan_bag(paths, columns=COMMON_COLUMNS, type=None, partition_size=256):
    """A Dask bag of one dict per document: file, type, error and the columns."""
    files = list_files(paths)
    columns = tuple(columns)
    return (_bag.from_sequence(files, partition_size=partition_size)
            .map(_row, columns, type)
            .filter(lambda r: r is not None))


def _meta(columns):
    return _pandas.DataFrame({name: _pandas.Series(dtype=object)
                              for name in ("file", "type", "error") + tuple(columns)})


def scan_dataframe(paths, columns=COMMON_COLUMNS, type=None, partition_size=256):
    """A Dask DataFrame of one row per document (file, type, a column per
    property in `columns`, error); not yet computed."""
    columns = tuple(columns)
    return scan_bag(paths, columns, type, partition_size).to_dataframe(meta=_meta(columns))


def _has_parquet():
    try:
        import pyarrow  # noqa: F401
        return True
    except ImportError:
        return False


def scan_to_files(paths, out_dir, columns=COMMON_COLUMNS, type=None, partition_size=256, format=None):
    """Scans on the current Dask scheduler and writes the rows below `out_dir`:
    Parquet when pyarrow is present, JSON lines otherwise (or as `format`
    says: "parquet" or "jsonl"). Answers the list of files written."""
    frame = scan_dataframe(paths, columns, type, partition_size)
    format = format or ("parquet" if _has_parquet() else "jsonl")
    _os.makedirs(out_dir, exist_ok=True)
    if format == "parquet":
        frame.to_parquet(out_dir, engine="pyarrow", write_index=False)
        return sorted(_os.path.join(out_dir, f) for f in _os.listdir(out_dir) if f.endswith(".parquet"))
    if format != "jsonl":
        raise ValueError("format must be 'parquet' or 'jsonl'")
    pattern = _os.path.join(out_dir, "part-*.jsonl")
    return list(frame.to_json(pattern, orient="records", lines=True, date_format="iso"))
