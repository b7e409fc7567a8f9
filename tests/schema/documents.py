"""Small documents made of the sample documents, and what can be broken in them.

`Samples` cuts the samples down: for each class of the schema a few documents in which one object of
the class is complete and all around it is only what must be there. `edits` lists what can be done
to one element of such a document: each edit is one step away from what the schema says, or just
inside of it.
"""

import contextlib
import dataclasses
import math
import xml.etree.ElementTree as ElementTree

XSI = "http://www.w3.org/2001/XMLSchema-instance"
FOREIGN = ('<a:approval xmlns:a="http://example.org/approval" a:by="Zoë">'
           '<a:note>All <b>well</b></a:note></a:approval>')


STRAY = (("<Zol:Unknown/>", "an unknown element"), ("text", "text"),
         ("<!-- note -->", "a comment"), ("<?note?>", "an instruction"))


class Node:
    """One element. Its kids are nodes and pieces of markup, which are written as they stand."""

    def __init__(self, name, attrs, kids, info=None, row=None):
        self.name = name
        self.attrs = attrs
        self.kids = kids
        self.info = info  # its class; None for a simple value
        self.row = row    # the row of its parent that it fills
        self.alternative = row

    @property
    def children(self):
        return [kid for kid in self.kids if isinstance(kid, Node)]

    @property
    def is_blank(self):
        """Whether it can have no content at all."""
        return self.info is not None and self.info.is_blank

    @property
    def value_row(self):
        """The row that its text is a value of, or None."""
        if self.info is None:
            return self.alternative
        return next((row for row in rows_of(self.info) if row.kind == "content"), None)

    def walk(self):
        yield self
        for child in self.children:
            yield from child.walk()

    def text(self):
        attrs = "".join(f' {name}="{value}"' for name, value in self.attrs)
        if not self.kids:
            return f"<{self.name}{attrs}/>"
        inner = "".join(kid if isinstance(kid, str) else f"\n{kid.text()}" for kid in self.kids)
        end = "\n" if isinstance(self.kids[-1], Node) else ""
        return f"<{self.name}{attrs}>{inner}{end}</{self.name}>"


def rows_of(info):
    """The rows of a class, those of its bases first."""
    return [row for c in reversed(info.lineage) for row in c.rows]


def escape(text):
    return text.replace("&", "&amp;").replace("<", "&lt;").replace('"', "&quot;")


class Samples:
    """Reads sample documents; `bases` are the small documents as pairs of root and element."""

    def __init__(self, model, paths):
        self.model = model
        self.roots = [self._read(path) for path in paths]
        self.bases = list(self._cut())

    def _read(self, path):
        return self._typed(ElementTree.parse(path).getroot(), self.model["Zol"], None)

    def _typed(self, element, info, row):
        name = element.tag.rpartition("}")[2]
        attrs = []
        for key, value in element.items():
            if key.startswith("{"):
                key = "xsi:" + key.rpartition("}")[2]
                if key == "xsi:type":
                    value = "Zol:" + value.rpartition(":")[2]
                    info = self.model[value[4:]] if row.xsi_type else info
            attrs.append((key, escape(value)))
        node = Node(f"Zol:{name}", attrs, [], info, row)
        if info is not None and any(r.kind == "any" for r in rows_of(info)):
            node.kids = [FOREIGN]
        elif len(element):
            places = self._places(info)
            for child in element:
                holder_row, alternative = places[child.tag.rpartition("}")[2]]
                kid = self._typed(child, alternative.type_class, alternative)
                kid.row = holder_row
                node.kids.append(kid)
        elif element.text and (info is None or node.value_row is not None):
            node.kids = [escape(element.text)]
        return node

    @staticmethod
    def _places(info):
        """By name of a child: the row it fills, and the row that says what it is."""
        places = {}
        for row in rows_of(info):
            held = row.type_class
            if held is not None and held.writes_no_tag and row.kind in ("elem", "group"):
                places.update({alt.name: (row, alt) for alt in held.alternatives})
            elif row.kind not in ("attr", "content"):
                places[row.name] = (row, row)
        return places

    def _cut(self):
        """For each class as many documents as it takes to show all that the samples have of it."""
        found = {}
        for root in self.roots:
            for path in paths_of(root):
                if path[-1].info is not None:
                    found.setdefault(path[-1].info.name, []).append(path)
        for name in sorted(found):
            seen = set()
            for path in sorted(found[name], key=lambda p: -len(features(p[-1]))):
                if features(path[-1]) - seen:
                    seen |= features(path[-1])
                    yield spine(path, self.model.namespace)


