#!/usr/bin/env python3
"""Compares the verdict of the library with that of a validator, on thousands of documents.

    compare_verdicts.py --verdict PROGRAM --xsd zol.xsd [--documents N | --all] [--seed N]

The sample documents come first, then documents derived from them by single and double edits, by
changes of single characters, and by other spellings of the frame. Where the verdicts differ, the
difference must be of a kind that docs/differences-from-xml-schema.md lists; every kind listed there
must occur. What the library writes must be valid too. The exit status is 1 if anything else is
found, and each such document is printed.
"""

import argparse
import collections
import pathlib
import random
import re
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "gen"))

import differences  # noqa: E402  (found by the path above)
import documents  # noqa: E402
import resolve  # noqa: E402
import schema  # noqa: E402

PAGE = ROOT / "docs" / "differences-from-xml-schema.md"
TABLES = ROOT / "model" / "schema"
SHOWN = 5  # documents that are printed in full


def namespace_of(xsd):
    return re.search(r'targetNamespace="([^"]*)"', xsd.read_text(encoding="utf-8"))[1]


class Judges:
    """Both verdicts on files of one directory, whose names are numbers."""

    def __init__(self, program, xsd, directory):
        self.program = program.resolve()
        self.xsd = xsd.resolve()
        self.directory = directory

    def library(self, names):
        """By name: code, code of writing, item."""
        lines = "".join(f"{name}\n" for name in names)
        result = subprocess.run([self.program], input=lines.encode(), cwd=self.directory,
                                stdout=subprocess.PIPE, check=True)
        lines = result.stdout.decode("utf-8", "replace").split("\n")[:-1]
        verdicts = {}
        for name, line in zip(names, lines, strict=True):
            code, _, written, item = line.split(" ", 3)
            verdicts[name] = (int(code), written, item)
        return verdicts

    def validator(self, names):
        """By name: the messages, none for a valid document. A document that cannot be parsed has
        the first message alone, since what follows it is guesswork."""
        # Entities are replaced first: the validator knows none.
        command = ["xargs", "xmllint", "--noout", "--noent", "--nonet", "--schema", str(self.xsd)]
        result = subprocess.run(command, input="\n".join(names).encode(), cwd=self.directory,
                                stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, check=False)
        messages, last = {name: [] for name in names}, None
        judged = set()
        for line in result.stderr.decode("utf-8", "replace").split("\n"):
            verdict = re.fullmatch(r"([\w.]+) (validates|fails to validate)", line)
            message = re.match(r"([\w.]+):\d+: (.*)", line, re.S)
            if verdict:
                judged.add(verdict[1])
                if verdict[2] == "validates":
                    messages[verdict[1]] = []
                last = None
            elif message and message[1] in messages:
                last = messages[message[1]]
                last.append(message[2])
            elif last:
                last[-1] += "\n" + line
        for name, found in messages.items():
            if name in judged:
                messages[name] = [message for message in found
                                  if re.match("element .*: Schemas validity error", message)]
            else:
                errors = [message for message in found
                          if re.match("(parser|namespace) error", message)]
                messages[name] = errors[:1] or ["no verdict"]
        return messages


def derived(samples, options):
    """Pairs of a label and a text, without those that came before."""
    generator = random.Random(options.seed)
    seen = set()
    namespace = samples.model.namespace
    share = {"edits": 0.7, "pairs": 0.15, "characters": 0.15}

    def fresh(label, text):
        if text in seen:
            return []
        seen.add(text)
        return [(label, text)]

    yield from documents.spellings(namespace)
    for root, element in samples.bases:
        yield from fresh(f"{element.name}", root.text())
    singles = [(base, edit) for base in samples.bases for node in [base[1], *base[1].children]
               for edit in documents.edits(node, namespace)]
    if not options.all:
        # One of each sort at least, on an element with room inside and on one without, and whatever
        # comes for the rest.
        generator.shuffle(singles)
        leading = {(edit.label, edit.node.is_blank): (base, edit) for base, edit in singles}
        count = max(0, int(options.documents * share["edits"]) - len(leading))
        singles = [*leading.values(), *singles[:count]]
    for (root, element), edit in singles:
        with edit.applied():
            text = root.text()
        yield from fresh(f"{element.name}: {edit.label}", text)
    for _ in range(int(options.documents * share["pairs"])):
        root, _ = generator.choice(samples.bases)
        first, second = (generator.choice(list(documents.edits(node, namespace)))
                         for node in generator.sample(list(root.walk()), 2))
        with first.applied(), second.applied():
            text = root.text()
        yield from fresh(f"{first.label}, {second.label}", text)
    for _ in range(int(options.documents * share["characters"])):
        root, element = generator.choice(samples.bases)
        label, text = documents.broken_character(root.text(), generator)
        yield from fresh(f"{element.name}: {label}", text)


