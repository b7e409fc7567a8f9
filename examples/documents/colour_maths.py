"""Published colorimetry, as far as the sample documents need it.

Sources:
  IEC 61966-2-1:1999, sRGB: transfer function, matrix and white point D65.
  CIE 15:2004: tristimulus summation (7.1), chromaticity (7.3), CIELAB and CIELUV (8.2); the CIELAB
    constants as ratios of integers. Its tables are those of colorimetry/data.
  CIE 167:2005: interpolation by Sprague's formula.
  M. Planck, 1900: the black body, with the constants of CODATA 2018.
"""

import csv
import pathlib
from math import atan2, cbrt, degrees, exp, hypot

TABLES = pathlib.Path(__file__).resolve().parents[2] / "colorimetry/data"

SRGB_TO_XYZ = ((0.4124, 0.3576, 0.1805), (0.2126, 0.7152, 0.0722), (0.0193, 0.1192, 0.9505))
SRGB_WHITE = tuple(map(sum, SRGB_TO_XYZ))

WAVELENGTHS = range(380, 731, 10)  # nanometres
SECOND_RADIATION = 1.438776877e-2  # metre kelvin
FIRST_RADIANCE = 1.191042972e-16  # watt square metre per steradian
LUMINOUS_EFFICACY = 683.0  # lumen per watt


def srgb_to_xyz(rgb):
    """Eight-bit sRGB to XYZ with the white at Y = 1."""
    linear = [c / 12.92 if c <= 0.04045 else ((c + 0.055) / 1.055) ** 2.4
              for c in (value / 255 for value in rgb)]
    return tuple(sum(m * c for m, c in zip(row, linear)) for row in SRGB_TO_XYZ)


def lightness(ratio):
    return 116 * lab_function(ratio) - 16


def lab_function(ratio):
    return cbrt(ratio) if ratio > (24 / 116) ** 3 else 841 / 108 * ratio + 16 / 116


def xyz_to_lab(xyz, white):
    x, y, z = (lab_function(value / reference) for value, reference in zip(xyz, white))
    return 116 * y - 16, 500 * (x - y), 200 * (y - z)


def lab_to_lch(lab):
    l, a, b = lab
    return l, hypot(a, b), degrees(atan2(b, a)) % 360


def xyz_to_xyy(xyz):
    total = sum(xyz)
    return xyz[0] / total, xyz[1] / total, xyz[1]


def xyz_to_luv(xyz, white):
    def uv(x, y, z):
        divisor = x + 15 * y + 3 * z
        return 4 * x / divisor, 9 * y / divisor

    (u, v), (un, vn) = uv(*xyz), uv(*white)
    l = lightness(xyz[1] / white[1])
    return l, 13 * l * (u - un), 13 * l * (v - vn)


def table(name):
    """The rows of a table by wavelength, each a dictionary of its numbers."""
    with open(TABLES / name, newline="") as file:
        return {int(row.pop("wavelength_nm")): {k: float(v) for k, v in row.items() if v}
                for row in csv.DictReader(file)}


OBSERVERS = table("observers.csv")
ILLUMINANTS = table("illuminants.csv")


def observer(wavelength):
    """The 2 degree colour matching functions at a whole wavelength in nanometres."""
    row = OBSERVERS[wavelength]
    return row["x2"], row["y2"], row["z2"]


def illuminant(name, wavelength):
    """Relative power, linear between the 5 nm of the table, and 0 outside of it."""
    below = wavelength - wavelength % 5
    above = below + 5 if wavelength % 5 else below
    low, high = (ILLUMINANTS.get(w, {}).get(name) for w in (below, above))
    if low is None or high is None:
        return 0.0
    return low + (high - low) * (wavelength - below) / 5


def illuminant_a(wavelength):
    return illuminant("A", wavelength)


def equal_energy(wavelength):
    return 1.0


def interpolated(values):
    """A measured spectrum, evenly spaced, at any wavelength: Sprague's polynomial of the fifth degree
    between two points, the end value beyond the ends.

    The polynomial has the value and the first two derivatives of two quartics where they are in the
    middle: one through the five points around the left end of the interval, one through those around
    the right end. The two points that are missing at either end of the data follow from CIE 167.
    """
    wavelengths = sorted(values)
    step = wavelengths[1] - wavelengths[0]
    data = [values[w] for w in wavelengths]
    outer, inner = (884, -1960, 3033, -2648, 1080, -180), (508, -540, 488, -367, 144, -24)
    before = [sum(c * v for c, v in zip(row, data)) / 209 for row in (outer, inner)]
    behind = [sum(c * v for c, v in zip(row, data[::-1])) / 209 for row in (inner, outer)]
    padded = before + data + behind

    def derivatives(i):
        m2, m1, z, p1, p2 = padded[i:i + 5]
        return z, (m2 - 8 * m1 + 8 * p1 - p2) / 12, (-m2 + 16 * m1 - 30 * z + 16 * p1 - p2) / 12

    def at(wavelength):
        if wavelength <= wavelengths[0]:
            return data[0]
        if wavelength >= wavelengths[-1]:
            return data[-1]
        i, t = divmod((wavelength - wavelengths[0]) / step, 1)
        (f0, d0, s0), (f1, d1, s1) = derivatives(int(i)), derivatives(int(i) + 1)
        # The quintic of Hermite.
        return (f0 * (1 - 10 * t ** 3 + 15 * t ** 4 - 6 * t ** 5)
                + d0 * (t - 6 * t ** 3 + 8 * t ** 4 - 3 * t ** 5)
                + s0 * (t ** 2 - 3 * t ** 3 + 3 * t ** 4 - t ** 5) / 2
                + s1 * (t ** 3 - 2 * t ** 4 + t ** 5) / 2
                + d1 * (-4 * t ** 3 + 7 * t ** 4 - 3 * t ** 5)
                + f1 * (10 * t ** 3 - 15 * t ** 4 + 6 * t ** 5))

    return at


def black_body(wavelength, kelvin):
    """Spectral radiance in watt per steradian, square metre and nanometre."""
    metres = wavelength * 1e-9
    radiance = FIRST_RADIANCE / metres ** 5 / (exp(SECOND_RADIATION / (metres * kelvin)) - 1)
    return radiance * 1e-9


def summed(spectrum, light):
    """X, Y and Z by sums at 1 nm, not scaled."""
    return tuple(sum(spectrum(w) * light(w) * observer(w)[i] for w in OBSERVERS) for i in range(3))


def tristimulus(values, light):
    """XYZ of a measured reflectance or transmittance under `light`, the perfect diffuser at Y = 1."""
    scale = summed(equal_energy, light)[1]
    return tuple(value / scale for value in summed(interpolated(values), light))


def emitted_tristimulus(values):
    """XYZ of a source of measured radiance, Y its luminance in candela per square metre."""
    return tuple(LUMINOUS_EFFICACY * value
                 for value in summed(interpolated(values), equal_energy))
