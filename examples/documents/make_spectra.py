#!/usr/bin/env python3
"""Makes spectra.zol: spectra of formulas, with their measurement conditions and coordinates.

    make_spectra.py [out.zol]

Reflectances are logistic edges and bell-shaped bands, the usual shapes of inks and paints;
transmittances follow the law of Beer and Lambert; the sources are black bodies. The coordinates
are summed from the written points, so they agree with them to the last digit written. The instrument,
its maker and the people are invented.
"""

import pathlib
import sys
from math import exp, log10

import colour_maths as cm
from markup import Form, comment, el, write

MEASURED = "2026-03-05T09:30:15.5+01:00"
COMPUTED = "2026-11-21T10:30:00Z"
WHITE_A = cm.tristimulus(dict.fromkeys(cm.WAVELENGTHS, 1.0), cm.illuminant_a)


def edge(centre, width, low, high):
    return lambda w: low + (high - low) / (1 + exp((centre - w) / width))


def band(centre, width, low, high):
    return lambda w: low + (high - low) * exp(-((w - centre) / width) ** 2)


def filtered(*bands):
    """Transmittance of a dye whose absorbance is a sum of (centre, width, peak) bands."""
    return lambda w: 10 ** -sum(peak * exp(-((w - centre) / width) ** 2)
                                for centre, width, peak in bands)


def device(name, serial, *settings):
    return el("Device",
              el("CustomAttribute", el("Name", "Bandwidth"),
                 el("ValueChoice", el("DoubleValue", 10.0))),
              el("Manufacturer", "Lindqvist Färgmätning AB"),
              el("Model", name), el("SerialNumber", serial),
              el("DeviceClass", "DeviceClass_Spot"),
              el("FirmwareVersion", "4.1.2"), el("BootFirmwareVersion", "1.0"),
              el("CalibrationState", "CalibrationState_Calibrated",
                 CalibrationDateTime="2026-03-05T08:00:00+01:00"),
              el("DeviceSettings", *settings))


BENCH = device("Bänk 45", "LF-0452",
               el("Aperture", 4), el("GlassCompensation", False),
               el("GlossCompensation", "true", CompensationValue=4.0),
               el("Averaging", "true", AveragingValue=3))
SPHERE = device("Klot d/8", "LF-0817",
                el("Aperture", 8), el("LensPosition", -2),
                el("GlossCompensation", "false", CompensationValue=0.0),
                el("Averaging", "true", AveragingValue=5), el("GridTuner", True))
TELESCOPE = device("Fjärr 1", "LF-1003", el("Averaging", "true", AveragingValue=10))


def conditions(instrument, light_filter, polarised):
    return [el("Device", *instrument.content), el("DeviceFilter", light_filter),
            el("DevicePolarization", polarised), el("ChangeHistory", MEASURED)]


def spectral(kind, instrument, geometry, table, light_filter, polarised):
    return el("ColorSpaceSpecificationSpectrumSpectral",
              conditions(instrument, light_filter, polarised), el("Spectrum", kind),
              el("GeometryChoice", geometry), el("ASTM_Table", table))


def tristimulus(kind, geometry):
    return el("ColorSpaceSpecificationSpectrumTristimulus",
              el("DeviceFilter", xsi_nil="true"), el("DevicePolarization", xsi_nil="true"),
              el("ChangeHistory", COMPUTED), el("Spectrum", kind),
              el("IlluminationOptions", el("Illuminant", "Illuminant_A"),
                 Description="relative power by the table of CIE 15"),
              el("FieldOfView", "FieldOfView_2_Degree"), el("GeometryChoice", geometry))


def generic(kind, geometry):
    return el("ColorSpaceSpecificationSpectrumGeneric",
              conditions(SPHERE, "Filter_None", "false"), el("Spectrum", kind),
              el("GeometryChoice", geometry), el("DensityStatus", "Status_Spectral"))


def measured(spectrum):
    return {w: round(spectrum(w), 6) for w in cm.WAVELENGTHS}


def points(spectrum):
    return [el("ReflectancePoint", v, Wavelength=w) for w, v in measured(spectrum).items()]


def space(name, specification, names, values):
    # Six places keep chromaticities exact enough and leave no "-0".
    return el(name, el("ChangeHistory", COMPUTED), specification,
              [el(n, round(v, 6) + 0.0) for n, v in zip(names, values)])


def coordinates(spectrum, kind, geometry):
    xyz = cm.tristimulus(measured(spectrum), cm.illuminant_a)
    lab = cm.xyz_to_lab(xyz, WHITE_A)
    specification = tristimulus(kind, geometry)
    # XYZ is scaled to a white of Y = 1; under illuminant A its X may pass 1 and is then left out.
    fits = max(xyz) <= 1
    return [
        space("ColorSpaceCIELab", specification, ("L", "A", "B"), lab),
        space("ColorSpaceCIELCh", specification, ("L", "C", "H"), cm.lab_to_lch(lab)),
        space("ColorSpaceCIEXYZ", specification, ("X", "Y", "Z"), xyz) if fits else None,
        space("ColorSpaceCIExyY", specification, ("X", "Y", "CapY"), cm.xyz_to_xyy(xyz)),
        space("ColorSpaceCIELuv", specification, ("L", "U", "V"), cm.xyz_to_luv(xyz, WHITE_A)),
    ]


def reflectance(name, number, association, spectrum, instrument, geometry, **how):
    specification = spectral("Spectrum_Reflectance", instrument, geometry, **how)
    return el("Color", el("ChangeHistory", MEASURED), el("SemanticAssociation", association),
              el("ColorSpaceSpectral", el("ChangeHistory", MEASURED), specification,
                 points(spectrum), Name="Reflectance, 380 to 730 nm"),
              coordinates(spectrum, "Spectrum_Reflectance", geometry),
              el("SubstratePaper", el("PaperThickness", 0.11), el("PaperType", "wood-free")),
              ColorName=name, ColorNumber=number)


