#!/usr/bin/env python3
"""Makes the coverage documents: every element, attribute, alternative and value of the format.

    make_coverage.py [directory]

  coverage-frame.zol      header, owner, profiles, devices, palettes, tags, substrates
  coverage-spaces.zol     colour spaces and their specifications
  coverage-functions.zol  samples, functions, tolerances

Nothing here is read from elsewhere: the content is spelled out below. Lists of values rotate, so
each caller takes the next one; numbers stand at the ends of their ranges wherever a row has some.
"""

import base64
import itertools
import pathlib
import struct
import sys

from markup import Form, Verbatim, cdata, comment, el, write

# --- values that rotate -----------------------------------------------------------------------

ILLUMINANTS = ["Illuminant_" + name for name in
               "A B C D50 D55 D65 D75 E F2 F3 F7 F11 F12 9300 Custom".split()]
STATUSES = ["Status_" + name for name in
            "A E T I SpectralX Spectral HiFi Hex Txp Ex DIN DIN-NB".split()]
DENSITY_FILTERS = ["Filter_" + name for name in
                   "Visual Cyan Magenta Yellow Black Red Green Blue A B".split()]
DEVICE_FILTERS = ["Filter_" + name for name in "None UVExcluded UVD65 Partial Custom".split()]
SPECTRA = ["Spectrum_" + name for name in
           "Reflectance Transmittance TotalTransmittance Custom".split()]
COLOR_DEPTHS = ["ColorDepth_" + name for name in "Infinite 8 16 32".split()]
GAMUTS = ["Gamut_" + name for name in "AdobeRGB sRGB CMYK VANtiline".split()]
FINISHES = ["Finish_" + name for name in "Coated Uncoated Matte".split()]
SCALES = ["Scale_" + name for name in "Linear Log Other".split()]
TABLES = ["E308_Table5", "E308_Table6"]
FIELDS = ["FieldOfView_2_Degree", "FieldOfView_10_Degree"]
SPHERES = ["Sphere_Included", "Sphere_Excluded"]
EMISSIVE_TYPES = ["Emissive_" + name for name in "Spot SpotAmbient ScanningFlash".split()]
EMISSIVE_MODES = ["EmissiveMode_Diffuser", "EmissiveMode_NA"]
DEVICE_CLASSES = ["DeviceClass_" + name for name in "Spot Scanning Other".split()]
CALIBRATIONS = ["CalibrationState_" + name for name in "NotCalibrated Calibrated NA".split()]
DIRECTIONS = ["Profile_" + name for name in "Input Output Both".split()]
BACKINGS = ["Backing_" + name for name in "Black White Self NA".split()]
TARGETS = ["Target_" + name for name in
           "IT8.7/1 IT8.7/2 IT8.7/3 IT8.7/4 ECI2002 Custom".split()]
TOLERANCE_TYPES = (
    "Brightness DE* DE00 DE94 DE99 DEcmc Defmc2 DIN6172 HunterDE HunterLab HunterLabPlusMinus "
    "L*C*H* L*a*b* L*a*b*PlusMinus MetamerismIndex StatusDensity Strength Whiteness Yellowness "
    "ddna df DEDIN6175").split()
TOLERANCE_PARAMETERS = ["Param_" + name for name in
                        "L a b C H KL KC KH delta kCH kE CF WaveLength Q P Whiteness".split()]
TEXTS = ("Färg & form", "<none>", 'say "blue"', "it's", "Ёлка", "藍色", "𝔘ltramarin 🎨",
         "  kept   as it is  ", "µ²")
LINES = "line one\nline two\n\tindented"

_turns = {}


def turn(owner, values):
    """The next of `values` for this owner; each owner starts at the first."""
    return next(_turns.setdefault(owner, itertools.cycle(values)))


def moment():
    return turn("moment", ("2026-01-31T23:59:59Z", "2026-03-05T09:30:15.5+01:00",
                           "1999-12-31T00:00:00-11:30", "2024-02-29T12:00:07.25Z",
                           "12026-07-01T06:05:04+14:00"))


def text():
    return turn("text", TEXTS)


# --- small records ----------------------------------------------------------------------------

def value_choice(owner):
    return el("ValueChoice", turn(owner, (
        el("DoubleValue", 0.1), el("IntegerValue", -2147483648), el("StringValue", "𝔘nicode"),
        el("DoubleValue", "-INF"), el("IntegerValue", 2147483647), el("StringValue", ""),
        el("DoubleValue", "NaN"), el("IntegerValue", 0), el("StringValue", "a < b & c"),
        el("DoubleValue", 1.7976931348623e308), el("DoubleValue", 2.2250738585072e-308))))


