"""Columns out of documents, for numpy and pandas."""

from __future__ import annotations

from collections.abc import Mapping
from enum import Enum

import numpy

from . import _zol
from ._object import CLASSES


class Table(Mapping):
    """Columns by their names, all of one length: arrays of numpy.

    Numbers are floats, with NaN where there is nothing, or whole; anything else is an array of
    objects, with None where there is nothing.
    """

    def __init__(self, columns):
        self._columns = columns

    def __getitem__(self, name) -> numpy.ndarray:
        return self._columns[name]

    def __iter__(self):
        return iter(self._columns)

    def __len__(self):
        return len(self._columns)

    @property
    def row_count(self) -> int:
        return len(next(iter(self._columns.values()), ()))

    def array(self, *names) -> numpy.ndarray:
        """Columns of numbers side by side: array('l', 'a', 'b')."""
        return numpy.column_stack([self[name] for name in names])

    def frame(self):
        """A DataFrame of pandas. Members of enumerations become their texts."""
        import pandas

        return pandas.DataFrame({name: _plain(column) for name, column in self.items()},
                                copy=False)

    def _repr_html_(self):
        return self.frame()._repr_html_()

    def __repr__(self):
        return f"<Table {self.row_count} rows: {', '.join(self)}>"


def _plain(column):
    if column.dtype != object:
        return column
    first = next((value for value in column if value is not None), None)
    if not isinstance(first, Enum):
        return column
    return numpy.array([getattr(value, "value", value) for value in column], dtype=object)


class Spectra:
    """Spectra of a document, one behind the other.

    offsets: where each begins in the arrays, and the end of the last
    wavelengths_of_points, values_of_points: of all points
    palette, color_set, color: the names of what each stands in
    """

    def __init__(self, columns):
        self.palette = columns["palette"]
        self.color_set = columns["color_set"]
        self.color = columns["color"]
        self.offsets = columns["offsets"]
        self.wavelengths_of_points = columns["wavelengths"]
        self.values_of_points = columns["values"]

    def __len__(self):
        return len(self.offsets) - 1

    def __getitem__(self, index):
        """Wavelengths and values of one spectrum, without a copy."""
        if index < 0:
            index += len(self)
        if not 0 <= index < len(self):
            raise IndexError("there is no such spectrum")
        part = slice(self.offsets[index], self.offsets[index + 1])
        return self.wavelengths_of_points[part], self.values_of_points[part]

    @property
    def wavelengths(self) -> numpy.ndarray | None:
        """The wavelengths that all spectra have; None if they differ."""
        count = len(self)
        if count == 0 or len(self.wavelengths_of_points) % count:
            return None
        size = len(self.wavelengths_of_points) // count
        if numpy.any(numpy.diff(self.offsets) != size):
            return None
        rows = self.wavelengths_of_points.reshape(count, size)
        return rows[0] if size and numpy.all(rows == rows[0]) else None

    @property
    def values(self) -> numpy.ndarray:
        """A row for each spectrum, without a copy. Raises a ValueError if their wavelengths
        differ."""
        wavelengths = self.wavelengths
        if wavelengths is None:
            raise ValueError("the spectra have different wavelengths: see on()")
        return self.values_of_points.reshape(len(self), len(wavelengths))

    def on(self, wavelengths) -> numpy.ndarray:
        """A row for each spectrum, a column for each of these wavelengths; NaN where a spectrum has
        no point. Nothing is interpolated."""
        wavelengths = numpy.asarray(wavelengths, dtype=float)
        order = numpy.argsort(wavelengths)
        at = numpy.searchsorted(wavelengths, self.wavelengths_of_points, sorter=order)
        at = order[numpy.minimum(at, len(order) - 1)] if len(order) else at
        result = numpy.full((len(self), len(wavelengths)), numpy.nan)
        if not len(order):
            return result
        fits = wavelengths[at] == self.wavelengths_of_points
        rows = numpy.repeat(numpy.arange(len(self)), numpy.diff(self.offsets))
        result[rows[fits], at[fits]] = self.values_of_points[fits]
        return result

    def frame(self):
        """A DataFrame of pandas: a row for each spectrum, whose names are the index, and a column
        for each wavelength."""
        import pandas

        wavelengths = self.wavelengths
        if wavelengths is None:
            wavelengths = numpy.unique(self.wavelengths_of_points)
            values = self.on(wavelengths)
        else:
            values = self.values
        index = pandas.MultiIndex.from_arrays([self.palette, self.color_set, self.color],
                                              names=["palette", "color_set", "color"])
        return pandas.DataFrame(values, index=index, columns=wavelengths, copy=False)

    def __repr__(self):
        return f"<Spectra {len(self)} of {len(self.values_of_points)} points>"


def _class(kind):
    made = CLASSES.get(kind) if isinstance(kind, str) else kind
    if getattr(made, "_number", -1) < 0:
        raise ValueError(f"no class is called {kind!r}")
    return made


def table(document, kind):
    made = _class(kind)
    columns = [one for one in made.attributes().values() if one.is_column]
    return Table(_zol.table(document, made._number, columns))


def spectra(document, kind):
    return Spectra(_zol.spectra(document, _class(kind)._number))


def update(document, kind, columns):
    made = _class(kind)
    attributes = made.attributes()
    for name in columns:
        if name not in attributes:
            raise ValueError(f"{made.__name__} has no {name}")
    _zol.update(document, made._number, [attributes[name] for name in columns],
                [numpy.asarray(values, dtype=float) for values in columns.values()])