def transmittance(name, number, kind, spectrum, density_filter, peak, geometry):
    specification = spectral(kind, SPHERE, geometry, "E308_Table6", "Filter_None", "false")
    density = -log10(spectrum(peak))
    return el("Color", el("ChangeHistory", MEASURED),
              el("ColorSpaceDensity", el("ChangeHistory", COMPUTED), generic(kind, geometry),
                 el("Density", round(density, 4), DensityStatus="Status_Spectral",
                    DensityFilter=density_filter), Name=f"Density at {peak} nm"),
              el("ColorSpaceSpectral", el("ChangeHistory", MEASURED), specification,
                 points(spectrum)),
              coordinates(spectrum, kind, geometry),
              el("SubstrateFilm", el("FilmType", "acetate")),
              ColorName=name, ColorNumber=number)


def source(kelvin):
    """A black body as a distant source, in spectral radiance and luminance."""
    radiance = {w: float(f"{cm.black_body(w, kelvin):.7g}") for w in cm.WAVELENGTHS}
    base = [el("DeviceFilter", "Filter_None"), el("DevicePolarization", xsi_nil="true"),
            el("ChangeHistory", COMPUTED), el("EmissiveType", "Emissive_Spot"),
            el("EmissiveMode", "EmissiveMode_NA")]
    spectral_specification = el(
        "ColorSpaceSpecificationEmissiveSpectral",
        el("Device", *TELESCOPE.content), base, el("GeometryChoice", el("Angle", 0.0)))
    specification = el(
        "ColorSpaceSpecificationEmissiveTristimulus", base,
        el("IlluminationOptions", el("ColorTemperature", kelvin)),
        el("FieldOfView", "FieldOfView_2_Degree"))
    xyz = cm.emitted_tristimulus(radiance)
    return el("Color", el("ChangeHistory", COMPUTED),
              el("ColorSpaceEmissiveSpectral", el("ChangeHistory", COMPUTED),
                 spectral_specification,
                 [el("EmissiveSpectralPoint", value, Wavelength=w)
                  for w, value in radiance.items()],
                 Name="Radiance in W/(sr m² nm)"),
              space("ColorSpaceEmissiveCIEXYZ", specification, ("X", "Y", "Z"), xyz),
              space("ColorSpaceEmissiveCIExyY", specification, ("X", "Y", "CapY"),
                    cm.xyz_to_xyy(xyz)),
              ColorName=f"Black body {kelvin} K")


INKS = (
    ("Cyan ink", "C", "cold", band(480, 75, 0.05, 0.72)),
    ("Magenta ink", "M", "warm", lambda w: 0.35 * band(430, 45, 0.0, 1.0)(w)
     + edge(600, 12, 0.04, 0.84)(w)),
    ("Yellow ink", "Y", "sunny", edge(492, 14, 0.05, 0.86)),
    ("Black ink", "K", "night", lambda w: 0.021),
    ("Red overprint", "M+Y", "fire", edge(596, 11, 0.03, 0.83)),
    ("Green overprint", "C+Y", "grass", band(525, 38, 0.03, 0.42)),
)
TILES = (
    ("White tile", "T1", "calibration", edge(395, 9, 0.60, 0.91)),
    ("Grey tile", "T2", "neutral", lambda w: 0.18),
    ("Teal tile", "T3", "sea", band(505, 52, 0.07, 0.38)),
)
FILTERS = (
    ("Blue filter", "F1", "Spectrum_Transmittance",
     filtered((600, 70, 2.2)), "Filter_Red", 600),
    ("Green filter", "F2", "Spectrum_Transmittance",
     filtered((430, 45, 1.8), (650, 48, 2.0)), "Filter_Blue", 430),
    ("Frosted amber filter", "F3", "Spectrum_TotalTransmittance",
     filtered((420, 60, 2.6)), "Filter_Blue", 420),
)


def document():
    ring, with_gloss = el("Angle", 45), el("SphereGeometry", "Sphere_Included")
    return el(
        "Zol",
        el("Preamble",
           el("Header", el("Creator", "make_spectra.py"), el("CreatorVersion", "1"),
              el("ChangeHistory", COMPUTED), el("Purpose", "Spectra and what follows from them"),
              el("Comments", "36 points from 380 to 730 nm; coordinates for illuminant A")),
           el("Owner", el("Person", el("Name", "Åsa Lindqvist"),
                          el("ContactInfo", "asa@example.org")),
              el("Copyright", "public domain"), el("Company", "Lindqvist Färgmätning AB"))),
        comment("Inks on paper, 45:0, a polarising filter against surface gloss."),
        [reflectance(*ink, BENCH, ring, table="E308_Table5", light_filter="Filter_UVExcluded",
                     polarised="true") for ink in INKS],
        comment("Ceramic tiles in a sphere, gloss included."),
        [reflectance(*tile, SPHERE, with_gloss, table="E308_Table6", light_filter="Filter_UVD65",
                     polarised="false") for tile in TILES],
        comment("Filters in transmission; densities at the peak of absorption."),
        [transmittance(*entry, with_gloss) for entry in FILTERS],
        comment("Sources."),
        [source(kelvin) for kelvin in (2856, 4000, 6504)])


def main():
    target = sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent / "spectra.zol"
    write(target, document(), Form(prefix="z", instance="i", indent="  "))


if __name__ == "__main__":
    main()
