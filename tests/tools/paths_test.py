#!/usr/bin/env python3
"""Drives the commands that work by paths: paths_test.py COMMAND [unittest options]."""

import json
import os
import pathlib
import random
import re
import resource
import shutil
import subprocess
import sys
import unittest
import xml.etree.ElementTree as ElementTree
import zipfile

import zol_test
from zol_test import (COLOR, NAMESPACE, SAMPLES, SOURCE, CommandTest, color, document, palette, run,
                      without_stamp)

NAMED = SOURCE / "examples/documents/named-colours.zol"
XSI = "{http://www.w3.org/2001/XMLSchema-instance}"
LAB = "Zol/Color[1]/ColorSpaceCIELab"


def tag(name):
    return f"{{{NAMESPACE}}}{name}"


def values(path):
    """All texts and attributes of a file, as another parser finds them."""
    found = []
    for element in ElementTree.parse(path).getroot().iter():
        found += [text for name, text in element.attrib.items() if not name.startswith(XSI)]
        if len(element) == 0 and element.text and element.text.strip():
            found.append(element.text.strip())
    return found


def numbered(count, change=None):
    """Colours with unique ids."""
    parts = [color(f"c{i}").replace('"id"', f'"id{i}"') for i in range(count)]
    return change(parts) if change else parts


class PathsTest(CommandTest):
    def read(self, path, name):
        return [element.text for element in ElementTree.parse(path).getroot().iter(tag(name))]

    def lines(self, status, *arguments, **options):
        return self.expect(status, *arguments, **options).stdout.decode().splitlines()


class GetTest(PathsTest):
    def test_all_values_are_those_of_another_parser(self):
        for path in SAMPLES:
            with self.subTest(path.name):
                text = self.expect(0, "get", "-0", path, "Zol").stdout.decode()
                got = [line.partition("=")[2] for line in text.split("\0")[:-1]]
                # Numbers and dates may be spelled otherwise; texts may not.
                theirs = [value for value in values(path) if re.search("[g-zG-SU-Y]{3}", value)]
                missing = set(" ".join(value.split()) for value in theirs)
                missing -= set(" ".join(value.split()) for value in got)
                self.assertEqual(missing, set())

    def test_values_objects_and_json(self):
        path = self.write(document(color("r=d").replace("53.2", "0.30000000000000004")))
        self.assertEqual(self.lines(0, "get", path, f"{LAB}/L", "Zol/Color[1]/@ColorName"),
                         ["0.30000000000000004", "r=d"])
        self.assertIn(f"{LAB}/A=80.1", self.lines(0, "get", path, "Zol"))
        entry, = json.loads(self.expect(0, "get", "--json", path, "Zol/Color").stdout)
        lab = entry["value"]["ColorSpaceCIELab"][0]
        self.assertEqual((entry["path"], lab["L"], lab["A"]), ("Zol/Color", 0.30000000000000004, 80.1))
        self.assertEqual(lab["ColorSpaceSpecificationSpectrumTristimulus"], {"@xsi:nil": True})
        self.assertEqual(self.lines(0, "get", "-", f"{LAB}/B", data=path.read_bytes()), ["67.2"])

    def test_a_text_of_several_lines(self):
        path = self.write(document(color("a&#10;b")))
        self.assertEqual(self.expect(0, "get", "-0", path, "Zol/Color/@ColorName").stdout, b"a\nb\0")
        entry, = json.loads(self.expect(0, "get", "--json", path, "Zol/Color/@ColorName").stdout)
        self.assertEqual(entry["value"], "a\nb")

    def test_what_is_wrong_with_a_path(self):
        path = self.write(document(color(), color()))
        for wrong, words in {
            "": "no step",
            "Zol/": "no step",
            "Zol/Color[0]": "no step",
            "Zol/Color[-1]": "no step",
            "Zol/Color[99999999999999999999]": "no step",
            "Zol/Color[4294967295]": "Zol has 2",
            "Zol/Color[3]/@ColorName": "Zol has 2",
            "Zol/Palette[1]": "Zol has none",
            "zol/Color": "begins with Zol",
            "Zol/color[1]": "Color is probably meant",
            "Zol/Color/ColorSpaceCIELAB/L": "ColorSpaceCIELab is probably meant",
            "Zol/Color/@colorname": "@ColorName is probably meant",
            "Zol/Color/ColorName": "@ColorName is probably meant",
            "Zol/Color/@ChangeHistory": "ChangeHistory is probably meant",
            f"{LAB}/L/x": "nothing below",
            "Zol/Color/@Comments": "not there",
            "Zol/\n\x1b[31m": "no step",
            "Zol" + "/Color" * 15000: "has no 'Color'",
        }.items():
            with self.subTest(wrong[:80]):
                result = self.expect(1, "get", path, wrong)
                self.assertIn(words, result.stderr.decode())
                self.assertNotIn(b"\x1b", result.stderr)
                self.assertEqual((result.stdout, result.stderr.count(b"\n")), (b"", 1))
        self.assertEqual(self.lines(1, "get", path, "Zol/X", f"{LAB}/L"), ["53.2"])

    def test_folders(self):
        for name in ("a.zol", "b.zol"):
            self.write(document(color(name)), name)
        self.write("no document", "c.zol")
        for jobs in ("1", "3"):
            shown = self.lines(1, "get", "-r", "-j", jobs, self.directory, "Zol/Color/@ColorName")
            self.assertEqual(shown, [f"{self.directory}/{name}: {name}" for name in ("a.zol", "b.zol")])


