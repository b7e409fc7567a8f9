#!/usr/bin/env python3
"""Drives the built command: zol_test.py COMMAND SCHEMA [unittest options]."""

import csv
import io
import json
import os
import pathlib
import pty
import random
import re
import resource
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import xml.etree.ElementTree as ElementTree
import zipfile

SOURCE = pathlib.Path(__file__).resolve().parents[2]
SAMPLES = sorted((SOURCE / "examples/documents").glob("*.zol"))
NAMESPACE = ElementTree.parse(SAMPLES[0]).getroot().tag[1:].split("}")[0]
FAULT = re.compile(r"(.*?)(?::(\d+):(\d+))?: (error|warning)(?: (\d+))?: (.*)")
COMMAND = SCHEMA = None

COLOR = """<Zol:Color ColorName="NAME" UniqueID="id">
  <Zol:ChangeHistory>2026-01-02T03:04:05Z</Zol:ChangeHistory>
  <Zol:ColorSpaceCIELab>
    <Zol:ChangeHistory>2026-01-02T03:04:05Z</Zol:ChangeHistory>
    <Zol:ColorSpaceSpecificationSpectrumTristimulus xsi:nil="true"/>
    <Zol:L>53.2</Zol:L>
    <Zol:A>80.1</Zol:A>
    <Zol:B>67.2</Zol:B>
  </Zol:ColorSpaceCIELab>
</Zol:Color>
"""
HEADER = """<Zol:Header>
<Zol:Creator>someone</Zol:Creator>
<Zol:CreatorVersion>1</Zol:CreatorVersion>
<Zol:ChangeHistory>2026-01-02T03:04:05Z</Zol:ChangeHistory>
<Zol:Purpose>test</Zol:Purpose>
</Zol:Header>
"""


def document(*parts, frame=""):
    return (f'<?xml version="1.0" encoding="UTF-8"?>\n<Zol:Zol xmlns:Zol="{NAMESPACE}" '
            f'xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">\n<Zol:Preamble>\n{HEADER}{frame}'
            f'</Zol:Preamble>\n{"".join(parts)}</Zol:Zol>\n')


def color(name="red"):
    return COLOR.replace("NAME", name)


def palette(*colors):
    stamp = "<Zol:ChangeHistory>2026-01-02T03:04:05Z</Zol:ChangeHistory>\n"
    return (f'<Zol:Palette PaletteName="p">\n{stamp}<Zol:ColorSet ColorSetName="s">\n{stamp}'
            f'{"".join(colors)}</Zol:ColorSet>\n</Zol:Palette>\n')


def run(*arguments, data=None, **options):
    return subprocess.run([COMMAND, *map(str, arguments)], input=data, capture_output=True,
                          timeout=120, **options)


class CommandTest(unittest.TestCase):
    def setUp(self):
        self.directory = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.directory)

    def write(self, text, name="case.zol"):
        path = self.directory / name
        path.write_bytes(text if isinstance(text, bytes) else text.encode())
        return path

    def expect(self, status, *arguments, **options):
        result = run(*arguments, **options)
        self.assertEqual(result.returncode, status, (arguments, result.stderr))
        return result

    def faults(self, text, *arguments):
        """The faults of a document as (line, code, path)."""
        path = self.write(text)
        result = run("validate", "-q", "--brief", path, *arguments)
        self.assertEqual(result.stdout, b"")
        faults = []
        for line in result.stderr.decode().splitlines():
            if line.startswith("  "):
                # A name stands in the path behind the object that bears it.
                faults[-1] = (*faults[-1][:2], re.sub(' ".*"', "", line.strip()))
                continue
            match = FAULT.fullmatch(line)
            self.assertIsNotNone(match, line)
            self.assertEqual(match[1], str(path))
            faults.append((int(match[2] or 0), int(match[5] or 0), ""))
        has_error = any(code for _, code, _ in faults)
        self.assertEqual(result.returncode, 1 if has_error else 0)
        return faults


