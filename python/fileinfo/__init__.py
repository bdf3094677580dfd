"""Thumbnails, properties and text of drawing documents, paint images,
exchange metafiles and fill files, without the applications that made them.

    import fileinfo
    doc = fileinfo.open("drawing.kvd")
    doc.type                      # "drawing"
    doc.properties["System.Title"]
    png = doc.thumbnail(size=256)
    for text, language, brk in doc.text(): ...
    doc.set(**{"System.Title": "New title"}); doc.commit()

    for record in fileinfo.scan(["/data/drawings"], jobs=8): ...

The library lets go of the GIL while it reads, so threads scale.
"""
import datetime as _datetime
import json as _json
import os as _os
from concurrent.futures import ThreadPoolExecutor as _Pool

from . import _fileinfo

__version__ = _fileinfo.__version__
__all__ = ["open", "scan", "set_external_links", "Document", "Error", "UnreadableFileError", "UnsupportedFileError", "TYPES"]

TYPES = ("drawing", "paint", "metafile", "fill")


class Error(Exception):
    """A document could not be read or written."""


class UnreadableFileError(Error, OSError):
    """The file cannot be opened or read (missing, a folder, a FIFO, no permission)."""


class UnsupportedFileError(Error, ValueError):
    """The file is of no supported type, or not of the type asked for."""


_fileinfo._set_exceptions(Error, UnreadableFileError, UnsupportedFileError)

# A server that reads uploads calls set_external_links(False) once, so that a
# document cannot make the reader open other local files.
set_external_links = _fileinfo.set_external_links

_EPOCH = _datetime.datetime(1970, 1, 1, tzinfo=_datetime.timezone.utc)


def _from_micros(micros):
    return _EPOCH + _datetime.timedelta(microseconds=micros)


class Document:
    """An open document. Use `fileinfo.open` to make one; close it with
    `close()` or a `with` block (it is also closed when collected)."""

    def __init__(self, native):
        self._native = native
        self._properties = None

    def __enter__(self):
        return self

    def __exit__(self, *exc):
        self.close()

    def close(self):
        self._native = None

    def _doc(self):
        if self._native is None:
            raise Error("the document is closed")
        return self._native

    @property
    def type(self):
        """"drawing", "paint", "metafile" or "fill"."""
        return self._doc().type

    @property
    def path(self):
        return self._doc().path

    @property
    def properties(self):
        """A dict by canonical name ("System.Title", ...) of Python values:
        str, int, float, bool, list, datetime (UTC), bytes or None."""
        if self._properties is None:
            self._properties = {name: value for _, name, value, _, _ in self._doc()._properties(_from_micros)}
        return dict(self._properties)

    def property_details(self):
        """Every property as a dict: key, name, value, display, read_only."""
        return [dict(key=k, name=n, value=v, display=d, read_only=r)
                for k, n, v, d, r in self._doc()._properties(_from_micros)]

    def thumbnail(self, size=256, page=None):
        """PNG bytes of the thumbnail (or of page `page`) fitted into size x size."""
        return self._doc()._thumbnail(int(size), -1 if page is None else int(page))

    def text(self):
        """The document's text as a list of (text, language, break): break is
        0 for none, 3 for the end of a paragraph, 4 for a new text stream."""
        return self._doc()._text()

    def set(self, **values):
        """Stores values by canonical name; `commit()` writes them. Names with
        dots are given as `doc.set(**{"System.Title": "x"})`."""
        doc = self._doc()
        for name, value in values.items():
            if isinstance(value, str):
                doc._set_text(name, value)
            elif isinstance(value, (list, tuple)):
                doc._set_list(name, [str(v) for v in value])
            elif isinstance(value, _datetime.datetime):
                if value.tzinfo is None:
                    value = value.replace(tzinfo=_datetime.timezone.utc)
                delta = value - _EPOCH
                doc._set_datetime(name, (delta.days * 86400 + delta.seconds) * 1000000 + delta.microseconds)
            elif isinstance(value, (bool, int, float)):
                doc._set_number(name, value)
            else:
                raise TypeError("%s: cannot store a %s" % (name, type(value).__name__))
        self._properties = None

    def commit(self):
        """Writes the stored values into the file (atomically)."""
        self._doc()._commit()
        self._properties = None

    def __repr__(self):
        if self._native is None:
            return "<fileinfo.Document closed>"
        return "<fileinfo.Document %s %r>" % (self.type, self.path)


def open(source, type=None):
    """Opens a document from a path (str or os.PathLike) or from bytes; the
    type is detected unless given ("drawing", "paint", "metafile", "fill")."""
    if isinstance(source, (bytes, bytearray, memoryview)):
        return Document(_fileinfo._open_bytes(bytes(source), type or ""))
    return Document(_fileinfo._open_path(_os.fspath(source), type or ""))


def _files(paths):
    if isinstance(paths, (str, bytes, _os.PathLike)):
        paths = [paths]
    for p in paths:
        p = _os.fspath(p)
        if _os.path.isdir(p):
            for root, dirs, names in _os.walk(p):
                dirs.sort()
                for name in sorted(names):
                    full = _os.path.join(root, name)
                    if _os.path.isfile(full):
                        yield full
        else:
            yield p


def scan_one(path, type=None):
    """The record `fileinfo scan --jsonl` gives for one file, as a dict, or
    None when the file is skipped (unreadable or of no supported type)."""
    line = _fileinfo._scan_json(_os.fspath(path), type or "")
    return None if line is None else _json.loads(line)


def scan(paths, jobs=None, type=None):
    """Yields, for every document in the files and folders given, the dict
    that `fileinfo scan --jsonl` writes for it; files of no supported type
    are skipped. `jobs` threads read at once (default: the number of cores)."""
    jobs = jobs or _os.cpu_count() or 1
    files = _files(paths)
    if jobs <= 1:
        for f in files:
            record = scan_one(f, type)
            if record is not None:
                yield record
        return
    with _Pool(max_workers=jobs) as pool:
        # A bounded window of work keeps memory flat on huge trees.
        pending = []
        for f in files:
            pending.append(pool.submit(scan_one, f, type))
            if len(pending) >= jobs * 4:
                record = pending.pop(0).result()
                if record is not None:
                    yield record
        for future in pending:
            record = future.result()
            if record is not None:
                yield record
