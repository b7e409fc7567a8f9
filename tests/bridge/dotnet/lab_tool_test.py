#!/usr/bin/env python3
"""Runs the laboratory's tool as its users would, and looks at what it wrote with others.

    lab_tool_test.py DOCUMENTS ZOL COMMAND...

ZOL is the zol command; COMMAND starts the tool.
"""

import pathlib
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree
import zipfile


class LabToolTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = pathlib.Path(directory.name)

    def tool(self, *arguments, status=0):
        run = subprocess.run([*COMMAND, *map(str, arguments)], text=True, stdout=subprocess.PIPE,
                             stderr=subprocess.STDOUT)
        self.assertEqual(run.returncode, status, run.stdout)
        return run.stdout

    def document(self, path):
        """The root of what the tool wrote, once the library has nothing against it."""
        subprocess.run([ZOL, "validate", path], check=True, stdout=subprocess.DEVNULL)
        if path.suffix == ".zol":
            return xml.etree.ElementTree.parse(path).getroot()
        with zipfile.ZipFile(path) as archive:
            return xml.etree.ElementTree.fromstring(archive.read(archive.namelist()[0]))

    def count(self, root, name):
        return sum(1 for element in root.iter() if element.tag.endswith("}" + name))

    def test_shows_documents(self):
        shown = self.tool("show", *sorted(DOCUMENTS.glob("*.zol")))
        # As people in Germany read numbers.
        for said in ("Palette X11", "L* 98,64 a* 1,66 b* 0,59", "36 points from 380 to 730 nm",
                     "550 Srgb"):
            self.assertIn(said, shown)

    def test_writes_a_record_of_quality_control(self):
        record = self.directory / "record.zolz"
        self.assertIn("passed", self.tool("control", DOCUMENTS / "named-colours.zol", record))
        root = self.document(record)
        self.assertEqual(self.count(root, "StandardAndMeasurement"), 550)
        results = [float(e.text) for e in root.iter() if e.tag.endswith("}Result")]
        self.assertEqual(len(results), 550)
        self.assertTrue(all(0 <= result < 2 for result in results))

    def test_edits(self):
        thinned = self.directory / "thinned.zol"
        self.assertIn("550 colours became 276",
                      self.tool("thin", DOCUMENTS / "named-colours.zol", thinned))
        root = self.document(thinned)
        self.assertEqual(self.count(root, "ColorSpaceSRGB"), 276)

    def test_merges_what_threads_have_read(self):
        merged = self.directory / "merged.zol"
        names = ("named-colours", "spectra", "coverage-spaces")
        self.tool("merge", merged, *(DOCUMENTS / f"{name}.zol" for name in names))
        before = [xml.etree.ElementTree.parse(DOCUMENTS / f"{name}.zol").getroot() for name in names]
        self.assertEqual(self.count(self.document(merged), "ColorSpaceCIELab"),
                         sum(self.count(root, "ColorSpaceCIELab") for root in before))

    def test_tells_what_is_wrong(self):
        text = (DOCUMENTS / "quality-control.zol").read_text(encoding="utf-8")
        damages = {
            "cut.zol": text[:len(text) // 2],
            "number.zol": text.replace("<Zol:Result>", "<Zol:Result>,", 1),
            "bounds.zol": text.replace("<Zol:L>", "<Zol:L>-", 1),
            "stray.zol": text.replace("<Zol:L>", "<Zol:Surprise/><Zol:L>", 1),
            "none.zol": "", "other.zol": "<html/>", "no.zolz": "PK", "good.zol": text}
        paths = []
        for name, damage in damages.items():
            paths.append(self.directory / name)
            paths[-1].write_text(damage, encoding="utf-8")
        told = self.tool("check", *paths, self.directory / "absent.zol", status=1)
        self.assertEqual(told.count(": good"), 1)
        for line in told.splitlines():
            self.assertNotIn("Unhandled", line)
        self.assertIn("line ", told)
        for name in ("thin", "control"):
            target = self.directory / "target.zol"
            self.tool(name, self.directory / "cut.zol", target, status=1)
            self.assertFalse(target.exists())
        self.tool("bake", status=2)

    def test_makes_a_million_objects_in_constant_memory(self):
        print(self.tool("churn", 1000000), end="")


if __name__ == "__main__":
    DOCUMENTS, ZOL, *COMMAND = sys.argv[1:]
    DOCUMENTS = pathlib.Path(DOCUMENTS)
    unittest.main(argv=sys.argv[:1])
