#!/usr/bin/env python3
"""Breaks the sample documents in every way that their schema forbids, and some that it allows.

    fault_check.py PROBE DOCUMENT...

For each class, row and attribute that the documents hold, a small document is cut out of one of
them and broken in one place. What the library must say of it, code, item and line, follows from
the schema and the rules of reading that stand below. PROBE is the program document_probe.
"""

import copy
import re
import subprocess
import sys
from xml.sax.saxutils import escape, quoteattr

import document_tree
from document_tree import holder_row, rows_of

# Where the fault is noticed: taken out again before the document is read.
MARK = "\1"
STRAY = "Nonsense"


class Case:
    """One broken document and what must come of it."""

    def __init__(self, what, text, code, item=""):
        self.what = what
        before, _, after = text.partition(MARK)
        self.text = before + after
        assert MARK not in self.text, what
        line = before.count("\n") + 1 if MARK in text else 0
        self.expected = f"{code}|{item}|{line}" if code else "0||0"


# --- documents --------------------------------------------------------------------------------

class Element:
    """An element as it will be spelled; every part can be bent."""

    def __init__(self, node, children):
        self.node = node
        self.name = f"Zol:{node.name}"
        self.end_name = self.name
        self.attributes = list(node.attributes.items())
        for name, value in node.xsi.items():
            self.attributes.append((f"xsi:{name}", f"Zol:{value[1]}" if name == "type" else value))
        self.children = children  # of elements and of strings that go in as they are
        self.text = escape(node.text)
        self.before_start = self.before_end = ""
        self.is_short = False

    def spell(self, blank, depth=0):
        """The text; `blank` goes wherever a tag may have one that means nothing."""
        tag = f"{self.before_start}<{self.name}"
        tag += "".join(f" {name}{blank}={blank}{quoteattr(value)}"
                       for name, value in self.attributes) + blank
        indent = "\t" * depth
        if self.is_short:
            return f"{indent}{tag}/>\n"
        end = f"{self.before_end}</{self.end_name}{blank}>\n"
        if not self.children:
            return f"{indent}{tag}>{self.text}{end}"
        inner = "".join(child + "\n" if isinstance(child, str) else child.spell(blank, depth + 1)
                        for child in self.children)
        return f"{indent}{tag}>{self.text}\n{inner}{indent}{end}"

    def mark(self):
        """Expects the fault at the start tag."""
        self.before_start = MARK
        return self

    def empty(self, is_short):
        self.children, self.text, self.is_short = [], "", is_short
        if is_short:
            self.before_start = MARK
        else:
            self.before_end = MARK
        return self


def excerpt(target):
    """(root, target) of a new document: what the target has, and of the rest what is required."""
    path, node = set(), target
    while node is not None:
        path.add(node)
        node = node.parent
    found = []

    def keep(node, is_whole):
        seen, children = {}, []
        for child in node.children:
            if child.row is None:
                continue
            row = holder_row(child)
            seen[row] = seen.get(row, 0) + 1
            if child in path or (is_whole and seen[row] <= 2) or (row.required and seen[row] == 1):
                children.append(child)
        element = Element(node, [keep(child, child is target) for child in children])
        if node is target:
            found.append(element)
        return element

    root = keep(path_root(target), target.parent is None)
    root.attributes.append(("xmlns:Zol", NAMESPACE))
    root.attributes.append(("xmlns:xsi", document_tree.INSTANCE))
    return root, found[0]


def path_root(node):
    while node.parent is not None:
        node = node.parent
    return node


NAMESPACE = "http://example.org/zol/v2"


# --- rules ------------------------------------------------------------------------------------

# An empty element of these passes, although they have required rows.
SILENT_WHEN_EMPTY = {"ColorAndFinish", "CustomAttributes", "Parameters", "ParentColorSpace",
                     "Person", "Process", "ProfileType_Parameters", "Recipe", "Version"}


def is_enforced(row):
    """Whether the absence of a row's element is reported: all required ones but groups of classes."""
    if row.kind not in ("elem", "group"):
        return False
    return row.required and not (row.type_class is not None and row.type_class.is_substitution)


def missing_after(info, position):
    """(code, item) when nothing that fits follows the given number of rows."""
    for row in rows_of(info)[position:]:
        if is_enforced(row):
            return 21, "" if row.kind == "group" else f"Zol:{row.name}"
    return None