def listed_kinds():
    return re.findall(r"^\| `([a-z0-9-]+)` \|", PAGE.read_text(encoding="utf-8"), re.M)


def compare(options, directory):
    model = resolve.Model(schema.read_directory(TABLES), namespace_of(options.xsd))
    paths = sorted((ROOT / "examples" / "documents").glob("*.zol"))
    samples = documents.Samples(model, paths)
    kinds = differences.Differences(model)
    judges = Judges(options.verdict, options.xsd, directory)

    given = [(path.name, path.read_bytes()) for path in paths]
    given += [(label, text if isinstance(text, bytes) else text.encode("utf-8", "surrogatepass"))
              for label, text in derived(samples, options)]
    names = [str(number) for number in range(len(given))]
    for name, (_, data) in zip(names, given):
        (directory / name).write_bytes(data)
    library, validator = judges.library(names), judges.validator(names)

    counts, faults, both = collections.Counter(), [], collections.Counter()
    for name, (label, data) in zip(names, given):
        code, written, item = library[name]
        messages = validator[name]
        both[(code == 0, not messages)] += 1
        case = differences.Case(data.decode("utf-8", "replace"), messages, code, written, item)
        if (code == 0) == (not messages):
            # What is valid can be written: the library has no second opinion.
            found = set() if code or written == "0" else None
        else:
            found = kinds.explain(case)
        if found is None:
            faults.append((name, label, case))
        counts.update(found or ())
    for name, path in zip(names, paths):
        if library[name][:2] != (0, "0") or validator[name]:
            faults.append((name, f"the sample {path.name} is not good in every way", None))

    again = [f"{name}.written" for name in names
             if library[name][1] == "0" and not validator[name]]
    for name, messages in judges.validator(again).items():
        if messages:
            text = (directory / name).read_text(encoding="utf-8", errors="replace")
            case = differences.Case(text, messages, 0, "0")
            found = kinds.explain_written(case)
            if found is None:
                faults.append((name, "written by the library", case))
            counts.update(found or ())
    return kinds, counts, faults, both, len(again)


def report(kinds, counts, faults, both, again, seconds):
    for name, label, case in faults[:SHOWN]:
        print(f"--- {name}: {label}")
        if case is not None:
            print(f"    library {case.code} {case.item!r}, written {case.written}; "
                  f"validator {case.messages or 'accepts'}")
            print(case.text)
    problems = [f"{len(faults)} differences without a kind"] if faults else []
    listed = listed_kinds()
    problems += [f"{name} is not in {PAGE.name}" for name in kinds.names() if name not in listed]
    problems += [f"{name} in {PAGE.name} is no kind"
                 for name in listed if name not in kinds.names()]
    problems += [f"{name} did not occur" for name in kinds.names() if not counts[name]]
    for name in kinds.names():
        print(f"{counts[name]:7} {name}")
    print(f"{sum(both.values())} documents in {seconds:.1f} s: both accept {both[True, True]}, "
          f"both refuse {both[False, False]}, the library alone accepts {both[True, False]}, "
          f"the validator alone {both[False, True]}; {again} written again")
    for problem in problems:
        print("FAILED:", problem)
    return 1 if problems else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--verdict", type=pathlib.Path, required=True,
                        help="the built verdict program")
    parser.add_argument("--xsd", type=pathlib.Path, required=True, help="the built zol.xsd")
    parser.add_argument("--documents", type=int, default=12000, help="how many to derive, about")
    parser.add_argument("--all", action="store_true", help="every single edit")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--keep", type=pathlib.Path, help="write the documents here and leave them")
    options = parser.parse_args()
    start = time.monotonic()
    if options.keep:
        options.keep.mkdir(parents=True)
        result = compare(options, options.keep)
    else:
        with tempfile.TemporaryDirectory() as directory:
            result = compare(options, pathlib.Path(directory))
    return report(*result, time.monotonic() - start)


if __name__ == "__main__":
    sys.exit(main())