class SetTest(PathsTest):
    def test_another_parser_sees_the_change_and_no_other(self):
        target = self.directory / "out.zol"
        place = "Zol/Palette[1]/ColorSet[1]/Color[3]"
        before = self.expect(0, "get", "-0", NAMED, "Zol").stdout.decode().split("\0")
        self.expect(0, "set", NAMED, f"{place}/ColorSpaceCIELab/L=0.30000000000000004",
                    f"{place}/@Comments=a\nb=c", "-o", target)
        changed = ElementTree.parse(target).getroot().find(
            f"{tag('Palette')}/{tag('ColorSet')}").findall(tag("Color"))[2]
        self.assertEqual(changed.get("Comments"), "a\nb=c")
        self.assertEqual(float(changed.find(f"{tag('ColorSpaceCIELab')}/{tag('L')}").text),
                         0.30000000000000004)
        after = self.expect(0, "get", "-0", target, "Zol").stdout.decode().split("\0")
        self.assertEqual({line.partition("=")[0] for line in set(after) ^ set(before)
                          if "SDKInformation" not in line},
                         {f"{place}/ColorSpaceCIELab/L", f"{place}/@Comments"})
        if shutil.which("xmllint"):
            subprocess.run(["xmllint", "--noout", target], check=True)

    def test_what_is_got_can_be_set(self):
        """Every value of the samples, onto itself."""
        target = self.directory / "out.zol"
        for path in SAMPLES:
            lines = self.expect(0, "get", "-0", path, "Zol").stdout.decode().split("\0")[:-1]
            lines = [line for line in lines if "/Revision[" not in line]
            with self.subTest(path.name):
                for i in range(0, len(lines), 500):
                    self.expect(0, "set", path, *lines[i:i + 500], "-fo", target)
                    result = self.expect(0, "diff", "--ignore", "*SDKInformation", path, target)
                    self.assertEqual(result.stdout, b"")

    def test_nil(self):
        """An object goes, and comes again of what was got of it."""
        source = SOURCE / "examples/documents/spectra.zol"
        nil, back = self.directory / "nil.zol", self.directory / "back.zol"
        place = f"{LAB}/ColorSpaceSpecificationSpectrumTristimulus"
        mark = f"{place}/@xsi:nil"
        whole = self.lines(0, "get", source, place)
        self.assertGreater(len(whole), 4)
        self.assertEqual(self.lines(0, "get", source, mark), ["false"])
        self.expect(0, "set", source, f"{mark}=true", "-o", nil)
        self.assertEqual(self.lines(0, "get", nil, mark), ["true"])
        self.assertIn(f"{mark}=true", self.lines(0, "get", nil, LAB))
        self.assertEqual(json.loads(self.expect(0, "get", "--json", nil, mark).stdout),
                         [{"path": mark, "value": True}])
        self.expect(0, "set", nil, f"{mark}=false", *whole, "-o", back)
        self.assertEqual(self.lines(0, "diff", "--ignore", "*SDKInformation", source, back), [])
        for change in (f"{mark}=maybe", f"{mark}=false", f"{LAB}/@xsi:nil=true", f"{mark}/L=1"):
            self.expect(1, "set", nil, change, "-o", self.directory / "none.zol")
        self.expect(1, "get", source, f"{LAB}/@xsi:nil")

    def test_a_refusal_says_what_is_expected_and_writes_nothing(self):
        source = self.write(document(color()))
        target = self.directory / "out.zol"
        for change, words in {
            f"{LAB}/L=151": "L is 151, at most 150 is allowed",
            f"{LAB}/L=": "L is empty",
            f"{LAB}/L=nan_": "a number such as 0.5 is expected",
            f"{LAB}/l=5": "L is probably meant",
            f"{LAB}=5": "elements and no value",
            f"{LAB}/L/x=5": "is a value",
            f"{LAB}/ChangeHistory[1]=2026-01-02T03:04:05": "time zone",
            f"{LAB}/ChangeHistory[3]=2026-01-02T03:04:05Z": "next one is number 2",
            "Zol/Color[4294967295]/@ColorName=x": "next one is number 2",
            "Zol/Color[1]/@ColorName=a\ufffe": "U+FFFE",
            "Zol/Color[1]/@ColorName=a\x01": "U+0001",
            "Zol/Color[2]/@ColorName=x": "ChangeHistory is missing",
            "Zol=x": "elements and no value",
            "x=y": "begins with Zol",
            "=": "no step",
            "Zol/Preamble/Header/Revision[1]/any=x": "Revision",
        }.items():
            with self.subTest(change):
                result = self.expect(1, "set", source, f"{LAB}/A=1", change, "-o", target)
                self.assertIn(words, result.stderr.decode())
                self.assertEqual(sorted(self.directory.iterdir()), [source])
        result = run("set", source, os.fsdecode(b"Zol/Color/@ColorName=\xff"), "-o", target)
        self.assertEqual(result.returncode, 1)
        self.assertIn(b"UTF-8", result.stderr)

    def test_an_enumeration_tells_its_words(self):
        path = "Zol/Palette[1]/ColorSet[1]/Color[3]/ColorSpaceSRGB/ColorDepth"
        result = self.expect(1, "set", NAMED, f"{path}=colordepth_8", "-o", "-")
        self.assertIn(b"ColorDepth_8, ", result.stderr)

    def test_usage(self):
        source = self.write(document(color()))
        for arguments, words in {
            (source,): "PATH=VALUE",
            (source, "x", "-o", "-"): "has no =",
            (source, "a=b"): "--output",
            (source, "a=b", "-i", "-o", "-"): "--output",
            (source, "a=b", "-o", "x.xml"): "must end in .zol",
            ("-", "a=b", "-i"): "--in-place",
            (self.directory, "a=b", "-r", "-o", "-"): "--recursive",
        }.items():
            with self.subTest(arguments):
                self.assertIn(words, self.expect(2, "set", *arguments).stderr.decode())

    def test_deletions_mean_the_document_as_it_was(self):
        source = self.write(document(*numbered(6)))
        self.expect(0, "set", "-i", source, "--delete", "Zol/Color[1]", "Zol/Color[2]/@ColorName=two",
                    "--delete", "Zol/Color[3]", "--delete", "Zol/Color[3]/@UniqueID",
                    "--delete", "Zol/Color[5]/@UniqueID", "--delete", "Zol/Color[1]")
        colors = ElementTree.parse(source).getroot().findall(tag("Color"))
        self.assertEqual([(entry.get("ColorName"), entry.get("UniqueID")) for entry in colors],
                         [("two", "id1"), ("c3", "id3"), ("c4", None), ("c5", "id5")])
        for path, words in {"Zol": "can't be deleted", "Zol/Color[1]/@ColorName": "is required",
                            "Zol/Color[9]": "has 4", f"{LAB}": "ColorSpace",
                            "Zol/Color/ChangeHistory": "at least one is required"}.items():
            self.assertIn(words, self.expect(1, "set", source, "--delete", path, "-o", "-").stderr.decode())

    def test_makes_what_is_missing_on_the_way(self):
        source = self.write(document(color()))
        self.expect(0, "set", "-i", source, "Zol/Preamble/Owner/Person[1]/Name=me",
                    "Zol/Preamble/Owner/Person[2]/Name=you", "Zol/Color/SubstratePaper/PaperType=kraft")
        self.assertEqual(self.read(source, "PaperType"), ["kraft"])
        self.assertEqual([name for name in self.read(source, "Name")], ["me", "you"])
        # One alternative with elements does not go for another.
        result = self.expect(1, "set", source, "Zol/Color/SubstrateFilm/PartNumber=1", "-o", "-")
        self.assertIn(b"SubstratePaper, which must be deleted first", result.stderr)
        self.expect(0, "set", "-i", source, "--delete", "Zol/Color/SubstratePaper")
        self.assertEqual(self.read(source, "SubstratePaper"), [])

    def test_in_place_and_onto_itself(self):
        plain = self.write(document(color()))
        zipped = self.directory / "x.zolz"
        self.expect(0, "convert", plain, zipped)
        link = self.directory / "link.zol"
        link.symlink_to(plain)
        for path in (link, zipped):
            self.expect(0, "set", "-i", path, f"{LAB}/L=7")
            self.assertEqual(self.lines(0, "get", path, f"{LAB}/L"), ["7"])
        self.assertTrue(link.is_symlink() and zipfile.is_zipfile(zipped))
        self.assertIn(b"--force", self.expect(2, "set", plain, f"{LAB}/L=8", "-o", plain).stderr)
        self.expect(0, "set", plain, f"{LAB}/L=8", "-fo", plain)
        self.assertEqual(self.read(plain, "L"), ["8"])
        before = plain.read_bytes()
        self.expect(1, "set", "-i", plain, f"{LAB}/L=1", f"{LAB}/A=x")
        self.assertEqual(plain.read_bytes(), before)
        self.assertEqual(len(list(self.directory.iterdir())), 3)

    def test_folders_in_place(self):
        for name in ("a", "b", "c"):
            self.write(document(color(name)), name + ".zol")
        self.write(document(), "d.zol")
        result = self.expect(1, "set", "-ri", "-j2", self.directory, f"{LAB}/L=9",
                             "--delete", "Zol/Color/@UniqueID")
        self.assertIn(b"d.zol: ", result.stderr)
        self.assertEqual([self.read(self.directory / f"{name}.zol", "L") for name in "abcd"],
                         [["9"], ["9"], ["9"], []])

    def test_targets_that_cannot_be_written(self):
        source = self.write(document(*numbered(200)))

        def limit():
            # The write that goes too far fails, since the signal is ignored.
            resource.setrlimit(resource.RLIMIT_FSIZE, (8192, 8192))
        before = source.read_bytes()
        for arguments in (("set", "-i", source, f"{LAB}/L=1"),
                          ("set", source, f"{LAB}/L=1", "-fo", source),
                          ("merge", source, source, "-fo", source)):
            result = self.expect(2, *arguments, preexec_fn=limit, restore_signals=False)
            self.assertNotEqual(result.stderr, b"")
            self.assertEqual(source.read_bytes(), before)
            self.assertEqual(list(self.directory.iterdir()), [source])
        nowhere = self.directory / "none/a.zol"
        self.expect(2, "set", source, f"{LAB}/L=1", "-o", nowhere)
        self.expect(2, "merge", source, "-o", nowhere)

    @unittest.skipIf(os.geteuid() == 0, "root may write everywhere")
    def test_read_only_folder(self):
        source = self.write(document(color()))
        self.directory.chmod(0o500)
        try:
            self.expect(2, "set", "-i", source, f"{LAB}/L=1")
        finally:
            self.directory.chmod(0o700)