def when_empty(info):
    """The code for an element of a class without content."""
    if info.name in SILENT_WHEN_EMPTY:
        return 0
    if info.shape == "choice":
        return 32
    return 32 if any(row.required and row.kind in ("elem", "group") for row in rows_of(info)) else 0


INTEGERS = {"int": (-2**31, 2**31 - 1), "uint": (1, 2**31 - 1), "byte": (2, 99)}


def values_of(row):
    """Texts for a simple row with the code that each gives."""
    if row.enum:
        first = row.enum_values[0]
        return [("", 38), ("nonsense", 38), (" " + first, 38), (first.lower() + "\u00e9", 38)] + \
               [(value, 0) for value in row.enum_values]
    if row.length is not None:
        return [("", 20), ("ab", 19), ("\U00010000", 0), ("\u00e9", 0), ("\U00010000a", 19)]
    if row.type == "string":
        return [("", 0), (" \u00e9\U0001f342 ", 0)]
    if row.type == "bool":
        return [(text, 35) for text in ("", "yes", "TRUE", "2")] + \
               [(text, 0) for text in ("true", " false ", "1", "0")]
    if row.type == "dateTime":
        good = "2020-01-01T10:00:00"
        return [("", 35), ("yesterday", 35), ("2020-01-01", 35), (good, 22), (good + "Z", 0),
                (" " + good + ".25+05:30 ", 0), ("-" + good + "-11:00", 0)]
    if row.type == "base64":
        return [("*", 35), ("AAA", 35), ("", 0), ("AAAA", 0), (" AA AA ", 0)]
    if row.type == "double":
        return [(text, 35) for text in ("", "x", "1,5", "1.5x", "+INF")] + double_values(row)
    low, high = INTEGERS[row.type]
    return [(text, 35) for text in ("", "x", "1.5", "1e1")] + \
           [(str(low - 1), 37), (str(high + 1), 36), ("-" + "9" * 40, 37), ("9" * 40, 36),
            (str(low), 0), (f" +{high} ", 0), ("0" * 40 + str(high), 0)]


def double_values(row):
    def near(bound, step):
        return repr(float(bound.number) + step)

    if row.lower is None:
        assert row.upper is None
        return [("NaN", 0), ("-INF", 0), ("INF", 0), ("-1e300", 0), (".5", 0), (" +5. ", 0)]
    values = [("NaN", 37), ("-INF", 37), (near(row.lower, -1e-9), 37),
              (row.lower.number, 37 if row.lower.strict else 0), (near(row.lower, 1e-9), 0)]
    if row.upper is None:
        return values + [("INF", 0), ("1e300", 0)]
    return values + [("INF", 36), (near(row.upper, 1e-9), 36),
                     (row.upper.number, 36 if row.upper.strict else 0), (near(row.upper, -1e-9), 0)]


# --- cases ------------------------------------------------------------------------------------

