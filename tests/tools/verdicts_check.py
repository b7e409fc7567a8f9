#!/usr/bin/env python3
"""Computes a quality-control record by formulas of its own, and has the command judge it:
verdicts_check.py ZOL [unittest options]."""

import json
import math
import pathlib
import random
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCE / "examples/documents"))

import colour_maths as cm  # noqa: E402

COMMAND = None
STAMP = "<ChangeHistory>2026-03-05T06:10:00+01:00</ChangeHistory>"
DEVICE = ("<Device><Manufacturer>m</Manufacturer><Model>m</Model>"
          "<SerialNumber>1</SerialNumber></Device>")
SPECIFICATION = ("<ColorSpaceSpecificationSpectrumSpectral><DeviceFilter>Filter_None</DeviceFilter>"
                 f"<DevicePolarization>false</DevicePolarization>{STAMP}"
                 "<Spectrum>Spectrum_Reflectance</Spectrum>"
                 "<GeometryChoice><Angle>45</Angle></GeometryChoice>"
                 "</ColorSpaceSpecificationSpectrumSpectral>")
FACTORS = "<Param_l>{0}</Param_l><Param_c>{1}</Param_c><Param_h>{2}</Param_h>"
WAVELENGTHS = range(380, 731, 10)


# --- Formulas, each as its publication has it, with angles in degrees --------------------------------

def hue(a, b):
    return math.degrees(math.atan2(b, a)) % 360


def de76(one, two):
    return math.dist(one, two)


def squared_hue(one, two):
    dc = math.hypot(*two[1:]) - math.hypot(*one[1:])
    return (two[1] - one[1]) ** 2 + (two[2] - one[2]) ** 2 - dc ** 2


def de94(one, two, kl=1, kc=1, kh=1):
    c = math.hypot(*one[1:])
    return math.sqrt(((two[0] - one[0]) / kl) ** 2
                     + ((math.hypot(*two[1:]) - c) / (kc * (1 + 0.045 * c))) ** 2
                     + squared_hue(one, two) / (kh * (1 + 0.015 * c)) ** 2)


def de_cmc(one, two, l=2, c=1):
    chroma, h = math.hypot(*one[1:]), hue(*one[1:])
    sl = 0.511 if one[0] < 16 else 0.040975 * one[0] / (1 + 0.01765 * one[0])
    sc = 0.0638 * chroma / (1 + 0.0131 * chroma) + 0.638
    f = math.sqrt(chroma ** 4 / (chroma ** 4 + 1900))
    t = (0.56 + abs(0.2 * math.cos(math.radians(h + 168))) if 164 <= h <= 345
         else 0.36 + abs(0.4 * math.cos(math.radians(h + 35))))
    sh = sc * (f * t + 1 - f)
    return math.sqrt(((two[0] - one[0]) / (l * sl)) ** 2
                     + ((math.hypot(*two[1:]) - chroma) / (c * sc)) ** 2
                     + squared_hue(one, two) / sh ** 2)


def de2000(one, two, kl=1, kc=1, kh=1):
    mean = (math.hypot(*one[1:]) + math.hypot(*two[1:])) / 2
    g = 0.5 * (1 - math.sqrt(mean ** 7 / (mean ** 7 + 25 ** 7)))
    (l1, a1, b1), (l2, a2, b2) = one, two
    a1, a2 = a1 * (1 + g), a2 * (1 + g)
    c1, c2, h1, h2 = math.hypot(a1, b1), math.hypot(a2, b2), hue(a1, b1), hue(a2, b2)
    dh = 0 if c1 * c2 == 0 else (h2 - h1 + 180) % 360 - 180
    big_dh = 2 * math.sqrt(c1 * c2) * math.sin(math.radians(dh / 2))
    if c1 * c2 == 0:
        h = h1 + h2
    elif abs(h1 - h2) <= 180:
        h = (h1 + h2) / 2
    else:
        h = (h1 + h2 + 360) / 2 if h1 + h2 < 360 else (h1 + h2 - 360) / 2
    l, c = (l1 + l2) / 2, (c1 + c2) / 2

    def cosine(angle):
        return math.cos(math.radians(angle))

    t = (1 - 0.17 * cosine(h - 30) + 0.24 * cosine(2 * h) + 0.32 * cosine(3 * h + 6)
         - 0.20 * cosine(4 * h - 63))
    sl = 1 + 0.015 * (l - 50) ** 2 / math.sqrt(20 + (l - 50) ** 2)
    sc, sh = 1 + 0.045 * c, 1 + 0.015 * c * t
    rt = (-2 * math.sqrt(c ** 7 / (c ** 7 + 25 ** 7))
          * math.sin(math.radians(60 * math.exp(-((h - 275) / 25) ** 2))))
    x, y, z = (l2 - l1) / (kl * sl), (c2 - c1) / (kc * sc), big_dh / (kh * sh)
    return math.sqrt(x * x + y * y + z * z + rt * y * z)


