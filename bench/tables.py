#!/usr/bin/env python3
"""Keeps the tables of measured speed.

    tables.py check PROGRAM     compares the instructions of each road with instructions.txt
    tables.py renew PROGRAM     writes them there
    tables.py ratios DIRECTORY  writes ../docs/speed.md from the programs in DIRECTORY

PROGRAM is zol_bench_counts. A road without a figure in the table, or one in the table that is no
road, fails the check as a change beyond the limit does.
"""

import datetime
import os
import pathlib
import platform
import re
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
TABLE = HERE / "instructions.txt"
SPEED_PAGE = HERE.parent / "docs" / "speed.md"
LIMIT = 0.03
TABLE_HEAD = """\
# Instructions of each road, per byte of UTF-8 text or per call, as callgrind counts them in the
# optimised build of the compiler named here. Written by scripts/bench renew; a row that says
# "unset" waits for its figure, and is not compared.
"""
UNSET = "unset"

# One form of the C library's copies and searches, whatever the processor has.
STEADY = {"GLIBC_TUNABLES": "glibc.cpu.hwcaps=-AVX2,-AVX512VL,-AVX512BW,-AVX512F,-ERMS,-FSRM,"
                            "-AVX_Fast_Unaligned_Load"}


def compiler():
    return subprocess.run(["c++", "--version"], capture_output=True, text=True,
                          check=True).stdout.splitlines()[0]


def count(program):
    """The instructions of each road, by its name: (unit, instructions for one unit)."""
    with tempfile.TemporaryDirectory() as directory:
        out = os.path.join(directory, "counts")
        run = subprocess.run(
            ["valgrind", "--tool=callgrind", f"--callgrind-out-file={out}", program],
            capture_output=True, text=True, env={**os.environ, **STEADY})
        if run.returncode != 0:
            sys.exit(f"{program} failed:\n{run.stderr}")
        units = {}
        for line in run.stdout.splitlines():
            name, unit, amount = line.split("\t")
            units[name] = unit, float(amount)
        counts = {}
        for path in pathlib.Path(directory).glob("counts.*"):
            text = path.read_text()
            name = re.search(r"^desc: Trigger: Client Request: (.*)$", text, re.M)
            total = re.search(r"^(?:totals|summary): (\d+)", text, re.M)
            if name is None or total is None:
                continue
            unit, amount = units[name.group(1)]
            counts[name.group(1)] = unit, int(total.group(1)) / amount
    return {name: counts[name] for name in units}


def read_table():
    figures = {}
    for line in TABLE.read_text().splitlines():
        if line.startswith("#"):
            continue
        name, unit, figure = (part.strip() for part in line.split("|"))
        figures[name] = unit, None if figure == UNSET else float(figure)
    return figures


def write_table(counts):
    lines = [f"{name:26} | {unit:4} | {figure:10.3f}" for name, (unit, figure) in counts.items()]
    TABLE.write_text(TABLE_HEAD + f"# {compiler()}\n" + "\n".join(lines) + "\n")


def counted_with():
    """The compiler of the table."""
    return next(line[2:] for line in TABLE.read_text().splitlines() if line.startswith("# c++"))


def check(program):
    if compiler() != counted_with():
        print(f"Left out: the table was counted with {counted_with()}, and this is {compiler()}.")
        return
    table = read_table()
    counts = count(program)
    failed = False
    for name in sorted(table.keys() - counts.keys()):
        print(f"{name}: in the table, but no road")
        failed = True
    for name, (unit, figure) in counts.items():
        if name not in table:
            print(f"{name}: {figure:.3f} a {unit}, but not in the table")
            failed = True
            continue
        old = table[name][1]
        if old is None:
            print(f"  {name:26} {figure:10.3f} a {unit}, no figure to compare with")
            continue
        change = figure / old - 1
        is_beyond = abs(change) > LIMIT
        failed |= is_beyond
        mark = "!" if is_beyond else " "
        print(f"{mark} {name:26} {figure:10.3f} a {unit}, {change:+7.1%}")
    if failed:
        sys.exit(f"Beyond {LIMIT:.0%}, in either direction: mend it, or renew the table with "
                 "scripts/bench renew and say why in the commit.")


def machine():
    for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines():
        if line.startswith("model name"):
            return f"{line.split(':', 1)[1].strip()}, {os.cpu_count()} processors"
    return platform.processor()


def ratios(directory):
    programs = pathlib.Path(directory)

    def output(program, *options):
        return subprocess.run([programs / program, *options], capture_output=True, text=True,
                              check=True).stdout

    side = output("zol_bench_side")
    documents = output("zol_bench", "--quick", "--benchmark_repetitions=5",
                       "--benchmark_enable_random_interleaving=true")
    rows = []
    for line in documents[documents.index("ours / theirs"):].splitlines()[1:]:
        name, ours, theirs, ratio, peer = line.split()
        road, profile, size = name.split("/")
        rows.append(f"| {road} of {size}, {profile} | {ours} MB/s | {peer} | {theirs} MB/s "
                    f"| {ratio} |\n")
    SPEED_PAGE.write_text(
        "# How fast\n\n"
        "Each row was measured in one run, in which the two took turns; the best of many short\n"
        "times counts. A ratio above 1 says that this library is the faster one.\n"
        "`scripts/bench ratios` renews the page.\n\n"
        f"{machine()}; {compiler()}; {datetime.date.today().isoformat()}.\n\n"
        "## Whole documents\n\n"
        "| Road | Here | Other | There | Ratio |\n|---|---|---|---|---|\n" + "".join(rows) +
        "\n## What they are made of\n\n"
        "The others write into buffers that stand ready.\n\n" + side)


def main(arguments):
    if len(arguments) != 2 or arguments[0] not in ("check", "renew", "ratios"):
        sys.exit(__doc__)
    if arguments[0] == "check":
        check(arguments[1])
    elif arguments[0] == "renew":
        write_table(count(arguments[1]))
    else:
        ratios(arguments[1])


if __name__ == "__main__":
    main(sys.argv[1:])