def custom(name="Note"):
    return el("CustomAttribute", el("Name", name), value_choice("CustomAttribute"))


def owner():
    return el("Owner", custom("Department"), custom("Cost centre"),
              el("Person", el("Name", "Zoë Ångström"), el("ContactInfo", "zoe@example.org")),
              el("Person", el("Name", "李 明")),
              el("Copyright", "© 2026 Lindqvist Färgmätning AB"),
              el("Copyright", "free for tests"),
              el("Company", "Lindqvist Färgmätning AB"), el("Company", "Tryckeri Älvsborg"))


def icc_header():
    """A profile of a header (ISO 15076-1, 7.2) and an empty tag table: 132 bytes."""
    header = struct.pack(">I4sI4s4s4s6H4s4sI4s4sQI3i4s", 132, b"\0" * 4, 0x04400000, b"mntr",
                         b"RGB ", b"XYZ ", 2026, 1, 31, 23, 59, 59, b"acsp", b"\0" * 4, 0,
                         b"\0" * 4, b"\0" * 4, 0, 0, 0xF6D6, 0x10000, 0xD32D, b"\0" * 4)
    return header.ljust(128, b"\0") + struct.pack(">I", 0)


def profile():
    source = turn("ProfileChoice", (
        el("ProfileFile", base64.b64encode(icc_header()).decode("ascii"), ProfileName="press.icc"),
        el("ProfileURI", "http://example.org/profiles/offset?paper=1&side=a"),
        el("ProfileFile", ""),
        el("ProfileFile", "AA==", ProfileName="one byte")))
    parameters = [el("Parameters", el("Name", name), value_choice("ProfileParameters"))
                  for name in "γé藍"]
    return el("Profile", el("ProfileChoice", source), parameters, el("Created", moment()),
              Direction=turn("Direction", DIRECTIONS))


def device():
    state = el("CalibrationState", turn("CalibrationState", CALIBRATIONS),
               CalibrationDateTime=moment())
    settings = el("DeviceSettings", custom("Lamp hours"),
                  el("Aperture", turn("Aperture", (1, 8, 2147483647))),
                  el("LensPosition", turn("LensPosition", (-2147483648, 0, 2147483647))),
                  el("GlassCompensation", turn("Glass", ("true", "false"))),
                  el("GlossCompensation", turn("Gloss", ("false", "true")),
                     CompensationValue=turn("GlossValue", (0.0, -1.5, 60.0))),
                  el("Averaging", turn("Averaging", ("true", "false")),
                     AveragingValue=turn("AveragingValue", (2, 99, 3))),
                  el("GridTuner", turn("GridTuner", ("false", "true"))))
    return el("Device", custom("Port"), el("Manufacturer", "Lindqvist Färgmätning AB"),
              el("Model", "Bänk 45"), el("SerialNumber", "LF-0452"),
              el("DeviceClass", turn("DeviceClass", DEVICE_CLASSES)),
              el("FirmwareVersion", "4.1.2"), el("BootFirmwareVersion", "1.0"), state, settings)


def plain_device():
    return el("Device", el("Manufacturer", ""), el("Model", "none"), el("SerialNumber", "-"))


# --- specifications ---------------------------------------------------------------------------

def device_filter():
    if turn("DeviceFilter nil", (False,) * 5 + (True,)):
        return el("DeviceFilter", xsi_nil="true")
    return el("DeviceFilter", turn("DeviceFilter", DEVICE_FILTERS), CustomOrPartial="cut at 420 nm")


def polarisation():
    nil, state = turn("DevicePolarization", ((False, "true"), (False, "false"), (True, None)))
    return el("DevicePolarization", xsi_nil="true") if nil else el("DevicePolarization", state)


def geometry(name="GeometryChoice"):
    alternative = turn(name, (
        el("SphereGeometry", SPHERES[0]), el("Angle", 45.0), el("UnknownGeometry", "ring, 0:45"),
        el("BSDFAngle", el("IlluminantAngle", 45.0), el("Aspecular", -15.0), el("Azimuth")),
        el("SphereGeometry", SPHERES[1]), el("Angle", -0.5)))
    return el(name, alternative)


def illumination():
    kind = turn("Illumination", ("light", "white", "light", "temperature", "light"))
    if kind == "light":
        light = turn("Illuminant", ILLUMINANTS)
        custom_name = {"CustomName": "LED 4000 K"} if light == ILLUMINANTS[-1] else {}
        alternative = el("Illuminant", light, **custom_name)
    elif kind == "white":
        x, y = turn("White", ((0.3127, 0.329), (0.0, 1.0), (1.0, 0.0)))
        alternative = el("WhitePointChromaticity", el("CoordinateX", x), el("CoordinateY", y))
    else:
        alternative = el("ColorTemperature", turn("Temperature", (1, 6504, 2147483647)))
    return el("IlluminationOptions", alternative, Description=text())


