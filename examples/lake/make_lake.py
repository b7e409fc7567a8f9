#!/usr/bin/env python3
"""Makes a folder tree of small documents to try lake.py on.

    make_lake.py FOLDER [COUNT]

A document is what a laboratory writes down in one go: a standard, the measurements made of it and a
tolerance. Every tenth standard grows lighter; one document in a hundred is broken, in one of five ways.
The same count gives the same tree.
"""

import pathlib
import random
import sys

import numpy

import zol

STANDARDS = 40
MEASUREMENTS = 3
DATE = "2020-01-01T00:00:00Z"


def template():
    """A document whose numbers and names are marks: NAME, DATE, and 10.1 and so on."""
    document = zol.Document()
    header = document.preamble.header
    header.creator, header.creator_version, header.purpose = "make_lake", "1", "an example"
    header.change_history.append(DATE)
    pair = document.quality_controls.add(
        name="RECORD", change_history=[DATE]).standard_and_measurements.add()
    pair.standard = zol.Standard()
    parts = [pair.standard, *(pair.measurements.add() for _ in range(MEASUREMENTS))]
    conditions = zol.TristimulusSpecification(
        illumination=zol.NamedIlluminant(value="Illuminant_D50"), change_history=[DATE],
        device_filter=None, spectrum=zol.SpectrumQuantity(value="Spectrum_Reflectance"),
        field_of_view="FieldOfView_2_Degree")
    for number, part in enumerate(parts):
        part.device.manufacturer = part.device.model = part.device.serial_number = "example"
        part.color.name = "NAME" if number == 0 else f"NAME, {number}"
        part.color.change_history = [DATE]
        lab = zol.CieLab(change_history=[DATE], specification=conditions)
        lab.coordinates = numpy.array([10.1, 10.2, 10.3]) + number
        part.color.spaces.append(lab)
    pair.standard.tolerances.add(
        name="delivery", limits=zol.ToleranceLimits(high_tolerance=1.5),
        function=zol.DeltaE2000(param_l=1, param_c=1, param_h=1))
    return document.dumps(indented=False).decode()


def form(text):
    """The template with a field of str.format in each place that differs."""
    text = text.replace("{", "{{").replace("}", "}}")
    text = text.replace(DATE, "{date}").replace("NAME", "{name}").replace("RECORD", "{record}")
    for number in range(MEASUREMENTS + 1):
        for axis in range(3):
            text = text.replace(f">{10 + number}.{axis + 1}<", f">{{lab[{number}][{axis}]:.3f}}<")
    return text


def standards(chance):
    """Names and colours; the last is a near duplicate of the first."""
    made = [(f"Standard {number:02}", [chance.uniform(20, 90), chance.uniform(-60, 60),
                                       chance.uniform(-60, 60)]) for number in range(STANDARDS)]
    made[-1] = ("Copy of standard 00", [value + 0.2 for value in made[0][1]])
    return made


def broken(text, way):
    """What goes wrong with documents."""
    return (text[:len(text) // 2], text.replace("CIELab>", "CIELaboratory>"), "", "no XML at all",
            text.replace("<Zol:L>", "<Zol:L>9", 1))[way]


def main():
    folder = pathlib.Path(sys.argv[1])
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 1000
    fields, chance = form(template()), random.Random(1)
    known = standards(chance)
    for number in range(count):
        name, lab = known[number % STANDARDS]
        years = number / count * 3
        # Every tenth standard grows lighter, by a bit less than one a year.
        faded = 0.7 * years if number % STANDARDS % 10 == 3 else 0
        measured = [[lab[0] + faded + chance.gauss(0, 0.15), lab[1] + chance.gauss(0, 0.15),
                     lab[2] + chance.gauss(0, 0.15)] for _ in range(MEASUREMENTS)]
        month = int(years * 12)
        date = f"{2021 + month // 12}-{month % 12 + 1:02}-{number % 28 + 1:02}T12:00:00Z"
        text = fields.format(name=name, record=f"Run {number}", date=date, lab=[lab, *measured])
        if number % 100 == 99:
            text = broken(text, number // 100 % 5)
        path = folder / date[:4] / date[5:7] / f"{number:06}.zol"
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main()
