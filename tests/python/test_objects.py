"""Objects, values and lists: what they give, refuse and outlive."""

import ast
import datetime
import enum
import os
import pathlib
import pydoc
import random
import resource
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

import pytest

import zol
from zol import _zol
from test_documents import color_document, local


def every_object(root):
    """All objects of a tree, each by way of its attributes."""
    yield root
    for name, attribute in root.attributes().items():
        try:
            value = getattr(root, name)
        except ValueError:  # a date that no calendar has
            assert isinstance(getattr(root, name + "_exact"), str)
            continue
        if attribute.is_list and attribute.format_name != "ChangeHistory":
            for one in value:
                if isinstance(one, zol.Object):
                    assert one.parent == root
                    yield from every_object(one)
        elif isinstance(value, zol.Object):
            yield from every_object(value)


def seen_by_another(document):
    """The tree that another parser finds. A function may stand under its own name or be named by
    its type."""
    def shape(element):
        named = element.get("{http://www.w3.org/2001/XMLSchema-instance}type")
        name = named.partition(":")[2].removesuffix("Type") if named else local(element)
        attributes = {key: value for key, value in element.items() if value != named}
        return name.lower(), attributes, element.text, list(map(shape, element))

    return shape(ElementTree.fromstring(document.dumps(exact=True)))


def test_every_attribute_of_every_class_is_read_and_set(documents):
    """A tree that is built anew from the attributes of another one is written alike."""
    def rebuilt(source):
        made = type(source)()
        for name, attribute in source.attributes().items():
            if name.endswith("_choice"):
                choice = getattr(source, name)
                if choice is not None and hasattr(choice, "description"):
                    getattr(made, name).description = choice.description
                continue
            if attribute.is_list:
                values = getattr(source, name)
                if attribute.format_name == "ChangeHistory":
                    values = values.exact
                if attribute.format_name == "any":
                    continue
                setattr(made, name, [rebuilt(one) if isinstance(one, zol.Object) else one
                                     for one in values])
                continue
            try:
                value = getattr(source, name)
            except ValueError:
                value = getattr(source, name + "_exact")
            if value is None:
                try:
                    setattr(made, name, None)
                except ValueError:  # what is required and was not there
                    assert getattr(made, name) is None
                continue
            if isinstance(value, zol.Object):
                value = rebuilt(value)
            setattr(made, name, value)
        if source.is_nil:
            made.is_nil = True
        return made

    seen = set()
    for path in documents:
        document = zol.open(path)
        seen.update(type(one) for one in every_object(document))
        for part in document.palettes[:] + document.quality_controls[:] + document.colors[:]:
            again = zol.Document()
            again.preamble = document.preamble
            listed = {zol.Palette: again.palettes, zol.QualityControl: again.quality_controls,
                      zol.NamedColor: again.colors}[type(part)]
            alike = again.copy()
            listed.append(rebuilt(part))
            {zol.Palette: alike.palettes, zol.QualityControl: alike.quality_controls,
             zol.NamedColor: alike.colors}[type(part)].append(part)
            assert seen_by_another(again) == seen_by_another(alike), (path, part)
    assert len(seen) > 100


def test_what_is_not_there_is_none():
    color = zol.NamedColor()
    assert color.name is None and color.comments is None and color.substrate is None
    color.comments = "x"
    color.comments = None
    assert color.comments is None
    del color.comments
    with pytest.raises(ValueError, match="required"):
        color.name = None
    with pytest.raises(AttributeError):
        color.colour = 1
    with pytest.raises(ValueError):
        color.is_nil = True
    with pytest.raises(TypeError):
        zol.ColorSpace()
    with pytest.raises(TypeError):
        zol.NamedColor("name")
    with pytest.raises(AttributeError):
        zol.NamedColor(unknown=1)