def common_conditions(owner_name):
    """What every specification begins with; each kind has the long form once, then a short one."""
    complete = turn(owner_name + " length", (True, False, False))
    return [custom("Operator") if complete else None, profile() if complete else None,
            device() if complete else None, device_filter(), polarisation(),
            el("ChangeHistory", moment()), el("ChangeHistory", moment()) if complete else None]


def spectrum():
    kind = turn("Spectrum", SPECTRA)
    custom_name = {"CustomTypeName": "Remission"} if kind == SPECTRA[-1] else {}
    return el("Spectrum", kind, **custom_name)


def field_of_view(name):
    return el("FieldOfView", turn(name + " field", FIELDS))


def astm_table(name):
    return el("ASTM_Table", turn(name + " table", TABLES))


def gamma(name):
    return el("Gamma", turn(name + " gamma", (2.2, 0.0, 1e-7, 1.8)))


def emission(name):
    return [el("EmissiveType", turn(name + " type", EMISSIVE_TYPES)),
            el("EmissiveMode", turn(name + " mode", EMISSIVE_MODES))]


def specification(name, **attributes):
    """The specification `name`, without its common prefix, in full."""
    branch = [spectrum()] if name.startswith("Spectrum") else emission(name)
    if name.endswith("Generic"):
        rows = [geometry(), illumination(), field_of_view(name), astm_table(name), gamma(name),
                el("DensityStatus", turn(name + " status", STATUSES))]
    elif name.endswith("Tristimulus"):
        rows = [illumination(), field_of_view(name), geometry(), astm_table(name), gamma(name)]
    else:
        rows = [geometry(), astm_table(name)]
    return el("ColorSpaceSpecification" + name, common_conditions(name), branch, rows,
              **attributes, Comments=text(), UniqueID=f"spec-{turn('spec', range(1, 10000))}")


def nil_specification(name, **attributes):
    return el("ColorSpaceSpecification" + name, **attributes, xsi_nil="true")


def next_specification(name, **attributes):
    """In full or nilled, so that each space has met both after three calls."""
    nil = turn(name + " nil", (False, False, True))
    return (nil_specification if nil else specification)(name, **attributes)


GENERIC, TRISTIMULUS, SPECTRAL = "SpectrumGeneric", "SpectrumTristimulus", "SpectrumSpectral"
EMISSIVE_GENERIC, EMISSIVE_TRISTIMULUS = "EmissiveGeneric", "EmissiveTristimulus"
EMISSIVE_SPECTRAL = "EmissiveSpectral"
SPECIFICATIONS = (GENERIC, SPECTRAL, TRISTIMULUS, EMISSIVE_GENERIC, EMISSIVE_SPECTRAL,
                  EMISSIVE_TRISTIMULUS)

# --- colour spaces ----------------------------------------------------------------------------

# The name without its prefix, the specification, and coordinates as (name, low, middle, high).
UNIT = (0.0, 0.25, 1.0)
PERCENT = (0.0, 12.5, 100.0)
HUE = (0.0, 120.5, 359.99999999999)
COORDINATES = {
    "CIELab": (TRISTIMULUS, {"L": (0.0, 51.25, 150.0), "A": (-150.0, 0.001, 150.0),
                             "B": (-150.0, -0.001, 150.0)}),
    "CIELCh": (TRISTIMULUS, {"L": PERCENT, "C": (0.0, 33.3, 150.0), "H": HUE}),
    "CIEXYZ": (TRISTIMULUS, {"X": UNIT, "Y": UNIT, "Z": UNIT}),
    "EmissiveCIEXYZ": (EMISSIVE_TRISTIMULUS, {"X": (0.0, 95.05, 1e300), "Y": (0.0, 100.0, 1e300),
                                              "Z": (0.0, 108.9, "INF")}),
    "CIExyY": (TRISTIMULUS, {"X": UNIT, "Y": UNIT, "CapY": UNIT}),
    "EmissiveCIExyY": (EMISSIVE_TRISTIMULUS, {"X": UNIT, "Y": UNIT, "CapY": (0.0, 250.0, 1e9)}),
    "CIELuv": (TRISTIMULUS, {"L": PERCENT, "U": (-134.0, 0.5, 220.0), "V": (-140.0, 0.5, 122.0)}),
    "HSL": (GENERIC, {"Hue": HUE, "Saturation": UNIT, "Lightness": UNIT}),
    "HSV": (GENERIC, {"Hue": HUE, "Saturation": UNIT, "Value": UNIT}),
    "YUV": (GENERIC, {"Y": UNIT, "U": (-0.436, 0.0, 0.436), "V": (-0.615, 0.0, 0.615)}),
    "YIQ": (GENERIC, {"Y": UNIT, "I": (-0.5957, 0.0, 0.5957), "Q": (-0.5226, 0.0, 0.5226)}),
    "YBR": (GENERIC, {"Y": UNIT, "B": UNIT, "R": UNIT}),
}
PROCESS_INKS = ("Cyan", "Magenta", "Yellow", "Black")


