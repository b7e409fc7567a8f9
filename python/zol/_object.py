"""What the classes of documents have beside their rows."""

from __future__ import annotations

import os
from collections.abc import MutableSequence
from typing import TYPE_CHECKING, Any, Iterable, Iterator, NamedTuple, TypeVar

from . import _zol
from ._faults import SaveError, document_error, make_faults, refuse

if TYPE_CHECKING:
    import numpy

    from ._faults import Fault
    from ._model import Document, NamedColor, Palette, QualityControl
    from ._table import Spectra, Table

T = TypeVar("T")
CLASSES: dict[str, type[Object]] = {}
"""By their names in Python and in the format, the latter also without what they all have."""


def model_class(number, format_name, is_abstract=False):
    """Makes a class that of the objects of a type, by its number."""

    def register(made):
        if not is_abstract:
            _zol.set_class(number, made)
        made._number, made._format_name = number, format_name
        short = format_name.removesuffix("Type")
        for name in (short.removeprefix("ColorSpace"), short, format_name, made.__name__):
            if name:
                CLASSES[name] = made
        return made

    return register


class ForeignElement(NamedTuple):
    """An element of another format, kept whole."""

    name: str
    namespace: str
    text: str


class Object(_zol.Object):
    """An object of a document, or one of its own.

    It stands for what is in the document: two for the same are equal, and what is changed through
    one is seen through the other. What is added or assigned is copied. What was removed or replaced
    is no more: to use it then raises a ReferenceError.
    """

    __slots__ = ()
    _telling: tuple[str, ...] = ()
    _number = -1
    _format_name = ""

    def __repr__(self):
        name = type(self).__name__
        if self.is_removed:
            return f"<{name} (removed)>"
        told = []
        for attribute in self._telling:
            value = getattr(self, attribute)
            if value is not None:
                told.append(f" {attribute}={getattr(value, 'name', value)!r}")
        return f"<{name}{''.join(told[:5])}>"

    def _repr_html_(self):
        from . import _html

        return _html.object_html(self)

    @classmethod
    def attributes(cls) -> dict[str, Any]:
        """The attributes that stand for rows of the format, in the order of documents."""
        found: dict[str, Any] = {}
        for owner in reversed(cls.__mro__):
            found.update((name, one) for name, one in vars(owner).items()
                         if isinstance(one, _zol.field))
        return found

    def check(self, *, warnings: bool = True) -> list[Fault]:
        """What is missing, what would not come back when it is read, and, with warnings, what is
        lawful and seldom meant."""
        return make_faults(_zol.check(self, warnings))


class List(_zol.List, MutableSequence[T]):
    """A list in a document, which shows the document as it is.

    What is added is copied; append() and insert() give the copy, which is part of the document, and
    pop() one that is part of nothing.
    """

    __slots__ = ()

    def append(self, value: T) -> T:  # type: ignore[override]
        """Adds a copy of an object, or a value, at the end; gives what now stands there."""
        return self.insert(len(self), value)

    def add(self, **values: Any) -> T:
        """Makes an object at the end, with these values; gives it."""
        made = self._make()
        try:
            for name, value in values.items():
                setattr(made, name, value)
        except BaseException:
            del self[-1]
            raise
        return made

    def extend(self, values: Iterable[T]) -> None:
        """Adds copies of them all, or nothing if one of them cannot stand here."""
        self[len(self):] = values

    def reverse(self) -> None:
        self[:] = self[::-1]

    def pop(self, index: int = -1) -> T:
        value = self[index]
        value = value.copy() if isinstance(value, Object) else value
        del self[index]
        return value

    def clear(self) -> None:
        del self[:]

    def __eq__(self, other):
        if isinstance(other, str) or not hasattr(other, "__len__"):
            return NotImplemented
        return len(self) == len(other) and all(a == b for a, b in zip(self, other))

    __hash__ = None  # type: ignore[assignment]

    def __repr__(self):
        try:
            first = self[:5]
        except ValueError:  # a date that no calendar has
            first = self.exact[:5]
        shown = ", ".join(map(repr, first))
        return f"[{shown}{', ...' if len(self) > 5 else ''}] ({len(self)})"

    def _repr_html_(self):
        from . import _html

        return _html.list_html(self)


_zol.set_makers(List, refuse, ForeignElement)


def _array(values):
    import numpy

    return numpy.asarray(values, dtype=float)