class DiffTest(PathsTest):
    def changes(self, first, second, *options):
        result = run("diff", "--json", *options, self.write(first, "a.zol"), self.write(second, "b.zol"))
        shown = json.loads(result.stdout)
        self.assertEqual(result.returncode, 0 if shown["same"] else 1, result.stderr)
        return [(change["change"], change.get("a", {}).get("path"), change.get("b", {}).get("path"))
                for change in shown["changes"]]

    def test_nothing_is_different(self):
        for path in SAMPLES:
            self.assertEqual(self.lines(0, "diff", path, path), [])
        spelled = document(color()).replace("53.2", "+53.20").replace("\n", "\n ")
        self.assertEqual(self.changes(document(color()), spelled), [])

    def test_a_small_change_in_a_large_list(self):
        for named in (True, False):
            parts = numbered(2000)
            if not named:
                # Neither name nor id tells them apart.
                parts = [color("x").replace('UniqueID="id"', "").replace("53.2", str(i / 20))
                         for i in range(2000)]
            other = list(parts)
            del other[700]
            other[900] = other[900].replace("80.1", "80.2")
            other.insert(1500, color("new").replace('"id"', '"new"'))
            with self.subTest(named=named):
                lab = "ColorSpaceCIELab/A"
                self.assertEqual(self.changes(document(palette(*parts)), document(palette(*other))), [
                    ("removed", "Zol/Palette[1]/ColorSet[1]/Color[701]", None),
                    ("changed", f"Zol/Palette[1]/ColorSet[1]/Color[902]/{lab}",
                     f"Zol/Palette[1]/ColorSet[1]/Color[901]/{lab}"),
                    ("added", None, "Zol/Palette[1]/ColorSet[1]/Color[1501]")])

    def test_moved_renamed_and_exact(self):
        parts = numbered(4)
        moved = [parts[2], parts[0], parts[1], parts[3].replace("53.2", "53.200000000000003")]
        self.assertEqual(self.changes(document(*parts), document(*moved)), [
            ("moved", "Zol/Color[3]", "Zol/Color[1]")])
        moved[3] = parts[3].replace("53.2", "53.20000000000001")
        self.assertEqual(len(self.changes(document(*parts), document(*moved))), 2)
        plain = [color("a").replace(' UniqueID="id"', "") for _ in range(2)]
        self.assertEqual(self.changes(document(*plain), document(plain[0], plain[1].replace('"a"', '"b"'))),
                         [("changed", "Zol/Color[2]/@ColorName", "Zol/Color[2]/@ColorName")])
        nil = document(color()).replace("<Zol:L>", "<Zol:L >")
        self.assertEqual(self.changes(document(color()), nil), [])

    def test_against_a_plain_model(self):
        """Chance changes of a list, told as few as they are."""
        chance = random.Random(11)
        for turn in range(12):
            parts = numbered(60)
            other = list(parts)
            for _ in range(chance.randint(1, 5)):
                at = chance.randrange(len(other))
                what = chance.randrange(3)
                if what == 0:
                    del other[at]
                elif what == 1:
                    other[at] = other[at].replace("67.2", "1.5")
                else:
                    other.insert(at, color("n").replace('"id"', f'"n{turn}-{chance.random()}"'))
            found = self.changes(document(*parts), document(*other))
            ids = [re.search('UniqueID="(.*?)"', part)[1] for part in parts]
            others = [re.search('UniqueID="(.*?)"', part)[1] for part in other]
            expected = sorted([("removed", f"Zol/Color[{i + 1}]") for i, an_id in enumerate(ids)
                               if an_id not in others]
                              + [("added", f"Zol/Color[{i + 1}]") for i, an_id in enumerate(others)
                                 if an_id not in ids]
                              + [("changed", f"Zol/Color[{ids.index(an_id) + 1}]/ColorSpaceCIELab/B")
                                 for i, an_id in enumerate(others)
                                 if an_id in ids and "67.2" not in other[i]])
            self.assertEqual(sorted((kind, a or b) for kind, a, b in found), expected)

    def test_colour_difference(self):
        """dE*ab by hand: the root of the squares."""
        text = NAMED.read_text()
        first = self.write(text, "a.zol")
        second = self.write(text.replace("<Zol:L>96.5375</Zol:L>", "<Zol:L>93.5375</Zol:L>", 1), "b.zol")
        if b"--formula" not in self.expect(0, "diff", "--help").stdout:
            self.skipTest("built without colorimetry")
        shown = json.loads(self.expect(1, "diff", "--json", "--formula", "76", first, second).stdout)
        change, = shown["changes"]
        self.assertAlmostEqual(change["color"]["difference"], 3.0, 9)
        text = self.expect(1, "diff", first, second).stdout.decode()
        self.assertRegex(text, r'(?m)^@@ Zol/.*/Color\[3\] "white smoke", CIEDE2000 \d\.\d{4}$')
        self.assertIn("\n- ColorSpaceCIELab/L: 96.5375\n+ ColorSpaceCIELab/L: 93.5375\n", text)

    def test_status_and_brief(self):
        first, second = self.write(document(color()), "a.zol"), self.write(document(color("b")), "b.zol")
        self.assertEqual(self.lines(1, "diff", "--brief", first, second), [f"{first} and {second} differ"])
        self.assertEqual(self.lines(0, "diff", "--brief", first, first), [])
        self.expect(0, "diff", "--ignore", "Color/@ColorName", first, second)
        self.expect(1, "diff", "--ignore", "Palette/**", first, second)
        self.assertIn(b"ColorName is probably meant",
                      self.expect(2, "diff", "--ignore", "@colorName", first, second).stderr)
        self.expect(2, "diff", first, self.directory / "none.zol")
        self.expect(2, "diff", first, self.write("<x/>", "c.zol"))
        self.assertIn(b"once only", self.expect(2, "diff", "-", "-").stderr)
        self.expect(1, "diff", "-", second, data=first.read_bytes())

    def test_folders(self):
        for folder, names in (("a", ("1", "2", "x/3", "x.4")), ("b", ("1", "2", "x/3", "5"))):
            for name in names:
                path = self.directory / folder / f"{name}.zol"
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(document(color("other" if (folder, name) == ("b", "2") else "c")))
        for jobs in ("1", "4"):
            shown = self.lines(1, "diff", "-br", "-j", jobs, self.directory / "a", f"{self.directory}/b/")
            self.assertEqual([line.replace(f"{self.directory}/", "") for line in shown],
                             ["a/2.zol and b/2.zol differ", "Only in B: b/5.zol", "Only in A: a/x.4.zol"])

    def test_large_and_hostile_lists(self):
        """Lists in which everything is alike take no time that grows with their square."""
        same = [color("x").replace('UniqueID="id"', "")] * 20000
        other = [part.replace("53.2", "53.3") for part in same[:15000]]
        first, second = self.write(document(*same), "a.zol"), self.write(document(*other), "b.zol")
        result = subprocess.run([zol_test.COMMAND, "diff", first, second], capture_output=True,
                                timeout=60, check=False)
        self.assertEqual(result.returncode, 1)