def parent(*member, nil=False):
    return el("ParentColorSpace", xsi_nil="true") if nil else el("ParentColorSpace", *member)


def space(kind, *rows, name=None, above=None, complete=True, xsi_type=None):
    """A colour space with the rows that all have; `above` is its parent element."""
    attributes = {}
    if xsi_type:
        attributes["xsi_type"] = xsi_type
    if complete:
        attributes |= {"Comments": text(), "UniqueID": f"cs-{turn('space', range(1, 10000))}"}
    if name is not None or complete:
        attributes["Name"] = name or f"{kind} sample"
    head = [custom("Batch") if complete else None, above,
            el("ChangeHistory", moment()), el("ChangeHistory", moment()) if complete else None]
    return el("ColorSpace" + kind, *head, *rows, **attributes)


def small_space():
    """A member to stand as somebody's parent."""
    return space("NCS", nil_specification(GENERIC), el("ColorName", "S 1050-Y90R"),
                 complete=False)


def some_parent():
    return turn("parent", (lambda: parent(small_space()), lambda: parent(nil=True)))()


def coordinate_space(kind, step):
    needs, rows = COORDINATES[kind]
    return space(kind, next_specification(needs),
                 [el(row, values[step]) for row, values in rows.items()],
                 above=some_parent() if step == 0 else None, complete=step == 0)


def rgb_space(kind, step):
    red, green, blue, alpha = ((0.0, 1.0, 0.5, 0.25), (1.0, 0.0, 0.0, 0.0), (0.2, 0.4, 1.0, 1.0),
                               (0.33333333333333, 1e-9, 0.99999999999999, 1.0))[step]
    return space(kind, next_specification(TRISTIMULUS), el("Red", red), el("Green", green),
                 el("Blue", blue), el("Alpha", alpha) if step < 3 else None,
                 el("ColorDepth", COLOR_DEPTHS[step]),
                 above=some_parent() if step == 0 else None, complete=step == 0)


def reflectance_point(wavelength, value):
    return el("ReflectancePoint", value, Wavelength=wavelength)


def spectral_space(complete=True):
    return space("Spectral", next_specification(SPECTRAL),
                 reflectance_point(1e-9, -0.99999999999999), reflectance_point(380, 0.0),
                 reflectance_point(555.5, 0.4321), reflectance_point(1e6, 9.9999999999999),
                 above=some_parent() if complete else None, complete=complete)


def emissive_spectral_space(complete=True):
    points = ((1e-9, 0.0), (380, -0.5), (560.25, 1e-12), (1e6, 1e12), (1e7, "INF"))
    return space("EmissiveSpectral", next_specification(EMISSIVE_SPECTRAL),
                 [el("EmissiveSpectralPoint", value, Wavelength=w) for w, value in points],
                 above=some_parent() if complete else None, complete=complete)


def spot_colours():
    return [el("SpotColor", el("Name", name), el("Percentage", percent))
            for name, percent in (("Silver", 0.0), ("Väinö’s red", 100.0), ("Varnish", 33.3))]


def ink_rows(step, *more):
    return [el(ink, (0.0, 50.5, 100.0)[(step + i) % 3])
            for i, ink in enumerate(PROCESS_INKS + more)]


def cmyk_space(complete=True):
    # The type is that of the element itself; a writer that has just chosen a plain CMYK spells it.
    own_type = {"xsi_type": "ColorSpaceSpecificationSpectrumGenericType"}
    given = next_specification(GENERIC, **own_type)
    return space("CMYK", given, ink_rows(0 if complete else 1),
                 spot_colours() if complete else None,
                 above=parent(nil=True) if complete else None, complete=complete)


def cmyk_plus_space(kind, xsi_type=None, complete=True):
    channels = [el("Color", el("Name", "Orange"), el("Value", 42.5)),
                el("Color", el("Name", "Grün"), el("Value", -1e-5))]
    return space(kind, next_specification(GENERIC), ink_rows(2),
                 spot_colours() if complete else None,
                 el("ColorSpaceName", "Seven inks") if complete else None,
                 channels if complete else channels[:1],
                 above=some_parent() if complete else None, complete=complete, xsi_type=xsi_type)


