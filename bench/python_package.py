#!/usr/bin/env python3
"""Times the Python package on documents of about so many MB; needs it on PYTHONPATH.

    python_package.py [MB]
"""

import os
import subprocess
import sys
import tempfile
import time
import timeit

import numpy
import pandas  # noqa: F401  its import is none of the table's time

import zol


def palette_document(size):
    """Palettes of Lab colours, as large as that."""
    document = zol.Document()
    header = document.preamble.header
    header.creator, header.creator_version, header.purpose = "bench", "1", "a measurement"
    header.change_history.append("2024-02-29T12:00:00Z")
    color_set = document.palettes.add(
        name="Palette", change_history=["2024-02-29T12:00:00Z"]).color_sets.add(
            name="Set", change_history=["2024-02-29T12:00:00Z"])
    color = color_set.colors.add(name="Color 1", unique_id="1",
                                 change_history=["2024-02-29T12:00:00Z"])
    color.spaces.append(zol.CieLab(l=51.234, a=-20.5, b=7.125, specification=None,
                                   change_history=["2024-02-29T12:00:00Z"]))
    return repeated(document, size)


def spectral_document(size):
    document = zol.loads(palette_document(0))
    spaces = document.palettes[0].color_sets[0].colors[0].spaces
    spaces.clear()
    spectrum = zol.Spectral(change_history=["2024-02-29T12:00:00Z"], specification=None)
    spectrum.set_spectrum(numpy.arange(400, 701, 10), numpy.linspace(0.1, 0.9, 31))
    spaces.append(spectrum)
    return repeated(document, size)


def repeated(document, size):
    text = document.dumps(exact=True)
    begin = text.index(b"<Zol:Color ")
    end = text.index(b"</Zol:Color>") + len(b"</Zol:Color>")
    count = max(1, size // (end - begin))
    return text[:begin] + text[begin:end] * count + text[end:]


def timed(call, turns=3):
    times = []
    for _ in range(turns):
        start = time.perf_counter()
        result = call()
        times.append(time.perf_counter() - start)
        del result
    return min(times)


def nanoseconds(statement, **names):
    timer = timeit.Timer(statement, globals=names)
    count, _ = timer.autorange()
    return min(timer.repeat(5, count)) / count * 1e9


def import_time():
    code = "import time; t = time.perf_counter(); import zol; print(time.perf_counter() - t)"
    return min(float(subprocess.run([sys.executable, "-c", code], capture_output=True, text=True,
                                    check=True).stdout) for _ in range(10))


def main():
    megabytes = float(sys.argv[1]) if len(sys.argv) > 1 else 200
    print(f"import zol: {import_time() * 1e3:.0f} ms")
    for name, text, kind in (("Lab", palette_document(int(megabytes * 1e6)), "CIELab"),
                             ("spectra", spectral_document(int(megabytes * 1e6)), None)):
        with tempfile.TemporaryDirectory() as directory:
            path = os.path.join(directory, "large.zol")
            with open(path, "wb") as file:
                file.write(text)
            load = timed(lambda: zol.open(path))
            document = zol.open(path)
        size = len(text) / 1e6
        del text
        if kind:
            columns = timed(lambda: document.table(kind))
            frame = timed(lambda: document.table(kind).frame())
        else:
            columns = timed(lambda: document.spectra().values)
            frame = timed(lambda: document.spectra().frame())
        print(f"{name}: {size:.0f} MB loaded at {size / load:.0f} MB/s, columns at "
              f"{size / columns:.0f} MB/s, a DataFrame at {size / frame:.0f} MB/s")
        color = document.palettes[0].color_sets[0].colors[0]
    lab = zol.CieLab(l=50, a=1, b=2, name="x")
    spectrum = color.spaces[0]
    for told, statement in (("a number", "lab.l"), ("set a number", "lab.l = 50.0"),
                            ("a text", "lab.name"), ("an object of a list", "spaces[0]"),
                            ("coordinates", "lab.coordinates"), ("a spectrum", "spectrum.values")):
        print(f"{told}: {nanoseconds(statement, lab=lab, spaces=color.spaces, spectrum=spectrum):.0f}"
              " ns")
    pairs = numpy.random.default_rng(1).uniform(0, 100, (2, 1_000_000, 3))
    each = timed(lambda: zol.color.difference(*pairs)) / 1_000_000 * 1e9
    print(f"CIEDE2000: {each:.0f} ns a pair")


if __name__ == "__main__":
    main()
