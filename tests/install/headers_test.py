#!/usr/bin/env python3
"""Compiles each installed header alone, as the programs of others might.

headers_test.py --build DIR --work DIR [--launcher PROGRAM] CXX...

Every header is a translation unit of its own for each compiler and each of its standards, in which it
stands twice, with nothing but the installed copy to include. The copy stands in the same place each
time, so that a launcher which remembers what it compiled has little to do where nothing changed.
"""

import argparse
import concurrent.futures
import os
import pathlib
import shutil
import subprocess
import sys

STANDARDS = ("c++17", "c++20", "c++23")
# What a compiler calls a standard that was not out yet when it was.
OLD_NAMES = {"c++23": "c++2b"}
WARNINGS = ("-Wall", "-Wextra", "-Wpedantic", "-Wconversion", "-Wshadow", "-Werror")


def accepts(compiler, standard):
    return subprocess.run([compiler, f"-std={standard}", "-xc++", "-fsyntax-only", "-"], input=b"",
                          stderr=subprocess.DEVNULL).returncode == 0


def dialects(compiler):
    """The flags of the compiler's standards; says which of them it does not know."""
    for standard in STANDARDS:
        for name in filter(None, (standard, OLD_NAMES.get(standard))):
            if accepts(compiler, name):
                yield name
                break
        else:
            print(f"{compiler} does not know {standard}: left out")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--work", type=pathlib.Path, required=True)
    parser.add_argument("--launcher", default="")
    parser.add_argument("compilers", nargs="+")
    options = parser.parse_args()

    prefix = options.work / "copy"
    shutil.rmtree(prefix, ignore_errors=True)
    subprocess.run(["cmake", "--install", options.build, "--prefix", prefix], check=True,
                   stdout=subprocess.DEVNULL)
    include = prefix / "include/zol"
    headers = sorted(path.relative_to(include) for path in include.rglob("*.h"))
    if not headers:
        sys.exit("no header was installed")
    sources = options.work / "sources"
    sources.mkdir(exist_ok=True)
    jobs = []
    for header in headers:
        source = sources / (str(header).replace("/", "_") + ".cpp")
        text = f'#include "{header}"\n' * 2
        if not source.exists() or source.read_text() != text:
            source.write_text(text)
        jobs.append(source)
    launcher = options.launcher.split(";") if options.launcher else []
    commands = []
    for compiler in dict.fromkeys(options.compilers):
        if shutil.which(compiler) is None:
            print(f"No {compiler}: left out")
            continue
        commands += [[*launcher, compiler, f"-std={dialect}", *WARNINGS, f"-I{include}", "-c"]
                     for dialect in dialects(compiler)]
    if not commands:
        sys.exit("no compiler")

    def compile_alone(job):
        source, command = job
        out = source.with_suffix(f".{commands.index(command)}.o")
        run = subprocess.run([*command, source, "-o", out], stdout=subprocess.PIPE,
                             stderr=subprocess.STDOUT, text=True)
        return " ".join(command[len(launcher):-2]) + f" {source.name}", run

    failures = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for name, run in pool.map(compile_alone,
                                  [(source, command) for source in jobs for command in commands]):
            if run.returncode != 0:
                failures += 1
                print(f"{name}\n{run.stdout}")
    print(f"{len(headers)} headers, {len(commands)} ways each, {failures} failures")
    sys.exit(failures != 0)


if __name__ == "__main__":
    main()
