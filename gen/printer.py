"""Prints templates: raw text that looks like its output, with $name$ for what varies."""

import re
import textwrap

_FIELD = re.compile(r"\$(\w+)\$")


class Printer:
    """Collects the text of one output file."""

    def __init__(self):
        self._parts = []

    def emit(self, template, **fields):
        """Adds a template, stripped of its own indentation and of the line break at either end.

        A field that stands alone on a line may be several lines long, which all get the
        indentation of that line; if it is empty, the line goes.
        """
        for line in textwrap.dedent(template).strip("\n").split("\n"):
            alone = re.fullmatch(r"( *)\$(\w+)\$", line)
            if alone is None:
                self._parts.append(_FIELD.sub(lambda m: str(fields[m[1]]), line).rstrip())
                continue
            text = str(fields[alone[2]]).strip("\n")
            if text:
                self._parts.extend((alone[1] + part).rstrip() for part in text.split("\n"))

    def raw(self, text, indent=0):
        """Adds lines as they stand, each indented by so many blanks."""
        for line in text.strip("\n").split("\n"):
            self._parts.append((" " * indent + line).rstrip())

    def blank(self):
        """An empty line, but never two of them and none at the top."""
        if self._parts and self._parts[-1] != "":
            self._parts.append("")

    def text(self):
        return "\n".join(self._parts).strip("\n") + "\n"

    def cpp_text(self):
        """The text with lines that are too long for C++ broken where a person would."""
        return "\n".join(part for line in self.text().split("\n") for part in fit_cpp(line))


def block(lines, indent=0):
    """Lines as one field of a template."""
    return "\n".join(" " * indent + line for line in lines)


def wrap_list(items, width=94):
    """Items with commas between them, as many to a line as fit."""
    lines, line = [], ""
    for item in items:
        if line and len(line) + 2 + len(item) > width:
            lines.append(line + ",")
            line = item
        else:
            line = f"{line}, {item}" if line else item
    return "\n".join(lines + [line])


CPP_COLUMNS = 100
_ONE_LINE_BODY = re.compile(r"( *)([^\"]*?\)(?: const)?(?: : .*?)?) \{ (.+) \}$")
_BREAKS = (" && ", " || ", ", ", " = ", " : ", ") ")


def fit_cpp(line):
    """One line of C++ as the lines that keep to the columns."""
    if len(line) <= CPP_COLUMNS or line.lstrip().startswith(("//", "Row(")):
        return [line]  # a row of a table keeps its line
    body = _ONE_LINE_BODY.match(line)
    if body and ";" in body[3]:
        indent = body[1]
        return (fit_cpp(f"{indent}{body[2]} {{") + fit_cpp(f"{indent}  {body[3]}") + [indent + "}"])
    indent = len(line) - len(line.lstrip())
    at = max((_last_break(line, mark, indent) for mark in _BREAKS[:3]), default=-1)
    if at < 0:
        at = max((_last_break(line, mark, indent) for mark in _BREAKS[3:]), default=-1)
    if at < 0:
        at = _last_break(line, "(", indent)
    if at < 0:
        return [line]
    return [line[:at].rstrip()] + fit_cpp(" " * (indent + 4) + line[at:].lstrip())


def _last_break(line, mark, indent):
    """The column behind the last such mark that fits and stands outside of a string."""
    at = line.rfind(mark, indent + 1, CPP_COLUMNS)
    while at >= 0 and line.count('"', 0, at) % 2 == 1:
        at = line.rfind(mark, indent + 1, at)
    return at + len(mark) if at >= 0 else -1


def remarked(code, text):
    """A line of code with a comment behind it, or above it where it would be too long."""
    line = f"{code}  // {text}"
    return line if len(line) <= CPP_COLUMNS - 4 else f"{wrap_comment(text)}\n{code}"


def wrap_comment(text, width=98):
    """A text as comment lines."""
    return "\n".join("// " + line for line in textwrap.wrap(text, width - 3))
