"""Names the difference behind two verdicts that are not the same.

Each kind stands, by its name and with its reason, in docs/differences-from-xml-schema.md. A kind is
told by what the validator says about the document and by what the library says, never by how the
document came about.
"""

import dataclasses
import re
from typing import Callable, List

XSI = r"\{http://www\.w3\.org/2001/XMLSchema-instance\}"
DATE = r"[-+]?\d+-\d\d-\d\dT\d\d:\d\d:\d\d(\.\d*)?(Z|[-+]\d\d:\d\d)?"
LAST_REFERENCE = 0x100000


@dataclasses.dataclass
class Case:
    """A document and what both say about it."""
    text: str
    messages: List[str]  # the validator's, without file and line; none if it accepts
    code: int            # of loading
    written: str         # the code of writing it again, or "-"
    item: str = ""

    def values_of_item(self):
        """The texts of all elements and attributes that may be the one the library names."""
        name = re.escape(self.item)
        return (re.findall(rf"<{name}(?:\s[^<>]*)?>([^<]*)</", self.text)
                + re.findall(rf'\b{name}="([^"]*)"', self.text)) if self.item else []


@dataclasses.dataclass
class Kind:
    name: str
    explains: Callable  # (Case, message) -> bool


class Differences:
    """All kinds, for one model: `accepted` are documents that the library alone reads, `refused`
    those that the validator alone accepts, `written` what the library writes and the validator
    refuses."""

    def __init__(self, model):
        rows = [row for info in model.classes.values() for row in info.rows]
        may_be_empty = [row.name for row in rows
                        if row.type_class is not None and row.type_class.has("may-be-empty")]
        families = [alt.name for row in rows if row.required and row.type_class is not None
                    and row.type_class.is_substitution for alt in row.type_class.alternatives]
        values = [row.name for row in rows if row.kind in ("elem", "alt", "mark") and
                  (row.is_simple or row.kind == "mark")]
        blank = [row.name for row in rows if row.type_class is not None and row.type_class.is_blank]
        self.accepted = accepted_kinds(*map(one_of, (may_be_empty, families, values, blank)))
        self.refused = refused_kinds()
        self.written = written_kinds()

    def names(self):
        return [kind.name for kind in self.accepted + self.refused + self.written]

    def explain(self, case):
        """The names of the kinds, or None if one thing at least has no kind."""
        if case.messages:
            return self._names(self.accepted, case, case.messages)
        return self._names(self.refused, case, [""])

    def explain_written(self, case):
        return self._names(self.written, case, case.messages)

    @staticmethod
    def _names(kinds, case, messages):
        names = set()
        for message in messages:
            name = next((kind.name for kind in kinds if kind.explains(case, message)), None)
            if name is None:
                return None
            names.add(name)
        return names


def one_of(names):
    return "(?:" + "|".join(sorted(set(map(re.escape, names)))) + ")"


def says(pattern):
    """A kind that the validator's message alone tells."""
    compiled = re.compile(pattern)
    return lambda case, message: compiled.search(message) is not None


def unfinished(pattern):
    """The same, where the library notices on writing."""
    compiled = re.compile(pattern)
    return lambda case, message: case.written == "46" and compiled.search(message) is not None


def other_line_end(case, message):
    line_end = "[\x85\u2028]"
    return (re.search(f"'[^']*{line_end}[^']*' is not a valid value", message) is not None
            or re.search(f">\\s*{line_end}+\\s*<", case.text) is not None
            and "Character content other than whitespace" in message)


