#!/usr/bin/env python3
"""What zol report writes: report_test.py COMMAND TextTest|BrowserTest [unittest options].

With --accept behind the command the reference pictures are written anew. Where Chromium,
chromedriver or Pillow is missing, BrowserTest ends with status 77; without poppler or axe-core the
test that needs it is skipped.
"""

import collections
import html.parser
import io
import os
import pathlib
import pty
import re
import resource
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

import browser

try:
    from PIL import Image, ImageChops
except ImportError:
    sys.path.append("/usr/lib/python3/dist-packages")  # a Python that is not Debian's
    try:
        from PIL import Image, ImageChops
    except ImportError:
        Image = None

SKIPPED = 77
SOURCE = pathlib.Path(__file__).resolve().parents[2]
SAMPLES = sorted((SOURCE / "examples/documents").glob("*.zol"))
REFERENCES = pathlib.Path(__file__).resolve().parent / "report"
NAMESPACE = "{http://example.org/zol/v2}"
VOID = {"meta", "br"}
COMMAND = None
IS_ACCEPTING = False

STAMP = "<Zol:ChangeHistory>2026-01-02T03:04:05Z</Zol:ChangeHistory>"
CONDITIONS = (f'<Zol:ColorSpaceSpecificationSpectrumTristimulus><Zol:DeviceFilter xsi:nil="true"/>'
              f'<Zol:DevicePolarization xsi:nil="true"/>{STAMP}'
              "<Zol:Spectrum>Spectrum_Reflectance</Zol:Spectrum><Zol:IlluminationOptions>"
              "<Zol:Illuminant>Illuminant_D50</Zol:Illuminant></Zol:IlluminationOptions>"
              "<Zol:FieldOfView>FieldOfView_2_Degree</Zol:FieldOfView>"
              "</Zol:ColorSpaceSpecificationSpectrumTristimulus>")


def color(name, lab=(50, 10, 10), attributes="", spectrum=""):
    values = "".join(f"<Zol:{axis}>{value}</Zol:{axis}>" for axis, value in zip("LAB", lab))
    name = (name.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;")
            .replace('"', "&quot;"))
    return (f'<Zol:Color ColorName="{name}" {attributes}>{STAMP}{spectrum}<Zol:ColorSpaceCIELab>'
            f"{STAMP}{CONDITIONS}{values}</Zol:ColorSpaceCIELab></Zol:Color>\n")


def document(*parts):
    return ('<?xml version="1.0" encoding="UTF-8"?>\n'
            '<Zol:Zol xmlns:Zol="http://example.org/zol/v2" '
            'xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"><Zol:Preamble><Zol:Header>'
            f"<Zol:Creator>someone</Zol:Creator><Zol:CreatorVersion>1</Zol:CreatorVersion>{STAMP}"
            "<Zol:Purpose>test</Zol:Purpose></Zol:Header></Zol:Preamble>"
            f"{''.join(parts)}</Zol:Zol>")


def run(*arguments, data=None):
    return subprocess.run([COMMAND, "report", *map(str, arguments)], input=data,
                          capture_output=True, timeout=120)


class Page(html.parser.HTMLParser):
    """The elements of a page; a fault in their nesting is an exception."""

    def __init__(self, text):
        super().__init__(convert_charrefs=True)
        self.elements = []  # name and attributes
        self.names = []     # of colours
        self.open = []
        self.feed(text)
        self.close()
        if self.open:
            raise ValueError(f"not closed: {self.open}")

    def handle_starttag(self, tag, attributes):
        self.elements.append((tag, dict(attributes)))
        if tag == "bdi" and self.open[-1] == "b":
            self.names.append("")
        if tag not in VOID:
            self.open.append(tag)

    def handle_startendtag(self, tag, attributes):
        self.elements.append((tag, dict(attributes)))

    def handle_endtag(self, tag):
        if not self.open or self.open.pop() != tag:
            raise ValueError(f"</{tag}> closes nothing at {self.getpos()}")

    def handle_data(self, data):
        if self.open[-2:] == ["b", "bdi"]:
            self.names[-1] += data

    def attributes(self, name):
        return [found[name] for _, found in self.elements if name in found]