def specification(an_id, angle="45"):
    """A specification that others may refer to."""
    return (f'<Zol:ColorSpaceSpecificationSpectrumTristimulus UniqueID="{an_id}">'
            "<Zol:DeviceFilter>Filter_None</Zol:DeviceFilter>"
            "<Zol:DevicePolarization>false</Zol:DevicePolarization>"
            "<Zol:ChangeHistory>2026-01-02T03:04:05Z</Zol:ChangeHistory>"
            "<Zol:Spectrum>Spectrum_Reflectance</Zol:Spectrum><Zol:IlluminationOptions>"
            "<Zol:Illuminant>Illuminant_D50</Zol:Illuminant></Zol:IlluminationOptions>"
            "<Zol:FieldOfView>FieldOfView_2_Degree</Zol:FieldOfView><Zol:GeometryChoice>"
            f"<Zol:Angle>{angle}</Zol:Angle></Zol:GeometryChoice>"
            "</Zol:ColorSpaceSpecificationSpectrumTristimulus>")


NIL = '<Zol:ColorSpaceSpecificationSpectrumTristimulus xsi:nil="true"/>'


def seen_by(name, an_id, angle=None):
    """A colour with a specification, or with a reference to one."""
    by = specification(an_id, angle) if angle else NIL.replace("xsi:nil", f'UniqueID="{an_id}" xsi:nil')
    return color(name).replace('"id"', f'"{name}"').replace(NIL, by)


