#!/usr/bin/env python3
"""Proves that what the library writes of a document is the document, to other makers' programs.

    canonical_check.py PROBE DOCUMENT...

The written text must be well-formed for xmllint and hold the same tree: elements and attributes by
namespace, texts to the character, values of other types as values. What the library does not keep
is not compared: prefixes, comments, instructions, the document type, schema locations. PROBE is the
program document_probe.
"""

import base64
import re
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

import document_tree

DATE_TIME = re.compile(r"(.*T\d\d:\d\d:)(\d\d(?:\.\d+)?)(.*)")


def value_of(row, text):
    """What the text of a simple row stands for; equal values give equal results."""
    if row.type == "string" and not row.collapse:
        return text
    text = " ".join(text.split())
    if row.type == "double":
        return f"{float(text):.14g}"
    if row.type in ("int", "uint", "byte"):
        return int(text)
    if row.type == "bool":
        return text in ("true", "1")
    if row.type == "base64":
        return base64.b64decode(text)
    if row.type == "dateTime":
        minutes, seconds, zone = DATE_TIME.fullmatch(text).groups()
        return minutes, float(seconds), "Z" if zone == "+00:00" else zone
    return text


def differences(one, other, path=""):
    """The first difference of two trees, in words."""
    path += "/" + one.name
    if one.name != other.name:
        return f"{path} is {other.name}"
    if one.element is not None:
        if ElementTree.canonicalize(spell(one)) != ElementTree.canonicalize(spell(other)):
            return f"{path} is another foreign element"
        return None
    if one.attributes.keys() != other.attributes.keys():
        return f"{path} has the attributes {sorted(other.attributes)}"
    rows = {row.name: row for row in document_tree.rows_of(one.info) if row.kind == "attr"} \
        if one.info else {}
    for name, text in one.attributes.items():
        if value_of(rows[name], text) != value_of(rows[name], other.attributes[name]):
            return f"{path}/@{name} is {other.attributes[name]!r} and was {text!r}"
    if one.is_nil != other.is_nil or one.info is not other.info \
            or one.xsi.get("type") != other.xsi.get("type"):
        return f"{path} is nilled or of a type where it was not, or the reverse"
    if one.content is not None and not one.is_nil \
            and value_of(one.content, one.text) != value_of(one.content, other.text):
        return f"{path} is {other.text!r} and was {one.text!r}"
    names = [child.name for child in one.children], [child.name for child in other.children]
    if names[0] != names[1]:
        return f"{path} holds {names[1]} and held {names[0]}"
    return next(filter(None, map(differences, one.children, other.children,
                                 [path] * len(one.children))), None)


def spell(node):
    node.element.tail = None
    return ElementTree.tostring(node.element, encoding="unicode")


def without_new_stamp(written, read):
    """Every object is stamped from its first moment; a document that has no stamp keeps that one."""
    stamp = "ReadSDKInformation"
    headers = [next(node for node in root.walk() if node.name == "Header")
               for root in (written, read)]
    if not any(child.name == stamp for child in headers[1].children):
        headers[0].children = [child for child in headers[0].children if child.name != stamp]
    return written


def check(probe, path, model):
    data = open(path, "rb").read()
    run = subprocess.run([probe, "write"], input=data, capture_output=True, check=False)
    if run.returncode != 0:
        return f"cannot be written: {run.returncode}"
    lint = subprocess.run(["xmllint", "--noout", "-"], input=run.stdout, capture_output=True,
                          check=False)
    if lint.returncode != 0 or lint.stderr:
        return lint.stderr.decode()
    read = document_tree.read_document(data, model)
    written = document_tree.read_document(run.stdout, model)
    return differences(read, without_new_stamp(written, read))


def main():
    probe, paths = sys.argv[1], sys.argv[2:]
    model = document_tree.read_model()
    faults = {path: check(probe, path, model) for path in paths}
    for path, fault in faults.items():
        print(f"{path}: {fault or 'the same'}")
    return 1 if any(faults.values()) or not paths else 0


if __name__ == "__main__":
    sys.exit(main())
