#!/usr/bin/env python3
"""Breaks the document of docs/errors.md as the page says, and compares what is told of it.

    errors_examples_test.py COMMAND
"""

import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

PAGE = (pathlib.Path(__file__).resolve().parents[2] / "docs" / "errors.md").read_text("utf-8")
COMMAND = None

# Instead of, stands, and the place, code and sentence that are told.
ROW = re.compile(r"^\| `(.*?)` \| (?:`(.*?)`|nothing) \| `(\d+:\d+: error (\d+): .*)` \|$", re.M)


def section(title):
    return re.search(rf"^## {title}$(.*?)(?=^## |\Z)", PAGE, re.M | re.S)[1]


class ErrorsExamplesTest(unittest.TestCase):
    def setUp(self):
        examples = section("What is told of them")
        self.document = re.search(r"```xml\n(.*?)```", examples, re.S)[1]
        self.rows = ROW.findall(examples)

    def test_documents_are_told_so(self):
        with tempfile.TemporaryDirectory() as directory:
            path = pathlib.Path(directory) / "x.zol"

            def told(text):
                path.write_text(text, "utf-8")
                run = subprocess.run([COMMAND, "validate", "-q", "--brief", path.name], timeout=60,
                                     cwd=directory, capture_output=True, text=True, check=False)
                return [line for line in run.stderr.splitlines() if not line.startswith("  ")]

            self.assertEqual(told(self.document), [])
            for old, new, expected, _ in self.rows:
                with self.subTest(old, new=new):
                    self.assertIn(old, self.document)
                    broken = self.document.replace(old, new, 1)
                    self.assertEqual(told(broken), [f"x.zol:{expected}"])

    def test_every_code_of_a_document_is_there(self):
        codes = {code for title in ("The document breaks the rules of the format",
                                    "The document is no good XML")
                 for code in re.findall(r"^\| (\d+) \|", section(title), re.M)}
        self.assertEqual(codes - {code for _, _, _, code in self.rows}, set())
        self.assertGreater(len(codes), 20)


if __name__ == "__main__":
    COMMAND = pathlib.Path(sys.argv[1]).resolve()
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
