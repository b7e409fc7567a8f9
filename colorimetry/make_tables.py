#!/usr/bin/env python3
"""Turns the tables of data/ into one C++ source: make_tables.py DATA OUT.

Illuminants are put on the 1 nm grid of the observers by linear interpolation, as CIE 15 (clause 4)
has it for the tables of its illuminants, and are 0 where their table has nothing.
"""

import csv
import pathlib
import sys


def columns(path):
    """The grid, and each column by name with None for an empty cell."""
    with open(path, newline="", encoding="ascii") as file:
        rows = list(csv.reader(file))
    names, rows = rows[0], rows[1:]
    grid = [int(row[0]) for row in rows]
    if names[0] != "wavelength_nm" or any(len(row) != len(names) for row in rows):
        raise SystemExit(f"{path}: not a table by wavelength")
    if any(b - a != grid[1] - grid[0] for a, b in zip(grid, grid[1:])):
        raise SystemExit(f"{path}: the wavelengths are not evenly spaced")
    return grid, {name: [float(row[i]) if row[i] else None for row in rows]
                  for i, name in enumerate(names) if i > 0}


def at_each_nanometre(grid, values, wanted):
    """Linear between two cells, 0 where one of them is empty."""
    step = grid[1] - grid[0]
    result = []
    for wavelength in wanted:
        i, rest = divmod(wavelength - grid[0], step)
        below = values[i] if 0 <= i < len(values) else None
        above = below if rest == 0 else values[i + 1] if 0 <= i < len(values) - 1 else None
        if below is None or above is None:
            result.append(0.0)
        else:
            result.append(below + (above - below) * rest / step)
    return result


def row(name, values):
    lines = []
    for i in range(0, len(values), 8):
        lines.append("    " + ", ".join(repr(v) for v in values[i:i + 8]) + ",")
    return f"    // {name}\n    {{\n" + "\n".join(lines) + "\n    },\n"


def main():
    data, out = map(pathlib.Path, sys.argv[1:])
    wavelengths, observers = columns(data / "observers.csv")
    grid, illuminants = columns(data / "illuminants.csv")
    if wavelengths[1] - wavelengths[0] != 1:
        raise SystemExit("observers.csv: the step is not 1 nm")
    text = ["// Made by colorimetry/make_tables.py from colorimetry/data. Do not edit.\n",
            '#include "colorimetry/internal/tables.h"\n\n',
            "namespace zol_v2::colorimetry::internal {\n\n",
            f"static_assert(k_first_nm == {wavelengths[0]} && k_last_nm == {wavelengths[-1]});\n\n",
            "const double k_observers[6][k_wavelengths] = {\n"]
    text += [row(name, values) for name, values in observers.items()]
    text += ["};\n\n", "const IlluminantTable k_illuminants[] = {\n"]
    for name, values in illuminants.items():
        filled = [w for w, v in zip(grid, values) if v is not None]
        numbers = row(name, at_each_nanometre(grid, values, wavelengths))
        text.append(f'  {{"{name}", {filled[0]}, {filled[-1]},\n{numbers}  }},\n')
    text += ["};\n", f"const int k_illuminant_count = {len(illuminants)};\n\n",
             "}  // namespace zol_v2::colorimetry::internal\n"]
    out.parent.mkdir(parents=True, exist_ok=True)
    out.write_text("".join(text), encoding="ascii")


if __name__ == "__main__":
    main()
