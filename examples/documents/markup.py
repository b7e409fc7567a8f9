"""Elements as nested calls, and their text in whatever form a document wants.

The scripts beside this file describe a document as a tree of `el(...)` calls and hand it to
`write`, which knows prefixes, indents, line ends and encodings and nothing of colour.
"""

import codecs

NAMESPACE = "http://example.org/zol/v2"
INSTANCE = "http://www.w3.org/2001/XMLSchema-instance"


class Verbatim(str):
    """Markup that goes out as it stands: comments, instructions, sections, references."""


class Element:
    def __init__(self, name, content, attributes):
        self.name = name
        self.content = content
        self.attributes = attributes


def el(name, *content, **attributes):
    """An element. Content is elements, or one text; lists are flattened and None is left out.

    `xsi_nil` and `xsi_type` stand for the attributes of the schema instance namespace; a type is
    named without its prefix.
    """
    return Element(name, list(flatten(content)), attributes)


def flatten(items):
    for item in items:
        if isinstance(item, (list, tuple)):
            yield from flatten(item)
        elif item is not None:
            yield item


def comment(text):
    return Verbatim(f"<!-- {text} -->")


def cdata(text):
    return Verbatim(f"<![CDATA[{text}]]>")


def escape(text):
    for plain, escaped in (("&", "&amp;"), ("<", "&lt;"), ('"', "&quot;"), ("'", "&apos;")):
        text = text.replace(plain, escaped)
    return text


def number(value, digits=14):
    """A number in up to `digits` significant digits; zero keeps its point."""
    if isinstance(value, (bool, int)):
        return str(value).lower()
    return "0.0" if value == 0 else format(value, f".{digits}g")


def text_of(item):
    if isinstance(item, Verbatim):
        return item
    return escape(item if isinstance(item, str) else number(item))


class Form:
    """How a document is spelled.

    prefix            of the document namespace; empty makes it the default one
    instance          prefix of the schema instance namespace
    indent, newline   around each element; both empty give one long line
    mark              a byte-order mark in front
    carriage_returns  every line end is CR LF
    prolog            lines between the declaration and the root
    """

    def __init__(self, prefix="Zol", instance="xsi", indent="\t", newline="\n",
                 encoding="UTF-8", mark=False, carriage_returns=False, prolog=""):
        self.prefix = prefix + ":" if prefix else ""
        self.instance = instance
        self.indent = indent
        self.newline = newline
        self.encoding = encoding
        self.mark = mark
        self.carriage_returns = carriage_returns
        self.prolog = prolog

    def attribute(self, name, value):
        if name == "xsi_nil":
            return f' {self.instance}:nil="{text_of(value)}"'
        if name == "xsi_type":
            return f' {self.instance}:type="{self.prefix}{value}"'
        return f' {name}="{text_of(value)}"'

    def start(self, element, depth):
        tag = f"<{self.prefix}{element.name}"
        if depth == 0:
            bound = ":" + self.prefix[:-1] if self.prefix else ""
            tag += f' xmlns{bound}="{NAMESPACE}" xmlns:{self.instance}="{INSTANCE}"'
        return tag + "".join(self.attribute(n, v) for n, v in element.attributes.items())

    def lines(self, element, depth=0):
        pad = self.indent * depth
        start, end = self.start(element, depth), f"</{self.prefix}{element.name}>"
        if not element.content:
            yield pad + start + "/>"
        elif any(isinstance(item, Element) for item in element.content):
            yield pad + start + ">"
            for item in element.content:
                if isinstance(item, Element):
                    yield from self.lines(item, depth + 1)
                else:
                    yield self.indent * (depth + 1) + text_of(item)
            yield pad + end
        else:
            yield pad + start + ">" + "".join(map(text_of, element.content)) + end

    def document(self, root):
        parts = [f'<?xml version="1.0" encoding="{self.encoding}"?>']
        parts += self.prolog.splitlines()
        parts += self.lines(root)
        text = self.newline.join(parts) + self.newline
        return text.replace("\n", "\r\n") if self.carriage_returns else text


def write(path, root, form):
    data = form.document(root).encode(form.encoding, "xmlcharrefreplace")
    with open(path, "wb") as out:
        out.write((codecs.BOM_UTF8 if form.mark else b"") + data)
