"""The library of colour over arrays, against published values and plain numpy."""

import numpy
import pytest

import zol
from test_documents import color_document

# G. Sharma, W. Wu, E. N. Dalal: The CIEDE2000 color-difference formula, table 1.
SHARMA = [((50, 2.6772, -79.7751), (50, 0, -82.7485), 2.0425),
          ((50, -1.3802, -84.2814), (50, 0, -82.7485), 1.0),
          ((50, 2.49, -0.001), (50, -2.49, 0.0011), 7.2195),
          ((90.8027, -2.0831, 1.441), (91.1528, -1.6435, 0.0447), 1.4441),
          ((2.0776, 0.0795, -1.135), (0.9033, -0.0636, -0.5514), 0.9082)]


def test_differences_over_arrays():
    standard, sample, expected = (numpy.array(column) for column in zip(*SHARMA))
    numpy.testing.assert_allclose(zol.color.difference(standard, sample), expected, atol=5e-5)
    plain = numpy.sqrt(((standard - sample) ** 2).sum(axis=1))
    numpy.testing.assert_allclose(zol.color.difference(standard, sample, "76"), plain)
    one = zol.color.difference(standard[0], sample)
    assert one.shape == (5,) and one[0] == pytest.approx(2.0425, abs=5e-5)
    grid = zol.color.difference(standard[:, None], sample[None])
    assert grid.shape == (5, 5)
    numpy.testing.assert_array_equal(grid.diagonal(), zol.color.difference(standard, sample))
    doubled = zol.color.difference([50, 0, 0], [60, 0, 0], "94", factors=(2,))
    assert doubled == pytest.approx(5)
    assert zol.color.difference([50, 0, 0], [51, 0, 0], "cmc") != zol.color.difference(
        [50, 0, 0], [51, 0, 0], "cmc", factors=(1, 1))
    for wrong in (([1, 2], [1, 2]), ([[1, 2, 3]] * 2, [[1, 2, 3]] * 3), (["a"] * 3, [1, 2, 3])):
        with pytest.raises(ValueError):
            zol.color.difference(*wrong)
    with pytest.raises(ValueError):
        zol.color.difference([1, 2, 3], [1, 2, 3], "2001")


def test_every_space_comes_back_from_every_other():
    srgb = numpy.random.default_rng(1).uniform(0.05, 0.95, (4, 25, 3))
    for source in zol.color.SPACES:
        start = zol.color.convert(srgb, "srgb", source)
        assert start.shape == srgb.shape
        for target in zol.color.SPACES:
            there = zol.color.convert(start, source, target)
            back = zol.color.convert(there, target, source)
            numpy.testing.assert_allclose(back, start, atol=1e-9, err_msg=f"{source} {target}")


def test_conversions_against_published_formulas():
    xyz = numpy.array([0.2, 0.3, 0.1])
    white = zol.color.white("D65")
    numpy.testing.assert_allclose(white, [0.95047, 1, 1.08883], atol=2e-4)
    cube = numpy.cbrt(xyz / white)
    lab = [116 * cube[1] - 16, 500 * (cube[0] - cube[1]), 200 * (cube[1] - cube[2])]
    numpy.testing.assert_allclose(zol.color.convert(xyz, "xyz", "lab", white="D65"), lab)
    numpy.testing.assert_allclose(zol.color.convert([100, 0, 0], "lab", "srgb"), [1] * 3, atol=1e-3)
    numpy.testing.assert_allclose(zol.color.convert([1, 0, 0], "srgb", "hsv"), [0, 1, 1])
    numpy.testing.assert_allclose(zol.color.adapt(zol.color.white("A"), "A", "D50"),
                                  zol.color.white("D50"))
    for wrong in (dict(source="lab", target="rgb"), dict(source="lab", target="xyz", white="D51"),
                  dict(source="lab", target="xyz", observer=3),
                  dict(source="lab", target="xyz", white=(1, 2))):
        with pytest.raises(ValueError):
            zol.color.convert(xyz, **wrong)


def test_spectra_become_colours():
    wavelengths = numpy.arange(380, 731, 10)
    flat = numpy.full((3, 2, len(wavelengths)), 0.5)
    xyz = zol.color.spectrum_to_xyz(wavelengths, flat, "D65", 10)
    assert xyz.shape == (3, 2, 3)
    numpy.testing.assert_allclose(xyz[1, 1], zol.color.white("D65", 10) / 2, rtol=1e-12)
    slope = numpy.linspace(0, 1, len(wavelengths))
    numpy.testing.assert_array_equal(
        zol.color.spectrum_to_xyz(wavelengths[::-1], slope[::-1]),
        zol.color.spectrum_to_xyz(wavelengths, slope))
    for wrong in ((wavelengths[:5], flat), ([400, 400], [1, 1]), ([], [])):
        with pytest.raises(ValueError):
            zol.color.spectrum_to_xyz(*wrong)


def test_colours_of_documents_are_measured_where_they_stand(sample):
    document = sample("spectra")
    table = zol.color.measure(document, "D50", 2, tells=True)
    colors = list(document.every_color())
    assert list(table["color"]) == [color.name for color in colors]
    for number, color in enumerate(colors):
        found, reason = zol.color.shown(color)
        assert (found is None) == bool(reason)
        for space in color.spaces:
            if isinstance(space, zol.Spectral) and table["source"][number] == "spectrum":
                order = numpy.argsort(space.wavelengths)
                numpy.testing.assert_allclose(
                    zol.color.spectrum_to_xyz(space.wavelengths[order], space.values[order]),
                    [table[name][number] for name in "xyz"])
    assert set(table["role"]) == {"color"}
    roles = zol.color.measure(sample("quality-control"))["role"].tolist()
    assert roles == ["measurement", "measurement", "standard", "measurement"]
    strict = zol.color.measure(color_document("a"), "F11", adapts=False)
    assert numpy.isnan(strict["l"]).all() and strict["reason"][0]
    own = zol.color.measure(color_document("a"))
    assert own.frame().loc[0, ["l", "a", "b"]].tolist() == pytest.approx([50, -20.5, 7])


def test_verdicts_are_those_of_the_document(sample):
    document = sample("quality-control")
    frame = zol.color.evaluate(document).frame()
    assert len(frame) and set(frame["status"]) <= {"pass", "warning", "fail", "not judged"}
    first = frame[frame["formula"] == "CIE 1976"].iloc[0] if "CIE 1976" in set(
        frame["formula"]) else frame.iloc[0]
    assert first["record"] == document.quality_controls[0].name
    judged = frame[frame["value"].notna() & frame["high"].notna() & frame["low"].isna()]
    assert ((judged["value"] > judged["high"]) <= (judged["status"] == "fail")).all()
    assert len(zol.color.evaluate(zol.Document())) == 13
    with pytest.raises(TypeError):
        zol.color.evaluate(document.colors)