def ombrell_inks(step):
    complete = step == 0
    return space("OMBRELLVantiline", next_specification(GENERIC),
                 ink_rows(step, "Orange", "Green"),
                 spot_colours() if complete else None,
                 above=some_parent() if complete else None, complete=complete)


def ombrell_space(step):
    thin = el("Colorant", el("Name", "Rubine"))
    thick = el("Colorant",
               [el("CustomAttributes", custom(name)) for name in ("Lot", "Shelf life")],
               el("Name", "Reflex"), el("Manufacturer", "Colour kitchen"), el("PartNumber", "R-7"),
               el("Density", 1e-12))
    recipe = el("Recipe",
                el("ColorantElement", thick, el("Contribution", 0.0)),
                el("ColorantElement", thin, el("Contribution", 1e6)))
    finishes = [el("ColorAndFinish", el("Finish", finish), spectral_space(complete=False))
                for finish in FINISHES]
    return space("OMBRELL", el("FamilyName", "Solid"),
                 el("ColorName", el("PrefixName", "N°"), el("BaseName", str(185 + step)),
                    el("SuffixName", turn("suffix", ("C", "U", "M")))),
                 el("Page", f"{12 + step}.1"), el("Gamut", GAMUTS[step]),
                 recipe if step == 0 else None, finishes if step == 0 else None,
                 above=some_parent() if step == 0 else None, complete=step == 0)


def recipe_space(complete=True):
    def colorant(name, density, contribution):
        return el("ColorantElement",
                  el("Colorant", custom("Lot"), el("Name", name), el("Manufacturer", "Kitchen"),
                     el("PartNumber", "K-" + name), density),
                  el("Contribution", contribution))

    base = el("Base", custom("Tin"), el("Name", "White base"), el("Manufacturer", "Kitchen"),
              el("PartNumber", "B-1"), el("Density", 1e-300))
    bare = el("Base", el("Name", "Clear base"), el("Manufacturer", "Kitchen"),
              el("PartNumber", "B-2"))
    return space("Recipe", next_specification(GENERIC),
                 colorant("oxide", el("Density", 1e-300), 0.0),
                 colorant("black", el("Density", xsi_nil="true"), 1.0),
                 colorant("ochre", el("Density", 2.5), 0.125),
                 el("BaseElement", base if complete else bare,
                    el("Contribution", 0.0 if complete else 1e3)),
                 above=some_parent() if complete else None, complete=complete)


def axis_space(kind, needs, step):
    axes = [el("Axis", el("AxisName", f"axis {i}"),
               el("AxisValueChoice",
                  el("AxisFloatingPointValue", value, AxisNominalMax=high, AxisNominalMin=low,
                     AxisNominalScale=scale)))
            for i, (scale, low, value, high) in
            enumerate(zip(SCALES, (-1.0, 0.001, "-INF"), (0.5, 10.0, "NaN"), (1.0, 1e6, "INF")))]
    plain = el("Axis", el("AxisName", "no scale"), el("AxisValueChoice", el(
        "AxisFloatingPointValue", 3.0, AxisNominalMax=5.0, AxisNominalMin=0.0)))
    word = el("Axis", el("AxisName", "word"),
              el("AxisValueChoice", el("AxisStringValue", text() if step else LINES)))
    return space(kind, next_specification(needs), axes if step == 0 else None, plain, word,
                 name=f"{kind} {step}", above=some_parent() if step == 0 else None,
                 complete=step == 0)


def density_space(step):
    densities = [el("Density", value, DensityStatus=turn("Density status", STATUSES),
                    DensityFilter=turn("Density filter", DENSITY_FILTERS))
                 for value in (0.0, -0.02, 1.45, 4.5)]
    return space("Density", next_specification(GENERIC), densities,
                 above=some_parent() if step == 0 else None, complete=step == 0)


def named_space(kind, complete, *rows):
    return space(kind, next_specification(GENERIC), *rows,
                 above=some_parent() if complete else None, complete=complete)


def colour(name, *content, **attributes):
    return el("Color", el("ChangeHistory", moment()), *content, ColorName=name, **attributes)