class UsageTest(CommandTest):
    def test_help_everywhere(self):
        for command in ([], ["validate"], ["info"], ["convert"], ["list"], ["schema"]):
            result = self.expect(0, *command, "--help")
            self.assertIn(b"Usage: zol", result.stdout)
        self.assertRegex(self.expect(0, "--version").stdout, rb"^zol \d+\.\d+\.\d+\n$")

    def test_faults_in_arguments_name_the_option(self):
        for arguments, words in {
            (): b"subcommand",
            ("validate",): b"FILE",
            ("validate", "--max", "no", "x"): b"--max",
            ("validate", "--max", "0", "x"): b"--max",
            ("validate", "--first", "--max", "2", "x"): b"--max",
            ("info", "a", "--yaml"): b"--yaml",
            ("convert", "a.zol"): b"OUT",
            ("convert", "a.zol", "b.xml"): b"OUT",
            ("dance",): b"dance",
        }.items():
            with self.subTest(arguments):
                result = self.expect(2, *arguments)
                self.assertIn(words, result.stderr)
                self.assertEqual(result.stdout, b"")

    def test_schema(self):
        self.assertEqual(self.expect(0, "schema").stdout, pathlib.Path(SCHEMA).read_bytes())

    def test_manual_and_completion_know_every_option(self):
        manual = (SOURCE / "tools/zol.1").read_text().replace("\\-", "-")
        completion = (SOURCE / "tools/zol.bash").read_text()
        for command in ("validate", "info", "convert", "list", "schema"):
            words = re.findall(rb"--[a-z]+", self.expect(0, command, "--help").stdout)
            for word in {command} | {word.decode() for word in words}:
                self.assertIn(word, manual)
                self.assertIn(word, completion)

    def test_completion(self):
        (self.directory / "a.zol").touch()
        (self.directory / "b.zolz").touch()
        (self.directory / "c.txt").touch()
        for words, expected in {
            ("con",): {"convert"},
            ("validate", "--m"): {"--max"},
            ("validate", ""): {"a.zol", "b.zolz"},
            ("validate", "--max", ""): set(),
            ("validate", "--color", "a"): {"auto", "always"},
            ("schema", ""): set(),
        }.items():
            script = ('source "$0"; COMP_WORDS=(zol "$@"); COMP_CWORD=$#; _zol; '
                      'printf "%s\\n" "${COMPREPLY[@]}"')
            result = subprocess.run(["bash", "-c", script, SOURCE / "tools/zol.bash", *words],
                                    cwd=self.directory, capture_output=True, text=True, check=True)
            self.assertEqual(set(result.stdout.split()), expected, words)


