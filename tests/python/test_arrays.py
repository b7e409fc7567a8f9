"""Columns and spectra as arrays, held against plain loops, numpy and pandas."""

import gc
import xml.etree.ElementTree as ElementTree

import numpy
import pandas
import pytest

import zol
from test_documents import color_document, local


def test_a_table_has_what_a_loop_and_another_parser_find(documents):
    for path in documents:
        document = zol.open(path)
        for kind, element in (("CIELab", "ColorSpaceCIELab"), (zol.CieXyz, "ColorSpaceCIEXYZ"),
                              ("ColorSpaceSRGBType", "ColorSpaceSRGB"), ("Cmyk", "ColorSpaceCMYK")):
            table = document.table(kind)
            made = kind if isinstance(kind, type) else None
            spaces = [space for color in document.every_color() for space in color.spaces
                      if space.path.rpartition("/")[2].partition("[")[0] in (
                          element, element + "PlusN")]
            assert table.row_count >= len(spaces)
            assert made is None or all(isinstance(space, made) for space in spaces)
            if table.row_count != len(spaces):
                continue  # some stand elsewhere, as under the foreign road of a fan deck
            numbers = [name for name, column in table.items() if column.dtype == float]
            for name in numbers:
                wanted = [numpy.nan if getattr(space, name) is None else getattr(space, name)
                          for space in spaces]
                numpy.testing.assert_array_equal(table[name], wanted)
            assert list(table["color"]) == [space.parent.name for space in spaces]
        root = ElementTree.parse(path).getroot()
        parents = {child: parent for parent in root.iter() for child in parent}
        found = [[float(one.text) for one in space if local(one) in ("L", "A", "B")]
                 for space in root.iter() if local(space) == "ColorSpaceCIELab"
                 and local(parents[space]) == "Color"]
        numpy.testing.assert_array_equal(document.table("CIELab").array("l", "a", "b"),
                                         numpy.array(found).reshape(len(found), 3))


def test_absent_values_and_names_of_what_is_around(sample):
    table = sample("named-colours").table("CIELab")
    frame = table.frame()
    assert isinstance(frame, pandas.DataFrame) and len(frame) == table.row_count == 550
    assert frame["palette"].unique().tolist() == ["X11"] and frame["comments"].isna().all()
    assert frame.loc[frame["color"] == "snow", "l"].item() == pytest.approx(98.6438)
    document = color_document("a", "b")
    document.colors[0].spaces.append(zol.Rgb(red=1, alpha=0.5))
    document.colors[1].spaces.append(zol.Rgb(red=0.5))
    document.colors[1].spaces.append(zol.Spectral(parent_color_space=zol.ParentColorSpace(
        color_space=zol.Rgb())))
    table = document.table("RGB")
    numpy.testing.assert_array_equal(table["alpha"], [0.5, numpy.nan])
    assert table["color_depth"].tolist() == [None, None] and list(table["color"]) == ["a", "b"]
    assert document.table("ColorSpace").row_count == 5
    assert zol.Document().table("CIELab").frame().empty
    quality = sample("quality-control").table("Tolerance").frame()
    assert len(quality) and set(quality["field_of_view"].dropna()) <= {
        one.value for one in zol.FieldOfView}
    for wrong in ("CIELAB", zol.Object, 7, None):
        with pytest.raises(ValueError):
            document.table(wrong)


def test_columns_are_set_if_all_can_stand_there(sample):
    document = sample("named-colours")
    table = document.table("CIELab")
    document.update("CIELab", l=table["l"] / 2, a=-table["a"])
    again = zol.loads(document.dumps(exact=True)).table("CIELab")
    numpy.testing.assert_array_equal(again["l"], table["l"] / 2)
    numpy.testing.assert_array_equal(again["a"], -table["a"])
    wrong = again["b"].copy()
    wrong[7] = 151
    with pytest.raises(zol.ValueRefused, match=r"Color\[8\].*/B cannot be 151.0") as caught:
        document.update("CIELab", l=again["l"] + 1, b=wrong)
    assert caught.value.code == 36
    numpy.testing.assert_array_equal(document.table("CIELab")["l"], again["l"])
    for columns in ({"l": [1.0]}, {"l": numpy.ones((550, 1))}, {"x": again["l"]}, {"l": "many"}):
        with pytest.raises(ValueError):
            document.update("CIELab", **columns)
    with pytest.raises(TypeError):
        document.update("CIELab", name=again["l"])