class MergeTest(PathsTest):
    def merge(self, status, *documents, rule=None):
        sources = [self.write(text, f"{i}.zol") for i, text in enumerate(documents)]
        options = ["--on-conflict", rule] if rule else []
        return self.expect(status, "merge", *sources, "-fo", self.directory / "out.zol", *options)

    def colors(self):
        root = ElementTree.parse(self.directory / "out.zol").getroot()
        return [(entry.get("ColorName"), entry.get("UniqueID")) for entry in root.iter(tag("Color"))]

    def test_all_is_there_by_another_parser(self):
        target = self.directory / "out.zol"
        self.expect(0, "merge", "-j2", *SAMPLES, "-o", target)
        for name in ("Color", "Palette", "ColorQualityControl"):
            theirs = sum(len(ElementTree.parse(path).getroot().findall(tag(name))) for path in SAMPLES)
            self.assertEqual(len(ElementTree.parse(target).getroot().findall(tag(name))), theirs)
        self.assertEqual(set(values(target)) >= {value for value in values(NAMED) if value.startswith("x11-")},
                         True)
        self.expect(0, "validate", "--strict", target)

    def test_rules(self):
        first = document(color("a"), color("b").replace('"id"', '"b"'))
        second = document(color("a").replace("53.2", "1"), color("b").replace('"id"', '"b"'), color("n"))
        result = self.merge(1, first, second)
        self.assertIn(b'Color[1] "a": another one has the same name and unique id \'id\'', result.stderr)
        self.assertFalse((self.directory / "out.zol").exists())
        result = self.merge(0, first, second, rule="keep")
        self.assertEqual(self.colors(), [("a", "id"), ("b", "b")])
        self.assertIn(b'Color[1] "a": left out', result.stdout)
        self.assertIn(b"1 were there already, 2 left out", result.stdout)
        self.assertEqual(self.read(self.directory / "out.zol", "L"), ["53.2", "53.2"])
        self.merge(0, first, second, second, rule="rename")
        self.assertEqual(self.colors()[:4], [("a", "id"), ("b", "b"), ("a (2)", "id-2"), ("n", "id-3")])
        self.assertEqual(len(set(self.colors())), 6)

    def test_new_names_are_new(self):
        text = document(color("a"))
        other = document(*(color(name).replace('"id"', f'"{an_id}"').replace("53.2", "9")
                           for name, an_id in (("a", "id"), ("a (2)", "id-2"), ("a", "x"))))
        self.merge(0, text, other, rule="rename")
        names = [name for name, _ in self.colors()]
        self.assertEqual((len(set(names)), len(set(self.colors()))), (4, 4), names)

    def test_references_mean_what_they_meant(self):
        first = document(seen_by("a", "spec", "45"))
        second = document(seen_by("b", "spec", "8"), seen_by("c", "spec"))
        self.merge(1, first, second)
        for rule in ("keep", "rename"):
            self.merge(0, first, second, rule=rule)
            out = self.directory / "out.zol"
            angles = {}
            for entry in ElementTree.parse(out).getroot().iter(tag("Color")):
                spec = entry.find(f".//{tag('ColorSpaceSpecificationSpectrumTristimulus')}")
                angle = spec.find(f".//{tag('Angle')}")
                angles[entry.get("ColorName")] = (spec.get("UniqueID"), angle is not None and angle.text)
            self.assertEqual(angles, {"a": ("spec", "45"), "b": ("spec-2", "8"), "c": ("spec-2", False)})
            self.assertNotIn(b"stands for", self.expect(0, "validate", "--lint", out).stderr)
        # The same specification is the same.
        self.merge(0, first, document(seen_by("b", "spec", "45"), seen_by("c", "spec")))
        # What is referred to would be left out.
        result = self.merge(1, first, document(seen_by("a", "other", "8"), seen_by("c", "other")), rule="keep")
        self.assertIn(b"refers to 'other'", result.stderr)
        self.merge(0, first, document(seen_by("a", "other", "8"), seen_by("c", "other")), rule="rename")

    def test_onto_itself_and_twice(self):
        source = self.write(document(color("a"), color("b")))
        self.assertIn(b"exists", self.expect(2, "merge", source, "-o", source).stderr)
        self.expect(0, "merge", source, source, "-fo", source)
        self.assertEqual(len(ElementTree.parse(source).getroot()), 3)
        self.assertIn(b"once only", self.expect(2, "merge", "-", "-", "-o", "-").stderr)
        printed = self.expect(0, "merge", "-", source, "-o", "-", data=source.read_bytes())
        self.assertEqual(without_stamp(printed.stdout), without_stamp(source.read_bytes()))
        self.assertIn(b"2 entries", printed.stderr)

    def test_one_bad_input_stops_all(self):
        good, bad = self.write(document(color()), "a.zol"), self.write("<", "b.zol")
        self.expect(1, "merge", good, bad, "-o", self.directory / "out.zol")
        self.expect(2, "merge", good, self.directory / "none.zol", "-o", self.directory / "out.zol")
        self.assertEqual(sorted(self.directory.iterdir()), [good, bad])
        (self.directory / "empty").mkdir()
        self.assertIn(b"no document", self.expect(2, "merge", "-r", self.directory / "empty", "-o", "-").stderr)


