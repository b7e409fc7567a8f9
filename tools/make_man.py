#!/usr/bin/env python3
"""Makes the manual pages, one of the program and one of each command, out of the one text zol.1.

make_man.py zol.1 _zol VERSION OUT_DIRECTORY    writes the pages
make_man.py zol.1 --list                        prints their names

What a command does in one line is said by the completion _zol.
"""

import pathlib
import re
import sys


def sections(text, macro):
    """Behind what comes first, the heading and the body of each section."""
    head, *rest = re.split(rf"^\.{macro} (.*)\n", text, flags=re.M)
    return head, list(zip(rest[::2], rest[1::2]))


def commands_of(parts):
    return {heading.split()[1]: body for heading, body in sections(parts["COMMANDS"], "SS")[1]}


def page(name, title, version, parts):
    text = f'.TH {name.upper()} 1 "" "Zol {version}" "User Commands"\n'
    for heading, body in {"NAME": f"{name} \\- {title}\n".replace("zol-", "zol\\-"), **parts}.items():
        if body:
            text += f".SH {heading}\n{body}"
    return text


def pages(text, completion, version):
    parts = dict(sections(text, "SH")[1])
    summaries = dict(re.findall(r"^    '(\w+):(.*)'$", completion, re.M))
    usages = re.split(r"^\.br\n", parts["SYNOPSIS"], flags=re.M)
    examples = re.findall(r"^\.TP\n\.B zol (\w+)(.*\n(?:(?!\.TP).*\n)*)", parts["EXAMPLES"], re.M)
    shared = {"EXIT STATUS": parts["EXIT STATUS"]}

    commands = commands_of(parts)
    listed = "".join(f".TP\n.BR zol\\-{command} (1)\n{summaries[command][0].upper()}{summaries[command][1:]}.\n"
                     for command in commands)
    yield "zol", page("zol", parts["NAME"].split("\\- ", 1)[1].strip(), version, {
        "SYNOPSIS": ".B zol\n.I COMMAND\n.RI [ OPTION \" ...] [\" FILE \" ...]\"\n.br\n" + usages[-1],
        "DESCRIPTION": parts["DESCRIPTION"], "COMMANDS": listed, **shared,
        "EXAMPLES": parts["EXAMPLES"]})
    for command, body in commands.items():
        (usage,) = [usage for usage in usages if usage.startswith(f".B zol {command}\n")]
        described, *options = re.split(r"^(?=\.TP\n)", body, maxsplit=1, flags=re.M)
        yield f"zol-{command}", page(f"zol-{command}", summaries[command], version, {
            "SYNOPSIS": usage, "DESCRIPTION": described, "OPTIONS": "".join(options), **shared,
            "EXAMPLES": "".join(f".TP\n.B zol {name}{rest}" for name, rest in examples
                                if name == command),
            "SEE ALSO": ".BR zol (1)\n"})


def main():
    text = pathlib.Path(sys.argv[1]).read_text()
    if sys.argv[2] == "--list":
        print("zol.1", *(f"zol-{name}.1" for name in commands_of(dict(sections(text, "SH")[1]))),
              sep="\n")
        return
    completion, version, out = pathlib.Path(sys.argv[2]).read_text(), sys.argv[3], sys.argv[4]
    for name, made in pages(text, completion, version):
        (pathlib.Path(out) / f"{name}.1").write_text(made)


if __name__ == "__main__":
    main()
