#!/usr/bin/env python3
"""Makes named-colours.zol from the colour list of the X Window System.

    make_named_colours.py [rgb.txt [out.zol]]

Debian's package x11-common carries the list as /etc/X11/rgb.txt. Names that differ in blanks,
capitals or the spelling of grey alone are one colour, with the other names as associations.
"""

import pathlib
import re
import sys

from colour_maths import SRGB_WHITE, srgb_to_xyz, xyz_to_lab
from markup import Form, el, write

MADE = "2026-11-21T10:30:00Z"
SPECIFICATION = "ColorSpaceSpecificationSpectrumTristimulus"


def read_colours(path):
    """The colours in the list's order: key, names, red, green, blue."""
    colours = {}
    for line in pathlib.Path(path).read_text(encoding="ascii").splitlines():
        if line.strip() and not line.startswith("!"):
            *rgb, name = line.split(None, 3)
            key = name.replace(" ", "").lower().replace("grey", "gray")
            names, _ = colours.setdefault(key, ([], tuple(map(int, rgb))))
            names.append(name)
    return [(key, names, rgb) for key, (names, rgb) in colours.items()]


def srgb_specification(**attributes):
    return el(SPECIFICATION,
              el("DeviceFilter", xsi_nil="true"),
              el("DevicePolarization", xsi_nil="true"),
              el("ChangeHistory", MADE),
              el("Spectrum", "Spectrum_Custom", CustomTypeName="Display"),
              el("IlluminationOptions", el("Illuminant", "Illuminant_D65")),
              el("FieldOfView", "FieldOfView_2_Degree"), **attributes)


def rounded(values, places):
    return [round(value, places) + 0.0 for value in values]  # + 0.0 turns -0.0 into 0.0


def colour(key, names, rgb, specified):
    """A colour in sRGB and CIELAB, with its own specification or with that of the set."""
    red, green, blue = rounded((value / 255 for value in rgb), 6)
    l, a, b = rounded(xyz_to_lab(srgb_to_xyz(rgb), SRGB_WHITE), 4)
    shared = el(SPECIFICATION, xsi_nil="true")
    return el("Color",
              el("ChangeHistory", MADE),
              [el("SemanticAssociation", other) for other in names[1:]],
              el("ColorSpaceSRGB",
                 el("ChangeHistory", MADE),
                 srgb_specification() if specified else shared,
                 el("Red", red), el("Green", green), el("Blue", blue),
                 el("ColorDepth", "ColorDepth_8"),
                 Name="#%02x%02x%02x" % rgb),
              el("ColorSpaceCIELab",
                 el("ChangeHistory", MADE), shared, el("L", l), el("A", a), el("B", b)),
              ColorName=names[0], UniqueID="x11-" + key)


def colour_set(name, identity, comments, colours, specified):
    return el("ColorSet",
              el("ChangeHistory", MADE),
              el("CollectionColorSpaceSpecification", srgb_specification()),
              [colour(*entry, specified) for entry in colours],
              ColorSetName=name, UniqueID=identity, Comments=comments)


def document(colours):
    greys = [c for c in colours if re.fullmatch(r"gray\d+", c[0])]
    tints = [c for c in colours if re.search(r"\d", c[0]) and c not in greys]
    plain = [c for c in colours if not re.search(r"\d", c[0])]
    return el("Zol",
              el("Preamble", el("Header",
                                el("Creator", "make_named_colours.py"),
                                el("CreatorVersion", "1"),
                                el("ChangeHistory", MADE),
                                el("Purpose", "Palette of named display colours"),
                                el("Name", "Named colours of the X Window System"),
                                el("Comments",
                                   "sRGB by IEC 61966-2-1, CIELAB by CIE 15, D65, 2 degree"),
                                el("ReadSDKInformation",
                                   el("SDKName", "make_named_colours.py"),
                                   el("SDKVersion", "1")))),
              el("Palette",
                 el("ChangeHistory", MADE),
                 colour_set("Names", "x11-names", "Colours that a plain name stands for",
                            plain, True),
                 colour_set("Tints", "x11-tints", "Four numbered tints of a name", tints, False),
                 colour_set("Greys", "x11-greys", "Greys from black to white in percent",
                            greys, False),
                 PaletteName="X11", PaletteVersion="rgb.txt 1.3", UniqueID="x11"))


def main():
    here = pathlib.Path(__file__).parent
    source = sys.argv[1] if len(sys.argv) > 1 else "/etc/X11/rgb.txt"
    target = sys.argv[2] if len(sys.argv) > 2 else here / "named-colours.zol"
    write(target, document(read_colours(source)), Form())


if __name__ == "__main__":
    main()
