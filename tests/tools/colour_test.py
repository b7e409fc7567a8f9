#!/usr/bin/env python3
"""Drives the commands that compute with colours: colour_test.py COMMAND [unittest options]."""

import csv
import io
import json
import math
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(__file__).resolve().parents[2]
SAMPLES = SOURCE / "examples/documents"
COMMAND = None


def run(*arguments, data=None):
    return subprocess.run([COMMAND, *map(str, arguments)], input=data, capture_output=True,
                          timeout=120, check=False)


class CommandTest(unittest.TestCase):
    def setUp(self):
        self.directory = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.directory)

    def expect(self, status, *arguments, **options):
        result = run(*arguments, **options)
        self.assertEqual(result.returncode, status, (arguments, result.stderr))
        return result

    def changed(self, name, *changes, sample="quality-control.zol"):
        """A sample with texts replaced, each once."""
        text = (SAMPLES / sample).read_text(encoding="utf-8")
        for old, new in changes:
            self.assertIn(old, text)
            text = text.replace(old, new, 1)
        path = self.directory / name
        path.write_text(text, encoding="utf-8")
        return path


class UsageTest(CommandTest):
    def test_help_manual_and_completion(self):
        manual = (SOURCE / "tools/zol.1").read_text().replace("\\-", "-")
        completion = (SOURCE / "tools/zol.bash").read_text()
        for command in ("check", "compare"):
            words = re.findall(rb"--[a-z][a-z-]*", self.expect(0, command, "--help").stdout)
            for word in {command} | {word.decode() for word in words}:
                self.assertIn(word, manual)
                self.assertIn(word, completion)

    def test_faults_in_arguments_name_the_option(self):
        sample = SAMPLES / "spectra.zol"
        for arguments, words in {
            ("check",): b"FILE",
            ("check", "--json", "--csv", sample): b"--csv",
            ("check", "--fill", sample): b"--output",
            ("check", "-o", "x.zol", sample): b"--fill",
            ("check", "--fill", "-o", "x.xml", sample): b"must end in .zol",
            ("check", sample, sample, "--fill", "-o", "x.zol"): b"--fill",
            ("compare", sample): b"B",
            ("compare", sample, sample, "--formula", "2001"): b"--formula",
            ("compare", sample, sample, "--illuminant", "D60"): b"D60",
            ("compare", sample, sample, "--observer", "4"): b"--observer",
            ("compare", sample, sample, "--factors", "0"): b"--factors",
            ("compare", sample, f"{sample}#none"): b'"none"',
            ("compare", sample, self.directory / "absent.zol"): b"absent.zol",
        }.items():
            with self.subTest(arguments):
                result = self.expect(2, *arguments)
                self.assertIn(words, result.stderr)
                self.assertEqual(result.stdout, b"")


class CheckTest(CommandTest):
    def test_sample_passes(self):
        lines = self.expect(0, "check", SAMPLES / "quality-control.zol").stdout.decode().splitlines()
        self.assertEqual(lines[-1], f"{SAMPLES}/quality-control.zol: 8 verdicts: 6 pass, "
                                    "2 not judged")
        self.assertEqual(lines[1], "Solids, House red")
        self.assertRegex(lines[2], r"^  pass +pull 1 +Customer's own +CIE 1976 dE\*ab +0\.8059  "
                                   r"<= 2 +D50, 2 degrees$")
        self.assertRegex(lines[3], r" CIEDE2000 +0\.5211  0 to 3, warning 2\.5  D50, 2 degrees$")
        self.assertRegex(lines[5], r"^ +dL\* +-0\.3800  -1\.5 to 1\.5$")
        self.assertTrue(lines[-2].endswith("there is no standard"))
        self.expect(1, "check", "--unjudged-as-fail", SAMPLES / "quality-control.zol")

    def test_statuses(self):
        failing = self.changed("fail.zol", ("<Zol:HighTolerance>2</", "<Zol:HighTolerance>0.5</"))
        warned = self.changed("warn.zol", ("<Zol:WarningLevel>2.5</", "<Zol:WarningLevel>0.5</"))
        passing = SAMPLES / "quality-control.zol"
        self.expect(1, "check", failing)
        self.expect(1, "check", passing, failing)
        self.expect(0, "check", warned)
        self.expect(1, "check", "--warn-as-fail", warned)
        self.expect(0, "check", "--warn-as-fail", passing)
        self.expect(2, "check", failing, self.directory / "absent.zol")
        self.assertIn(b"no tolerance", self.expect(0, "check", SAMPLES / "spectra.zol").stdout)
        self.expect(0, "check", "-", data=passing.read_bytes())

    def test_forms_agree(self):
        path = self.changed("case.zol", ("<Zol:HighTolerance>2</", "<Zol:HighTolerance>0.5</"),
                            (">0.805854<", ">0.9<"))
        rows = list(csv.DictReader(io.StringIO(self.expect(1, "check", "--csv", path)
                                               .stdout.decode())))
        (shown,) = json.loads(self.expect(1, "check", "--json", path).stdout)
        text = self.expect(1, "check", path).stdout.decode()
        lines = re.findall(r"^  (pass|warning|fail|not judged) ", text, re.M)
        self.assertEqual(lines, [verdict["verdict"] for verdict in shown["verdicts"]])
        self.assertEqual(len(rows), len(shown["verdicts"]))
        self.assertEqual(shown["summary"], {"pass": 5, "warning": 0, "fail": 1, "notJudged": 2,
                                            "storedDisagree": 1})
        for row, verdict in zip(rows, shown["verdicts"]):
            self.assertEqual(row["Verdict"], verdict["verdict"])
            self.assertEqual(row["Value"], "" if verdict["value"] is None
                             else f"{verdict['value']!r}")
            self.assertEqual(row["Tolerance"], verdict["tolerance"])
        self.assertEqual(shown["verdicts"][0]["verdict"], "fail")
        self.assertAlmostEqual(shown["verdicts"][0]["value"], math.sqrt(0.38**2 + 0.45**2 + 0.55**2))
        self.assertEqual([r["storedDisagrees"] for r in shown["results"] if "stored" in r],
                         [True, False])
        self.assertIn("stored result 0.9 disagrees with 0.8059", text)

    def test_fill(self):
        path = self.changed("case.zol", (">0.805854<", ">0.9<"))
        out = self.directory / "filled.zolz"
        result = self.expect(0, "check", path, "--fill", "-o", out)
        self.assertIn(b"results stored", result.stdout)
        self.assertIn(b"valid", self.expect(0, "validate", out).stdout)
        (shown,) = json.loads(self.expect(0, "check", "--json", out).stdout)
        self.assertEqual(shown["summary"]["storedDisagree"], 0)
        self.assertEqual(len(shown["results"]), 7)
        for result in shown["results"]:
            self.assertTrue(math.isclose(result["stored"], result["value"], rel_tol=1e-13))
        self.assertIn(b"--force", self.expect(2, "check", path, "--fill", "-o", out).stderr)
        again = self.expect(0, "check", out, "--fill", "-fo", out).stdout
        self.assertIn(b"0 results stored", again)


