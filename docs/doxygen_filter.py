#!/usr/bin/env python3
"""Makes the comments of a header speak to Doxygen, as people read them.

    doxygen_filter.py HEADER > filtered

The comment at the top describes the header. Every other one describes what stands below it: a class,
a macro, or all declarations up to the next comment, an empty line or the end of their scope. A
comment behind a member or an enumerator describes that one.
"""

import html
import pathlib
import re
import sys

COMMENT = re.compile(r"( *)//(?!/) ?(.*)$")
BEHIND = re.compile(r"(.*[;,{(\w}]) +// (?!namespace|extern)(.*)$")
SCOPE = re.compile(r'(template <[^{;]*> |typedef )?(class|struct|union|namespace|extern "C")\b[^;()]*(\{|$)')
SEVERAL = re.compile(r" *[\w:<>]+ \w+( = [^,;()]+)?(, \w+( = [^,;()]+)?)+;")
END = re.compile(r" *(\}|public:|private:|protected:|#(?!define))")


def plain(text):
    """Comments of C as those of C++."""
    def lines(match):
        words = re.sub(r"^ *\* ?", "", match[2].rstrip(), flags=re.M)
        return "\n".join(f"{match[1]}// {line}".rstrip() for line in words.split("\n"))
    return re.sub(r"^([^\n]*?)/\* (.*?)\*/$", lambda match: lines(match) if not match[1].strip()
                  else f"{match[1]}// {match[2].rstrip()}", text, flags=re.M | re.S)


def indentation(line):
    return len(line) - len(line.lstrip())


def filtered(lines, name):
    """The same lines with marks on the comments, each before everything that it describes."""
    at = 0
    while at < len(lines) and COMMENT.match(lines[at]):
        at += 1
    yield from commented("", f"@file {name} ", words(lines[:at]))
    while at < len(lines):
        match = COMMENT.match(lines[at])
        if match is None:
            yield mark_behind(lines[at])
            at += 1
            continue
        indent, first = match[1], at
        while at < len(lines) and (found := COMMENT.match(lines[at])) and found[1] == indent:
            at += 1
        declared = list(declarations(lines, at, len(indent)))
        if not declared:  # of a stretch of the file, or at the end of a body
            yield from lines[first:at]
            continue
        if SCOPE.match(lines[declared[0][0]].strip()) or lines[declared[0][0]].startswith("#"):
            declared = declared[:1]
        text = words(lines[first:at])
        if len(declared) == 1 and not SEVERAL.match(lines[at]):
            yield from commented(indent, "", text)
            continue
        yield from lines[first:at]  # the text goes before each, on a line that is there: numbers stay
        text = " ".join(code_marked(line) or "<p>" for line in text)
        starts = {start for start, _ in declared}
        for at in range(at, declared[-1][1]):
            line = mark_behind(lines[at])
            yield described(line, text) if at in starts else line
        at += 1


def words(comment):
    return [COMMENT.match(line)[2] for line in comment]


def commented(indent, mark, text):
    """As many lines as the text has, with the mark before it."""
    lines = list(marked(text))
    for at, line in enumerate(lines):
        begin, end = "" if at else f"{indent}/** {mark}", "" if at + 1 < len(lines) else " */"
        yield f"{begin}{line}{end}"


def marked(text):
    """The text with its samples, which are set in, as they stand, and its code as code."""
    for before, line, after in zip(["", *text], text, [*text[1:], ""]):
        if not line.startswith("  "):
            yield code_marked(line)
            continue
        begin = "" if before.startswith("  ") else "@verbatim "
        end = "" if after.startswith("  ") else " @endverbatim"
        yield f"{begin}{line[2:]}{end}"


def code_marked(line):
    return re.sub("`([^`]+)`", lambda code: f"<code>{html.escape(code[1], quote=False)}</code>", line)


def declarations(lines, at, indent):
    """Where each begins and ends, up to a line that is at this indentation and is none."""
    while at < len(lines):
        line = lines[at]
        if not line.strip() or indentation(line) != indent or COMMENT.match(line) or END.match(line):
            return
        end = at + 1
        while end < len(lines) and (indentation(lines[end]) > indent or
                                    re.match(r" *\}", lines[end]) and
                                    indentation(lines[end]) == indent or
                                    lines[end - 1].strip().startswith("template")):
            if not lines[end].strip():
                break
            end += 1
        yield at, end
        at = end


def described(line, text):
    """A declaration behind its description; if it declares several, they are a group."""
    one = f"/** {text} */ {line}"
    return f"/** @{{ */ {one} /** @}} */" if SEVERAL.match(line) else one


def mark_behind(line):
    match = BEHIND.match(line)
    if match and SEVERAL.match(match[1]):
        return described(match[1], match[2])
    return f"{match[1]} ///< {code_marked(match[2])}" if match else line


if __name__ == "__main__":
    with open(sys.argv[1], encoding="utf-8") as header:
        path = pathlib.PurePath(sys.argv[1])
        name = f"{path.parent.name}/{path.name}"
        print("\n".join(filtered(plain(header.read()).split("\n"), name)))
