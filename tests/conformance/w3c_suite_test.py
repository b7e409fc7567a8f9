#!/usr/bin/env python3
"""Compares the reader's verdicts on the W3C XML conformance suite with the suite's own.

    w3c_suite_test.py --walk PROGRAM --suite DIRECTORY

Every difference must stand in differences.txt under the rule behind it, every one that stands there
must be one, and docs/xml.md must have each rule with its number of documents. Documents whose fault
is a matter of taste by the suite itself, and those that the fifth edition of XML 1.0 judges otherwise
than the suite, are left out. The exit status is 77 if the suite is not there.
"""

import argparse
import collections
import pathlib
import re
import subprocess
import sys
import xml.etree.ElementTree

HERE = pathlib.Path(__file__).resolve().parent
DIFFERENCES = HERE / "differences.txt"
PAGE = HERE.parents[1] / "docs" / "xml.md"
BASE = "{http://www.w3.org/XML/1998/namespace}base"
SKIPPED = 77
FEWEST = 2000  # documents; a suite that has lost most of them proves nothing
SHOWN = 20


def documents(suite):
    """By name: the path of a document and whether it is well formed."""
    root = xml.etree.ElementTree.parse(suite / "cleaned" / "xmlconf-flattened.xml").getroot()
    found = {}

    def collect(element, base):
        base += element.get(BASE, "")
        if element.tag == "TEST":
            is_current = "5" in element.get("EDITION", "5").split()
            if is_current and element.get("TYPE") != "error":
                path = suite / "xmlconf" / (base + element.get("URI"))
                found[element.get("ID")] = path, element.get("TYPE") != "not-wf"
        for child in element:
            collect(child, base)

    collect(root, "")
    return found


def verdicts(program, paths):
    lines = "".join(f"{path}\n" for path in paths)
    result = subprocess.run([program], input=lines.encode(), stdout=subprocess.PIPE, check=True)
    return result.stdout.decode("utf-8", "replace").split("\n")[:-1]


def listed_differences():
    """By name: "accepts" or "refuses", and the rule."""
    listed, rule = {}, None
    for line in DIFFERENCES.read_text(encoding="utf-8").split("\n"):
        if line.startswith("    "):
            for name in line.split():
                if name in listed:
                    raise SystemExit(f"{DIFFERENCES.name} has {name} twice")
                listed[name] = rule
        elif line and not line.startswith("#"):
            rule = tuple(line.split())
    return listed


def counts_of_page():
    """By verdict and rule, or by verdict alone: the number of documents."""
    counts, verdict = {}, None
    for line in PAGE.read_text(encoding="utf-8").split("\n"):
        if line.startswith("## "):
            verdict = line.split()[-1]
        row = re.match(r"\| `([a-z0-9-]+)` \| (\d+) \|", line)
        total = re.match(r"\| ([a-z ]+) \| (\d+) \| (\d+) \| (\d+) \|", line)
        if row:
            counts[verdict, row[1]] = int(row[2])
        elif total:
            counts[total[1]] = int(total[2]), int(total[3])
            counts[total[1] + ", strictly"] = int(total[4])
    return counts


def compare(options):
    suite = documents(options.suite)
    answers = verdicts(options.walk, [path for path, _ in suite.values()])
    problems = []
    if len(suite) < FEWEST or len(answers) != len(suite):
        problems.append(f"{len(suite)} documents and {len(answers)} answers")
    listed = listed_differences()
    totals, strictly = collections.Counter(), collections.Counter()
    for (name, (path, is_well_formed)), answer in zip(suite.items(), answers):
        is_read = answer.startswith("good")
        strictly[is_well_formed] += answer == "good strict"
        totals[is_well_formed, is_read] += 1
        verdict = "accepts" if is_read else "refuses"
        rule = listed.pop(name, None)
        if is_read == is_well_formed:
            if rule:
                problems.append(f"{name} differs no more: {' '.join(rule)}")
        elif rule is None or rule[0] != verdict:
            problems.append(f"{name} is no known difference: {answer} ({path})")
    problems += [f"{name} is no document of the suite" for name in listed]

    expected = dict(collections.Counter(listed_differences().values()))
    expected["well formed"] = totals[True, True], totals[True, False]
    expected["not well formed"] = totals[False, True], totals[False, False]
    page = counts_of_page()
    # Another release of libxml2 may judge better.
    for name, is_better in (("well formed", strictly[True] > page["well formed, strictly"]),
                            ("not well formed", strictly[False] < page["not well formed, strictly"])):
        key = f"{name}, strictly"
        expected[key] = page[key] if is_better else strictly[name == "well formed"]
    problems += [f"{PAGE.name} has {page.get(key)} for {key}, and {expected.get(key)} was counted"
                 for key in sorted({*page, *expected}, key=str)
                 if page.get(key) != expected.get(key)]
    for problem in problems[:SHOWN]:
        print("FAILED:", problem)
    print(f"{len(suite)} documents, {sum(totals[x, x] for x in (True, False))} judged alike, "
          f"{len(problems)} problems")
    return 1 if problems else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--walk", type=pathlib.Path, required=True,
                        help="the built program event_walk")
    parser.add_argument("--suite", type=pathlib.Path, required=True,
                        help="where scripts/setup put the suite")
    options = parser.parse_args()
    if not (options.suite / "cleaned").is_dir():
        print("The W3C suite is not there; scripts/setup test gets it where npm answers.")
        return SKIPPED
    return compare(options)


if __name__ == "__main__":
    sys.exit(main())
