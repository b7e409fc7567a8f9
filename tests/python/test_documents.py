"""Loading and saving: what comes back, what is refused, and what threads may do."""

import gc
import io
import os
import pickle
import subprocess
import sys
import threading
import xml.etree.ElementTree as ElementTree

import pytest

import zol


def color_document(*names):
    document = zol.Document()
    header = document.preamble.header
    header.creator, header.creator_version, header.purpose = "tests", "1", "a test"
    header.change_history.append("2024-02-29T12:00:00Z")
    for name in names:
        color = document.colors.add(name=name, change_history=["2024-02-29T12:00:00.25+01:00"])
        color.spaces.append(zol.CieLab(l=50, a=-20.5, b=7, change_history=["2024-02-29T12:00:00Z"],
                                       specification=None))
    return document


def local(element):
    return element.tag.rpartition("}")[2]


def test_saved_documents_are_read_by_another_parser(tmp_path):
    path = tmp_path / "two.zol"
    color_document("Sky & sea", "\U0001f308").save(path)
    root = ElementTree.parse(path).getroot()
    colors = [one for one in root if local(one) == "Color"]
    assert [one.get("ColorName") for one in colors] == ["Sky & sea", "\U0001f308"]
    numbers = {local(one): one.text for one in colors[0].iter()}
    assert (numbers["L"], numbers["A"], numbers["B"]) == ("50", "-20.5", "7")
    assert zol.open(path).colors[1].name == "\U0001f308"


def test_every_road_gives_the_same_document(documents, tmp_path):
    for path in documents:
        document = zol.open(path)
        text = document.dumps(exact=True)
        zipped = tmp_path / "again.zolz"
        document.save(zipped, exact=True)
        roads = [zol.loads(text), zol.loads(text.decode()), zol.loads(bytearray(text)),
                 zol.loads(zipped.read_bytes()), zol.open(zipped), zol.open(os.fsencode(zipped)),
                 zol.open(io.BytesIO(text)), zol.open(io.StringIO(text.decode())),
                 pickle.loads(pickle.dumps(document)), document.copy()]
        for road in roads:
            assert road.dumps(exact=True) == text, path


def test_faults_are_an_exception_with_all_of_them():
    good = color_document("a", "b").dumps().decode()
    bad = good.replace(">50<", ">151<").replace("-20.5", "many")
    with pytest.raises(zol.LoadError) as caught:
        zol.loads(bad)
    assert [fault.rule for fault in caught.value.faults] == ["above-bound", "wrong-format"] * 2
    first = caught.value.faults[0]
    assert caught.value.code == first.code == 36
    assert first.path == "Zol/Color[1]/ColorSpaceCIELab/L" and first.object == "a"
    assert first.found == "151" and bad.encode()[first.place.offset:][:first.length] == b"151"
    assert str(first).startswith(f"{first.place.line}:{first.place.column}: L is 151")
    again = pickle.loads(pickle.dumps(caught.value))
    assert again.faults == caught.value.faults

    faults = []
    kept = zol.loads(bad, best_effort=faults)
    assert len(faults) == 4 and kept.colors[0].spaces[0].l is None
    assert kept.colors[0].spaces[0].b == 7
    with pytest.raises(zol.SaveError) as caught:
        kept.dumps()
    assert caught.value.faults[0].path == "Zol/Color[1]/ColorSpaceCIELab/L"


@pytest.mark.parametrize("data, code", [(b"", 34), (b"PK\x03\x04broken", 1000), ("<Zol", 23),
                                        ("<a/>", 16), (b"\xff\xfe<\x00", 23)])
def test_what_is_no_document_is_refused(data, code):
    with pytest.raises(zol.LoadError) as caught:
        zol.loads(data)
    assert caught.value.code == code and str(caught.value)


def test_bytes_that_do_not_stand_side_by_side_are_refused():
    text = color_document("a").dumps()
    with pytest.raises(BufferError):
        zol.loads(memoryview(text)[::-1])
    assert len(zol.loads(memoryview(b"x" + text)[1:]).colors) == 1
    for wrong in (5, None, ["<a/>"]):
        with pytest.raises(TypeError):
            zol.loads(wrong)


