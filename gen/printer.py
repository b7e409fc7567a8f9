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


def block(lines, indent=0):
    """Lines as one field of a template."""
    return "\n".join(" " * indent + line for line in lines)


def wrap_comment(text, width=98):
    """A text as comment lines."""
    return "\n".join("// " + line for line in textwrap.wrap(text, width - 3))