def test_values_are_judged_and_told():
    document = color_document("a")
    lab = document.colors[0].spaces[0]
    for attribute, value, code in (("l", 150.5, 36), ("l", -1, 37), ("a", float("nan"), 37)):
        with pytest.raises(zol.ValueRefused) as caught:
            setattr(lab, attribute, value)
        assert caught.value.code == code
    with pytest.raises(ValueError, match=r"Zol/Color\[1\]/ColorSpaceCIELab/L cannot be 151, "
                                         "at least 0 and at most 150 is allowed"):
        lab.l = 151
    assert lab.l == 50
    for attribute, value in (("l", "50"), ("name", 5), ("specification", zol.NamedColor()),
                             ("change_history", ["2024-02-29T12:00:00Z", 5]), ("l", 1j)):
        with pytest.raises(TypeError):
            setattr(lab, attribute, value)
    assert list(lab.change_history.exact) == ["2024-02-29T12:00:00Z"]
    for text, error in (("\0", ValueError), ("\ud800", ValueError)):
        with pytest.raises(error):
            lab.name = text
    with pytest.raises(TypeError, match="cannot stand"):
        document.colors.append(lab)
    with pytest.raises(TypeError, match="has no l of"):
        type(lab).l.__get__(document)


def test_enumerations_are_enums():
    tolerance = zol.Tolerance(primary_illuminant=zol.Illuminant.D50)
    assert isinstance(tolerance.primary_illuminant, enum.Enum)
    assert tolerance.primary_illuminant.value == "Illuminant_D50"
    tolerance.primary_illuminant = "Illuminant_A"
    assert tolerance.primary_illuminant is zol.Illuminant("Illuminant_A")
    with pytest.raises(ValueError):
        tolerance.primary_illuminant = "Illuminant_X"
    with pytest.raises(TypeError):
        tolerance.primary_illuminant = zol.FieldOfView.DEGREES2


def test_dates_are_datetimes_with_the_exact_form_beside():
    dates = zol.NamedColor().change_history
    zone = datetime.timezone(datetime.timedelta(hours=-5, minutes=-30))
    dates.append(datetime.datetime(2024, 2, 29, 12, 0, 0, 250000, zone))
    dates.append("12026-01-01T00:00:00Z")
    dates.append(datetime.datetime(2024, 1, 1, tzinfo=datetime.timezone.utc))
    dates.append("2024-01-01T00:00:00+00:00")
    assert list(dates.exact) == ["2024-02-29T12:00:00.25-05:30", "12026-01-01T00:00:00Z",
                                 "2024-01-01T00:00:00Z", "2024-01-01T00:00:00Z"]
    assert dates[0] == datetime.datetime(2024, 2, 29, 12, 0, 0, 250000, zone)
    with pytest.raises(ValueError):
        dates[1]
    for value in ("2024-01-01T00:00:00", "yesterday", datetime.datetime(2024, 1, 1)):
        with pytest.raises(zol.ValueRefused):
            dates.append(value)
    assert len(dates) == 4


def test_choices_give_what_they_hold():
    specification = zol.TristimulusSpecification(illumination=zol.NamedIlluminant(
        value="Illuminant_D65"))
    assert specification.illumination.value.value == "Illuminant_D65"
    held = specification.illumination
    specification.illumination = 5000
    assert specification.illumination == 5000 and held.is_removed
    assert specification.illumination_choice.kind == "color_temperature"
    for value, kind in ((45.0, "angle"), (8, "angle"), ("as it comes", "unknown_geometry"),
                        (zol.SphereGeometry("Sphere_Included"), "sphere_geometry"),
                        (zol.BsdfAngle(illuminant_angle=45, aspecular=15), "bsdf_angle")):
        specification.geometry = value
        choice = specification.geometry_choice
        assert choice.kind == kind and choice.held == specification.geometry
    specification.geometry = None
    assert specification.geometry is None and specification.geometry_choice is None
    with pytest.raises(TypeError):
        specification.geometry = b"bytes"
    custom = zol.CustomProperty(name="n", value=7)
    assert custom.value == 7 and type(custom.value) is int
    custom.value = 7.5
    assert custom.value == 7.5
    custom.value_choice.string_value = "seven"
    assert custom.value == "seven"