def paths_of(node, above=()):
    path = above + (node,)
    yield path
    for child in node.children:
        yield from paths_of(child, path)


def features(node):
    return {child.name for child in node.children} | {name for name, _ in node.attrs}


def spine(path, namespace):
    """A document around the last node of the path, which is complete; and that node."""
    target = whole(path[-1])
    below = target
    for above, on_path in zip(reversed(path[:-1]), reversed(path[1:])):
        node = bare(above, on_path, below)
        below = node
    below.attrs = [("xmlns:Zol", namespace), ("xmlns:xsi", XSI)] + below.attrs
    return below, target


def bare(node, instead_of=None, by=None):
    """The node with what it must have alone; one of its children, replaced, is kept besides."""
    required = {row.name for row in rows_of(node.info) if row.kind == "attr" and row.required} \
        if node.info is not None else set()
    result = Node(node.name, [(n, v) for n, v in node.attrs if n in required or ":" in n],
                  [], node.info, node.row)
    result.alternative = node.alternative
    kept = {instead_of.row.name} if instead_of is not None else set()
    for kid in node.kids:
        if kid is instead_of:
            result.kids.append(by)
        elif isinstance(kid, str):
            result.kids.append(kid)
        elif kid.row.name not in kept and (kid.row.required or kid.row.kind == "alt"):
            kept.add(kid.row.name)
            result.kids.append(bare(kid))
    return result


def whole(node):
    """The node with all that it has, but no more than two of a name, and those bare."""
    result = bare(node)
    result.attrs = list(node.attrs)
    result.kids = []
    count = {}
    for kid in node.kids:
        if isinstance(kid, str):
            result.kids.append(kid)
            continue
        count[kid.name] = count.get(kid.name, 0) + 1
        if count[kid.name] <= 2:
            result.kids.append(bare(kid))
    return result


# --- edits ------------------------------------------------------------------------------------

@dataclasses.dataclass
class Edit:
    """What to put in place of fields of one node: name, attrs or kids."""
    label: str
    node: Node
    fields: dict

    @contextlib.contextmanager
    def applied(self):
        before = {name: getattr(self.node, name) for name in self.fields}
        for name, value in self.fields.items():
            setattr(self.node, name, value)
        try:
            yield
        finally:
            for name, value in before.items():
                setattr(self.node, name, value)


def edits(node, namespace):
    """Everything that can be done to an element, its attributes and the list of its children."""
    yield from attribute_edits(node)
    yield from child_edits(node, namespace)
    yield from content_edits(node)
    if node.value_row is not None:
        for text in values_for(node.value_row):
            yield Edit(f"value {text!r}", node, {"kids": [text] if text else []})
    if node.info is None:
        return
    for row in rows_of(node.info):
        if row.kind != "attr":
            continue
        for text in values_for(row):
            text = text.replace("<", "&lt;") if "<!" in text or "<?" in text else text
            others = [(n, v) for n, v in node.attrs if n != row.name]
            yield Edit(f"attribute {row.name}={text!r}", node,
                       {"attrs": others + [(row.name, text)]})