def spaces_document():
    both = (True, False)
    colours = [colour("Coordinates, " + place, [coordinate_space(kind, step)
                                                for kind in COORDINATES])
               for step, place in enumerate(("low", "middle", "high"))]
    colours += [colour("RGB", [rgb_space(kind, step) for step in range(4)])
                for kind in ("RGB", "SRGB", "AdobeRGB", "AdobeWideGamutRGB")]
    colours += [
        colour("Spectra", [spectral_space(c) for c in both],
               [emissive_spectral_space(c) for c in (True, False, False)]),
        colour("Inks", [cmyk_space(c) for c in both],
               [cmyk_plus_space("CMYK", "ColorSpaceCMYKPlusNType", c) for c in both],
               [cmyk_plus_space("CMYKPlusN", None, c) for c in both],
               [ombrell_inks(step) for step in range(3)]),
        colour("Mixtures", [ombrell_space(step) for step in range(4)],
               [recipe_space(c) for c in both]),
        colour("Axes", [axis_space("Generic", GENERIC, step) for step in range(2)],
               [axis_space("EmissiveGeneric", EMISSIVE_GENERIC, step) for step in range(18)]),
        colour("Densities", [density_space(step) for step in range(4)]),
        colour("Collections",
               [named_space("NCS", c, el("ColorName", "S 0580-Y10R")) for c in both],
               [named_space("Munsell", c, el("CollectionName", "Glossy"),
                            el("ColorName", "5R 4/14")) for c in both]),
        colour("Family", space(
            "HSV", nil_specification(GENERIC), el("Hue", 1.0), el("Saturation", 0.5),
            el("Value", 0.5), complete=False,
            above=parent(space("HSL", nil_specification(GENERIC), el("Hue", 1.0),
                               el("Saturation", 0.5), el("Lightness", 0.5), complete=False,
                               above=parent(small_space()))))),
    ]
    return el("Zol", el("Preamble", header("Colour spaces")), colours)


# --- the frame --------------------------------------------------------------------------------

def sdk(name, version):
    return el(name, el("SDKName", "make_coverage.py"),
              el("SDKVersion", version) if version is not None
              else el("SDKVersion", xsi_nil="true"))


def platform(name, system, version):
    return el(name, el("OperatingSystem", system), el("OperatingSystemVersion", version))


def header(name, *more):
    return el("Header", el("Creator", "make_coverage.py"), el("CreatorVersion", "1"),
              el("ChangeHistory", "2026-11-21T10:30:00Z"), el("Purpose", "Coverage"),
              el("Name", name), *more or [sdk("ReadSDKInformation", "1")])


FOREIGN = (
    '<a:approval xmlns:a="http://example.org/approval" a:by="Zoë" state="ok"><a:note>All &lt;'
    'well&gt;</a:note><a:empty/></a:approval>',
    '<job xmlns="http://example.org/job" no="117"><step>1</step><step><![CDATA[2 < 3]]></step>'
    '<b:ref xmlns:b="http://example.org/b" b:to="𝔘"/></job>',
)


def full_header():
    revisions = [el("Revision", *map(Verbatim, FOREIGN)), el("Revision", Verbatim(FOREIGN[0]))]
    return el("Header", custom("Ticket"), custom("Floor"),
              el("Creator", Verbatim("make_coverage.py &#8211; by hand &#x26; by script")),
              el("CreatorVersion", cdata("1 <draft>")),
              [el("ChangeHistory", moment()) for _ in range(5)],
              el("Purpose", "Coverage"), el("Name", "The frame of a document"),
              el("Comments", Verbatim("before<!-- a comment inside a text -->, after")),
              sdk("ReadSDKInformation", None), sdk("WriteSDKInformation", "0.9"),
              platform("ReadPlatformInformation", "Penguin", "12"),
              platform("WritePlatformInformation", "Fönster", "11"), revisions)


def tag(name, category, value):
    return el("TagValues", el("Tag", el("Category", **category), **name), value,
              UniqueID=f"tag-{turn('tag', range(1, 100))}")


def tags():
    return [tag({"Name": "Season", "UniqueID": "t-1"}, {"UniqueID": "c-1", "Name": "Trade"},
                el("TextValue", "Höst 🍂")),
            tag({"Name": "Rank"}, {"Name": "Trade"}, el("NumberValue", 7.5)),
            tag({}, {}, el("NumberValue", Verbatim("\n -007.50e+1 \n")))]


SUBSTRATES = {"Paper": ("PaperThickness", "PaperType", "kraft"),
              "Metal": ("MetalWeight", "MetalType", "tinplate"),
              "Plastic": ("PlasticWeight", "PlasticType", "ABS"),
              "Wood": ("WoodWeight", "WoodType", "björk"),
              "Vinyl": ("VinylWeight", "VinylType", "matt"),
              "Tile": ("TileWeight", "TileType", "glazed"),
              "Film": ("FilmWeight", "FilmType", "clear"),
              "Textile": ("TextileWeight", "TextileType", "felt")}


