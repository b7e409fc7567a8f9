"""Published colorimetry, as far as the sample documents need it.

Sources:
  IEC 61966-2-1:1999, sRGB: transfer function, matrix and white point D65.
  CIE 15:2004: tristimulus summation (7.1), chromaticity (7.3), CIELAB and CIELUV (8.2),
    illuminant A (3.1); the CIELAB constants as ratios of integers.
  C. Wyman, P.-P. Sloan, P. Shirley: Simple Analytic Approximations to the CIE XYZ Color Matching
    Functions, Journal of Computer Graphics Techniques 2 (2), 2013: the 2 degree observer.
  M. Planck, 1900: the black body, with the constants of CODATA 2018.
"""

from math import atan2, cbrt, degrees, exp, hypot

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


def observer(wavelength):
    """The 2 degree colour matching functions at a wavelength in nanometres."""
    def lobe(mean, below, above):
        t = (wavelength - mean) * (below if wavelength < mean else above)
        return exp(-0.5 * t * t)

    x = (0.362 * lobe(442.0, 0.0624, 0.0374) + 1.056 * lobe(599.8, 0.0264, 0.0323)
         - 0.065 * lobe(501.1, 0.0490, 0.0382))
    y = 0.821 * lobe(568.8, 0.0213, 0.0247) + 0.286 * lobe(530.9, 0.0613, 0.0322)
    z = 1.217 * lobe(437.0, 0.0845, 0.0278) + 0.681 * lobe(459.0, 0.0385, 0.0725)
    return x, y, z


def illuminant_a(wavelength):
    """Relative power, 100 at 560 nm."""
    c2 = 1.435e7 / 2848  # the constants that define illuminant A
    return 100 * (560 / wavelength) ** 5 * (exp(c2 / 560) - 1) / (exp(c2 / wavelength) - 1)


def black_body(wavelength, kelvin):
    """Spectral radiance in watt per steradian, square metre and nanometre."""
    metres = wavelength * 1e-9
    radiance = FIRST_RADIANCE / metres ** 5 / (exp(SECOND_RADIATION / (metres * kelvin)) - 1)
    return radiance * 1e-9


def tristimulus(spectrum, light):
    """XYZ of a reflectance or transmittance under `light`, the perfect diffuser at Y = 1."""
    scale = sum(light(w) * observer(w)[1] for w in WAVELENGTHS)
    return tuple(sum(spectrum(w) * light(w) * observer(w)[i] for w in WAVELENGTHS) / scale
                 for i in range(3))


def emitted_tristimulus(radiance):
    """XYZ of a source, Y its luminance in candela per square metre."""
    step = WAVELENGTHS.step
    return tuple(LUMINOUS_EFFICACY * step * sum(radiance(w) * observer(w)[i] for w in WAVELENGTHS)
                 for i in range(3))