def attribute_edits(node):
    for i, (name, value) in enumerate(node.attrs):
        if name.startswith("xmlns"):
            continue
        others = node.attrs[:i] + node.attrs[i + 1:]
        yield Edit(f"remove attribute {name}", node, {"attrs": others})
        yield Edit(f"repeat attribute {name}", node, {"attrs": node.attrs + [(name, value)]})
        yield Edit(f"rename attribute {name}", node, {"attrs": others + [(name + "x", value)]})
        yield Edit(f"lower case {name}", node, {"attrs": others + [(name.lower(), value)]})
        if ":" not in name:
            yield Edit(f"qualify {name}", node, {"attrs": others + [("Zol:" + name, value)]})
        yield Edit(f"last attribute first {name}", node, {"attrs": node.attrs[::-1]})
    taken = {name for name, _ in node.attrs}
    for name, value in (("Unknown", "x"), ("xml:lang", "en"), ("xml:space", "preserve"),
                        ("xsi:other", "x"), ("xsi:noNamespaceSchemaLocation", "none.xsd"),
                        ("Zol:UniqueID", "x"), ("UniqueID", "x"), ("Name", "x"), ("id", "x"),
                        ("a:b\" xmlns:a=\"http://example.org/a", "x"),
                        ("xmlns:unused", "http://example.org/unused"),
                        ("xmlns", "http://example.org/unused")):
        if name not in taken:
            yield Edit(f"add attribute {name}", node, {"attrs": node.attrs + [(name, value)]})
    plain = [(n, v) for n, v in node.attrs if n not in ("xsi:nil", "xsi:type")]
    for nil in ("true", "1", "false", "0", " true ", "yes", ""):
        attrs = plain + [("xsi:nil", nil)]
        yield Edit(f"nil {nil!r}", node, {"attrs": attrs})
        yield Edit(f"nil {nil!r} without content", node, {"attrs": attrs, "kids": []})
        yield Edit(f"nil {nil!r} around a blank", node, {"attrs": attrs, "kids": [" "]})
    for name in type_names(node):
        yield Edit(f"type {name}", node, {"attrs": plain + [("xsi:type", name)]})


def type_names(node):
    names = ["Zol:Nothing", "xs:string", "Zol:", ""]
    if node.info is not None:
        own = node.info.schema.base if node.info.is_wrapper else node.info.name
        names += [f"Zol:{own}", f" Zol:{own} ", own, f"xsi:{own}"]
        names += [f"Zol:{c.name}" for c in node.info.model.classes.values()
                  if c.shape == "poly" and (c in node.info.lineage or node.info in c.lineage
                                            or c.family_root is node.info.family_root)
                  and node.info.is_poly][:24]
    return list(dict.fromkeys(names))


def child_edits(node, namespace):
    kids = node.kids
    for i, kid in enumerate(kids):
        if not isinstance(kid, Node):
            continue
        name = kid.name
        yield Edit(f"remove {name}", node, {"kids": kids[:i] + kids[i + 1:]})
        yield Edit(f"repeat {name}", node, {"kids": kids[:i + 1] + kids[i:]})
        yield Edit(f"repeat {name} at the end", node, {"kids": kids + [kid]})
        if i:
            yield Edit(f"{name} first", node, {"kids": [kid] + kids[:i] + kids[i + 1:]})
            yield Edit(f"{name} one up", node,
                       {"kids": kids[:i - 1] + [kid, kids[i - 1]] + kids[i + 1:]})
        for other in sorted({n.name for n in node.children} - {name}):
            yield Edit(f"rename {name} to {other}", kid, {"name": other})
        for other in (name + "x", name.lower(), name[4:], "a:" + name[4:]):
            yield Edit(f"rename {name} to {other}", kid, {"name": other})
        yield Edit(f"{name} in no namespace", kid,
                   {"name": name[4:], "attrs": kid.attrs + [("xmlns", "")]})
        yield Edit(f"{name} in another namespace", kid,
                   {"name": "a:" + name[4:],
                    "attrs": kid.attrs + [("xmlns:a", "http://example.org/a")]})
        yield Edit(f"{name} under another prefix", kid,
                   {"name": "z:" + name[4:], "attrs": kid.attrs + [("xmlns:z", namespace)]})
        yield Edit(f"{name} by the default namespace", kid,
                   {"name": name[4:], "attrs": kid.attrs + [("xmlns", namespace)]})
        for more, what in (*STRAY, (FOREIGN, "a foreign element"),
                           ("<![CDATA[ ]]>", "a section"), ("&#32;", "a reference to a blank")):
            yield Edit(f"{what} before {name}", node, {"kids": kids[:i] + [more] + kids[i:]})
    if node.info is not None and node.info.shape == "choice":
        for other in node.info.alternatives:
            yield Edit(f"another alternative {other.name}", node,
                       {"kids": kids + [f"<Zol:{other.name}>1</Zol:{other.name}>"]})


