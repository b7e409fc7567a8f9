"""Loading."""

from __future__ import annotations

import os
from typing import TYPE_CHECKING, BinaryIO, TextIO

from . import _zol
from ._faults import LoadError, document_error, make_faults

if TYPE_CHECKING:
    from ._faults import Fault
    from ._model import Document


def open(file: str | bytes | os.PathLike | BinaryIO | TextIO, *, strict: bool = False,
         best_effort: list[Fault] | None = None, largest: int = 1 << 30,
         most_faults: int = 1000) -> Document:
    """Loads a document: XML or an archive, whatever the name of the file.

    file: a path, or a file that is open.
    strict: also refuses what the reader lets pass but XML forbids.
    best_effort: a list that takes the faults; the document then has what is good, instead of a
        LoadError.
    largest: in bytes, unpacked. What is larger is refused.
    most_faults: how many a report keeps.

    Other threads go on meanwhile. Raises OSError for a file that cannot be read, and LoadError for
    a document with faults.
    """
    options = (strict, best_effort, largest, most_faults)
    if hasattr(file, "read"):
        return _loaded(None, _bytes(file.read()), *options)
    path = os.fsdecode(file)
    try:
        path.encode()
    except UnicodeEncodeError:  # a name that is no text
        with _open_file(file) as opened:
            return _loaded(None, opened.read(), *options)
    return _loaded(path, None, *options)


def loads(text: str | bytes | bytearray | memoryview, *, strict: bool = False,
          best_effort: list[Fault] | None = None, largest: int = 1 << 30,
          most_faults: int = 1000) -> Document:
    """Loads a document from its text, or from the bytes of one or of an archive; as open()."""
    return _loaded(None, _bytes(text), strict, best_effort, largest, most_faults)


def _bytes(text):
    return text.encode() if isinstance(text, str) else text


def _open_file(path):
    import io

    return io.open(path, "rb")


def _loaded(path, data, strict, best_effort, largest, most_faults):
    code, document, told, count, message, is_complete = _zol.load(
        path, data, strict, best_effort is not None, largest, most_faults)
    if code == 1 and path is not None:
        _open_file(path).close()  # the system says best why
    if best_effort is not None and code != 1:
        best_effort.extend(make_faults(told))
        return document
    if code:
        raise document_error(LoadError, code, told, message, count, is_complete)
    return document