def test_files_that_cannot_be_read_or_written(tmp_path):
    with pytest.raises(FileNotFoundError):
        zol.open(tmp_path / "missing.zol")
    with pytest.raises(IsADirectoryError):
        zol.open(tmp_path)
    older = tmp_path / "older.zol"
    older.write_bytes(b"older")
    with pytest.raises(zol.SaveError):
        zol.Document().save(older)
    assert older.read_bytes() == b"older"
    with pytest.raises(zol.SaveError) as caught:
        color_document("a").save(tmp_path / "a.txt")
    assert caught.value.code == 1001
    with pytest.raises(zol.SaveError):
        color_document("a").save(tmp_path / "missing" / "a.zol")
    color_document("a").save(tmp_path / "a.zolz")
    with pytest.raises(zol.LoadError):
        zol.open(tmp_path / "a.zolz", largest=100)


def test_a_file_name_that_is_no_text(tmp_path):
    path = os.fsencode(tmp_path) + b"/\xff.zol"
    with open(path, "wb") as file:
        file.write(color_document("a").dumps())
    assert len(zol.open(path).colors) == 1
    assert len(zol.open(os.fsdecode(path)).colors) == 1


def test_check_tells_of_what_would_not_come_back():
    document = color_document("a")
    document.colors[0].spaces[0].specification = zol.TristimulusSpecification(
        field_of_view=zol.FieldOfView.DEGREES2, illumination=5000)
    document.colors[0].spaces[0].specification = None
    assert {fault.rule for fault in document.check()} == {"no-illuminant", "nil-with-content"}
    assert document.check(warnings=False) == []
    document.colors[0].name = "a\rb"
    assert [fault.code for fault in document.check(warnings=False)] == [28]


def test_threads_load_save_and_read_at_once(documents, tmp_path):
    """Documents of their own go on beside each other; one that is saved makes others wait."""
    shared = zol.open(documents[-1])
    expected = shared.dumps()
    failures = []

    def work(number):
        try:
            for turn in range(6):
                own = zol.open(documents[turn % len(documents)])
                own.save(tmp_path / f"{number}.zolz")
                assert len(list(own.every_color())) == len(
                    list(zol.open(tmp_path / f"{number}.zolz").every_color()))
                assert shared.dumps() == expected
                assert shared.preamble.header.creator
                for color in shared.every_color():
                    assert color.name is not None
        except BaseException as error:  # noqa: B902
            failures.append(error)

    threads = [threading.Thread(target=work, args=(number,)) for number in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert failures == []


def test_the_lock_is_let_go_of_while_a_document_is_loaded(tmp_path):
    """What is loaded comes out of a pipe that another thread of the same process fills."""
    pipe = tmp_path / "pipe.zol"
    os.mkfifo(pipe)
    program = f"""
import sys, threading, time
import zol
def fill():
    with open({str(pipe)!r}, "wb") as file:
        file.write(zol.loads(sys.stdin.buffer.read()).dumps())
threading.Thread(target=fill).start()
print(zol.open({str(pipe)!r}).colors[0].name)
"""
    run = subprocess.run([sys.executable, "-c", program], input=color_document("a").dumps(),
                         capture_output=True, timeout=60)
    assert run.stdout == b"a\n", run.stderr


def test_with_closes(sample):
    with sample("spectra") as document:
        color = document.colors[0]
        points = color.spaces[0].points
    for use in (lambda: document.colors, lambda: color.name, lambda: points[0], document.dumps,
                lambda: document.table("CIELab")):
        with pytest.raises(ReferenceError, match="closed"):
            use()
    assert color.is_removed and repr(color) == "<NamedColor (removed)>"
    with pytest.raises(ValueError):
        sample("spectra").colors[0]._close()


def test_a_document_goes_with_the_last_that_refers_to_it(sample):
    """In whatever order its parts are let go of."""
    spaces = [color.spaces[0] for color in sample("spectra").colors]
    gc.collect()
    assert all(space.name for space in spaces)
    parts = [spaces[0], spaces[0].parent, spaces[0].parent.parent]
    del spaces
    while parts:
        parts.pop()
        assert all(repr(part) for part in parts)
