"""The types that come with the package, as a checker sees them."""

import os
import sys

import pytest

import zol

api = pytest.importorskip("mypy.api")

PROGRAM = """
import zol

with zol.open("x.zol") as document:
    color = document.colors[0]
    reveal_type(color)                                  # zol._model.NamedColor
    reveal_type(color.spaces[0])                        # zol._model.ColorSpace
    reveal_type(color.change_history[0])                # datetime.datetime
    reveal_type(color.change_history.exact)             # Any
    lab = color.spaces.append(zol.CieLab(l=50, a=1.5))
    reveal_type(lab)                                    # zol._model.ColorSpace
    for palette in document.palettes:
        reveal_type(palette.name)                       # builtins.str
    table = document.table("CIELab")
    reveal_type(table["l"])                             # numpy.ndarray[Any, Any]
    reveal_type(zol.CieLab().specification)  # Union[zol._model.TristimulusSpecification, None]
    reveal_type(zol.color.difference([1, 2, 3], [1, 2, 3]))  # numpy.ndarray[Any, Any]
zol.CieLab(l="50")                                      # error
zol.CieLab().l = "50"                                   # error
zol.CieLab(lightness=50)                                # error
document.colours                                        # error
document.colors.append(zol.CieLab())                    # error
"""


def test_a_checker_sees_the_classes(tmp_path, monkeypatch):
    program = tmp_path / "program.py"
    program.write_text(PROGRAM)
    monkeypatch.chdir(tmp_path)
    monkeypatch.setenv("MYPYPATH", os.path.dirname(os.path.dirname(zol.__file__)))
    told, complaint, _ = api.run(["--python-executable", sys.executable, "--cache-dir",
                                  str(tmp_path / "cache"), "--follow-imports=normal",
                                  "--ignore-missing-imports", str(program)])
    assert not complaint
    for number, line in enumerate(PROGRAM.splitlines(), 1):
        _, mark, wanted = line.partition("#")
        mine = [one for one in told.splitlines() if one.startswith(f"program.py:{number}:")]
        if not mark:
            assert mine == [], mine
        elif wanted.strip() == "error":
            assert any(": error: " in one for one in mine), line
        else:
            assert [one.partition('Revealed type is "')[2] for one in mine] == [
                wanted.strip() + '"'], line
    assert [one for one in told.splitlines() if "/zol/" in one and ": error: " in one] == []