class ReportTest(unittest.TestCase):
    def setUp(self):
        self.directory = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.directory)

    def write(self, text, name="case.zol"):
        path = self.directory / name
        path.write_text(text, encoding="utf-8")
        return path

    def expect(self, status, *arguments, **options):
        result = run(*arguments, **options)
        self.assertEqual(result.returncode, status, result.stderr.decode())
        return result

    def page(self, path, *options):
        return self.expect(0, path, *options).stdout.decode()


class TextTest(ReportTest):
    def test_manual_and_completion_know_every_option(self):
        manual = (SOURCE / "tools/zol.1").read_text().replace("\\-", "-")
        completion = (SOURCE / "tools/zol.bash").read_text()
        for word in {"report", *re.findall("--[a-z]+", self.expect(0, "--help").stdout.decode())}:
            self.assertIn(word, manual)
            self.assertIn(word, completion)

    def test_a_page_is_whole_and_fetches_nothing(self):
        for sample in SAMPLES:
            with self.subTest(sample.name):
                text = self.page(sample)
                page = Page(text)
                ids = page.attributes("id")
                self.assertEqual([i for i, n in collections.Counter(ids).items() if n > 1], [])
                targets = {f"#{found}" for found in ids}
                for href in page.attributes("href"):
                    self.assertIn(re.sub(r"%[0-9A-F]{2}", "?", href),
                                  {re.sub(r"[^\x00-\x7f]", lambda m: "?" * len(m[0].encode()), t)
                                   for t in targets} if "%" in href else targets)
                tags = {tag for tag, _ in page.elements}
                self.assertFalse(tags & {"script", "link", "img", "iframe", "object", "base"})
                self.assertFalse([name for _, found in page.elements for name in found
                                  if name.startswith("on") or name in ("src", "srcset", "action")])
                self.assertFalse(re.findall(r"url\((?!#)|@import|expression\(", text))
                colors = text.count("<p class=\"sw\">")
                self.assertEqual(colors, len(ElementTree.parse(sample).findall(
                    f"./{NAMESPACE}Color")) + sum(
                        len(ElementTree.parse(sample).findall(f".//{NAMESPACE}{where}/"
                                                              f"{NAMESPACE}Color"))
                        for where in ("ColorSet", "Standard", "Measurement")))

    def test_text_of_documents_is_text(self):
        names = ["<script>alert(1)</script>", "\"><img src=x onerror=alert(1)>", "</style><b>",
                 "a' onmouseover='x", "&amp;", "<!-- -->", "\u05d0\u05d1 abc", "\U0001f3a8"]
        page = Page(self.page(self.write(document(*map(color, names)))))
        self.assertEqual(page.names, names)
        turned = self.page(self.write(document(color("abc\u202edef\u2066", attributes=(
            'Comments="\u202edcba" UniqueID="x\u202ey z"')))))
        self.assertNotRegex(turned, "[\u202a-\u202e\u2066-\u2069]")
        self.assertIn("abc\u27e8U+202E\u27e9def\u27e8U+2066\u27e9", turned)
        long = self.page(self.write(document(color("n" * 200000))))
        self.assertLess(len(long), 40000)
        self.assertIn("(200,000 characters)", long)
        self.assertEqual(Page(self.page(self.write(document(color(""))))).names, ["(no name)"])

    def test_each_colour_has_a_link_that_stays(self):
        def ids(*parts):
            page = Page(self.page(self.write(document(*parts))))
            return [found for found in page.attributes("id") if re.match("colour($|-)", found)]
        self.assertEqual(
            ids(color("Red 1"), color("Red 1"), color("Red 1-2"), color("Red", attributes=(
                'ColorNumber="1"')), color("", attributes='UniqueID="a/b c"'), color(""),
                color("Grün"), color("Red 1", attributes='UniqueID="own"')),
            ["colour-Red-1", "colour-Red-1-2", "colour-Red-1-2-2", "colour-Red-1-3",
             "colour-a-b-c", "colour", "colour-Grün", "colour-own"])
        before, after = ids(color("b")), ids(color("a"), color("b"))
        self.assertEqual(before, after[1:])

    def test_swatches_have_the_colours_of_the_document(self):
        path = SOURCE / "examples/documents/named-colours.zol"
        wanted = []
        for space in ElementTree.parse(path).iter(f"{NAMESPACE}ColorSpaceSRGB"):
            rgb = [float(space.find(NAMESPACE + axis).text) for axis in ("Red", "Green", "Blue")]
            wanted.append("#" + "".join(f"{round(255 * value):02x}" for value in rgb))
        shown = re.findall(r'<p class="sw"><i style="background:(#[0-9a-f]{6})"></i>\1',
                           self.page(path))
        self.assertEqual(shown, wanted)

    def test_what_is_outside_of_srgb_says_so(self):
        text = self.page(self.write(document(color("in"), color("out", (60, -90, 90)))))
        self.assertEqual(text.count("outside sRGB"), 1)
        self.assertEqual(text.count('<i class="og"'), 1)

    def test_verdicts_are_drawn_with_their_limits(self):
        text = self.page(SOURCE / "examples/documents/quality-control.zol")
        # Worked out by hand: dL* -0.38, da* 0.45, db* -0.55 give 0.8059.
        self.assertIn('aria-label="0.81, limits \u2264 2"', text)
        self.assertIn('aria-label="dL* -0.38, limits -1.5 to 1.5"', text)
        self.assertIn("warning from 2.5", text)
        self.assertRegex(text, r"0\.805854</td><td>= Yes")
        self.assertEqual(text.count("Pass</b></td>"), 6)
        self.assertIn("there is no standard", text)

    def test_more_verdicts_than_a_page_holds(self):
        device = ("<Zol:Device><Zol:Manufacturer>m</Zol:Manufacturer><Zol:Model>m</Zol:Model>"
                  "<Zol:SerialNumber>1</Zol:SerialNumber></Zol:Device>")
        measured = f"<Zol:Measurement>{device}{color('pull', (50, 1, 0))}</Zol:Measurement>"
        tolerance = ("<Zol:Tolerance><Zol:Limits><Zol:HighTolerance>2</Zol:HighTolerance>"
                     "</Zol:Limits><Zol:FunctionDE/></Zol:Tolerance>")
        text = self.page(self.write(document(
            f"<Zol:ColorQualityControl>{STAMP}<Zol:StandardAndMeasurement>{measured * 150}"
            f"<Zol:Standard>{device}{color('standard', (50, 0, 0))}</Zol:Standard>"
            f"</Zol:StandardAndMeasurement>{tolerance * 150}</Zol:ColorQualityControl>")))
        self.assertIn("22,500 Pass", text)
        self.assertIn("zol check lists them", text)
        self.assertLess(len(text), 200000)

    def test_another_light(self):
        path = SOURCE / "examples/documents/spectra.zol"
        under_d50 = self.page(path, "--illuminant", "D50", "--observer", "10")
        self.assertIn("D50, 10 degrees", under_d50)
        self.assertNotIn(">A, 2 degrees</a>", under_d50)
        for wrong in (["--illuminant", "D51"], ["--observer", "3"]):
            self.assertIn(b"zol: ", self.expect(2, path, *wrong).stderr)

    def test_pictures_alone(self):
        spectra = SOURCE / "examples/documents/spectra.zol"
        for name in ("hues", "lightness", "spectra", "sources", "swatch:Cyan ink",
                     "spectrum:Cyan ink", "Cyan ink", "colour-Cyan-ink-C"):
            with self.subTest(name):
                root = ElementTree.fromstring(self.expect(0, spectra, "--svg", name).stdout)
                self.assertEqual(root.tag, "{http://www.w3.org/2000/svg}svg")
                self.assertTrue(root[0].text and root[1].text)
        twice = self.write(document(color("red"), color("red"), color("<&\u202e\"")))
        for name, complaint in (("nothing", b"no such picture"),
                                ("red", b"ask by id: colour-red, "),
                                ("spectrum:colour-red-2", b"no spectrum"),
                                ("spectra", b"no colours for it")):
            result = self.expect(2, twice, "--svg", name)
            self.assertIn(complaint, result.stderr)
            self.assertEqual(result.stdout, b"")
        self.expect(0, twice, "--svg", "swatch:colour-red-2")
        ElementTree.fromstring(self.expect(0, twice, "--svg", "<&\u202e\"").stdout)

    def test_spectra_that_no_instrument_reads(self):
        def spectrum(kind, row, points):
            rows = "".join(f'<Zol:{row} Wavelength="{nm}">{value}</Zol:{row}>'
                           for nm, value in points)
            specification = "ColorSpaceSpecification" + kind.replace("ColorSpace", "").replace(
                "Spectral", "SpectrumSpectral" if "Emissive" not in kind else "Spectral")
            return (f'<Zol:{kind}>{STAMP}<Zol:{specification} xsi:nil="true"/>{rows}</Zol:{kind}>')

        def reflectance(*points):
            return spectrum("ColorSpaceSpectral", "ReflectancePoint", points)

        def emission(*points):
            return spectrum("ColorSpaceEmissiveSpectral", "EmissiveSpectralPoint", points)

        cases = [reflectance((1e300, 0.5), (2e300, 0.6)), reflectance((1e-300, 9.9), (500, -0.9)),
                 reflectance((500, 0.5)), reflectance((400, 0.5), (400, 0.6)),
                 emission((400, "INF"), (500, 1)), emission((400, -1), (500, 0)),
                 emission((400, 1e308), (500, 1e308)), emission((400, 5e-324), (500, 5e-324))]
        path = self.write(document(*(color(f"odd {i}", (150, 150, -150), spectrum=case)
                                     for i, case in enumerate(cases))))
        text = self.page(path)
        self.assertEqual(len(Page(text).names), len(cases))
        self.assertLess(len(text), 100000)
        self.assertNotRegex(text, "(?i)[^a-z](nan|inf)[^a-z]")
        for name in ("spectra", "sources"):
            ElementTree.fromstring(self.expect(0, path, "--svg", name).stdout)

    def test_files(self):
        path = self.write(document(color("red")))
        output = self.directory / "report.html"
        output.write_text("old")
        self.expect(0, path, "-o", output)
        self.assertTrue(output.read_text().startswith("<!DOCTYPE html>"))
        self.assertEqual(self.expect(0, "-", data=path.read_bytes()).stdout.replace(
            b"standard input", b"case.zol"), output.read_bytes())
        old = output.read_bytes()
        self.expect(1, self.write("<x/>", "bad.zol"), "-o", output)
        self.assertEqual(output.read_bytes(), old)
        for name in ("case.zol", "new.zolz"):
            self.expect(2, path, "-o", self.directory / name)
        self.assertEqual(path.read_text(), document(color("red")))
        nowhere = self.expect(2, path, "-o", self.directory / "no/r.html")
        self.assertIn(b"No such file", nowhere.stderr)
        self.expect(2, self.directory / "missing.zol", "-o", output)

    def test_ten_thousand_colours(self):
        points = "".join(f'<Zol:ReflectancePoint Wavelength="{380 + 10 * i}">{0.02 * i:.2f}'
                         "</Zol:ReflectancePoint>" for i in range(36))
        spectrum = (f"<Zol:ColorSpaceSpectral>{STAMP}<Zol:ColorSpaceSpecificationSpectrumSpectral "
                    f'xsi:nil="true"/>{points}</Zol:ColorSpaceSpectral>')
        path = self.write(document(*(
            color(f"Colour {i}", (i % 100, i % 97 - 48, i % 89 - 44), f'UniqueID="id-{i}"',
                  spectrum)
            for i in range(10000))))
        before = resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime
        text = self.page(path)
        seconds = resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime - before
        self.assertLess(len(text.encode()), 15_000_000)
        self.assertLess(text.count("<") - text.count("</"), 25 * 10000)
        if "ZOL_TEST_SLOW" not in os.environ:
            self.assertLess(seconds, 2)