class GrepTest(PathsTest):
    def setUp(self):
        super().setUp()
        if subprocess.run([zol_test.COMMAND, "grep", "--help"], capture_output=True, check=False).returncode:
            self.skipTest("built without RE2")

    def test_finds_what_another_parser_finds(self):
        for pattern in ("^x11-b.*e$", "(?i)BLUE", r"^#\w{6}$"):
            found = [line.partition(": ")[2] for line in self.lines(0, "grep", pattern, NAMED)]
            theirs = [value for value in values(NAMED) if re.search(pattern, value)]
            self.assertEqual(sorted(found), sorted(theirs))
        above = [value for value in self.read(NAMED, "L") if 50 < float(value) <= 60]
        found = self.lines(0, "grep", "--where", "L>50", "--where", " */L <= +60.0", "", NAMED)
        self.assertEqual([line.partition(": ")[2] for line in found], above)

    def test_paths(self):
        path = self.write(document(color("a"), palette(color("b"))))
        count = {pattern: len(run("grep", "--path", pattern, "", path).stdout.splitlines()) for pattern in (
            "L", "Color/*/L", "/Zol/Color/*/L", "Zol/**/L", "Color[1]/*/L", "Color[2]/**", "@ColorName",
            "ColorSpaceCIE*/?", "Zol/*", "Palette/**/@*Name")}
        self.assertEqual(count, {"L": 2, "Color/*/L": 2, "/Zol/Color/*/L": 1, "Zol/**/L": 2,
                                 "Color[1]/*/L": 2, "Color[2]/**": 0, "@ColorName": 2,
                                 "ColorSpaceCIE*/?": 6, "Zol/*": 0, "Palette/**/@*Name": 3})

    def test_names_counts_and_status(self):
        with_red = self.write(document(color("red"), color("Red")), "a.zol")
        without = self.write(document(color("blue\u0085\u001b")), "b.zol")
        self.assertEqual(self.lines(0, "grep", "-l", "^red$", with_red, without), [str(with_red)])
        self.assertEqual(self.lines(0, "grep", "-ci", "^red$", with_red, without),
                         [f"{with_red}:2", f"{without}:0"])
        self.assertEqual(self.lines(1, "grep", "^red$", without), [])
        self.assertEqual(self.lines(0, "grep", "^red$", "-", data=with_red.read_bytes()),
                         ["-:Zol/Color[1]/@ColorName: red"])
        entry, = json.loads(self.expect(0, "grep", "--json", "blue", without).stdout)
        self.assertEqual((entry["path"], entry["value"][:4]), ("Zol/Color[1]/@ColorName", "blue"))
        self.assertNotIn(b"\x1b", self.expect(0, "grep", "blue", without).stdout)
        bad = self.write("<", "c.zol")
        self.assertEqual(len(self.lines(2, "grep", "-r", "-j3", "red", self.directory)), 1)
        self.expect(2, "grep", "red", bad, self.directory / "none.zol")

    def test_faults_in_what_is_looked_for(self):
        for arguments, words in {("(",): "missing )", ("a**",): "bad repetition",
                                 ("--path", "Colr/L", ""): "Color is probably meant",
                                 ("--where", "L", ""): "condition", ("--where", "L>", ""): "number",
                                 ("--where", "L=>5", ""): "condition", ("--where", ">5", ""): "step",
                                 ("--where", "L>5x", ""): "number",
                                 ("--where", "l>5", ""): "L is probably meant"}.items():
            result = self.expect(2, "grep", *arguments, NAMED)
            self.assertIn(words, result.stderr.decode())

    def test_hostile_patterns_and_texts(self):
        path = self.write(document(color("a" * 300000)))
        for pattern in ("(a*)*b", "(a|aa)+$b", "(.*){500}x", "((a{1,100}){1,5}){1,2}b"):
            result = subprocess.run([zol_test.COMMAND, "grep", pattern, path], capture_output=True,
                                    timeout=30, check=False)
            self.assertIn(result.returncode, (0, 1, 2), pattern)

    def test_reader_that_goes_away(self):
        process = subprocess.Popen([zol_test.COMMAND, "grep", "", *SAMPLES], stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE)
        process.stdout.readline()
        process.stdout.close()
        self.assertEqual(process.stderr.read(), b"")
        process.stderr.close()
        self.assertNotEqual(process.wait(60), 0)