class Breaker:
    """All cases of a set of documents, none twice for the same class and row."""

    def __init__(self, documents):
        self.cases = []
        self.done = set()
        for document in documents:
            for node in document.walk():
                if node.row is None and node.parent is not None:
                    continue
                if node.info is None:
                    self.simple_element(node)
                else:
                    self.object(node)

    def once(self, *key):
        if key in self.done:
            return False
        self.done.add(key)
        return True

    def add(self, node, what, code, item, bend):
        """A case: `bend` is given the target and the root of a fresh document."""
        root, target = excerpt(node)
        bend(target, root)
        where = node.info.name if node.info is not None else f"{node.row.owner.name}.{node.name}"
        for blank in ("", " "):
            self.cases.append(Case(f"{where}: {what}", '<?xml version="1.0"?>\n' + root.spell(blank),
                                   code, item))

    def object(self, node):
        info, name = node.info, f"Zol:{node.name}"
        if node.is_nil:
            if self.once(info.name, "nilled"):
                self.nilled(node)
            return
        if node.row is not None and node.row.kind == "mark":
            if self.once(info.name, "mark"):
                self.mark(node)
            return
        for row in rows_of(info):
            if row.kind == "attr" and row.name in node.attributes \
                    and self.once(info.name, row.owner.name, row.name, "attribute"):
                self.attribute(node, row)
        for row in {holder_row(child): child for child in node.children if child.row}:
            if self.once(info.name, row.owner.name, row.name, "element"):
                self.child_row(node, row)
        if not self.once(info.name, "object"):
            return
        self.any_element(node)
        if node.content is not None:
            self.values(node, node.content, name)
            self.add(node, "an element in its content", 10, name,
                     lambda e, _: setattr(e, "text", e.text + f"{MARK}<Zol:{STRAY}/>"))
        elif info.rows or info.base:
            self.emptied(node)

    # Whatever the class.
    def any_element(self, node):
        name = f"Zol:{node.name}"
        for attribute in (STRAY, f"Zol:{node.name}", f"Zol:{next(iter(node.attributes), STRAY)}"):
            self.add(node, f"an attribute {attribute}", 39, name,
                     lambda e, _: e.mark().attributes.append((attribute, "x")))
        self.add(node, "attributes of the instance namespace", 0, "",
                 lambda e, _: e.attributes.extend([("xsi:nonsense", "x"),
                                                   ("xsi:schemaLocation", "a b")]))
        if "type" not in node.xsi and not (node.row is not None and node.row.xsi_type):
            self.add(node, "a type that nobody asks for", 0, "",
                     lambda e, _: e.attributes.append(("xsi:type", "Zol:Nonsense")))
        self.add(node, "the end tag of another", 10, name, end_wrongly)
        if node.info.nillable:
            self.add(node, "nilled with content", 10, name, nil_with_content)
            self.add(node, "nilled by a word that is no truth value", 0, "",
                     lambda e, _: e.attributes.append(("xsi:nil", "yes")))
        else:
            self.add(node, "nilled in vain", 0, "",
                     lambda e, _: e.attributes.append(("xsi:nil", "true")))
        if node.row is not None and node.row.xsi_type:
            for given in ("Zol:Nonsense", "Zol:ColorSpaceRGBType", "nope:FunctionDEType", ""):
                self.add(node, f"the type '{given}'", 44, "", lambda e, _: retype(e.mark(), given))
            # A derived object is read as the plain one, whose rows end before those of its own.
            if node.row.xsi_type == "required" or node.info is node.row.type_class:
                self.add(node, "no type", 44 if node.row.xsi_type == "required" else 0, "",
                         lambda e, _: retype(e.mark(), None))

    def nilled(self, node):
        for value in ("1", " true "):
            self.add(node, f"nil as '{value}'", 0, "",
                     lambda e, _: setattr(e, "attributes", [("xsi:nil", value)]))
        self.add(node, "nilled in two tags", 0, "", lambda e, _: setattr(e, "is_short", False))

    def mark(self, node):
        """An empty element that nobody looks at."""
        name = f"Zol:{node.name}"
        self.add(node, "an attribute", 0, "", lambda e, _: e.attributes.append((STRAY, "x")))
        for what, text in (("an element", f"<Zol:{STRAY}/>"), ("text", "text")):
            self.add(node, f"{what} in it", 10, name,
                     lambda e, _: setattr(e, "text", MARK + text))
        self.add(node, "the end tag of another", 10, name, end_wrongly)

    def attribute(self, node, row):
        def without(e, _):
            e.mark().attributes = [a for a in e.attributes if a[0] != row.name]

        def twice(e, _):
            e.mark().attributes.append((row.name, node.attributes[row.name]))

        self.add(node, f"{row.name} removed", 25 if row.required else 0, row.owner.name, without)
        self.add(node, f"{row.name} twice", 3, row.name, twice)
        for value, code in values_of(row):
            def put(e, _, value=value):
                e.mark().attributes = [(a, value if a == row.name else v) for a, v in e.attributes]
            self.add(node, f"{row.name} of '{value}'", code, row.name, put)

    # The elements of a row inside its parent.
    def child_row(self, node, row):
        info = node.info
        name = f"Zol:{node.name}"
        children = [child for child in excerpt(node)[1].children]
        own = [i for i, child in enumerate(children) if holder_row(child.node) is row]
        position = rows_of(info).index(row)
        is_choice = info.shape == "choice"

        def stop_at(e, index):
            """Marks the tag on which the body stops."""
            if index < len(e.children):
                e.children[index].before_start = MARK
            else:
                e.before_end = MARK

        def removed(e, _):
            del e.children[own[0]:own[-1] + 1]
            stop_at(e, own[0])

        if len(own) < len(children):
            code, item = (21, "" if row.kind == "group" else f"Zol:{row.name}") \
                if is_enforced(row) else (0, "")
            self.add(node, f"{row.name} removed", code, item, removed)

        fault = missing_after(info, position + 1) if not is_choice else None
        after = fault or (10, name)
        for what, thing in (("an unknown element", f"{MARK}<Zol:{STRAY}/>"),
                            ("an element without a namespace", f"{MARK}<{node.name}/>"),
                            ("an element of the instance namespace", f"{MARK}<xsi:type/>"),
                            ("text", f"stray{MARK} <!---->")):
            self.add(node, f"{what} behind {row.name}", *after,
                     lambda e, _: e.children.insert(own[-1] + 1, thing))
        if not row.is_list:
            def twice(e, _):
                again = copy.copy(e.children[own[0]])
                e.children.insert(own[0] + 1, again.mark())
            self.add(node, f"{row.name} twice", *after, twice)
        if own[0] == 0 and self.once(info.name, "first"):
            before = (31, f"Zol:{STRAY}") if is_choice else missing_after(info, 0) or (10, name)
            self.add(node, "an unknown element first", *before,
                     lambda e, _: e.children.insert(0, f"{MARK}<Zol:{STRAY}/>"))

    def emptied(self, node):
        code, name = when_empty(node.info), f"Zol:{node.name}"
        for is_short in (True, False):
            self.add(node, f"emptied, {'one tag' if is_short else 'two tags'}", code, name,
                     lambda e, _: e.empty(is_short))
        if node.info.is_blank:
            self.add(node, "an unknown element in it", 10, name,
                     lambda e, _: setattr(e, "text", f"{MARK}<Zol:{STRAY}/>"))

    # An element with nothing but a value.
    def simple_element(self, node):
        row, name = node.row, f"Zol:{node.name}"
        if not self.once(row.owner.name, row.name, "value"):
            return
        self.values(node, row, name)
        broken = 29 if row.is_list else 10
        self.add(node, "the end tag of another", broken, name, end_wrongly)
        self.add(node, "an element in its value", broken, name,
                 lambda e, _: setattr(e, "text", e.text + f"{MARK}<Zol:{STRAY}/>"))
        self.add(node, "an attribute, which nobody looks at", 0, "",
                 lambda e, _: e.attributes.append((STRAY, "x")))

    def values(self, node, row, name):
        for value, code in values_of(row):
            def put(e, _, value=value):
                e.text, e.before_end = escape(value), MARK
            self.add(node, f"'{value}'", code, name, put)
        code = dict(values_of(row))[""]
        for is_short in (True, False):
            self.add(node, f"emptied, {'one tag' if is_short else 'two tags'}", code, name,
                     lambda e, _: e.empty(is_short))


