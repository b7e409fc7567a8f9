"""What is wrong with a document or a value, and the exceptions that tell."""

from __future__ import annotations

from typing import NamedTuple


class Place(NamedTuple):
    """Where something stands in a source: line and column from 1, offset in bytes from 0."""

    line: int
    column: int
    offset: int


class Fault(NamedTuple):
    """One thing that is wrong. Texts that have nothing to say are empty."""

    code: int
    """As in the list of error codes; 0 for a warning."""
    is_warning: bool
    """Lawful, and seldom meant."""
    rule: str
    """What was wrong, for programs: 'above-bound'."""
    message: str
    """One sentence, without a full stop: what was found, and what was wanted."""
    path: str
    """Of what is concerned: 'Zol/Color[12]/ColorSpaceCIELab/L'."""
    object: str
    """The name that the innermost object on the path bears."""
    place: Place | None
    """Where it stands; None for a fault in a tree, or in a file as a whole."""
    length: int
    """Of what is concerned, in bytes from there."""
    first: Place | None
    """Of two that conflict, where the other one stands."""
    item: str
    """The element or attribute."""
    found: str
    """The value or name as it stands."""
    expected: str
    """Bounds and unit, the right place, the missing row: in words."""
    allowed: tuple[str, ...]
    """What may stand instead, the nearest first."""
    entry: str
    """Of an archive, the name."""

    def __str__(self):
        where = f"{self.place.line}:{self.place.column}: " if self.place else ""
        return where + self.message


def make_faults(told):
    """Faults as the extension tells them."""
    return [Fault(*fault)._replace(place=fault[6] and Place(*fault[6]),
                                   first=fault[8] and Place(*fault[8])) for fault in told]


class ZolError(Exception):
    """What is wrong with a document or a value. `faults` has all of it, `code` that of the first."""

    def __init__(self, message, code=0, faults=()):
        super().__init__(message)
        self.code = code
        self.faults = list(faults)

    def __reduce__(self):
        return type(self), (self.args[0], self.code, self.faults)


class DocumentError(ZolError):
    """What keeps a document from being loaded or saved.

    There may be more faults than are listed: `fault_count` has their number, and `is_complete`
    whether the document was judged to its end.
    """

    fault_count = 0
    is_complete = True


class LoadError(DocumentError):
    """A document that could not be loaded."""


class SaveError(DocumentError):
    """A document that could not be saved. An older file is as it was."""


class ValueRefused(ZolError, ValueError):
    """A value that cannot stand where it was to. Nothing was changed."""


def refuse(code, path, value, expected):
    """Raises what stands for a value that was refused."""
    wanted = f", {expected} is allowed" if expected else ""
    message = f"{path} cannot be {value!r}{wanted}"
    fault = Fault(code, False, "", message, path, "", None, 0, None, path.rpartition("/")[2],
                  str(value), expected, (), "")
    raise ValueRefused(message, code, [fault])


def document_error(kind, code, told, message, count=None, is_complete=True):
    """The exception for an outcome of the extension."""
    faults = make_faults(told)
    count = len(faults) if count is None else count
    text = str(faults[0]) if faults else message
    if count > 1:
        text += f" (and {count - 1} more)"
    error = kind(text, code, faults)
    error.fault_count, error.is_complete = count, is_complete
    return error
