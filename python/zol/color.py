"""Colour, computed: conversions, differences, spectra and verdicts, over whole arrays.

The last dimension of an array has the three numbers of a colour; the dimensions before it are kept.
XYZ is relative to Y = 1, Lab, Luv and Hunter's Lab are on their usual scales, hues are in degrees,
RGB and what follows from it lies from 0 to 1. What has no result is NaN. The formulas, each with its
source, stand on the page docs/colour.md.

Other threads go on while an array is computed.
"""

from __future__ import annotations

from typing import TYPE_CHECKING

import numpy

from ._table import Table
from ._zol import color as _color

if TYPE_CHECKING:
    from ._model import Document, NamedColor

__all__ = ["SPACES", "adapt", "convert", "difference", "evaluate", "measure", "shown",
           "spectrum_to_xyz", "white"]

# Each space with the one that it is defined by.
_DEFINED_BY = {"lab": "xyz", "lch": "lab", "luv": "xyz", "xyy": "xyz", "hunter": "xyz",
               "srgb": "xyz", "adobe_rgb": "xyz", "wide_gamut_rgb": "xyz", "hsl": "srgb",
               "hsv": "srgb", "yuv": "srgb", "yiq": "srgb", "ybr": "srgb"}
_OF_RGB = ("hsl", "hsv", "yuv", "yiq", "ybr")
_OWN_WHITES = {"srgb": (0.3127, 0.3290), "adobe_rgb": (0.3127, 0.3290),
               "wide_gamut_rgb": (0.3457, 0.3585)}

SPACES = ("xyz", *_DEFINED_BY)
"""What convert() knows; hsl, hsv, yuv, yiq and ybr are those of sRGB."""


def white(illuminant: str = "D50", observer: int = 2) -> numpy.ndarray:
    """The white of an illuminant ('D65') for the observer of 2 or 10 degrees, Y = 1."""
    return numpy.array(_color.white(illuminant, observer))


def _white(value, observer):
    if isinstance(value, str):
        return white(value, observer)
    value = numpy.asarray(value, dtype=float)
    if value.shape != (3,):
        raise ValueError("a white is an illuminant or three numbers")
    return value


def _to_root(space):
    way = [space]
    while way[-1] in _DEFINED_BY:
        way.append(_DEFINED_BY[way[-1]])
    return way


def convert(values, source: str, target: str, *, white="D50", observer: int = 2,
            adaptation: str | None = "bradford") -> numpy.ndarray:
    """Brings colours from one of SPACES to another.

    white: of Lab, Luv, Hunter's Lab and of XYZ itself: an illuminant, or X, Y and Z.
    adaptation: how a colour comes to the white of an RGB space if that is another one: 'bradford',
        'cat02', or None to leave it as it is.
    """
    if source not in SPACES or target not in SPACES:
        raise ValueError(f"the spaces are {', '.join(SPACES)}")
    values = numpy.array(values, dtype=float)
    reference = _white(white, observer)
    up, down = _to_root(source), _to_root(target)
    while len(up) > 1 and len(down) > 1 and up[-2] == down[-2]:
        up.pop()
        down.pop()
    for before, after in zip(up, up[1:]):
        values = _step(values, before, after, reference, adaptation)
    down.reverse()
    for before, after in zip(down, down[1:]):
        values = _step(values, before, after, reference, adaptation)
    return values


def _step(values, before, after, reference, adaptation):
    name = "_".join("rgb" if space == "srgb" and {before, after} & set(_OF_RGB) else space
                    for space in (before, after))
    rgb = next((space for space in (before, after) if space in _OWN_WHITES), None)
    if rgb is None or "xyz" not in (before, after) or adaptation is None:
        return _color.convert(name, values, reference)
    x, y = _OWN_WHITES[rgb]
    own = numpy.array([x / y, 1, (1 - x - y) / y])
    if before == "xyz":
        return _color.convert(name, adapt(values, reference, own, adaptation), own)
    return adapt(_color.convert(name, values, own), own, reference, adaptation)