def substrate(kind, *inner):
    if kind == "Generic":
        rows = [el("Type", "leather")]
    else:
        measure, sort, value = SUBSTRATES[kind]
        rows = [el(measure, turn(measure, (80.0, 0.0, -1.0, 1e-3))), el(sort, value)]
    return el("Substrate" + kind, custom("Roll"), el("PartNumber", "P/" + kind), *inner, rows)


def substrate_colour(kind, name):
    """A colour on a substrate that has a colour, which stands on a substrate."""
    base = colour("Bare " + kind.lower(), small_space(), el("SubstratePaper"))
    return colour(name, small_space(), substrate(kind, base), Comments=f"on {kind.lower()}")


def full_colour(name):
    return el("Color", custom("Shelf"), custom("Row"), el("ChangeHistory", moment()),
              el("ChangeHistory", moment()), owner(), el("SemanticAssociation", "calm"),
              el("SemanticAssociation", "deep\tand wide"), small_space(), small_space(),
              substrate("Vinyl"), tags(), ColorName=name, UniqueID="colour-1", ColorNumber="1",
              Comments="all rows")


def collection():
    return el("CollectionColorSpaceSpecification", [specification(n) for n in SPECIFICATIONS])


def frame_document():
    every_substrate = [substrate_colour(kind, "On " + kind)
                       for kind in list(SUBSTRATES) + ["Generic"]]
    full_set = el("ColorSet", custom("Binder"), el("ChangeHistory", moment()), owner(),
                  el("SemanticAssociation", "winter"), el("SemanticAssociation", "vinter"),
                  collection(), full_colour("In a set"), colour("Plain", small_space()),
                  substrate("Textile"), ColorSetName="Winter", UniqueID="set-1",
                  PartNumber="W-26", Comments="all rows")
    return el(
        "Zol",
        Verbatim("<?binder ring=\"2\"?>"),
        el("Preamble", full_header(), owner(),
           el("Version", custom("Branch"), el("Version", "2.1"),
              el("Predecessor", "2.0"), el("Predecessor", "1.0 beta"))),
        comment("Colours outside a palette; the substrates nest."),
        full_colour("𝔘ltramarin 🎨"), every_substrate,
        el("Palette", custom("Shop"), el("ChangeHistory", moment()),
           el("ChangeHistory", moment()), owner(), el("SemanticAssociation", "seasons"),
           collection(), full_set,
           el("ColorSet", el("ChangeHistory", moment()), el("CollectionColorSpaceSpecification"),
              ColorSetName="Empty"),
           PaletteName="Seasons", PalettePartNumber="S-1", PaletteVersion="2026",
           UniqueID="palette-1", Comments="all rows"),
        el("Palette", el("ChangeHistory", moment()), PaletteName=""))


# --- quality control --------------------------------------------------------------------------

WEIGHTS = {"DE94": "lch", "DE2000": "lch", "DECMC": "lc"}
PLAIN_FUNCTIONS = ("DE MeanDE StdDevX StdDevY StdDevZ StdDevL StdDevA StdDevB StdDevC StdDevH "
                   "AverageStdDevL AverageStdDevA AverageStdDevB").split()
FUNCTIONS = ["Generic", *WEIGHTS, *PLAIN_FUNCTIONS]


def function_rows(kind, complete):
    rows = [custom("Window"), el("Result", turn("Result", (0.0, -1.25, "INF", 3e-5)))]
    rows = rows if complete else []
    if kind == "Generic":
        parameters = [el("Parameters", el("Name", name), el("ValueChoice", value))
                      for name, value in (("gain", el("Double", 0.5)), ("mode", el("String", "ü")),
                                          ("floor", el("Double", "-INF")))]
        rows += [el("Name", "spread"), parameters if complete else None]
    return rows + [el("Param_" + weight, turn("weight", (2.0, 1.0, 0.0)))
                   for weight in WEIGHTS.get(kind, "")]


def function(kind, complete=True):
    return el("Function" + kind, function_rows(kind, complete))


def typed_function(kind):
    """The same calculation under the head element, which names the type."""
    name = "DEcmc" if kind == "DECMC" else kind
    return el("Function", function_rows(kind, True), xsi_type=f"Function{name}Type")


def function_tolerance(kind, complete):
    parameters = [el("Parameters", el("HighValue", 1.5) if complete else None,
                     el("ToleranceParameter", turn("parameter", TOLERANCE_PARAMETERS))
                     if complete else None, el("LowValue", -1.5)) for _ in range(2)]
    return el("Function", function_rows("Tolerance", complete), el("ToleranceType", kind),
              parameters, xsi_type="FunctionTolerance")