def test_spectra_are_one_array(sample):
    document = sample("spectra")
    spectra = document.spectra()
    spaces = [space for color in document.every_color() for space in color.spaces
              if isinstance(space, zol.Spectral)]
    assert len(spectra) == len(spaces) > 10
    for number, space in enumerate(spaces):
        wavelengths, values = spectra[number]
        assert wavelengths.tolist() == [point.wavelength for point in space.points]
        assert values.tolist() == [point.value for point in space.points]
        assert values.base is not None
    grid = numpy.unique(spectra.wavelengths_of_points)
    matrix = spectra.on(grid)
    assert numpy.isfinite(matrix).sum() == len(spectra.values_of_points)
    frame = spectra.frame()
    assert frame.shape == matrix.shape and frame.index.names == ["palette", "color_set", "color"]
    alike = color_document("a", "b")
    for color in alike.colors:
        color.spaces.append(zol.Spectral()).set_spectrum([400, 410, 420], [0.1, 0.2, 0.3])
    spectra = alike.spectra()
    assert spectra.wavelengths.tolist() == [400, 410, 420]
    assert numpy.shares_memory(spectra.values, spectra.values_of_points)
    assert spectra.values.tolist() == [[0.1, 0.2, 0.3]] * 2
    alike.colors[1].spaces[1].points[2].wavelength = 430
    spectra = alike.spectra()
    assert spectra.wavelengths is None
    with pytest.raises(ValueError):
        spectra.values
    numpy.testing.assert_array_equal(spectra.on([430, 400]), [[numpy.nan, 0.1], [0.3, 0.1]])
    assert len(zol.Document().spectra()) == 0 and zol.Document().spectra().frame().empty
    with pytest.raises(TypeError):
        alike.spectra("CIELab")


def test_a_spectrum_is_set_as_a_whole():
    space = zol.Spectral()
    space.set_spectrum(numpy.arange(400, 700, 10), numpy.linspace(0, 1, 30, dtype="float32"))
    point = space.points[29]
    for wavelengths, values in (([400, 410], [0.5, 10]), ([0, 410], [0.5, 0.5]),
                                ([400], [0.5, 0.5]), ([[400]], [[0.5]]), ([numpy.nan], [0.5])):
        with pytest.raises(ValueError):
            space.set_spectrum(wavelengths, values)
        assert len(space.points) == 30 and space.values[0] == 0
    space.set_spectrum([400, 410], [0.25, 0.5])
    assert point.is_removed and space.values.tolist() == [0.25, 0.5]
    space.set_spectrum([], [])
    assert len(space.values) == 0 == len(space.wavelengths)


def test_views_show_the_document_and_keep_it(sample):
    document = sample("spectra")
    space = document.colors[0].spaces[1]
    view = space.coordinates
    assert not view.flags.writeable and view.tolist() == [space.l, space.a, space.b]
    space.l = 12
    assert view[0] == 12
    with pytest.raises(ValueError):
        view[0] = 1
    spectrum = document.colors[0].spaces[0]
    values = spectrum.values
    part = values[3:5]
    points = spectrum.points
    document.colors.pop()  # another colour
    spectrum.comments, spectrum.specification = None, zol.SpectralSpecification()
    spectrum.custom_properties.add(name="x", value="y")
    spectrum.custom_properties.clear()
    changes = [lambda: document.colors.pop(0), document.close, document.colors.clear,
               lambda: setattr(document.colors[0], "spaces", [])]
    if values.base is not None:  # under a sanitizer the points stand anywhere
        changes += [lambda: points.pop(3), lambda: spectrum.set_spectrum([400], [1]),
                    lambda: setattr(spectrum, "points", [])]
    for change in changes:
        with pytest.raises(BufferError):
            change()
    expected = values.tolist()
    assert spectrum.values.tolist() == expected
    del view, values, spectrum, space, points, document
    gc.collect()
    assert part.tolist() == expected[3:5]


def test_coordinates_are_judged_together():
    rgb = zol.Srgb(red=1, green=1, blue=1)
    rgb.coordinates = (0, 0.5, 1)
    assert (rgb.red, rgb.green, rgb.blue) == (0, 0.5, 1)
    for wrong in ([0, 0, 2], [0, 0], [[0, 0, 0]], "abc", [0, numpy.nan, 0]):
        with pytest.raises(ValueError):
            rgb.coordinates = wrong
    assert rgb.coordinates.tolist() == [0, 0.5, 1]
    assert zol.Munsell().coordinates is None