def adapt(xyz, source_white, target_white, method: str = "bradford", *,
          observer: int = 2) -> numpy.ndarray:
    """The corresponding colours under another white, by 'bradford' or 'cat02'. Whites are
    illuminants or X, Y and Z."""
    if method not in ("bradford", "cat02"):
        raise ValueError("the methods are bradford and cat02")
    return _color.adapt(numpy.asarray(xyz, dtype=float), _white(source_white, observer),
                        _white(target_white, observer), method == "cat02")


def difference(standard, sample, formula: str = "2000", *,
               factors: tuple[float, ...] = ()) -> numpy.ndarray:
    """The colour difference of Lab colours, whose arrays are broadcast against each other.

    formula: '76', '94', '2000', 'cmc' or '99'.
    factors: kL, kC and kH of 94 and 2000, l and c of CMC, kE and kCH of 99; 1 each where they are
        left out, and 2 and 1 for CMC.
    """
    usual = (2.0, 1.0, 1.0) if formula == "cmc" else (1.0, 1.0, 1.0)
    standard, sample = numpy.broadcast_arrays(numpy.asarray(standard, dtype=float),
                                              numpy.asarray(sample, dtype=float))
    return _color.difference(formula, standard, sample,
                             (*factors, *usual[len(factors):])[:3])


def spectrum_to_xyz(wavelengths, values, illuminant: str = "D50",
                    observer: int = 2) -> numpy.ndarray:
    """Tristimulus values of reflectances, whose last dimension goes over the wavelengths in nm."""
    wavelengths = numpy.asarray(wavelengths, dtype=float)
    values = numpy.asarray(values, dtype=float)
    order = numpy.argsort(wavelengths)
    if numpy.any(order[1:] < order[:-1]):
        wavelengths, values = wavelengths[order], values[..., order]
    return _color.spectrum_to_xyz(wavelengths.tolist(), values, illuminant, observer)


def measure(document: Document, illuminant: str | None = None, observer: int = 2, *,
            adapts: bool = True, tells: bool = False) -> Table:
    """All colours of a document as columns: where each stands, its XYZ and Lab, what a display shows
    ('#rrggbb'), and under which conditions. `role` is 'color', 'standard' or 'measurement';
    `source` says what it was computed from, and `reason` why there is nothing.

    illuminant, observer: the conditions that are wanted; without them each colour is under those
        of its best rendering.
    adapts: whether coordinates under other conditions are adapted where there is no spectrum.
    tells: adds `basis`, with everything that a reader of the numbers has to know.
    """
    columns = _color.measure(document, illuminant, observer, adapts, tells)
    xyz, lab = columns.pop("xyz"), columns.pop("lab")
    basis = columns.pop("basis")
    table = {name: _objects(columns[name]) for name in
             ("palette", "color_set", "color", "unique_id", "role")}
    table.update(zip(("x", "y", "z"), xyz.T), l=lab[:, 0], a=lab[:, 1], b=lab[:, 2])
    table.update((name, _objects(columns[name])) for name in
                 ("illuminant", "observer", "source", "hex", "in_gamut", "reason"))
    if tells:
        table["basis"] = _objects(basis)
    return Table(table)


def shown(color: NamedColor) -> tuple[str | None, str]:
    """What a display shows for a colour, '#rrggbb', or None and the reason."""
    return _color.shown(color)


_VERDICT_NUMBERS = ("value", "low", "high", "warning_level")
_VERDICT = ("record", "standard", "measurement", "measured", "tolerance", "formula",
            *_VERDICT_NUMBERS, "status", "conditions", "reason")


def evaluate(document: Document) -> Table:
    """The verdicts of a document's quality control as columns: the value of each tolerance for each
    measurement, its limits, and the status: 'pass', 'warning', 'fail' or 'not judged', with the
    reason."""
    rows = _color.evaluate(document)
    return Table({name: numpy.array([row[name] for row in rows], dtype=float)
                  if name in _VERDICT_NUMBERS else _objects([row[name] for row in rows])
                  for name in _VERDICT})


def _objects(values):
    column = numpy.empty(len(values), dtype=object)
    column[:] = values
    return column