def limits(complete):
    return el("Limits", custom("Basis") if complete else None, el("HighTolerance", 2.5),
              el("LowTolerance", -2.5) if complete else None)


def tolerance(member, complete=True):
    if not complete:
        return el("Tolerance", limits(False), member)
    lights = [el(order + "Illuminant", turn(order, ILLUMINANTS))
              for order in ("Primary", "Secondary", "Tertiary")]
    return el("Tolerance", custom("Agreed by"), limits(True), lights,
              el("FieldOfView", turn("Tolerance field", FIELDS)),
              el("WarningLevel", turn("level", (0.75, 0.0, "INF"))),
              el("UniqueID", f"tol-{turn('tol', range(1, 100))}"),
              el("Global", turn("Global", ("true", "false"))), geometry("Geometry"),
              member, Name=text())


def sample(kind, complete, *rows, **attributes):
    head = [custom("Rack"), el("Backing", turn("Backing", BACKINGS)),
            el("Manufacturer", "Tryckeri Älvsborg"), el("ProductionDate", moment()),
            el("SerialNumber", "0001"), el("Comment", text())] if complete else []
    under = substrate(turn("sample substrate", ("Wood", "Tile", "Generic", "Film")))
    return el("Sample" + kind, head, under, *rows, **attributes)


def spot(width, height, complete=True):
    return sample("Spot", complete, el("Specification", el("SampleWidth", width),
                                       el("SampleHeight", height)))


def target(kind, complete=True):
    custom_name = {"CustomTarget": "Älvsborg ramp"} if kind == TARGETS[-1] else {}
    return sample("Target", complete, el("Target", kind), **custom_name)


def physical(member, coating="", process=None):
    return el("PhysicalSample", custom("Drawer") if process else None,
              el("Coating", coating) if process else None, process, member)


def record(name, physical_sample, pairs, tolerances=()):
    return el("ColorQualityControl", custom("Audit"), el("ChangeHistory", moment()),
              el("ChangeHistory", moment()), pairs, physical_sample, tolerances, Name=name,
              Description=text(), UniqueID=f"qc-{turn('qc', range(1, 100))}", Comments=text())


def measurement(*functions):
    return el("Measurement", custom("Pass"), device(), colour("Measured", small_space()),
              *functions)


def pair(standard, *measurements):
    return el("StandardAndMeasurement", custom("Pair"), *measurements, standard)


def functions_document():
    nil_standard = el("Standard", xsi_nil="true")
    standard = el("Standard", custom("Master"), plain_device(), colour("Wanted", small_space()),
                  tolerance(function("DE")), tolerance(function("DE94", False), False))
    pull = measurement([function(kind) for kind in FUNCTIONS],
                       [typed_function(kind) for kind in FUNCTIONS],
                       function_tolerance("DE*", True))
    process = [el("Process", el("Name", "Offset"), el("Thickness", thickness))
               for thickness in (0.0, 1e9)]
    simple = el("Process", el("Name", ""))
    records = [record("Complete", physical(spot(12.5, 0.0), "varnish", process[0]),
                      [pair(standard, pull, measurement()), pair(nil_standard)],
                      [tolerance(function(kind)) for kind in FUNCTIONS]
                      + [tolerance(typed_function("MeanDE"), False)]
                      + [tolerance(function_tolerance(kind, i % 2 == 0), i % 3 != 0)
                         for i, kind in enumerate(TOLERANCE_TYPES)]),
               record("Spot", physical(spot(-1.0, 1e9, False)), pair(nil_standard))]
    records += [record("Target " + kind, physical(target(kind, i < 4), "", made),
                       pair(nil_standard))
                for i, (kind, made) in enumerate(
                    zip(TARGETS, itertools.cycle((process[1], simple, None))))]
    return el("Zol", el("Preamble", header("Functions, tolerances, samples")), records)


# --- the three forms --------------------------------------------------------------------------

def main():
    where = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).parent
    # As an editor on a system with two-character line ends saves it.
    write(where / "coverage-frame.zol", frame_document(),
          Form(prefix="c", indent="  ", carriage_returns=True, mark=True,
               prolog="<!-- Everything around the colour spaces. -->"))
    # One element a line, tabs: as a program would write it.
    write(where / "coverage-spaces.zol", spaces_document(), Form())
    # One long line in an eight-bit encoding, with the namespace as the default one.
    write(where / "coverage-functions.zol", functions_document(),
          Form(prefix="", newline="", indent="", encoding="ISO-8859-1"))


if __name__ == "__main__":
    main()