class CompareTest(CommandTest):
    def compare(self, *arguments):
        return json.loads(self.expect(0, "compare", "--json", *arguments).stdout)

    def test_equal_documents(self):
        for sample in ("spectra.zol", "named-colours.zol", "quality-control.zol"):
            shown = self.compare(SAMPLES / sample, SAMPLES / sample)
            self.assertEqual(shown["onlyA"] + shown["onlyB"], [])
            self.assertGreater(shown["statistics"]["count"], 3)
            self.assertLess(shown["statistics"]["greatest"], 1e-9)

    def test_pairs_are_sorted_and_counted(self):
        other = self.changed("b.zol", ("<Zol:L>46.82</", "<Zol:L>48.82</"),
                             ("<Zol:L> 47.31 </", "<Zol:L> 48.31 </"),
                             ('ColorName="Bean brown"', 'ColorName="Grass green"'))
        shown = self.compare(SAMPLES / "quality-control.zol", other, "--formula", "76")
        self.assertEqual([round(p["difference"], 9) for p in shown["pairs"]], [2, 1, 0])
        self.assertEqual([p["by"] for p in shown["pairs"]], ["number", "number", "id"])
        self.assertEqual((shown["onlyA"], shown["onlyB"]), (["Bean brown"], ["Grass green"]))
        s = shown["statistics"]
        self.assertEqual([round(s[k], 9) for k in ("count", "mean", "median", "percentile95",
                                                   "greatest", "standardDeviation")],
                         [3, 1, 1, 1.9, 2, 1])
        rows = list(csv.DictReader(io.StringIO(self.expect(
            0, "compare", "--csv", SAMPLES / "quality-control.zol", other, "--formula", "76")
            .stdout.decode())))
        self.assertEqual([float(r["dL"]) for r in rows], [p["dL"] for p in shown["pairs"]])
        text = self.expect(0, "compare", SAMPLES / "quality-control.zol", other).stdout.decode()
        self.assertIn("3 pairs compared: mean", text)
        self.assertIn("1 colour of " + str(other) + " alone: Grass green", text)

    def test_conditions(self):
        spectra = SAMPLES / "spectra.zol"
        own = self.compare(spectra, spectra)["pairs"]
        self.assertEqual(own[0]["conditions"], "A, 2 degrees")
        at_f11 = self.compare(spectra, spectra, "--illuminant", "F11", "--observer", "10")["pairs"]
        self.assertEqual(at_f11[0]["conditions"], "F11, 10 degrees")
        self.assertIn("CIE 15 sum at 1 nm", at_f11[0]["basis"])
        named = SAMPLES / "named-colours.zol"
        refused = self.compare(named, named, "--illuminant", "A")
        self.assertEqual(refused["statistics"]["count"], 0)
        self.assertIn("there is no spectrum", refused["pairs"][0]["reason"])
        adapted = self.compare(named, named, "--illuminant", "A", "--adapt")
        self.assertIn("adapted by Bradford from D65", adapted["pairs"][0]["basis"])

    def test_parts_of_documents(self):
        named = SAMPLES / "named-colours.zol"
        names = re.findall(r'ColorSetName="([^"]*)"', named.read_text(encoding="utf-8"))
        whole = self.compare(named, named)["statistics"]["count"]
        part = self.compare(f"{named}#{names[0]}", named)
        self.assertLess(part["statistics"]["count"], whole)
        self.assertEqual(part["onlyA"], [])
        # A file may have such a name, too.
        strange = self.directory / "a.zol#b"
        shutil.copy(SAMPLES / "spectra.zol", strange)
        self.assertEqual(self.compare(strange, strange)["onlyA"], [])


if __name__ == "__main__":
    COMMAND = sys.argv[1]
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