class ValidateTest(CommandTest):
    def test_samples_are_valid(self):
        result = self.expect(0, "validate", *SAMPLES)
        self.assertEqual(result.stderr, b"")
        self.assertEqual(result.stdout.decode().splitlines(), [f"{path}: valid" for path in SAMPLES])

    def test_tells_every_fault_with_its_place(self):
        bad = color("bad").replace("53.2", "153.2").replace("80.1", "x")
        late = color("late").replace("67.2", "#late#")
        text = document(bad, palette(late)).replace("</Zol:ColorSpaceCIELab>",
                                                    "<Zol:X/></Zol:ColorSpaceCIELab>", 1)
        rows = text.split("\n")

        def line(part):
            return 1 + next(i for i, row in enumerate(rows) if part in row)

        lab = "/ColorSpaceCIELab"
        wanted = [(line("153.2"), 36, f"Zol/Color[1]{lab}/L"), (line(">x<"), 35, f"Zol/Color[1]{lab}/A"),
                  (line("<Zol:X/>"), 10, f"Zol/Color[1]{lab}"),
                  (line("#late#"), 35, f"Zol/Palette[1]/ColorSet[1]/Color[1]{lab}/B")]
        self.assertEqual(self.faults(text), wanted)
        self.assertEqual(self.faults(text, "--first"), wanted[:1])
        self.assertEqual(self.faults(text, "--max", "2"), wanted[:2])
        result = run("validate", self.write(text))
        self.assertIn(f":{line('153.2')}:12: error 36: L is 153.2, at most 150 is allowed\n"
                      '  Zol/Color[1] "bad"/ColorSpaceCIELab/L\n', result.stderr.decode())
        self.assertTrue(result.stdout.endswith(b": 4 faults\n"), result.stdout)
        self.assertIn(b": 4 faults, 1 of them shown",
                      run("validate", "--first", self.write(text)).stdout)

    def test_strict(self):
        good = document(color())
        for name, (old, new, line) in {
            "a comment": ("<Zol:L>", "<!-- -- --><Zol:L>", 16),
            "a prefix": ("<Zol:A>", "<Zol:A x:y='1'>", 17),
            "a tail": ("</Zol:Zol>\n", "</Zol:Zol>\0", 21),
        }.items():
            with self.subTest(name):
                text = good.replace(old, new, 1)
                path = self.write(text)
                self.expect(0, "validate", path)
                self.assertEqual(self.strict_faults(text), [(line, 23)])
                self.expect(0, "convert", path, self.directory / "x.zolz")
                for data in (text.encode(), (self.directory / "x.zolz").read_bytes()):
                    result = self.expect(1, "validate", "--strict", "-", data=data)
                    self.assertRegex(result.stderr.decode(), rf"^-(\(x\.zol\))?:{line}:[0-9]+: error 23: ")
                self.assertEqual(self.strict_faults(text.replace("67.2", "x")),
                                 sorted([(line, 23), (18, 35)]))
                (self.directory / "x.zolz").unlink()
        # What the reader knows of is told once.
        twice = good.replace('UniqueID="id"', 'UniqueID="id" UniqueID="di"')
        self.assertEqual([code for _, code in self.strict_faults(twice)], [3])
        self.expect(0, "validate", "--strict", *SAMPLES)

    def strict_faults(self, text):
        return [fault[:2] for fault in self.faults(text, "--strict")]

    def test_chance_changes(self):
        chance = random.Random(5)
        good = document(color(), palette(color("a"), color("b"))).encode()
        for _ in range(60):
            text = bytearray(good)
            for _ in range(chance.randint(1, 3)):
                text[chance.randrange(len(text))] = chance.choice(b"<>/&\"' =:;aZ0\0\n\xff")
            faults = self.faults(bytes(text))
            self.assertLess(len(faults), 12, bytes(text))
            self.assertEqual(self.faults(bytes(text), "--first"), faults[:1])

    def test_random_bytes(self):
        noise = random.Random(7).randbytes(5000)
        self.assertEqual(len(self.faults(noise)), 1)
        self.expect(1, "validate", self.write(noise, "noise.zolz"))

    def test_names_what_cannot_be_written(self):
        bare = re.sub("<Zol:ColorSpaceCIELab>.*</Zol:ColorSpaceCIELab>\n", "", color("bare"),
                      flags=re.DOTALL)
        text = document(color(), bare, palette(color(), color(), bare, bare),
                        frame="<Zol:Owner><Zol:Person><Zol:Name>x</Zol:Name></Zol:Person>\n"
                              "<Zol:Person/></Zol:Owner>\n<Zol:Version/>\n")
        lines = [i + 1 for i, line in enumerate(text.split("\n")) if 'Name="bare"' in line]
        person = 1 + text[:text.index("<Zol:Person/>")].count("\n")
        a_set = "Zol/Palette[1]/ColorSet[1]"
        self.assertEqual(self.faults(text), [
            (person, 46, "Zol/Preamble/Owner/Person[2]/Name"),
            (person + 1, 46, "Zol/Preamble/Version/Version"),
            (lines[0], 46, "Zol/Color[2]"),
            (lines[1], 46, a_set + "/Color[3]"),
            (lines[2], 46, a_set + "/Color[4]"),
        ])
        self.assertEqual(len(self.faults(text, "--first")), 1)

    def test_what_cannot_be_written_deep_inside(self):
        parent = "<Zol:ParentColorSpace>\n</Zol:ParentColorSpace>\n<Zol:ChangeHistory>"
        part = color()
        at = part.rindex("<Zol:ChangeHistory>")
        part = part[:at] + parent + part[at + len("<Zol:ChangeHistory>"):]
        text = document(color(), part.replace("Zol:", "z:")).replace(
            "<Zol:Zol ", f'<Zol:Zol xmlns:z="{NAMESPACE}" ')
        line = 1 + text[:text.index("<z:Parent")].count("\n")
        self.assertEqual(self.faults(text), [
            (line, 46, "Zol/Color[2]/ColorSpaceCIELab/ParentColorSpace")])

    def test_json(self):
        bad = self.write(document(color().replace("53.2", "-1")), 'quo"te.zol')
        missing = self.directory / "missing.zol"
        result = self.expect(2, "validate", "--json", SAMPLES[0], bad, missing)
        self.assertIn(b"missing.zol", result.stderr)
        offset = bad.read_bytes().index(b"-1<")
        good, faulty, absent = json.loads(result.stdout)
        self.assertEqual(good, {"file": str(SAMPLES[0]), "valid": True, "complete": True,
                                "faultCount": 0, "faults": []})
        self.assertEqual(absent, {"file": str(missing), "trouble": "No such file or directory"})
        self.assertEqual(faulty["faults"], [{
            "severity": "error", "code": 37, "rule": "below-bound",
            "message": "L is -1, at least 0 is allowed",
            "path": "Zol/Color[1]/ColorSpaceCIELab/L", "item": "Zol:L", "line": 16, "column": 12,
            "offset": offset, "length": 2, "object": "red", "found": "-1",
            "expected": "at least 0"}])

    def test_sarif(self):
        """By what the standard asks of a log; it was held against the published schema, too."""
        bad = self.write(document(color().replace("53.2", "-1"), color("red")), "b\u00e4 d.zol")
        missing = self.directory / "missing.zol"
        log = json.loads(self.expect(2, "validate", "--sarif", "--lint", SAMPLES[0], bad, missing,
                                     ).stdout)
        self.assertEqual((log["version"], len(log["runs"])), ("2.1.0", 1))
        (a_run,) = log["runs"]
        self.assertEqual(a_run["columnKind"], "unicodeCodePoints")
        self.assertEqual(a_run["tool"]["driver"]["name"], "zol")
        rules = {rule["id"] for rule in a_run["tool"]["driver"]["rules"]}
        self.assertEqual(rules, {result["ruleId"] for result in a_run["results"]})
        for result in a_run["results"]:
            self.assertIn(result["level"], ("error", "warning"))
            self.assertTrue(result["message"]["text"])
            (location,) = result["locations"]
            region = location["physicalLocation"]["region"]
            self.assertGreaterEqual(min(region["startLine"], region["startColumn"]), 1)
        (fault,) = [result for result in a_run["results"] if result["level"] == "error"]
        physical = fault["locations"][0]["physicalLocation"]
        self.assertTrue(physical["artifactLocation"]["uri"].endswith("/b%C3%A4%20d.zol"))
        region = physical["region"]
        begin = region["byteOffset"]
        self.assertEqual(bad.read_bytes()[begin:begin + region["byteLength"]], b"-1")
        self.assertEqual(fault["locations"][0]["logicalLocations"][0]["fullyQualifiedName"],
                         "Zol/Color[1]/ColorSpaceCIELab/L")
        (invocation,) = a_run["invocations"]
        self.assertFalse(invocation["executionSuccessful"])
        (notice,) = invocation["toolExecutionNotifications"]
        self.assertEqual(notice["message"]["text"], "No such file or directory")
        empty = json.loads(self.expect(0, "validate", "--sarif", SAMPLES[-1]).stdout)
        self.assertEqual(empty["runs"][0]["results"], [])

    def test_lint(self):
        text = document(color(), color("other"))
        second = 1 + text[:text.rindex('UniqueID="id"')].count("\n")
        path = self.write(text)
        self.expect(0, "validate", path)
        result = self.expect(0, "validate", "--lint", path)
        self.assertTrue(result.stdout.endswith(b": valid, 3 warnings\n"), result.stdout)
        self.assertEqual(self.faults(text, "--lint")[-1], (second, 0, "Zol/Color[2]/@UniqueID"))
        # What is good, and would not be once it is written again.
        zone = text.replace("2026-01-02T03:04:05Z", "2026-01-02T03:04:05+00:00", 1)
        self.assertIn(b": warning 22: ", self.expect(0, "validate", "--lint", self.write(zone)).stderr)

    def test_folders_and_many_files(self):
        good, bad = document(color()), document(color().replace("53.2", "-1"))
        expected = []
        for folder in ("a", "b/c", "b/d"):
            (self.directory / folder).mkdir(parents=True)
            for number in range(40):
                name = f"{folder}/{number:02}.{'ZOL' if number % 2 else 'zol'}"
                self.write(bad if number % 7 == 3 else good, name)
                expected.append(f"{self.directory / name}: "
                                f"{'1 fault' if number % 7 == 3 else 'valid'}")
        self.write("not looked at", "b/readme.txt")
        (self.directory / "b/loop").symlink_to(self.directory)
        for jobs in ("1", "2", "7", "0"):
            result = self.expect(1, "validate", "-r", "-j", jobs, self.directory)
            self.assertEqual(result.stdout.decode().splitlines(),
                             [*expected, "120 documents: 102 valid, 18 with faults"], jobs)
        self.assertIn(b"Is a directory", self.expect(2, "validate", self.directory).stderr)
        shown = json.loads(self.expect(1, "info", "--json", "-r", self.directory / "b").stdout)
        self.assertEqual([entry["file"] for entry in shown],
                         [line[:-7] for line in expected[40:] if line.endswith(": valid")])
        rows = list(csv.DictReader(io.StringIO(
            self.expect(1, "list", "--csv", "-r", self.directory / "a").stdout.decode())))
        self.assertEqual({row["Value"] for row in rows if row["Axis"] == "L"}, {"53.2"})
        self.assertEqual(rows[0]["Document"], str(self.directory / "a/00.zol"))

    @unittest.skipIf(sys.platform in ("darwin", "win32"), "names there are text")
    def test_names_in_whatever_bytes(self):
        path = os.fsencode(self.directory) + b"/\xff\xe9.zol"
        with open(path, "wb") as file:
            file.write(document(color()).encode())
        for command in ("validate", "info", "list"):
            self.expect(0, command, os.fsdecode(path))
        self.assertIn(b"valid", self.expect(0, "validate", "-r", self.directory).stdout)

    def test_shows_the_line(self):
        bad = document(color("Haus \u8272").replace("53.2", "-1")).replace("    <Zol:L>", "\t\t<Zol:L>")
        path = self.write(bad)
        expected = [
            f"{path}:16:10: error 37: L is -1, at least 0 is allowed",
            "  Zol/Color[1] \"Haus \u8272\"/ColorSpaceCIELab/L",
            "  16 |     <Zol:L>-1</Zol:L>",
            "     |            ^~",
        ]
        result = self.expect(1, "validate", "-q", path)
        self.assertEqual(result.stderr.decode().splitlines(), expected)
        result = self.expect(1, "validate", "-q", "--brief", path)
        self.assertEqual(result.stderr.decode().splitlines(), expected[:2])
        # The same from standard input, and out of an archive.
        result = self.expect(1, "validate", "-q", "-", data=bad.encode())
        self.assertEqual(result.stderr.decode().replace("-:16", f"{path}:16", 1).splitlines(),
                         expected)
        zipped = self.directory / "x.zolz"
        with zipfile.ZipFile(zipped, "w") as archive:
            archive.writestr("inner.zol", bad)
        result = self.expect(1, "validate", "-q", zipped)
        self.assertEqual(result.stderr.decode().splitlines(),
                         [expected[0].replace(str(path), f"{zipped}(inner.zol)"), *expected[1:]])

    def test_a_pipe_is_read_once(self):
        path = self.directory / "pipe.zol"
        os.mkfifo(path)
        process = subprocess.Popen([COMMAND, "validate", path], stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE)
        path.write_text(document(color().replace("53.2", "-1")))
        output, errors = process.communicate(timeout=60)
        self.assertIn(b"16 |     <Zol:L>-1", errors)
        self.assertIn(b"1 fault", output)

    def test_colours(self):
        path = self.write(document(color().replace("53.2", "-1")))
        for arguments, is_coloured in {(): False, ("--color=never",): False,
                                       ("--color", "always"): True}.items():
            errors = self.expect(1, "validate", *arguments, path).stderr
            self.assertEqual(b"\x1b[1;31merror 37:" in errors, is_coloured, arguments)
        self.assertIn(b"--color", self.expect(2, "validate", "--color=blue", path).stderr)

    def test_colours_on_a_terminal(self):
        path = self.write(document(color().replace("53.2", "-1")))
        for changes, is_coloured in (({"TERM": "xterm"}, True),
                                     ({"TERM": "xterm", "NO_COLOR": "1"}, False),
                                     ({"TERM": "xterm", "NO_COLOR": ""}, True),
                                     ({"TERM": "dumb"}, False)):
            try:
                ours, theirs = pty.openpty()
            except OSError as error:
                self.skipTest(f"no terminal to be had: {error}")
            environment = {name: value for name, value in os.environ.items() if name != "NO_COLOR"}
            subprocess.run([COMMAND, "validate", path], stdout=subprocess.DEVNULL, stderr=theirs,
                           env={**environment, **changes}, check=False, timeout=60)
            os.close(theirs)
            shown = os.read(ours, 10000)
            os.close(ours)
            self.assertEqual(b"\x1b[1;31merror 37:" in shown, is_coloured, changes)

    def test_worst_file_decides(self):
        bad = self.write(document(color().replace("53.2", "-1")))
        self.expect(0, "validate", SAMPLES[0])
        self.expect(1, "validate", bad, SAMPLES[0])
        self.expect(2, "validate", self.directory, bad, SAMPLES[0])

    def test_standard_input(self):
        text = document(color())
        archive = io.BytesIO()
        with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED) as target:
            target.writestr("x.zol", text)
        for data in (text.encode(), archive.getvalue()):
            self.assertEqual(self.expect(0, "validate", "-", data=data).stdout, b"-: valid\n")

    @unittest.skipIf(os.geteuid() == 0, "root may read everything")
    def test_unreadable_file(self):
        path = self.write(document())
        path.chmod(0)
        self.assertIn(b"Permission denied", self.expect(2, "validate", path).stderr)

    def test_progress_on_a_terminal(self):
        try:
            ours, theirs = pty.openpty()
        except OSError as error:
            self.skipTest(f"no terminal to be had: {error}")
        process = subprocess.Popen([COMMAND, "validate", "-"], stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, stderr=theirs)
        # A busy machine may be slow to start it: what is waited for is the line, not the second.
        shown = b""
        while b" s" not in shown and select.select([ours], [], [], 60)[0]:
            shown += os.read(ours, 1000)
        output, _ = process.communicate(document().encode(), timeout=60)
        os.close(theirs)
        while not shown.endswith(b"\x1b[K"):
            shown += os.read(ours, 1000)
        os.close(ours)
        self.assertEqual(output, b"-: valid\n")
        self.assertRegex(shown, rb"Validating - \.\.\. \d+ s")
        self.assertTrue(shown.endswith(b"\r\x1b[K"), shown)

    def test_large_document(self):
        size = int(os.environ.get("ZOL_TEST_MEGABYTES", "100")) * 1_000_000
        part = color() * 200
        head, tail = document("|").split("|")
        path = self.directory / "large.zol"
        with path.open("w") as stream:
            stream.write(head)
            for _ in range(size // len(part)):
                stream.write(part)
            stream.write(color().replace("67.2", "b") + tail)
        begin = time.monotonic()
        result = self.expect(1, "validate", path)
        self.assertEqual(result.stderr.count(b": error "), 1)
        self.assertIn(b"error 35", result.stderr)
        self.assertLess(time.monotonic() - begin, 60)


def elements(path, name):
    return ElementTree.parse(path).getroot().iter(f"{{{NAMESPACE}}}{name}")


def children(path, parent, name):
    return [child for element in elements(path, parent)
            for child in element.findall(f"{{{NAMESPACE}}}{name}")]


class ShowTest(CommandTest):
    def test_counts_agree_with_another_parser(self):
        for path in SAMPLES:
            with self.subTest(path.name):
                shown = json.loads(self.expect(0, "info", "--json", path).stdout)
                own = children(path, "Zol", "Color")
                colors = [color for parent in ("Zol", "ColorSet", "Measurement", "Standard")
                          for color in children(path, parent, "Color")]
                sets = list(elements(path, "ColorSet"))
                self.assertEqual(shown["ownColors"], len(own))
                self.assertEqual([a_set["name"] for palette in shown["palettes"]
                                  for a_set in palette["colorSets"]],
                                 [a_set.get("ColorSetName") for a_set in sets])
                self.assertEqual(len(shown["qualityControl"]),
                                 len(list(elements(path, "ColorQualityControl"))))
                self.assertEqual(shown["provenance"][0]["value"].split()[0],
                                 next(elements(path, "Creator")).text.split()[0])
                self.assertEqual(len(self.expect(0, "list", path).stdout.splitlines()), len(colors))
                text = self.expect(0, "info", path).stdout.decode()
                self.assertIn(f"{len(own)} on their own, {shown['paletteColors']} in palettes", text)

    def test_csv_agrees_with_another_parser(self):
        path = SOURCE / "examples/documents/named-colours.zol"
        rows = list(csv.DictReader(io.StringIO(self.expect(0, "list", "--csv", path).stdout.decode())))
        values = {(int(row["Color"]), row["Space"], row["Axis"]): row for row in rows}
        colors = list(elements(path, "Color"))
        self.assertEqual(max(int(row["Color"]) for row in rows), len(colors))
        for number, color in enumerate(colors, 1):
            for space in ("SRGB", "CIELab"):
                for axis in color.find(f"{{{NAMESPACE}}}ColorSpace{space}"):
                    row = values.get((number, space, axis.tag.split("}")[1]))
                    if row is None or row["Axis"] == "ColorDepth":
                        continue
                    self.assertEqual(float(row["Value"]), float(axis.text))
                    self.assertEqual((row["Name"], row["UniqueID"]),
                                     (color.get("ColorName"), color.get("UniqueID")))
        self.assertIn((1, "SRGB", "Red"), values)

    def test_spectra(self):
        path = SOURCE / "examples/documents/spectra.zol"
        shown = json.loads(self.expect(0, "info", "--json", path).stdout)
        points = [point for space, row in (("ColorSpaceSpectral", "ReflectancePoint"),
                                           ("ColorSpaceEmissiveSpectral", "EmissiveSpectralPoint"))
                  for point in children(path, space, row)]
        self.assertEqual(sum(row["points"] * row["count"] for row in shown["spectra"]), len(points))
        rows = csv.DictReader(io.StringIO(self.expect(0, "list", "--csv", path).stdout.decode()))
        self.assertEqual(sum(row["Space"].endswith("Spectral") for row in rows), len(points))

    def test_awkward_names(self):
        name = 'a "b", c\u001b[31m &amp; \u00e9\u8336\U0001f3a8'
        plain = 'a "b", c\u001b[31m & \u00e9\u8336\U0001f3a8'
        path = self.write(document(color(name.replace('"', "&quot;"))))
        line = self.expect(0, "list", path).stdout.decode().rstrip("\n")
        self.assertEqual(line.split("\t"), [plain.replace("\u001b", " "), "id",
                                            "CIELab L=53.2 A=80.1 B=67.2"])
        rows = list(csv.DictReader(io.StringIO(self.expect(0, "list", "--csv", path).stdout.decode())))
        self.assertEqual([[row[name] for name in ("Name", "UniqueID", "Space", "Axis", "Value")]
                          for row in rows],
                         [[plain, "id", "CIELab", "L", "53.2"], [plain, "id", "CIELab", "A", "80.1"],
                          [plain, "id", "CIELab", "B", "67.2"]])

    def test_faults_are_reported(self):
        bad = self.write(document(color().replace("53.2", "-1")))
        for command in ("info", "list"):
            result = self.expect(1, command, bad)
            self.assertIn(":16:12: error 37: L is -1, at least 0 is allowed", result.stderr.decode())
            self.assertEqual(result.stdout, b"")
            self.expect(1, command, "-", data=bad.read_bytes())
            self.expect(2, command, self.directory)
            self.expect(2, command, self.directory / "missing.zol")

    def test_reader_that_goes_away(self):
        head, tail = document("|").split("|")
        path = self.write(head + color() * 20000 + tail)
        for ignores in (False, True):
            before = signal.signal(signal.SIGPIPE, signal.SIG_IGN)
            try:
                process = subprocess.Popen([COMMAND, "list", path], stdout=subprocess.PIPE,
                                           stderr=subprocess.PIPE, restore_signals=not ignores)
            finally:
                signal.signal(signal.SIGPIPE, before)
            process.stdout.readline()
            process.stdout.close()
            self.assertEqual(process.stderr.read(), b"")
            process.stderr.close()
            self.assertEqual(process.wait(60), 2 if ignores else -signal.SIGPIPE)

    @unittest.skipUnless(os.path.exists("/dev/full"), "needs /dev/full")
    def test_full_output(self):
        for arguments in (["list", SAMPLES[0]], ["info", SAMPLES[0]], ["schema"], ["--help"],
                          ["validate", SAMPLES[0]], ["convert", SAMPLES[0], "-"]):
            with self.subTest(arguments), open("/dev/full", "wb") as full:
                result = subprocess.run([COMMAND, *arguments], stdout=full, stderr=subprocess.PIPE)
                self.assertEqual(result.returncode, 2)
                self.assertIn(b"No space left on device", result.stderr)


def without_stamp(text):
    return re.sub(rb"\s*<Zol:WriteSDKInformation>.*?</Zol:WriteSDKInformation>", b"", text,
                  flags=re.DOTALL)


class ConvertTest(CommandTest):
    def test_text_is_copied(self):
        exact = document(color().replace("53.2", "0.30000000000000004"))
        cases = [path.read_bytes() for path in SAMPLES]
        cases += [exact.encode(), exact.replace("UTF-8", "UTF-16").encode("utf-16")]
        zipped, plain = self.directory / "a.zolz", self.directory / "b.zol"
        for text in cases:
            source = self.write(text)
            with self.subTest(text[:200]):
                self.expect(0, "convert", "--force", source, zipped)
                with zipfile.ZipFile(zipped) as archive:
                    self.assertEqual(archive.namelist(), ["a.zol"])
                    self.assertEqual(archive.read("a.zol"), text)
                self.expect(0, "convert", "--force", zipped, plain)
                self.assertEqual(plain.read_bytes(), text)
                self.assertEqual(self.expect(0, "convert", zipped, "-").stdout, text)
                self.expect(0, "convert", "--force", "-", plain, data=zipped.read_bytes())
                self.assertEqual(plain.read_bytes(), text)
                self.assertEqual(sorted(file.name for file in self.directory.iterdir()),
                                 ["a.zolz", "b.zol", "case.zol"])

    def test_rewrite(self):
        for path in SAMPLES:
            with self.subTest(path.name):
                zipped, plain = self.directory / "a.zolz", self.directory / "b.zol"
                self.expect(0, "convert", "-fw", path, zipped)
                self.expect(0, "convert", "--force", zipped, plain)
                inner = plain.read_bytes()
                self.assertIn(b"<Zol:WriteSDKInformation>", inner)
                self.expect(0, "validate", plain, zipped)
                again = self.directory / "c.zol"
                self.expect(0, "convert", "--rewrite", "--force", "-", again, data=inner)
                self.assertEqual(without_stamp(again.read_bytes()), without_stamp(inner))
                printed = self.expect(0, "convert", "--rewrite", zipped, "-").stdout
                self.assertEqual(without_stamp(printed), without_stamp(inner))

    def test_exact(self):
        source = self.write(document(color().replace("53.2", "0.30000000000000004")))
        for options, number in (((), "0.3<"), (("--exact",), "0.30000000000000004<")):
            printed = self.expect(0, "convert", "--rewrite", *options, source, "-").stdout
            self.assertIn(f"<Zol:L>{number}".encode(), printed)
        self.assertIn(b"--exact", self.expect(2, "convert", "--exact", source, "-").stderr)

    def test_signals_leave_nothing(self):
        source = self.write(document(*(color() for _ in range(20000))))
        target = self.write("precious", "t.zolz")
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            for milliseconds in range(0, 200, 20):
                process = subprocess.Popen([COMMAND, "convert", "-fw", source, target])
                time.sleep(milliseconds / 1000)
                process.send_signal(number)
                status = process.wait(60)
                self.assertIn(status, (0, -number))
                self.assertEqual(sorted(file.name for file in self.directory.iterdir()),
                                 ["case.zol", "t.zolz"])
                if status != 0 and target.stat().st_size == 8:
                    self.assertEqual(target.read_text(), "precious")
                else:
                    self.expect(0, "validate", target)
                    target.write_text("precious")

    def test_hangup_stays_ignored(self):
        source = self.write(document(color()))
        pid_file = self.directory / "out"
        with open(pid_file, "wb") as out:
            process = subprocess.Popen(
                [COMMAND, "validate", "-"], stdin=subprocess.PIPE, stdout=out,
                preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
            time.sleep(0.1)
            process.send_signal(signal.SIGHUP)
            process.communicate(source.read_bytes(), 60)
        self.assertEqual(process.returncode, 0)

    def test_reasons_of_archives(self):
        path = self.directory / "x.zolz"
        with zipfile.ZipFile(path, "w", zipfile.ZIP_LZMA) as archive:
            archive.writestr("a.zol", document(color()))
        packed = path.read_bytes()
        for data, words in {packed: b"LZMA", packed[:-30]: b"cut or damaged",
                            b"PK\5\6" + b"\0" * 18: b"no document"}.items():
            path.write_bytes(data)
            for arguments in (["validate", path], ["info", path], ["convert", path, "-"]):
                with self.subTest(arguments):
                    self.assertIn(words, self.expect(1, *arguments).stderr)
        self.assertIn(b"LZMA", self.expect(1, "validate", "-", data=packed).stderr)

    def test_refuses_to_overwrite(self):
        target = self.write("precious", "t.zol")
        result = self.expect(2, "convert", SAMPLES[0], target)
        self.assertIn(b"--force", result.stderr)
        self.assertEqual(target.read_text(), "precious")
        self.expect(0, "convert", "--force", SAMPLES[0], target)
        self.expect(0, "validate", target)

    def test_onto_itself(self):
        path = self.write(SAMPLES[0].read_bytes(), "same.zol")
        self.expect(0, "convert", "-f", path, path)
        self.expect(0, "validate", path)

    def expect_nothing_changed(self, status, source, name, **options):
        target = self.write("precious", name)
        before = sorted(self.directory.iterdir())
        result = self.expect(status, "convert", "--force", source, target, **options)
        self.assertNotEqual(result.stderr, b"")
        self.assertEqual(target.read_text(), "precious")
        self.assertEqual(sorted(self.directory.iterdir()), before)

    def test_keeps_the_old_file_when_it_fails(self):
        bad = self.write(document(color().replace("53.2", "-1")))
        bare = self.write(document(re.sub("<Zol:ColorSpaceCIELab>.*</Zol:ColorSpaceCIELab>\n", "",
                                          color(), flags=re.DOTALL)), "bare.zol")
        for name in ("t.zol", "t.zolz"):
            self.expect_nothing_changed(1, bad, name)
            self.expect_nothing_changed(1, bare, name)
            self.expect_nothing_changed(2, self.directory / "missing.zol", name)
        result = run("convert", "-f", bare, self.directory / "t.zol")
        self.assertRegex(result.stderr.decode(), r":11:1: error 46: .*\n  Zol/Color\[1\]")

    def test_keeps_the_old_file_on_a_full_disk(self):
        def limit():
            # The write that goes too far fails, since the signal is ignored.
            resource.setrlimit(resource.RLIMIT_FSIZE, (8192, 8192))
        path = SOURCE / "examples/documents/named-colours.zol"
        for name in ("t.zol", "t.zolz"):
            self.expect_nothing_changed(2, path, name, preexec_fn=limit, restore_signals=False)

    def test_no_such_directory(self):
        result = self.expect(2, "convert", SAMPLES[0], self.directory / "none" / "a.zol")
        self.assertNotEqual(result.stderr, b"")


if __name__ == "__main__":
    COMMAND, SCHEMA = sys.argv[1:3]
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