class ListTest(ReportTest):
    """zol list, as far as it knows what colours look like."""

    def lines(self, *arguments):
        result = subprocess.run([COMMAND, "list", *map(str, arguments)], capture_output=True)
        self.assertEqual(result.returncode, 0, result.stderr)
        return [line.split("\t") for line in result.stdout.decode().splitlines()]

    def on_terminal(self, path, **variables):
        environment = {name: value for name, value in os.environ.items()
                       if name not in ("NO_COLOR", "COLORTERM", "TERM")}
        master, slave = pty.openpty()
        process = subprocess.Popen([COMMAND, "list", path], stdout=slave,
                                   env=dict(environment, **variables))
        os.close(slave)
        text = b""
        try:
            while block := os.read(master, 1 << 16):
                text += block
        except OSError:  # how Linux tells the end
            pass
        os.close(master)
        self.assertEqual(process.wait(), 0)
        return text.decode()

    def test_conditions_number_pair_and_tolerance(self):
        lines = self.lines(SOURCE / "examples/documents/quality-control.zol")
        self.assertEqual(lines[0], [
            "House red", "", "CIELab L=46.82 A=68.15 B=47.6", "D50, 2 degrees, 45 degrees",
            "pull 1", "Solids, Measurement 1.1", "Customer's own; House, 2 degree; Per axis"])
        self.assertEqual(lines[3][5:], ["Solids, Measurement 2.1", "House, 2 degree; Per axis"])

    def test_another_light(self):
        flat = "".join(f'<Zol:ReflectancePoint Wavelength="{nm}">1</Zol:ReflectancePoint>'
                       for nm in range(360, 781, 20))
        white = (f"<Zol:ColorSpaceSpectral>{STAMP}<Zol:ColorSpaceSpecificationSpectrumSpectral "
                 f'xsi:nil="true"/>{flat}</Zol:ColorSpaceSpectral>')
        path = self.write(document(color("white", (50, 1, 1), "", white),
                                   color("plain", (100, 0, 0))))
        for options in (["--illuminant", "F11"], ["--illuminant", "A", "--observer", "10"]):
            perfect, plain = self.lines(path, *options)
            # The perfect diffuser is white under every light, and stays so when it is adapted.
            self.assertEqual(perfect[2], "CIELab L=100 A=0 B=0")
            self.assertEqual(plain[2], "CIELab L=100 A=0 B=0")
            self.assertIn(", from Spectral", perfect[3])
            self.assertIn("adapted by Bradford from D50, 2 degrees", plain[3])
        for wrong in (["--csv", "--observer", "10"], ["--illuminant", "daylight"]):
            result = subprocess.run([COMMAND, "list", path, *wrong], capture_output=True)
            self.assertEqual((result.returncode, result.stdout), (2, b""), wrong)

    def test_swatches(self):
        path = self.write(document(color("grey", (0, 0, 0)), color("out", (60, -90, 90))))
        rich = self.on_terminal(path, TERM="xterm", COLORTERM="truecolor")
        self.assertRegex(rich, r"\x1b\[48;2;0;0;0;97m    \x1b\[0m grey")
        self.assertRegex(rich, r"\x1b\[48;2;0;\d+;0;..m   !\x1b\[0m out")
        self.assertRegex(self.on_terminal(path, TERM="xterm-256color"), r"\x1b\[48;5;16;97m")
        for variables in ({"TERM": "xterm"}, {"TERM": "dumb", "COLORTERM": "truecolor"},
                          {"TERM": "xterm", "COLORTERM": "truecolor", "NO_COLOR": "1"}):
            self.assertNotIn("\x1b", self.on_terminal(path, **variables))