def test_lists_are_sequences():
    colors = color_document(*"abcdef").colors

    def names():
        return "".join(color.name for color in colors)

    assert len(colors) == 6 and colors[-1].name == "f" and colors[1] in colors
    assert [color.name for color in colors[4:0:-2]] == ["e", "c"]
    assert [color.name for color in reversed(colors)] == list("fedcba")
    with pytest.raises(IndexError):
        colors[6]
    del colors[::2]
    assert names() == "bdf"
    colors.insert(-100, zol.NamedColor(name="x"))
    colors[1] = colors[3]
    assert names() == "xfdf"
    assert colors.pop(0).name == "x" and names() == "fdf"
    colors.extend(colors[:])
    assert names() == "fdffdf"
    with pytest.raises(TypeError):
        colors.extend([colors[0], 5])
    assert names() == "fdffdf"
    colors.extend(colors.parent.colors)  # itself, by another proxy
    assert names() == "fdffdffdffdf"
    del colors[:-5]
    colors += [zol.NamedColor(name="x", change_history=["2026-03-05T10:00:00Z"])]
    colors.reverse()
    assert names() == "xfdffd"
    del colors[0]
    colors.append(colors[0])
    assert names() == "fdffdf"
    with pytest.raises(TypeError):
        colors.parent.colors = [colors[1], zol.CieLab()]
    assert names() == "fdffdf"
    colors.parent.colors = reversed(colors)
    assert names() == "fdffdf"[::-1]
    with pytest.raises(zol.ValueRefused):
        colors[0].spaces.append(zol.CieLab()).l = 151
    colors.clear()
    assert not colors and list(colors) == []
    words = zol.NamedColor(semantic_associations=["warm", "red"]).semantic_associations
    assert words == ["warm", "red"] and words.index("red") == 1
    words[0] = "cold"
    assert words.pop(0) == "cold" and list(words) == ["red"]


def test_slices_are_those_of_a_list():
    """Against a list that gets the same assignments."""
    chance = random.Random(1)
    colors, names = zol.Document().colors, []

    def made(*names):
        return [zol.NamedColor(name=name, change_history=["2026-03-05T10:00:00Z"]) for name in names]
    for turn in range(500):
        ends = [chance.choice((None, chance.randint(-9, 12))) for _ in range(2)]
        part = slice(*ends, chance.choice((None, 1, 2, -1, 3, -2)))
        count = len(range(*part.indices(len(names))))
        new = [f"{turn}.{i}" for i in range(count if part.step not in (None, 1) else chance.randint(0, 3))]
        colors[part] = made(*new)
        names[part] = new
        assert [color.name for color in colors] == names, part
        if len(names) > 30:
            del colors[4:], names[4:]
    colors[:] = made("a", "b", "c", "d")
    kept = colors[3]
    for part, values in ((slice(0, 2), [*made("x"), zol.CieLab()]), (slice(None, None, 2), made("x")),
                         (slice(None), 5), (slice(1, None), [None])):
        with pytest.raises((TypeError, ValueError)):
            colors[part] = values
    assert [color.name for color in colors] == ["a", "b", "c", "d"]
    colors[0:2] = colors[1::-1]
    assert [color.name for color in colors] == ["b", "a", "c", "d"] and not kept.is_removed
    kept.change_history[:] = [datetime.datetime(2026, 3, 5, tzinfo=datetime.timezone.utc)] * 2
    with pytest.raises(zol.ValueRefused):
        kept.change_history[1:] = ["2026-03-06T00:00:00Z", "yesterday"]
    assert len(kept.change_history) == 2


def test_foreign_elements_are_set():
    elements = zol.Revision().elements
    note = '<x:note xmlns:x="urn:x" at="1">é<x:deep/></x:note>'
    assert elements.append(note) == zol.ForeignElement("x:note", "urn:x", note)
    for bad in ("<x:note/>", "note", "<a/><b/>", "<!DOCTYPE a><a/>", "<a>&gone;</a>", "<a", "", "<a/>\0"):
        with pytest.raises(zol.ValueRefused):
            elements.append(bad)
        with pytest.raises(zol.ValueRefused):
            elements[0] = bad
    with pytest.raises(TypeError):
        elements.append(5)
    elements[0] = zol.ForeignElement("", "", '<b xmlns="urn:b"/>')
    elements.insert(0, "<a/>")
    assert [one.name for one in elements] == ["a", "b"] and elements[1].namespace == "urn:b"