def de99(one, two):
    def din99(lab):
        e = lab[1] * math.cos(math.radians(16)) + lab[2] * math.sin(math.radians(16))
        f = 0.7 * (lab[2] * math.cos(math.radians(16)) - lab[1] * math.sin(math.radians(16)))
        chroma = math.log(1 + 0.045 * math.hypot(e, f)) / 0.045
        angle = math.atan2(f, e)
        return (105.51 * math.log(1 + 0.0158 * lab[0]), chroma * math.cos(angle),
                chroma * math.sin(angle))
    return math.dist(din99(one), din99(two))


def hunter(xyz, white):
    y = xyz[1] / white[1]
    ka, kb = 17500 / 198.04 * (white[0] + white[1]), 7000 / 218.11 * (white[1] + white[2])
    return (100 * math.sqrt(y), ka * (xyz[0] / white[0] - y) / math.sqrt(y),
            kb * (y - xyz[2] / white[2]) / math.sqrt(y))


def deviation(values):
    mean = sum(values) / len(values)
    return math.sqrt(sum((v - mean) ** 2 for v in values) / (len(values) - 1))


# --- A record of spectra --------------------------------------------------------------------------------

def tristimulus(values, light):
    return cm.tristimulus(values, lambda w: cm.illuminant(light, w))


def element(name, content):
    return f"<{name}>{content}</{name}>"


def color(values, name):
    points = "".join(f'<ReflectancePoint Wavelength="{w}">{v}</ReflectancePoint>'
                     for w, v in values.items())
    return (f'<Color ColorName="{name}">{STAMP}'
            + element("ColorSpaceSpectral", STAMP + SPECIFICATION + points) + "</Color>")


def by_type(kind):
    return (f'<Function xsi:type="FunctionTolerance"><ToleranceType>{kind}</ToleranceType>'
            "<Parameters><LowValue>0</LowValue></Parameters></Function>")


def document(pairs, tolerances):
    content = "".join(element("StandardAndMeasurement", pair) for pair in pairs)
    return ('<Zol xmlns="http://example.org/zol/v2" '
            'xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"><Preamble><Header>'
            f"<Creator>c</Creator><CreatorVersion>1</CreatorVersion>{STAMP}<Purpose>p</Purpose>"
            f"</Header></Preamble><ColorQualityControl>{STAMP}{content}{tolerances}"
            "</ColorQualityControl></Zol>")


