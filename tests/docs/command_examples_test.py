#!/usr/bin/env python3
"""Runs the examples of docs/command.md: command_examples_test.py COMMAND [unittest options]."""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(__file__).resolve().parents[2]
PAGE = (SOURCE / "docs/command.md").read_text("utf-8")
COMMAND = None


class CommandExamplesTest(unittest.TestCase):
    maxDiff = None

    def test_examples_say_what_is_shown(self):
        left_out = [command for command in ("grep", "check")
                    if subprocess.run([COMMAND, command, "--help"], capture_output=True,
                                      check=False).returncode != 0]
        blocks = re.findall(r"^```sh\n(.*?)^```$", PAGE, re.M | re.S)
        self.assertGreater(len(blocks), 6)
        with tempfile.TemporaryDirectory() as directory:
            for path in (SOURCE / "examples/documents").glob("*.zol"):
                shutil.copy(path, directory)
            environment = {**os.environ, "PATH": f"{COMMAND.parent}:{os.environ['PATH']}", "LC_ALL": "C"}
            for line, shown in re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", "".join(blocks), re.M):
                if any(f"zol {command} " in line for command in left_out):
                    continue
                # Brackets of paths are for people who quote them, and parentheses too.
                quoted = re.sub(r"(?<=\s)(Zol/[^\s']*)", r"'\1'", line)
                result = subprocess.run(["bash", "-o", "pipefail", "-c", quoted], cwd=directory,
                                        env=environment, stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT, text=True, timeout=60, check=False)
                told = result.stdout + (f"[{result.returncode}]\n" if result.returncode else "")
                if not self.is_built_with_colour():
                    shown = re.sub(", CIEDE2000 .*", "", shown)
                with self.subTest(line):
                    self.assertEqual(told, shown)

    @staticmethod
    def is_built_with_colour():
        return subprocess.run([COMMAND, "compare", "--help"], capture_output=True,
                              check=False).returncode == 0


if __name__ == "__main__":
    COMMAND = pathlib.Path(sys.argv[1]).resolve()
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