def content_edits(node):
    yield Edit("no content", node, {"kids": []})
    yield Edit("no content with an end tag", node, {"kids": ["<!---->"]})
    yield Edit("a blank", node, {"kids": [" "]})
    yield Edit("a line end", node, {"kids": ["\n"]})
    for more, what in (*STRAY, ("<Zol:Name>x</Zol:Name>", "a name")):
        yield Edit(f"{what} alone", node, {"kids": [more]})
        yield Edit(f"{what} at the end", node, {"kids": node.kids + [more]})


def values_for(row):
    """Texts for a value: some good, some bad, most at the border."""
    texts = list(VALUES[row.type])
    if row.enum:
        values = row.enum_values
        texts += [f" {values[0]} ", values[0].lower(), values[-1] + "x", values[-1]]
        texts += [values[len(values) // 2], values[0][:-1], f"{values[0]}<!-- note -->"]
    for bound in (row.lower, row.upper):
        if bound is not None and row.type == "double":
            number = float(bound.number)
            texts += [bound.number, f" {bound.number} ", f"{number:e}"]
            texts += [repr(near) for near in (
                math.nextafter(number, -math.inf), math.nextafter(number, math.inf),
                number - 1e-3, number + 1e-3)]
        elif bound is not None:
            texts += [str(int(bound.number) + step) for step in (-1, 0, 1)]
    return list(dict.fromkeys(texts))


VALUES = {
    "string": [
        "", " ", "  two  blanks  ", "a", "ab", "é", "𐀀", "ab<!-- note -->c", "a<?note?>b",
        "<![CDATA[<x>&]]>", "&lt;&#65;&#x42;&amp;&apos;&quot;&gt;", "a\tb", "a&#9;&#10;&#13;b",
        "&#x10FFFF;", "&#xE000;", "<x/>", "<Zol:Name/>"],
    "double": [
        "", " ", "abc", " 0.5 ", "\n0.5\t", "&#32;0.5", "1e0", "1E+0", ".5", "5.", "+.5", "-.5",
        ".", "+", "-", "1e", "e5", "1e+", "1e400", "-1e400", "1e-400", "INF", "-INF", "+INF",
        "NaN", "-NaN", "nan", "inf", "Infinity", "0x1p3", "1,5", "1 2", "--1", "1_0", "0.5f", "٣",
        "-0", "+1", "00000.50000", "0." + "1" * 40, "1" * 60, "1e0.5", "0.5<!-- note -->",
        "<![CDATA[0.5]]>", "0<!-- note -->.5", "0.5<x/>", "&#48;.5"],
    "int": [
        "", "abc", " 5 ", "+5", "007", "-0", "+0", "1.0", "1e3", "0x5", "5 6", "+-5", "2147483647",
        "2147483648", "-2147483648", "-2147483649", "9" * 40, "0" * 40 + "5", "-" + "9" * 40, "٣"],
    "bool": [
        "", "true", "false", "1", "0", " true ", "TRUE", "True", "yes", "2", "01", "truefalse"],
    "dateTime": [
        "", "2020-01-02T03:04:05Z", " 2020-01-02T03:04:05Z ", "2020-01-02T03:04:05",
        "2020-01-02T03:04:05+01:00", "2020-01-02T03:04:05-01:00", "2020-01-02T03:04:05+14:00",
        "2020-01-02T03:04:05+14:01", "2020-01-02T03:04:05+15:00", "2020-01-02T03:04:05+00:00",
        "2020-01-02T03:04:05-00:00", "2020-01-02T03:04:05+01:60", "2020-01-02T03:04:05+0100",
        "2020-01-02T03:04:05+1:00", "2020-01-02T03:04:05+01", "2020-00-02T03:04:05Z",
        "2020-13-02T03:04:05Z", "2020-01-00T03:04:05Z", "2020-01-32T03:04:05Z",
        "2020-02-30T03:04:05Z", "2020-02-29T03:04:05Z", "2021-02-29T03:04:05Z",
        "1900-02-29T03:04:05Z", "2020-04-31T03:04:05Z", "0000-01-02T03:04:05Z",
        "-0001-01-02T03:04:05Z", "12020-01-02T03:04:05Z", "02020-01-02T03:04:05Z",
        "+2020-01-02T03:04:05Z", "202-01-02T03:04:05Z", "2020-1-02T03:04:05Z",
        "2020-01-2T03:04:05Z", "2020-01-02T3:04:05Z", "2020-01-02T24:00:00Z",
        "2020-01-02T24:00:01Z", "2020-01-02T25:04:05Z", "2020-01-02T03:60:05Z",
        "2020-01-02T03:04:60Z", "2020-01-02T03:04:61Z", "2020-01-02T03:04:05.Z",
        "2020-01-02T03:04:05.5Z", "2020-01-02T03:04:05.123456789123Z", "2020-01-02T03:04:5Z",
        "2020-01-02T03:04:59.9999999Z", "2020-01-02T03:04:00.0000001Z",
        "123456789012-01-02T03:04:05Z",
        "2020-01-02T03:04Z", "2020-01-02t03:04:05z", "2020-01-02 03:04:05Z", "2020-01-02Z",
        "T03:04:05Z", "2020-01-02T03:04:05ZZ", "2020-01-02T03:04:05Zx", "xTyZ", "abc",
        "2020-01-02T03:04:05+24:00", "2020-01-02T03:04:05+99:99"],
    "base64": [
        "", " ", "QUJD", "QUI=", "QQ==", "Q", "QU", "QUI", "Q===", "QQ=", "QUJDQUJD", "QUJD QUJD",
        " QUJD ", "Q Q = =", "QQ= =", "QR==", "QUJ=", "QUJ*", "QUJD*", "QU*JD", "====", "QUJDR",
        "QUJD=", "Q=Q=", "QUJD\nQUJD\n", "QQ==QUJD"],
}
VALUES["uint"] = VALUES["byte"] = VALUES["int"]



# --- whole documents --------------------------------------------------------------------------

def broken_character(text, generator):
    """The text with one character changed somewhere; and what was done."""
    at = generator.randrange(len(text))
    char = generator.choice("<>&\"'/ =;:!?-[]#x0a\n")
    label, result = generator.choice([
        ("delete", text[:at] + text[at + 1:]),
        ("insert", text[:at] + char + text[at:]),
        ("replace", text[:at] + char + text[at + 1:]),
        ("swap", text[:at] + text[at + 1:at + 2] + text[at:at + 1] + text[at + 2:]),
        ("repeat", text[:at + 1] + text[at:]),
        ("cut", text[:at])])
    return f"{label} {char!r} at {at}", result


FRAME = ("<Zol:{root}{attrs} xmlns:Zol='{namespace}'><Zol:Preamble><Zol:Header>"
         "<Zol:Creator>c</Zol:Creator><Zol:CreatorVersion>1</Zol:CreatorVersion>"
         "<Zol:ChangeHistory>{date}</Zol:ChangeHistory><Zol:Purpose>{text}</Zol:Purpose>"
         "{more}</Zol:Header></Zol:Preamble></Zol:{root}>")


def declaration(encoding):
    return f'<?xml version="1.0" encoding="{encoding}"?>'


DECLARATION = declaration("UTF-8")


def spellings(namespace):
    """Small documents, each with one peculiarity of markup; pairs of a label and text or bytes."""
    def frame(head="", tail="", **fields):
        filled = {"root": "Zol", "attrs": "", "namespace": namespace, "text": "p", "more": "",
                  "date": "2020-01-02T03:04:05Z", **fields}
        return head + FRAME.format(**filled) + tail

    for place, pieces in SPELLINGS.items():
        for piece in pieces:
            yield f"{place} {piece!r}", frame(**{place: piece})
    for piece in SUBSETS:
        yield f"subset {piece!r}", frame(f"<!DOCTYPE Zol:Zol [{piece}]>", text="&a;")
        yield f"unused subset {piece!r}", frame(f"<!DOCTYPE Zol:Zol [{piece}]>")
    for piece in FOREIGN_PIECES:
        yield f"revision {piece!r}", frame(more=f"<Zol:Revision>{piece}</Zol:Revision>")
    for element in ("SubstratePaper", "FunctionDE", "ColorSpaceSpecification", "Color"):
        yield f"root {element}", f"<Zol:{element} xmlns:Zol='{namespace}'/>"
    for piece in (b"\xc3\x28", b"\xff", b"\x80", b"\xc0\x80", b"\xed\xa0\x80", b"\xf4\x90\x80\x80",
                  b"\xe2\x82\x41", b"\xe2\x82", b"\xe9"):
        yield f"bytes {piece!r}", frame(text="#").encode().replace(b">#<", b">" + piece + b"<")
    for encoding, text in (("utf-16-le", "\ufeff" + frame()), ("utf-16-be", "\ufeff" + frame()),
                           ("utf-16-le", frame()), ("latin-1", frame(text="é")), ("utf-32", frame()),
                           ("latin-1", frame(declaration("ISO-8859-1"), text="é")),
                           ("utf-8", frame(declaration("US-ASCII"), text="é")),
                           ("utf-16-le", "\ufeff" + frame(declaration("UTF-16")))):
        yield f"in {encoding} {text[:45]!r}", text.encode(encoding)
    yield "another namespace", frame().replace(namespace, namespace + "/")
    yield "no namespace", frame().replace("Zol:", "").replace("xmlns:Zol", "about")
    for text in ("", " \n", DECLARATION, "<!-- nothing -->", "text"):
        yield f"no document {text!r}", text


SPELLINGS = {
    "head": [
        DECLARATION, " " + DECLARATION, "text", "\ufeff" + DECLARATION, DECLARATION * 2,
        '<?xml version="1.1"?>', '<?xml version="2.0"?>', '<?xml version="1.5"?>',
        '<?xml encoding="UTF-8"?>', '<?xml version="1.0" standalone="yes"?>',
        '<?xml version="1.0" standalone="maybe"?>',
        '<?xml version="1.0" standalone="yes" encoding="UTF-8"?>',
        *map(declaration, ("UTF-16", "ISO-8859-1", "US-ASCII", "KLINGON", "windows-1252", "KOI8-R",
                           "utf-8")),
        "<?a b?>", '<?xml-stylesheet href="x"?>', "<?XML a?>", "<!-- a -->", "<!-- a -- b -->",
        "<!-- a --->", "<!DOCTYPE x>", '<!DOCTYPE Zol:Zol SYSTEM "none.dtd">', "<!DOCTYPE x [",
        '<!DOCTYPE Zol:Zol PUBLIC "p" "none.dtd">', "<!DOCTYPE x><!DOCTYPE x>", "<!doctype x>"],
    "tail": ["<x/>", "text", "<!-- x -->", "<x", "\n \n", "<![CDATA[x]]>", "&#32;", "<?a?>", "\0"],
    "text": [
        "&a;", "a & b", "&amp b", "&amp", "&lt b", "&;", "&#;", "&#x;", "&#65 ", "&#x41 ", "&#X41;",
        "&#-1;", "&#0;", "&#1;", "&#9;", "\x01", "\0", "\x1f", "\x7f", "\x85", "&#133;", "\u2028",
        "\ufffe", "\uffff", "\ufdd0", "\U0010ffff", "&#x100000;", "&#x100001;", "&#x10FFFF;",
        "&#x110000;", "&#xD800;", "&#xDFFF;", "&#xFFFE;", "&#xFFFF;", "&#99999999999999;", "a]]>b",
        "<![CDATA[a]]>", "<![CDATA[a]] ]]]>", "<![CDATA[a]]><![CDATA[b]]>", "<![cdata[a]]>",
        "<![CDATA[a", "<!-- a -- b -->", "<!-- a --->", "<!-- a -->", "<!-- a", "<!>", "<?a?>",
        "<?xml a?>", "<? a?>", "<??>", "<?XmL a?>", "<?xml-x a?>", "a > b", "a \"b' c", "a\rb",
        "<x/>", "< a", "<1/>"],
    "more": [
        "<Zol:Comments>x</Zol:Comments>", "<Zol:Comments>x</Zol:Comments >",
        "<Zol:Comments>x</ Zol:Comments>", "< Zol:Comments>x</Zol:Comments>",
        "<Zol:Comments >x</Zol:Comments>", "<Zol:Comments/ >", "<Zol:Comments />",
        "<Zol:Comments>x", "<Zol:Comments>x</Zol:Comment>", "<Zol:Comments>x</Comments>",
        "<Zol:Comments>x</z:Comments>", '<Zol:Comments>x</Zol:Comments a="b">',
        "<Zol:Comments>x</Zol:Comments<>", "<Zol:Comments&>x</Zol:Comments>",
        "<Zol:Comments !>x</Zol:Comments>", "<Zol:Comments>x</>", "<q:Comments>x</q:Comments>",
        "<Zol:Zol:Comments>x</Zol:Zol:Comments>", "<:Comments>x</:Comments>", "<Zol:>x</Zol:>",
        *(f"<Zol:Comments {attrs}>x</Zol:Comments>" for attrs in (
            "a", "a=b", 'xmlns:a = "b" ', 'xmlns:a="b"xmlns:c="d"', 'a="b" a="b"', "xmlns:a='b'",
            'a="b', 'q:a="b"', 'xmlns:a=""', 'xmlns:xml="http://x"', 'xmlns:xmlns="http://x"',
            'xmlns:a="a" xmlns:a="b"', 'xmlns::a="b"', 'xmlns:="b"', 'xmlns:a:b="b"', 'a="&nope;"',
            'a="&"', 'a="<"', 'a="\x01"')),
        "<xml:Comments>x</xml:Comments>", "<Zol:Comments>0.5\x85</Zol:Comments>", "\x85",
        "\u2028", "&#133;", "<![CDATA[ ]]>"],
    "attrs": [' a="b"', ' xml:lang="en"', ' xml:base="x"', ' xml:id="x"',
              *(f' xmlns:xsi="{XSI}" xsi:{attr}' for attr in (
                  'schemaLocation="a b"', 'type="Zol:Zol"', 'type="Zol:Preamble"', 'nil="false"'))],
    "root": ["Color", "Preamble", "zol", "Zol:Zol"],
    "date": [
        "2020-01-02T03:04:05+00:00", "2020-01-02T03:04:05-00:00", "2020-01-02T03:04:05\x85",
        *(form.format("2020-01-02T03:04:05Z") for form in (
            "{}\x85", "\u2028{}", "&#133;{}", "{}&#x2028;", "\xa0{}", "<![CDATA[{}]]>",
            "<![CDATA[ {}]]>", "{}<![CDATA[\n]]>", " <![CDATA[{}]]>\n"))],
}
SUBSETS = [
    '<!ENTITY a "b">', '<!ENTITY b "b">', '<!ENTITY a "&b;"><!ENTITY b "&a;">', '<!ENTITY a "&a;">',
    '<!ENTITY a SYSTEM "none.txt">', '<!ENTITY a "x"><!ENTITY a "y">', '<!ENTITY a "<x/>">',
    '<!ENTITY a "<x>">', '<!ENTITY a "&#60;">', '<!ENTITY a "&#38;#60;">', '<!ENTITY a "&lt;">',
    '<!ENTITY % p "<!ENTITY a \'c\'>"> %p;', '<!ENTITY lt "x"><!ENTITY a "b">', "<!ELEMENT a ANY>",
    "<!ATTLIST x y CDATA #IMPLIED>", '<!NOTATION n SYSTEM "n">', "<!-- c -->", "<?pi?>", "<?pi x?>",
    "<!FOO>", "x", '<!ENTITY a "b"> <!ELEMENT x (y|z)*> ', "<!ENTITY a 'b'", "<!ENTITY a b>"]
FOREIGN_PIECES = [
    "", " ", "<x/>", "<q:x/>", '<x q:a="1"/>', "text", "<x/>text", "text<x/>", "<![CDATA[x]]>",
    "<!-- -->", "<?a?>", "<Zol:Unknown/>", "<Zol:Color/>", "<x><y></x></y>", "<x>",
    '<x a="1" a="2"/>', '<x a="<"/>', "<x>&nope;</x>", '<x a="&nope;"/>', "<x a=1/>",
    "<x>&#x10FFFF;</x>", "&#32;<x/>", "<x>&amp</x>", '<x xsi:type="q"/>', "<x/><x/>",
    "<x><![CDATA[<]]></x>", "<x><!-- y --><?z?></x>"]
