#!/usr/bin/env python3
"""Makes the comments of a header speak to Doxygen, as people read them.

    doxygen_filter.py HEADER > filtered

A comment describes what stands below it: a class, or all declarations up to the next comment, an
empty line or the end of their scope. A comment behind a member or an enumerator describes that one.
"""

import re
import sys

COMMENT = re.compile(r"( *)//(?!/) ?(.*)$")
BEHIND = re.compile(r"(.*[;,{(\w}]) +// (.*)$")
SCOPE = re.compile(r'(template <[^{;]*> |typedef )?(class|struct|union|namespace|extern "C")\b[^;()]*(\{|$)')
SEVERAL = re.compile(r" *[\w:<>]+ \w+( = [^,;()]+)?(, \w+( = [^,;()]+)?)+;")
END = re.compile(r" *(\}|public:|private:|protected:|#)")


def plain(text):
    """Comments of C as those of C++."""
    def lines(match):
        words = re.sub(r"^ *\* ?", "", match[2].rstrip(), flags=re.M)
        return "\n".join(f"{match[1]}// {line}".rstrip() for line in words.split("\n"))
    return re.sub(r"^([^\n]*?)/\* (.*?)\*/$", lambda match: lines(match) if not match[1].strip()
                  else f"{match[1]}// {match[2].rstrip()}", text, flags=re.M | re.S)


def indentation(line):
    return len(line) - len(line.lstrip())


def filtered(lines):
    """The same lines with marks on the comments, and with what shares one as a group."""
    at = 0
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
        if not declared:  # of a file, of a stretch of it, or at the end of a body
            yield from lines[first:at]
            continue
        if SCOPE.match(lines[declared[0][0]].strip()):
            declared = declared[:1]
        is_group = len(declared) > 1 or SEVERAL.match(lines[at])
        group = "/** @{ */ " if is_group else ""  # on a line that is there: numbers stay
        for line in lines[first:at]:
            yield f"{indent}{group}/// {COMMENT.match(line)[2]}".rstrip()
            group = ""
        if is_group:
            end = declared[-1][1]
            yield from map(mark_behind, lines[at:end - 1])
            yield mark_behind(lines[end - 1]) + " /** @} */"
            at = end


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


def mark_behind(line):
    match = BEHIND.match(line)
    if match and SEVERAL.match(match[1]):
        return f"/** @{{ */ /** {match[2]} */ {match[1]} /** @}} */"
    return f"{match[1]} ///< {match[2]}" if match else line


if __name__ == "__main__":
    with open(sys.argv[1], encoding="utf-8") as header:
        print("\n".join(filtered(plain(header.read()).split("\n"))))