class BrowserTest(ReportTest):
    browser = None

    @classmethod
    def setUpClass(cls):
        cls.pages = pathlib.Path(tempfile.mkdtemp())
        cls.addClassCleanup(shutil.rmtree, cls.pages)
        for sample in SAMPLES:
            path = cls.pages / f"{sample.stem}.html"
            subprocess.run([COMMAND, "report", sample, "-o", path], check=True)
        cls.browser = cls.enterClassContext(browser.Browser())

    def show(self, name, width, dark=False, **look):
        self.browser.look(width, 900, dark, **look)
        self.browser.open((self.pages / f"{name}.html").as_uri())

    def screenshot(self, *clip):
        return Image.open(io.BytesIO(self.browser.screenshot(*clip))).convert("RGB")

    def test_it_fits_and_asks_for_nothing(self):
        self.browser.log("performance"), self.browser.log("browser")
        for name in ("quality-control", "spectra", "coverage-spaces"):
            for width in (360, 800, 1400):
                self.show(name, width, dark=width == 800)
                with self.subTest(f"{name}, {width}"):
                    self.assertEqual(self.browser.evaluate(
                        "return document.documentElement.scrollWidth"), width)
        asked = re.findall(r'"Network\.requestWillBeSent".*?"url":"([^"]*)"',
                           "\n".join(entry["message"] for entry in self.browser.log("performance")))
        self.assertGreater(len(asked), 0)
        # The browser's own first page loads parts of the browser.
        self.assertEqual([url for url in asked
                          if not url.startswith((self.pages.as_uri(), "chrome:"))], [])
        self.assertEqual([entry["message"] for entry in self.browser.log("browser")], [])

    def test_the_pixels_of_swatches(self):
        middle = """return [...document.querySelectorAll('.sw i:not(.no)')].map(swatch => {
          const box = swatch.getBoundingClientRect();
          return [box.left + box.width / 2, box.top + box.height / 2, swatch.style.background];
        }).filter(at => at[1] > 60 && at[1] < innerHeight)"""
        for name, width, dark in (("named-colours", 1400, False), ("named-colours", 360, True),
                                  ("spectra", 800, True), ("quality-control", 800, False)):
            self.show(name, width, dark)
            self.browser.evaluate("document.querySelector('#colours').scrollIntoView()")
            seen = 0
            for _ in range(4):
                swatches = self.browser.evaluate(middle)
                picture = self.screenshot()
                seen += len(swatches)
                for x, y, style in swatches:
                    wanted = tuple(map(int, re.findall(r"\d+", style)))
                    self.assertEqual(picture.getpixel((int(x), int(y))), wanted, (name, width))
                self.browser.evaluate("scrollBy(0, 1500)")
            self.assertGreater(seen, 3, name)

    def test_light_dark_and_paper(self):
        for dark, wanted in ((False, (255, 255, 255)), (True, (0x16, 0x16, 0x16))):
            self.show("quality-control", 800, dark)
            self.assertEqual(self.screenshot().getpixel((5, 5)), wanted)
        if shutil.which("pdftoppm") is None:
            self.skipTest("needs pdftoppm")
        # In the dark a printer still gets black on white, and the colours though no backgrounds.
        self.show("quality-control", 800, dark=True, media="")
        printed = subprocess.run(["pdftoppm", "-r", "40", "-png", "-f", "1", "-l", "1", "-"],
                                 input=self.browser.pdf(), stdout=subprocess.PIPE, check=True)
        picture = Image.open(io.BytesIO(printed.stdout)).convert("RGB")
        self.assertEqual(picture.getpixel((3, 3)), (255, 255, 255))
        colors = [found for _, found in picture.getcolors(1 << 20)]
        red = (0xd7, 0x1f, 0x24)
        self.assertLess(min(max(abs(a - b) for a, b in zip(found, red)) for found in colors), 4)

    def test_a_link_leads_to_its_colour(self):
        self.show("named-colours", 800)
        top = self.browser.evaluate("""location.hash = '#colour-x11-navy';
            const color = document.querySelector(location.hash);
            return new Promise(done => setTimeout(() => done(color.getBoundingClientRect().top),
                                                  300))""")
        self.assertTrue(0 <= top < 300, top)

    def test_accessibility(self):
        if not browser.AXE.exists():
            self.skipTest("needs axe-core")
        for name, width, dark in (("quality-control", 1400, False), ("quality-control", 360, True),
                                  ("spectra", 800, True)):
            self.show(name, width, dark)
            with self.subTest(f"{name}, {width}"):
                self.assertEqual(self.browser.violations(), [])

    def test_references(self):
        # One font that the machine surely has, and a look from afar: renderers differ in details.
        style = ("const style = document.createElement('style'); style.textContent = "
                 "'*{font-family:\"DejaVu Sans\"!important}'; document.head.append(style)")
        for name in ("quality-control", "spectra"):
            self.show(name, 800)
            self.browser.evaluate(style)
            self.browser.look(800, 2400)
            picture = self.screenshot().resize((200, 600), Image.BOX)
            reference = REFERENCES / f"{name}.png"
            if IS_ACCEPTING:
                picture.quantize(128).save(reference, optimize=True)
                continue
            wanted = Image.open(reference).convert("RGB")
            with self.subTest(name):
                difference = ImageChops.difference(picture, wanted).convert("L")
                # By strips, so that a small thing that is missing counts.
                far = max(sum(difference.crop((0, top, 200, top + 20)).histogram()[40:]) / 4000
                          for top in range(0, 600, 20))
                if far >= 0.03:
                    picture.save(f"{name}-differs.png")
                self.assertLess(far, 0.03, f"see {name}-differs.png; --accept renews the reference")


if __name__ == "__main__":
    COMMAND = sys.argv[1]
    arguments = sys.argv[2:]
    if arguments[:1] == ["--accept"]:
        IS_ACCEPTING = True
        arguments = ["BrowserTest.test_references", *arguments[1:]]
    if "BrowserTest" in " ".join(arguments) and (Image is None or not browser.available()):
        print("The report is not looked at: this needs Chromium, chromedriver and Pillow")
        sys.exit(SKIPPED)
    unittest.main(argv=[sys.argv[0], *arguments])