class ChoiceParts(Object):
    """Holds one of its alternatives, or nothing."""

    __slots__ = ()

    @property
    def kind(self) -> str | None:
        """The attribute of what it holds; None for nothing."""
        chosen = self._chosen
        return next((name for name, one in self.attributes().items()
                     if one.format_name == chosen and getattr(self, name) is not None), None)

    @property
    def held(self):
        """What it holds, an object or a value; None for nothing."""
        kind = self.kind
        return None if kind is None else getattr(self, kind)


class SpaceParts(Object):
    """A colour space."""

    __slots__ = ()

    @property
    def coordinates(self) -> numpy.ndarray | None:
        """The numbers that make a colour in this space, in the order of the format; None for a
        space that has others.

        The array shows the document without a copy and cannot be written to; set the attribute. All
        numbers are judged before one is set. While the array lives, what it shows cannot be removed:
        that raises a BufferError.
        """
        return _zol.coordinates(self)

    @coordinates.setter
    def coordinates(self, values):
        _zol.set_coordinates(self, _array(values))


class SpectrumParts(Object):
    """A colour space that is a spectrum."""

    __slots__ = ()

    @property
    def wavelengths(self) -> numpy.ndarray:
        """In nm, in the order of the document. As `coordinates`, it shows the document where that
        keeps the points at equal distances, as it does once it was read; else it is a copy."""
        return _zol.points(self, False)

    @property
    def values(self) -> numpy.ndarray:
        """Factors or radiances, one for each wavelength; as `wavelengths`."""
        return _zol.points(self, True)

    def set_spectrum(self, wavelengths, values):
        """Puts points in the place of those that are there. All numbers are judged before one is
        set."""
        _zol.set_points(self, _array(wavelengths), _array(values))


class DocumentParts(Object):
    """A document."""

    __slots__ = ()

    if TYPE_CHECKING:
        colors: List[NamedColor]
        palettes: List[Palette]
        quality_controls: List[QualityControl]

    def __repr__(self):
        if self.is_removed:
            return super().__repr__()
        return (f"<Document: {len(self.colors)} colours, {len(self.palettes)} palettes, "
                f"{len(self.quality_controls)} quality controls>")

    def __enter__(self) -> Document:
        return self  # type: ignore[return-value]

    def __exit__(self, *_):
        self.close()

    def __reduce__(self):
        from ._documents import loads

        return loads, (self.dumps(exact=True, stamped=False),)

    def close(self) -> None:
        """Lets go of all that is in it, which raises a ReferenceError from then on. Needed by
        nobody: a document goes with the last that refers to it or to a part of it."""
        self._close()

    def save(self, path: str | os.PathLike[str], *, exact: bool = False, indented: bool = True,
             stamped: bool = True, checked: bool = False) -> None:
        """Writes a file: '.zol' for XML, '.zolz' for an archive. An older one stays whole until the
        new one is complete and on the disk.

        exact: numbers in the shortest text that reads back equal instead of 14 digits, and texts
            as they are.
        indented: a line for each element.
        stamped: the header says which library wrote the document.
        checked: refuses what would not read back.
        """
        code, told, message = _zol.save(self, os.fspath(path), exact, indented, stamped, checked)
        if code:
            raise document_error(SaveError, code, told, message)

    def dumps(self, *, exact: bool = False, indented: bool = True, stamped: bool = True,
              checked: bool = False) -> bytes:
        """The document as XML, in UTF-8; as save()."""
        (code, told, message), text = _zol.dump(self, exact, indented, stamped, checked)
        if code:
            raise document_error(SaveError, code, told, message)
        return text

    def every_color(self) -> Iterator[NamedColor]:
        """All colours in the order of the document: its own, those of palettes, and those of
        quality control."""
        yield from self.colors
        for palette in self.palettes:
            for color_set in palette.color_sets:
                yield from color_set.colors
        for record in self.quality_controls:
            for pair in record.standard_and_measurements:
                for measurement in pair.measurements:
                    yield measurement.color
                if pair.standard is not None:
                    yield pair.standard.color

    def table(self, kind) -> Table:
        """The values of all objects of a class as columns for numpy, with the names of the colour,
        the set and the palette that each stands in. `kind` is a class, or its name here or in the
        format: 'CIELab'. The space that another was computed from is left out."""
        from ._table import table

        return table(self, kind)

    def spectra(self, kind="Spectral") -> Spectra:
        """The spectra of all colours as arrays; of light sources with 'EmissiveSpectral'."""
        from ._table import spectra

        return spectra(self, kind)

    def update(self, kind, **columns: Iterable[float]) -> None:
        """Sets columns of numbers, in the order of table(). All are judged before one is set."""
        from ._table import update

        update(self, kind, columns)