class VerdictsTest(unittest.TestCase):
    def setUp(self):
        randoms = random.Random(5)

        def curve():
            centre, width = randoms.uniform(420, 680), randoms.uniform(20, 90)
            low, high = randoms.uniform(0.02, 0.3), randoms.uniform(0.4, 0.9)
            return {w: round(low + (high - low) * math.exp(-((w - centre) / width) ** 2), 5)
                    for w in WAVELENGTHS}

        def near(values):
            tilt, lift = randoms.uniform(-2e-4, 2e-4), randoms.uniform(-0.01, 0.02)
            return {w: round(v * (1 + tilt * (w - 550)) + lift, 5) for w, v in values.items()}

        self.groups = []
        for _ in range(6):
            standard = curve()
            self.groups.append((standard, [near(standard) for _ in range(3)]))

    def judge(self, text):
        with tempfile.TemporaryDirectory() as directory:
            path = pathlib.Path(directory) / "case.zol"
            path.write_text(text, encoding="utf-8")
            result = subprocess.run([COMMAND, "check", "--json", path], capture_output=True,
                                    check=False, timeout=60)
        self.assertIn(result.returncode, (0, 1), result.stderr)
        return json.loads(result.stdout)[0]

    def test_differences_and_statistics(self):
        light = "D65"
        white = tristimulus(dict.fromkeys(WAVELENGTHS, 1.0), light)
        functions = {
            "CIE 1976 dE*ab": ("<FunctionDE/>", de76),
            "CIE 1994 dE (2:1:1)": (element("FunctionDE94", FACTORS.format(2, 1, 1)),
                                    lambda a, b: de94(a, b, 2)),
            "CIEDE2000": (element("FunctionDE2000", FACTORS.format(1, 1, 1)), de2000),
            "CIEDE2000 (2:1:1)": (element("FunctionDE2000", FACTORS.format(2, 1, 1)),
                                  lambda a, b: de2000(a, b, 2)),
            "CMC(2:1)": (by_type("DEcmc"), de_cmc),
            "DIN99 dE": (by_type("DE99"), de99),
        }
        tolerances = "".join(
            element("Tolerance", "<Limits><HighTolerance>2</HighTolerance></Limits>"
                    f"<PrimaryIlluminant>Illuminant_{light}</PrimaryIlluminant>"
                    f"<FieldOfView>FieldOfView_2_Degree</FieldOfView>{function}")
            for function, _ in [*functions.values(), (by_type("HunterDE"), None),
                                ("<FunctionStdDevB/>", None), ("<FunctionMeanDE/>", None)])
        pairs, labs = [], []
        for standard, samples in self.groups:
            pairs.append("".join(element("Measurement", DEVICE + color(s, "sample"))
                                 for s in samples)
                         + element("Standard", DEVICE + color(standard, "standard")))
            labs.append([cm.xyz_to_lab(tristimulus(v, light), white)
                         for v in (standard, *samples)])
        shown = self.judge(document(pairs, tolerances))
        seen = 0
        for verdict in shown["verdicts"]:
            place, formula = verdict["place"], verdict["formula"]
            standard, *samples = labs[place["standard"] - 1]
            if formula in functions:
                expected = functions[formula][1](standard, samples[place["measurement"] - 1])
            elif formula == "Hunter dE":
                group = self.groups[place["standard"] - 1]
                expected = math.dist(*(hunter(tristimulus(v, light), white) for v in
                                       (group[0], group[1][place["measurement"] - 1])))
            elif formula == "standard deviation of b*":
                expected = deviation([lab[2] for lab in samples])
            else:
                self.assertEqual(formula, "mean CIE 1976 dE*ab")
                expected = sum(de76(standard, lab) for lab in samples) / len(samples)
            self.assertAlmostEqual(verdict["value"], expected, 8, formula)
            self.assertEqual(verdict["verdict"], "pass" if expected <= 2 else "fail")
            self.assertEqual(verdict["measurementFrom"], "spectrum")
            seen += 1
        self.assertEqual(seen, 6 * (3 * 7 + 2))

    def test_metamerism(self):
        tolerance = element(
            "Tolerance", "<Limits><HighTolerance>1</HighTolerance></Limits>"
            "<PrimaryIlluminant>Illuminant_D50</PrimaryIlluminant>"
            "<SecondaryIlluminant>Illuminant_A</SecondaryIlluminant>"
            "<TertiaryIlluminant>Illuminant_F11</TertiaryIlluminant>"
            f"<FieldOfView>FieldOfView_2_Degree</FieldOfView>{by_type('MetamerismIndex')}")
        pairs = [element("Measurement", DEVICE + color(samples[0], "sample"))
                 + element("Standard", DEVICE + color(standard, "standard"))
                 for standard, samples in self.groups]
        shown = self.judge(document(pairs, tolerance))
        self.assertEqual(len(shown["verdicts"]), len(self.groups))
        for verdict, (standard, samples) in zip(shown["verdicts"], self.groups):
            indices = {}
            for light in ("A", "F11"):
                white = tristimulus(dict.fromkeys(WAVELENGTHS, 1.0), light)
                factors = [a / b for a, b in zip(tristimulus(standard, "D50"),
                                                 tristimulus(samples[0], "D50"))]
                corrected = [v * f for v, f in zip(tristimulus(samples[0], light), factors)]
                indices[light] = de76(cm.xyz_to_lab(tristimulus(standard, light), white),
                                      cm.xyz_to_lab(corrected, white))
            worst = max(indices, key=indices.get)
            self.assertAlmostEqual(verdict["value"], indices[worst], 8)
            self.assertEqual(verdict["testIlluminant"], worst)

    def test_stored_results(self):
        white = tristimulus(dict.fromkeys(WAVELENGTHS, 1.0), "D50")
        pairs, wrong = [], []
        for number, (standard, samples) in enumerate(self.groups):
            labs = [cm.xyz_to_lab(tristimulus(v, "D50"), white) for v in (standard, samples[0])]
            result = round(de76(*labs), 4) + (0.02 if number % 3 == 0 else 0)
            wrong.append(number % 3 == 0)
            pairs.append(element("Measurement", DEVICE + color(samples[0], "sample")
                                 + element("FunctionDE", element("Result", result)))
                         + element("Standard", DEVICE + color(standard, "standard")))
        shown = self.judge(document(pairs, ""))
        self.assertEqual([result["storedDisagrees"] for result in shown["results"]], wrong)
        self.assertEqual(shown["summary"]["storedDisagree"], sum(wrong))


if __name__ == "__main__":
    COMMAND = sys.argv[1]
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
