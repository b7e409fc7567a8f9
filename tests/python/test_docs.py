"""The examples of docs/python.md and README.md, in a folder with the sample documents."""

import doctest
import pathlib
import re
import shutil

import pytest

import zol

ROOT = pathlib.Path(__file__).resolve().parents[2]
BLOCK = re.compile(r"^```python\n(.*?)^```$", re.S | re.M)


@pytest.fixture
def folder(tmp_path, monkeypatch):
    for path in (ROOT / "examples" / "documents").glob("*.zol"):
        shutil.copy(path, tmp_path)
    shutil.copy(tmp_path / "spectra.zol", tmp_path / "colours.zolz")
    monkeypatch.chdir(tmp_path)


def test_the_page_shows_what_happens(folder):
    blocks = list(BLOCK.finditer((ROOT / "docs" / "python.md").read_text("utf-8")))
    assert len(blocks) >= 5
    names, runner = {}, doctest.DocTestRunner(verbose=False)
    for block in blocks:
        test = doctest.DocTestParser().get_doctest(
            block[1], names, "python.md", "python.md", block.string.count("\n", 0, block.start(1)))
        assert test.examples
        runner.run(test, clear_globs=False)
        names = test.globs
    assert runner.summarize(verbose=False).failed == 0


@pytest.mark.parametrize("text", BLOCK.findall((ROOT / "README.md").read_text("utf-8")) + [
    re.sub(r"^    ", "", zol.__doc__[zol.__doc__.index("    import"):zol.__doc__.index("\n\nClasses")],
           flags=re.M)])
def test_the_programs_of_other_pages_run(folder, text):
    exec(compile(text, "README.md", "exec"), {})