def test_what_was_removed_is_no_more_and_harms_nothing():
    document = color_document("a", "b", "c")
    color = document.colors[1]
    space, spaces = color.spaces[0], color.spaces
    del document.colors[0]
    assert color.name == "b"
    del document.colors[0]
    for use in (lambda: color.name, lambda: space.l, lambda: spaces[0], lambda: len(spaces),
                lambda: setattr(color, "name", "x"), lambda: document.colors.append(color),
                lambda: spaces.append(space), lambda: space.path, lambda: space.parent):
        with pytest.raises(ReferenceError):
            use()
    assert space != document.colors[0].spaces[0]
    # Another object may stand at the same address now.
    for _ in range(100):
        made = document.colors.add(name="new")
        assert made.name == "new" and color.is_removed and space.is_removed
        document.colors.pop()

    color = document.colors[0]
    space = color.spaces[0]
    color.spaces[0] = zol.CieLab(l=1, a=2, b=3)
    assert space.is_removed and color.spaces[0].l == 1
    specification = zol.TristimulusSpecification(field_of_view=zol.FieldOfView.DEGREES10)
    color.spaces[0].specification = specification
    first = color.spaces[0].specification
    color.spaces[0].specification = None
    assert first.is_removed and color.spaces[0].specification is None
    color.spaces[0].specification = specification
    assert first.is_removed
    assert color.spaces[0].specification.field_of_view is zol.FieldOfView.DEGREES10


def test_code_that_runs_in_the_middle_may_remove_the_object():
    document = color_document("a", "b")
    lab = document.colors[0].spaces[0]

    class Removing:
        def __float__(self):
            document.colors.clear()
            return 1.0

    with pytest.raises(ReferenceError):
        lab.l = Removing()

    def giving():
        document.close()
        yield zol.NamedColor()

    with pytest.raises(ReferenceError):
        document.colors = giving()


def test_chains_of_parents_may_be_long():
    """Deeper than any stack, and let go of in one go."""
    space = root = zol.Spectral()
    for _ in range(50_000):
        space.parent_color_space = zol.ParentColorSpace()
        space.parent_color_space.color_space = zol.Spectral()
        space = space.parent_color_space.color_space
    root.comments = None
    assert not space.is_removed
    root.parent_color_space = None
    assert space.is_removed
    del space, root


def test_a_million_objects_take_no_memory_for_long():
    document = color_document("a")
    spaces = document.colors[0].spaces

    def work():
        for _ in range(100_000):
            spaces.append(zol.CieLab(l=1)).a = 2
            del spaces[-1]
            assert spaces[0].l == 50

    work()
    before = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
    for _ in range(9):
        work()
    grown = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - before
    if "asan" not in os.environ.get("LD_PRELOAD", ""):  # it keeps what was freed
        assert grown < 8 * 1024  # KiB


def test_help_and_stubs_know_every_attribute():
    text = pydoc.render_doc(zol.CieLab, renderer=pydoc.plaintext)
    assert "Lightness L*." in text and "At least 0 and at most 150." in text
    assert "In documents: element L of ColorSpaceCIELabType. Here: float." in text
    stub = ast.parse(pathlib.Path(zol._model.__file__).with_suffix(".pyi").read_text("utf-8"))
    typed = {one.name: {line.target.id for line in one.body if isinstance(line, ast.AnnAssign)}
             for one in stub.body if isinstance(one, ast.ClassDef)}
    for name in zol._model.__all__:
        made = getattr(zol, name)
        if issubclass(made, zol.Object):
            own = {key for key, one in vars(made).items() if isinstance(one, _zol.field)}
            assert typed[name] == own
            assert all(one.__doc__ and one.__name__ == key for key, one in vars(made).items()
                       if isinstance(one, _zol.field))
            # No row hides what the class has beside its rows.
            parts = [base for base in made.__mro__ if base.__module__ != made.__module__]
            assert not own & {key for base in parts for key in vars(base) if key[:2] != "__"}


def test_the_import_is_quick_and_brings_no_numpy():
    code = ("import sys, time; before = time.process_time(); import zol; "
            "print(time.process_time() - before, 'numpy' in sys.modules)")
    told = [subprocess.run([sys.executable, "-c", code], capture_output=True, text=True,
                           check=True).stdout.split() for _ in range(5)]
    assert {brings for _, brings in told} == {"False"}
    if "asan" not in os.environ.get("LD_PRELOAD", ""):
        assert min(float(seconds) for seconds, _ in told) < 0.08


def test_notebooks_see_swatches_and_curves(sample):
    document = sample("spectra")
    color = document.colors[0]
    for shown in (document, color, document.colors, color.spaces, color.spaces[0]):
        html = shown._repr_html_()
        assert html.count("<div") == html.count("</div") and html.startswith("<")
    assert "<svg" in color._repr_html_() and "<polyline" in color.spaces[0]._repr_html_()
    color.name = "<script>"
    assert "<script>" not in document._repr_html_() + color._repr_html_()
