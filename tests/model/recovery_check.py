#!/usr/bin/env python3
"""Breaks one document in several places at once.

    recovery_check.py PROBE DOCUMENT...

The ways to break it are those of fault_check.py, each of which is one fault when it is alone. In
places that have nothing to do with one another they must all be found, in the order of the
document, and nothing else. PROBE is the program document_probe.
"""

import random
import sys

import document_tree
import fault_check
from fault_check import MARK, Breaker, Element, path_root
from document_tree import holder_row

SEED = 20261122
DOCUMENTS = {2: 2000, 3: 1500, 10: 800}  # by the number of faults


class Recipes(Breaker):
    """The ways to break a document instead of what comes of them."""

    def __init__(self, documents):
        self.recipes = []
        super().__init__(documents)

    def add(self, node, what, code, item, bend):
        if code:
            self.recipes.append((node, what, code, item, bend))


def ancestors(node):
    while node is not None:
        yield node
        node = node.parent


def excerpt(targets):
    """The root of a new document that has the targets, and the element of each."""
    path = {above for target in targets for above in ancestors(target)}
    found = {}

    def keep(node):
        is_whole = node in targets
        seen, children = {}, []
        for child in node.children:
            if child.row is None:
                continue
            row = holder_row(child)
            seen[row] = seen.get(row, 0) + 1
            if child in path or (is_whole and seen[row] <= 2) or (row.required and seen[row] == 1):
                children.append(child)
        element = Element(node, [keep(child) for child in children])
        found[node] = element
        return element

    root = keep(path_root(targets[0]))
    root.attributes.append(("xmlns:Zol", fault_check.NAMESPACE))
    root.attributes.append(("xmlns:xsi", document_tree.INSTANCE))
    return root, [found[target] for target in targets]


def is_apart(node, others):
    """Whether a fault in one has no bearing on the others: not even on what stands beside them."""
    above = set(ancestors(node))
    for other in others:
        if other in above or node in set(ancestors(other)) or other.parent is node.parent:
            return False
    return True


class Case:
    def __init__(self, chosen):
        root, elements = excerpt([recipe[0] for recipe in chosen])
        faults = []
        for index, ((node, what, code, item, bend), element) in enumerate(zip(chosen, elements)):
            bend(element, root)
            faults.append((node, what, code, item))
        text = '<?xml version="1.0"?>\n' + root.spell("")
        pieces = text.split(MARK)
        self.text = "".join(pieces)
        self.what = "; ".join(f"{fault[0].name}: {fault[1]}" for fault in faults)
        lines, line = [], 1
        for piece in pieces[:-1]:
            line += piece.count("\n")
            lines.append(line)
        order = {node: place for place, node in enumerate(path_root(chosen[0][0]).walk())}
        faults.sort(key=lambda fault: order[fault[0]])
        self.is_good = len(lines) == len(faults)
        self.expected = [(str(code), str(line)) for (_, _, code, _), line in zip(faults, lines)]


def cases_of(recipes, chance):
    by_root = {}
    for recipe in recipes:
        by_root.setdefault(path_root(recipe[0]), []).append(recipe)
    roots = list(by_root)
    for count, documents in DOCUMENTS.items():
        made = 0
        for _ in range(20 * documents):
            if made == documents:
                break
            pool = by_root[chance.choice(roots)]
            chosen = []
            for _ in range(40 * count):
                recipe = chance.choice(pool)
                if is_apart(recipe[0], [other[0] for other in chosen]):
                    chosen.append(recipe)
                if len(chosen) == count:
                    break
            if len(chosen) < count:
                continue
            case = Case(chosen)
            if case.is_good:
                made += 1
                yield case
        assert made == documents, f"only {made} documents with {count} faults"


def main():
    probe, paths = sys.argv[1], sys.argv[2:]
    model = document_tree.read_model()
    documents = [document_tree.read_document(open(path, "rb").read(), model) for path in paths]
    cases = list(cases_of(Recipes(documents).recipes, random.Random(SEED)))
    answers = fault_check.ask(probe, cases, "diagnose")
    failed = []
    for case, answer in zip(cases, answers):
        found = [tuple(fault.split("|")[::2]) for fault in answer.split("\t")]
        if found != case.expected:
            failed.append((case, answer))
    for case, answer in failed[:10]:
        print(f"{case.what}: expected {case.expected}, got {answer}")
    if failed:
        print(failed[0][0].text)
    print(f"{len(cases)} documents, {len(failed)} differ")
    return 1 if failed or len(answers) != len(cases) else 0


if __name__ == "__main__":
    sys.exit(main())