def end_wrongly(e, _):
    e.end_name, e.before_end, e.is_short = f"Zol:{STRAY}", MARK, False


def nil_with_content(e, _):
    e.attributes.append(("xsi:nil", "true"))
    if e.children:
        e.children[0].before_start = MARK
    else:
        e.before_end = MARK
        e.text = e.text or "text"


def retype(e, given):
    e.attributes = [a for a in e.attributes if a[0] != "xsi:type"]
    if given is not None:
        e.attributes.append(("xsi:type", given))


def ask(probe, cases, task="faults"):
    """What the library says of each case, in lines."""
    stream = b"".join(b"%d\n%s" % (len(data), data)
                      for data in (case.text.encode() for case in cases))
    run = subprocess.run([probe, task], input=stream, capture_output=True, check=False)
    answers = run.stdout.decode().splitlines()
    if run.returncode != 0:
        print(run.stderr.decode())
    if len(answers) != len(cases):
        print(f"the probe ended with {run.returncode} on: {cases[len(answers)].what}\n"
              f"{cases[len(answers)].text}")
    return answers


def main():
    probe, paths = sys.argv[1], sys.argv[2:]
    model = document_tree.read_model()
    documents = [document_tree.read_document(open(path, "rb").read(), model) for path in paths]
    cases = Breaker(documents).cases
    answers = ask(probe, cases)
    failed = [(case, answer) for case, answer in zip(cases, answers) if answer != case.expected]
    # A report has that fault and no other; where no handler is asked, it names the element.
    for case, answer in zip(cases, ask(probe, cases, "diagnose")):
        code, _, line = case.expected.split("|")
        expected = "" if code == "0" else case.expected
        if code == "44":
            answer = re.sub(r"\|.*\|", "||", answer)
        if answer != expected:
            failed.append((case, f"the report {answer!r}"))
    for case, answer in failed:
        print(f"{case.what}: expected {case.expected}, got {answer}")
    if failed:
        print(failed[0][0].text)
    print(f"{len(cases)} documents, {len(failed)} differ")
    return 1 if failed or len(answers) != len(cases) else 0


if __name__ == "__main__":
    sys.exit(main())
