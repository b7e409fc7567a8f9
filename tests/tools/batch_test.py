#!/usr/bin/env python3
"""Drives runs over many documents: batch_test.py COMMAND [unittest options]."""

import os
import pathlib
import subprocess
import sys
import time
import unittest

import zol_test
from zol_test import SOURCE, CommandTest, color, document, run

COMMANDS = {"validate": (), "grep": ("red",), "check": ()}


def stored(path):
    return path.read_bytes().splitlines() if path.exists() else []


class BatchTest(CommandTest):
    def setUp(self):
        super().setUp()
        self.folder = self.directory / "many"
        self.folder.mkdir()
        self.journal = self.directory / "journal"

    def fill(self, count, bad=()):
        good, other = document(color("red")), document(color("red").replace("53.2", "-1"))
        for i in range(count):
            (self.folder / f"{i:05}.zol").write_text(other if i in bad else good)

    def arguments(self, command, *options):
        return [command, "-r", "--resume", self.journal, *options, *COMMANDS[command], self.folder]

    def commands(self):
        return [command for command in COMMANDS if run(command, "--help").returncode == 0]

    def test_a_second_run_does_only_what_is_new(self):
        for command in self.commands():
            with self.subTest(command):
                self.journal.unlink(missing_ok=True)
                self.fill(20)
                expected = run(*self.arguments(command))
                again = run(*self.arguments(command))
                self.assertEqual((again.returncode, again.stderr),
                                 (expected.returncode, expected.stderr))
                self.assertNotIn(b".zol", again.stdout)
                changed = self.folder / "00007.zol"
                changed.write_text(document(color("reddish")))
                (self.folder / "new.zol").write_text(document(color("red")))
                (self.folder / "00003.zol").unlink()
                names = run(*self.arguments(command, "-j2")).stdout.decode()
                told = {pathlib.Path(line.split(":")[0]).name for line in names.splitlines()
                        if ".zol:" in line}
                self.assertEqual(told, {"00007.zol", "new.zol"})
                # The same size, at another time.
                os.utime(changed, ns=(1, 1))
                self.assertIn(b"00007.zol", run(*self.arguments(command)).stdout)
                self.assertNotIn(b".zol", run(*self.arguments(command)).stdout)
                (self.folder / "new.zol").unlink()

    def test_counts_and_status_go_over_all_runs(self):
        self.fill(12, bad=(3, 4))
        first = self.expect(1, *self.arguments("validate"))
        self.assertTrue(first.stdout.endswith(b"12 documents: 10 valid, 2 with faults\n"))
        again = self.expect(1, *self.arguments("validate"))
        self.assertEqual(again.stdout,
                         b"12 documents: 10 valid, 2 with faults; 12 were judged before\n")
        (self.folder / "00003.zol").write_text("")
        (self.folder / "00003.zol").unlink()
        (self.folder / "00003.zol").symlink_to("nowhere")
        for _ in range(2):  # what can't be read is tried again
            last = self.expect(2, *self.arguments("validate"))
            self.assertIn(b"10 valid, 1 with faults, 1 that can't be read; 11 were", last.stdout)

    def test_a_killed_run_goes_on(self):
        """Each document is told once at least, and twice only if it was in flight."""
        self.fill(3000)
        expected = {str(self.folder / f"{i:05}.zol") for i in range(3000)}
        told, kills = [], 0
        for attempt in range(60):
            with open(self.directory / "out", "wb") as out:
                process = subprocess.Popen([zol_test.COMMAND, *map(str, self.arguments("validate", "-j2"))],
                                           stdout=out)
                time.sleep(0.004 * (1 + attempt % 5))
                process.kill()
                status = process.wait(60)
            lines = (self.directory / "out").read_text().split("\n")
            told += [line.partition(":")[0] for line in lines if line.endswith(": valid")]
            if status == 0:
                break
            kills += 1
            # All that the journal has was told before.
            noted = {line.split(b" ", 3)[3].decode() for line in stored(self.journal)[1:]
                     if line.count(b" ") >= 3 and line.endswith(b".zol")}
            self.assertLessEqual(noted, set(told))
        last = self.expect(0, *self.arguments("validate")).stdout.decode()
        told += [line.partition(":")[0] for line in last.splitlines() if line.endswith(": valid")]
        self.assertEqual(set(told), expected)
        self.assertLessEqual(len(told), 3000 + kills)

    def test_a_journal_that_was_cut(self):
        self.fill(5)
        self.expect(0, *self.arguments("validate"))
        whole = self.journal.read_bytes()
        for size in range(len(whole)):
            self.journal.write_bytes(whole[:size])
            self.expect(0, *self.arguments("validate"))
            self.assertEqual(sorted(stored(self.journal)), sorted(whole.splitlines()), size)
        # A power failure may leave zeros.
        self.journal.write_bytes(whole + b"\0" * 100 + b"\n1 2\n\n5 5 5 5\n")
        self.assertIn(b"5 were", self.expect(0, *self.arguments("validate")).stdout)

    def test_journals_of_others(self):
        self.fill(2)
        self.expect(0, *self.arguments("validate"))
        result = self.expect(2, *self.arguments("validate", "--lint"))
        self.assertIn(b"belongs to another task: validate\n", result.stderr)
        document_text = (self.folder / "00000.zol").read_bytes()
        result = self.expect(2, "validate", "--resume", self.folder / "00000.zol", self.folder / "00001.zol")
        self.assertIn(b"is no journal", result.stderr)
        self.assertEqual((self.folder / "00000.zol").read_bytes(), document_text)
        self.assertIn(b"--resume", self.expect(2, *self.arguments("validate", "--json")).stderr)
        self.expect(2, "validate", "--resume", self.directory / "none/journal", self.folder)
        self.expect(2, "validate", "--resume", self.directory, self.folder)

    def test_a_journal_in_use(self):
        self.fill(1)
        pipe = self.directory / "pipe.zol"
        os.mkfifo(pipe)
        process = subprocess.Popen([zol_test.COMMAND, "validate", "--resume", self.journal, pipe],
                                   stdout=subprocess.DEVNULL)
        try:
            deadline = time.monotonic() + 30
            while not stored(self.journal) and time.monotonic() < deadline:
                time.sleep(0.01)
            self.assertIn(b"in use", self.expect(2, *self.arguments("validate")).stderr)
        finally:
            pipe.write_text(document(color()))
            self.assertEqual(process.wait(60), 0)
        # A pipe has no state by which it could be known again.
        self.assertEqual(len(stored(self.journal)), 1)
        self.expect(0, *self.arguments("validate"))

    def test_each_of_a_folder_is_converted(self):
        self.fill(40, bad=(7,))
        (self.folder / "inner").mkdir()
        (self.folder / "inner/deep.ZOLZ").write_text("")
        self.expect(0, "convert", "-f", self.folder / "00001.zol", self.directory / "deep.zolz")
        (self.directory / "deep.zolz").replace(self.folder / "inner/deep.ZOLZ")
        single = self.directory / "single.csv"
        self.expect(0, "convert", self.folder / "00001.zol", single)
        for jobs in ("-j1", "-j3"):
            out = self.directory / f"out{jobs}"
            result = self.expect(1, "convert", "-r", jobs, "--to", "csv", self.folder, f"{out}/csv/")
            self.assertEqual(result.stdout, b"41 files: 40 converted, 1 with faults\n")
            told = [line for line in result.stderr.decode().splitlines() if "left out" in line]
            self.assertEqual(told, sorted(told))
            self.assertEqual(len(told), 40)
            made = {str(path.relative_to(out)) for path in out.rglob("*.*")}
            self.assertEqual(made, {f"csv/{i:05}.csv" for i in range(40) if i != 7} | {"csv/inner/deep.csv"})
            text = (out / "csv/00001.csv").read_bytes().replace(b"00001.zol", b"")
            self.assertEqual(text, single.read_bytes().replace(b"00001.zol", b""))
        # What is there stays, unless it may go.
        (out / "csv/00002.csv").write_text("mine")
        arguments = ("convert", "-r", "-j2", "--to", "csv", self.folder, out / "csv")
        result = self.expect(2, *arguments)
        self.assertIn(b"00002.csv: exists; --force replaces it", result.stderr)
        self.assertEqual((out / "csv/00002.csv").read_text(), "mine")
        self.expect(1, *arguments, "-f")
        self.assertNotEqual((out / "csv/00002.csv").read_text(), "mine")

    def test_two_files_do_not_become_one(self):
        self.fill(1)
        (self.folder / "00000.zolz").write_bytes((self.folder / "00000.zol").read_bytes())
        for jobs in ("-j1", "-j4"):
            out = self.directory / f"out{jobs}"
            result = self.expect(2, "convert", "-rf", jobs, "--to", "json", self.folder, out)
            self.assertIn(b"as another file does", result.stderr)
            self.assertEqual([path.name for path in out.iterdir()], ["00000.json"])
        # Nor is what was made taken for what is to be converted.
        inner = self.folder / "made"
        for _ in range(2):
            self.expect(2, "convert", "-rf", "--to", "zolz", self.folder, inner)
            self.assertEqual([path.name for path in self.folder.rglob("made")], ["made"])
        for misuse in (("-", self.directory / "out/"), (self.folder, self.directory / "none.zol")):
            self.expect(2, "convert", "-r", "--to", "zol", *misuse)
        self.expect(2, "convert", "-r", self.folder, f"{self.directory}/out/")

    def test_a_conversion_goes_on(self):
        self.fill(1500, bad=(9,))
        out = self.directory / "out"
        arguments = ["convert", "-r", "-j2", "--resume", self.journal, "--to", "csv", self.folder, out]
        for attempt in range(10):
            process = subprocess.Popen([zol_test.COMMAND, *map(str, arguments)], stdout=subprocess.DEVNULL,
                                       stderr=subprocess.DEVNULL)
            time.sleep(0.02 * (1 + attempt % 5))
            process.kill()
            process.wait(60)
            # Files are whole whenever they are there.
            for path in out.glob("*.csv") if out.exists() else ():
                self.assertTrue(path.read_bytes().endswith(b"\r\n"), path)
        self.expect(1, *arguments)
        again = self.expect(1, *arguments)
        self.assertEqual(again.stdout, b"1500 files: 1499 converted, 1 with faults; 1500 were done before\n")
        self.assertEqual(len(list(out.glob("*.csv"))), 1499)
        self.assertIn(b"another task", self.expect(2, *arguments[:-2], self.folder, self.directory / "b/").stderr)

    def test_many_become_one_in_order(self):
        self.fill(300)
        tables = [self.expect(0, "convert", "-r", jobs, self.folder, "-", "--to", "csv").stdout
                  for jobs in ("-j1", "-j4")]
        self.assertEqual(*tables)
        names = [line.split(b",")[0] for line in tables[0].splitlines()[1:]]
        self.assertEqual(names, sorted(names))
        self.assertEqual(len(set(names)), 300)
        self.fill(300, bad=(5,))
        table = self.directory / "all.csv"
        table.write_text("old")
        self.expect(1, "convert", "-rf", "-j2", self.folder, table)
        self.assertEqual(table.read_text(), "old")
        self.expect(1, "convert", "-rfk", "-j2", self.folder, table)
        self.assertNotIn(b"00005.zol", table.read_bytes())
        self.assertEqual(sorted(path.name for path in self.directory.iterdir()), ["all.csv", "many"])

    def test_names_with_line_feeds(self):
        for name in ("a\nb.zol", "a\\nb.zol", "a b.zol"):
            (self.folder / name).write_text(document(color()))
        self.assertIn(b"3 documents", self.expect(0, *self.arguments("validate")).stdout)
        self.assertIn(b"3 were", self.expect(0, *self.arguments("validate")).stdout)
        # Wherever the run is started.
        os.chdir(self.directory)
        self.addCleanup(os.chdir, SOURCE)
        again = self.expect(0, "validate", "-r", "--resume", self.journal, "many")
        self.assertIn(b"3 were", again.stdout)

    def test_output_that_ends_is_not_noted(self):
        self.fill(300)
        with open("/dev/full", "wb") as full:
            result = subprocess.run([zol_test.COMMAND, *map(str, self.arguments("validate"))],
                                    stdout=full, stderr=subprocess.PIPE, check=False)
        self.assertEqual(result.returncode, 2)
        self.assertEqual(len(stored(self.journal)), 1)

    @unittest.skipIf("ZOL_TEST_SLOW" in os.environ, "a sanitizer keeps what was freed")
    def test_memory_does_not_grow(self):
        """Many small documents, and one large one that the others have to wait for."""
        count = int(os.environ.get("ZOL_TEST_DOCUMENTS", "20000"))
        text = document(color("red"))

        def peak(command, *options):
            code = ("import resource, subprocess, sys\n"
                    "subprocess.run(sys.argv[1:], stdout=subprocess.DEVNULL, check=False)\n"
                    "print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)")
            result = subprocess.run([sys.executable, "-c", code, zol_test.COMMAND, command, "-r", "-j2",
                                     *map(str, options)], capture_output=True, check=True)
            return int(result.stdout)

        def write(first, last):
            for i in range(first, last):
                folder = self.folder / f"{i // 1000:03}"
                folder.mkdir(exist_ok=True)
                (folder / f"{i:06}.zol").write_text(text)
        write(0, 500)
        (self.folder / "000/000000.zol").write_text(document(*[color()] * 4000))
        before = {command: peak(command, *COMMANDS[command], self.folder) for command in self.commands()}
        conversion = {kind: peak("convert", "-f", "--to", kind, self.folder, self.directory / "all")
                      for kind in ("csv", "sqlite")}
        write(500, count)
        for command, kilobytes in before.items():
            self.assertLess(peak(command, *COMMANDS[command], self.folder), kilobytes + 4096, command)
        for kind in ("csv", "sqlite"):
            self.assertLess(peak("convert", "-f", "--to", kind, self.folder, self.directory / "all"),
                            1.5 * conversion[kind] + 8192, kind)
        self.assertLess(peak("validate", "--resume", self.journal, self.folder), before["validate"] + 4096 + count // 20)


if __name__ == "__main__":
    zol_test.COMMAND = str(pathlib.Path(sys.argv[1]).resolve())
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
