"""Colour-data documents: read, checked, changed and written.

    import zol

    with zol.open("colours.zolz") as document:
        for color in document.colors:
            print(color.name, [space.coordinates for space in color.spaces])
        frame = document.table("CIELab").frame()
        document.save("more.zolz")

Classes and attributes are those of the format; the doc string of each has the format's name, bounds
and unit. Where there is nothing, an attribute is None. `zol.color` computes.
"""

from . import _model
from ._documents import loads, open
from ._faults import DocumentError, Fault, LoadError, Place, SaveError, ValueRefused, ZolError
from ._model import *  # noqa: F403
from ._object import ForeignElement, List, Object

__all__ = ["DocumentError", "Fault", "ForeignElement", "List", "LoadError", "Object", "Place",
           "SaveError", "ValueRefused", "ZolError", "color", "loads", "open", *_model.__all__]

for _one in (Fault, Place, ZolError, DocumentError, LoadError, SaveError, ValueRefused):
    _one.__module__ = __name__  # as which they are told and pickled


def __getattr__(name):
    # It brings numpy, which takes longer than everything else.
    if name == "color":
        import importlib

        return importlib.import_module(".color", __name__)
    raise AttributeError(f"module 'zol' has no attribute {name!r}")


def __dir__():
    return sorted(__all__)