def accepted_kinds(may_be_empty, families, values, blank):
    element = r"Element '\{[^}]*\}"
    return [
        Kind("empty-element", unfinished(rf"{element}{may_be_empty}': Missing child element")),
        Kind("missing-member", unfinished(
            rf"(Missing child element|This element is not expected).*\}}{families}[ ,*]")),
        Kind("nil-elsewhere", says("The element is not 'nillable'")),
        Kind("nil-value", says(rf"attribute '{XSI}nil': .*'xs:boolean'")),
        Kind("nil-blank", says("no character or element content|Neither character nor element")),
        Kind("type-not-asked-for", says(rf"attribute '{XSI}type': ")),
        Kind("instance-attribute",
             says(rf"attribute '({XSI}|xsi:)[^']+': The attribute .* is not allowed")),
        Kind("repeated-instance-attribute",
             says(r"^parser error : Attribute \w+:(nil|type) redefined")),
        Kind("namespace-declaration",
             says(r"attribute 'xmlns:[^']*': The attribute .* is not allowed")),
        Kind("attribute-of-a-value", says(rf"{element}{values}', attribute .* is not allowed")),
        Kind("blank-in-empty-class", says(rf"{element}{blank}': Character content is not allowed")),
        Kind("date-fields",
             says(rf"'{DATE}' is not a valid value of the atomic type '.*ZonedDateTime'")),
        Kind("other-line-ends", other_line_end),
        Kind("base64-last-bits", says("is not a valid value of the atomic type 'xs:base64Binary'")),
        *[Kind(name, says(f"^(parser|namespace) error : {pattern}")) for name, pattern in (
            ("less-than-in-attribute", "Unescaped '<' not allowed in attributes values"),
            ("missing-semicolon",
             "(EntityRef: expecting ';'|CharRef: invalid (hexa)?decimal value)"),
            ("end-of-tag", "error parsing attribute name"),
            ("attributes-without-blank", "attributes construct error"),
            ("repeated-attribute-of-a-value", r"Attribute [^ ]+ redefined"),
            ("after-the-root", "Extra content at the end of the document"),
            ("hyphens-in-comment", "Double hyphen within comment"),
            # A zero byte, and a byte that the declared encoding lacks, end the validator's input.
            ("character-range",
             "(xmlParseCharRef: invalid xmlChar value|PCDATA invalid Char value"
             "|Char 0x[0-9A-F]+ out of allowed range|invalid character in attribute"
             "|Premature end of data in tag Purpose)"),
            ("section-end-in-text", r"Sequence '\]\]>' not allowed in content"),
            ("declaration", "(XML declaration allowed only at the start|standalone accepts only)"),
            ("instruction-name", "(xmlParsePI : no target name|Invalid PI name)"),
            ("document-type", "(internal error: xmlParseInternalSubset|Entity value required)"),
            ("reference-nobody-reads", "(Entity '.*' not defined|xmlParseEntityRef: no name)"),
        )],
    ]


def refused_kinds():
    def refers_beyond(text):
        numbers = re.findall(r"&#(?:x([0-9A-Fa-f]+)|([0-9]+));", text)
        return any((int(h, 16) if h else int(d)) > LAST_REFERENCE for h, d in numbers)

    def any_value(pattern):
        return lambda case, _: any(re.fullmatch(pattern, v.strip()) for v in case.values_of_item())

    def when(codes, condition):
        return lambda case, message: case.code in codes and condition(case, message)

    return [
        Kind("reference-between-elements", when((10, 16, 21, 31), lambda case, _: re.search(
            r">\s*(&#(32|x20|x0*[9AaDd]|9|10|13);\s*)+<", case.text))),
        Kind("last-plane", when((28, 29), lambda case, _: refers_beyond(case.text))),
        Kind("another-root", when(
            (16,), lambda case, _: case.item.rpartition(":")[2] not in ("", "Zol"))),
        Kind("xml-version", when((14,), lambda case, _: 'version="1.0"' not in case.text[:100])),
        Kind("encoding", when((6,), lambda case, _: "encoding=" in case.text[:100])),
        Kind("stylesheet", when((13,), lambda case, _: "<?xml-" in case.text)),
        Kind("base64-blank-in-padding", when((35,), any_value(r"[A-Za-z0-9+/\s]*=\s+="))),
        Kind("blank-in-section", when((35,), lambda case, _: re.search(
            r"<!\[CDATA\[(\s[^]]*|[^]]*\s)\]\]>", case.text))),
        Kind("markup-in-mark", when((10,), lambda case, _: re.search(
            rf"<{re.escape(case.item)}>\s*<[!?]", case.text))),
        Kind("xmllint-exponent", when((35,), any_value(r"[-+]?[0-9.]+[eE][-+]?"))),
        Kind("xmllint-nan", when((37,), any_value("NaN"))),
        Kind("xmllint-base64", when((35,), any_value(r"(?s).*[^A-Za-z0-9+/=\s].*"))),
    ]


def written_kinds():
    return [
        Kind("zone-of-zero", says(rf"\[facet 'pattern'\] The value '{DATE}'")),
        Kind("negative-year", says(r"'0*-\d+-\d\d-\d\dT.*ZonedDateTime")),
        Kind("seconds-rounded", says(r":60(Z|[-+]\d\d:\d\d)?'.*ZonedDateTime")),
        Kind("fourteen-digits", says(r"\[facet '(min|max)(In|Ex)clusive'\]")),
    ]