class ExplainTest(PathsTest):
    def test_what_is_known(self):
        text = self.expect(0, "explain", "Zol/Color[3]/ColorSpaceCIELab/L").stdout.decode()
        self.assertIn("at least 0, at most 150", text)
        self.assertIn("Lightness", text)
        text = self.expect(0, "explain", "Zol/Palette/ColorSet/Color/ColorSpaceSpectral").stdout.decode()
        self.assertRegex(text, r"ReflectancePoint +element of type ReflectancePointType, ")
        words = self.lines(0, "explain", "Zol/Color/ColorSpaceSRGB/ColorDepth")
        self.assertEqual(sum(line.strip().startswith("ColorDepth_") for line in words), 4)
        for path, words in {"Zol/color": "Color is probably meant", "": "no step",
                            "Zol/Color/@ColorName/x": "nothing below",
                            "Zole": "Zol is probably meant"}.items():
            self.assertIn(words, self.expect(1, "explain", path).stderr.decode())

    def test_every_row_of_the_schema_has_a_page(self):
        """Walks the paths that completion offers, each type once."""
        seen, waiting, count = set(), ["Zol/"], 0
        while waiting:
            path = waiting.pop()
            page = self.expect(0, "explain", path.rstrip("/")).stdout.decode()
            count += 1
            kind = re.search(r"^  Type +(\w+)", page, re.M)
            if not path.endswith("/") or kind is None or kind[1] in seen:
                continue
            seen.add(kind[1])
            waiting += self.lines(0, "explain", "--paths", path)
        self.assertGreater(len(seen), 90)
        self.assertGreater(count, 500)

    def test_completion_of_paths(self):
        paths = "Zol/Color[2]/ColorSpaceCIEL"
        expected = [f"{paths}{name}/" for name in ("ab", "Ch", "uv")]
        self.assertEqual(self.lines(0, "explain", "--paths", paths), expected)
        environment = {**os.environ, "PATH": f"{pathlib.Path(zol_test.COMMAND).parent}:{os.environ['PATH']}"}

        def complete(*words, breaks=""):
            line = " ".join(("zol", *words))
            script = ('source "$0"; COMP_WORDBREAKS=$1; COMP_LINE=$2; COMP_POINT=${#2}; shift 2; '
                      'COMP_WORDS=(zol "$@"); COMP_CWORD=$#; _zol; printf "%s\\n" "${COMPREPLY[@]}"')
            result = subprocess.run(["bash", "-c", script, SOURCE / "tools/zol.bash", breaks, line, *words],
                                    cwd=self.directory, env=environment, capture_output=True, text=True,
                                    check=True)
            return result.stdout.split()
        self.assertEqual(complete("get", "a.zol", paths), expected)
        self.assertEqual(complete("set", "a.zol", "--delete", paths), expected)
        self.assertEqual(complete("explain", "Z"), ["Zol/"])
        self.assertEqual(complete("get", "a.zol", "Zol/Color/@Co", breaks="@"),
                         ["ColorName", "ColorNumber", "Comments"])
        self.write("", "a.zol")
        self.assertEqual(complete("get", ""), ["a.zol"])
        self.assertEqual(complete("merge", "--on-conflict", "k"), ["keep"])

    def test_completion_in_zsh(self):
        if shutil.which("zsh") is None:
            self.skipTest("no zsh")
        # compadd and its kin are only to be had in a widget: they are watched instead.
        script = ('_files() { :; }; _describe() { print -l ${(P)2}; }; _arguments() { print -rl -- "$@"; }; '
                  'compadd() { shift 3; print -rl -- "$@"; }; _call_program() { shift; "$@"; }; '
                  'words=(zol "$@"); CURRENT=$(($# + 1)); PREFIX=${words[-1]}; f=$0; '
                  'if [[ $1 == paths ]]; then autoload -Uz is-at-least; functions[_all]=$(<$f); '
                  '_zol_paths() { :; }; fi; source $f "$@"')
        environment = {**os.environ, "PATH": f"{pathlib.Path(zol_test.COMMAND).parent}:{os.environ['PATH']}"}
        result = subprocess.run(["zsh", "-fc", script, SOURCE / "tools/_zol", "v"], env=environment,
                                capture_output=True, text=True, check=False)
        self.assertIn("validate:check", result.stdout, result.stderr)
        for command in ("validate", "get", "set", "diff", "merge", "grep", "explain", "check", "compare"):
            result = subprocess.run(["zsh", "-fc", script, SOURCE / "tools/_zol", command, ""],
                                    env=environment, capture_output=True, text=True, check=False)
            help_text = run(command, "--help").stdout.decode()
            for word in set(re.findall(r"--[a-z][a-z-]*", help_text)) - {"--help"}:
                self.assertIn(word, result.stdout, command)
        result = subprocess.run(["zsh", "-fc", script.replace("source $f", "source $f >/dev/null; _zol_paths"),
                                 SOURCE / "tools/_zol", paths := "Zol/Color/ColorSpaceCIEL"],
                                env=environment, capture_output=True, text=True, check=False)
        self.assertIn(f"{paths}ab/", result.stdout, result.stderr)

    def test_manual_and_completion_know_every_option(self):
        manual = (SOURCE / "tools/zol.1").read_text().replace("\\-", "-")
        completion = (SOURCE / "tools/zol.bash").read_text()
        for command in ("get", "set", "diff", "merge", "grep", "explain"):
            result = run(command, "--help")
            if result.returncode:
                continue  # left out of this build
            for word in {command, *re.findall(r"--[a-z][a-z-]*", result.stdout.decode())}:
                self.assertIn(word, manual)
                self.assertIn(word, completion)


if __name__ == "__main__":
    zol_test.COMMAND = str(pathlib.Path(sys.argv[1]).resolve())
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
