#!/usr/bin/env python3
"""Holds thumbnails against the colours of documents: thumbnail_test.py ZOL [unittest options]."""

import io
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

try:
    from PIL import Image
except ImportError:
    sys.path.append("/usr/lib/python3/dist-packages")  # a Python that is not Debian's
    from PIL import Image

SOURCE = pathlib.Path(__file__).resolve().parents[2]
ZOL = sys.argv.pop(1)
STAMP = "<ChangeHistory>2026-01-02T03:04:05Z</ChangeHistory>"
HEAD = ('<Zol xmlns="http://example.org/zol/v2" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">'
        f"<Preamble><Header><Creator>c</Creator><CreatorVersion>1</CreatorVersion>{STAMP}"
        "<Purpose>p</Purpose></Header></Preamble>")


def colour(rgb):
    red, green, blue = (value / 255 for value in rgb)
    return (f'<Color ColorName="a">{STAMP}<ColorSpaceSRGB>{STAMP}'
            '<ColorSpaceSpecificationSpectrumTristimulus xsi:nil="true"/>'
            f"<Red>{red}</Red><Green>{green}</Green><Blue>{blue}</Blue><Alpha>1</Alpha>"
            "<ColorDepth>ColorDepth_8</ColorDepth></ColorSpaceSRGB></Color>")


def document(colours):
    return f"{HEAD}{''.join(map(colour, colours))}</Zol>".encode()


class ThumbnailTest(unittest.TestCase):
    def setUp(self):
        self.directory = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.directory)

    def expect(self, status, *arguments, data=b""):
        result = subprocess.run([ZOL, "thumbnail", *map(str, arguments)], input=data,
                                capture_output=True, timeout=60)
        self.assertEqual(result.returncode, status, result.stderr.decode())
        return result

    def pixels(self, colours, size):
        picture = self.expect(0, "-s", size, "-", "-", data=document(colours)).stdout
        image = Image.open(io.BytesIO(picture))
        self.assertEqual((image.format, image.mode, image.size), ("PNG", "RGB", (size, size)))
        return image

    def test_each_colour_has_its_place(self):
        red, green, blue, grey, white = (255, 0, 0), (0, 255, 0), (0, 0, 255), (90, 90, 90), (255,) * 3
        for colours, rows in (([red], [[red]]),
                              ([red, green], [[red, green]]),
                              ([red, green, blue, grey, white], [[red, green], [blue, grey, white]])):
            image = self.pixels(colours, 60)
            for row, wanted in enumerate(rows):
                height, width = 60 // len(rows), 60 // len(wanted)
                for column, colour in enumerate(wanted):
                    for x in (0, width - 1):
                        for y in (0, height - 1):
                            place = (column * width + x, row * height + y)
                            self.assertEqual(image.getpixel(place), colour, (colours, place))

    def test_of_many_colours_some_from_each_part(self):
        image = self.pixels([(i // 4, 0, 0) for i in range(1000)], 64)
        self.assertEqual(len(image.getcolors()), 64)
        self.assertGreater(image.getpixel((63, 63))[0], 240)

    def test_colours_that_can_not_be_shown_are_passed_over(self):
        ink = (f'<Color ColorName="ink">{STAMP}<ColorSpaceDensity>{STAMP}'
               '<ColorSpaceSpecificationSpectrumGeneric xsi:nil="true"/><Density '
               'DensityStatus="Status_HiFi" DensityFilter="Filter_Green">1</Density>'
               "</ColorSpaceDensity></Color>")
        text = document([(9, 8, 7)]).decode().replace("<Color ", ink * 200 + "<Color ")
        picture = self.expect(0, "-", "-", data=text.encode()).stdout
        self.assertEqual(Image.open(io.BytesIO(picture)).getcolors(), [(128 * 128, (9, 8, 7))])

    def test_real_documents(self):
        for path in sorted((SOURCE / "examples/documents").glob("[nqs]*.zol")):
            with self.subTest(path.name):
                self.expect(0, path, self.directory / "out.png")
                Image.open(self.directory / "out.png").verify()

    def test_what_can_not_be_drawn(self):
        out = self.directory / "out.png"
        out.write_text("old")
        self.assertIn(b"no colour", self.expect(1, "-", out, data=document([])).stderr)
        self.expect(1, "-", out, data=b"<x/>")
        self.expect(2, self.directory / "missing.zol", out)
        self.expect(2, "-s", 7, "-", out, data=document([(1, 2, 3)]))
        self.assertEqual(out.read_text(), "old")
        path = self.directory / "case.zol"
        path.write_bytes(document([(1, 2, 3)]))
        self.expect(2, path, path)
        self.assertEqual(path.read_bytes(), document([(1, 2, 3)]))

    def test_manual_and_completion_know_every_option(self):
        help_text = self.expect(0, "--help").stdout.decode()
        self.assertIn("--size", help_text)
        for name in ("zol.1", "zol.bash", "_zol"):
            text = (SOURCE / "tools" / name).read_text().replace("\\-", "-")
            self.assertIn("thumbnail", text)
            self.assertIn("--size", text)


if __name__ == "__main__":
    unittest.main()
