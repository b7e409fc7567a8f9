#!/usr/bin/env python3
"""Makes a static site of the Markdown pages and of the reference of the format.

    site.py --source DIR --reference DIR --version TEXT --out DIR
    site.py --check     whether the machine has what it takes

It opens from the disk, with no server. A page stands where its Markdown stands, so that links between
pages stay what they are; what else a page links to in the source is shown as a page of its own.
Where the API reference stands in OUT/api, the navigation leads there.
"""

import argparse
import html
import json
import os
import pathlib
import re
import shutil
import sys
import xml.etree.ElementTree as ElementTree

try:
    import markdown
    import pygments
except ImportError:
    sys.path.append("/usr/lib/python3/dist-packages")  # a Python that is not Debian's
    import markdown
    import pygments

import pygments.formatters
import pygments.lexers
from markdown.treeprocessors import Treeprocessor

HERE = pathlib.Path(__file__).resolve().parent
ASSETS = ("site.css", "site.js")
PAGE = HERE / "page.html"
PICTURES = (".png", ".svg", ".jpg")
NAVIGATION = (
    ("Zol", ("README.md", "docs/guide.md", "docs/formats.md", "docs/errors.md", "docs/xml.md",
             "docs/differences-from-xml-schema.md", "docs/speed.md")),
    ("With it", ("docs/command.md", "docs/report.md", "docs/colour.md", "docs/interchange.md")),
    ("From elsewhere", ("docs/dotnet.md", "docs/python.md", "docs/bridge.md", "docs/windows.md")),
    ("Examples", ("examples/documents/README.md", "examples/csharp/README.md",
                  "examples/lake/README.md")),
    ("Reference of the format", ("reference/*.md",)),
    ("Inside", ("ARCHITECTURE.md", "CONTRIBUTING.md", "model/schema/README.md", "bench/README.md",
                "colorimetry/data/README.md", "bridge/dotnet/README.md", "docs/README.md")),
)
API = "api/index.html"
API_TAGS = "api/zol.tag"


class Page:
    """One page: where it stands in the site, and what it was made of."""

    def __init__(self, name, path):
        self.name = name  # of the Markdown, below the source
        self.path = path
        self.address = address_of(name)
        self.text = path.read_text(encoding="utf-8")
        self.title = re.search(r"^# +(.+)$", self.text, re.M)[1].replace("`", "")
        self.headings = []  # (level, id, text)
        self.parts = []  # of the index: (id, heading, words)


def address_of(name):
    """Where the site has a page of that name."""
    if name == "README.md":
        return "index.html"
    return re.sub(r"\.md$", ".html", name) if name.endswith(".md") else name + ".html"


def slug(text, _separator="-"):
    """The anchor of a heading, as those who wrote the links expect it."""
    return re.sub(r"[^\w\- ]", "", text.lower()).replace(" ", "-")


def relative(address, page):
    return os.path.relpath(address, os.path.dirname(page) or ".").replace(os.sep, "/")


class Links(Treeprocessor):
    """Leads links to the pages of the site, and gives tables a frame that scrolls."""

    def __init__(self, md, site, page):
        super().__init__(md)
        self.site, self.page = site, page

    def run(self, root):
        for link in root.iter("a"):
            link.set("href", self.site.target(link.get("href"), self.page))
        for picture in root.iter("img"):
            picture.set("src", self.site.target(picture.get("src"), self.page))
            picture.set("loading", "lazy")
        for parent in list(root.iter()):
            for at, child in enumerate(list(parent)):
                if child.tag == "table":
                    frame = ElementTree.Element("div", {"class": "scroll", "tabindex": "0"})
                    frame.tail, child.tail = child.tail, None
                    frame.append(child)
                    parent[at] = frame
                    for cell in child.iter("th"):
                        cell.set("scope", "col")
                        if not "".join(cell.itertext()).strip():
                            cell.tag = "td"
                            del cell.attrib["scope"]


class Site:
    def __init__(self, source, reference, version, out):
        self.source, self.version, self.out = source, version, out
        self.roots = {"reference/": reference}
        self.sections = [(title, [Page(name, self.locate(name)) for name in self.matching(names)])
                         for title, names in NAVIGATION]
        self.pages = {page.name: page for _, pages in self.sections for page in pages}
        self.shown = {}  # other files of the source that a page links to, by name
        self.pictures = set()
        self.has_api = (out / API).exists()

    def matching(self, names):
        for name in names:
            if not name.endswith("*.md"):
                yield name
                continue
            place = name.removesuffix("*.md")
            found = sorted(path.name for path in self.locate(place).glob("*.md"))
            yield from (place + one for one in sorted(found, key=lambda one: one != "README.md"))

    def locate(self, name):
        for root, path in self.roots.items():
            if name.startswith(root):
                return path / name.removeprefix(root)
        return self.source / name

    def target(self, link, page):
        """Where a link of a page leads in the site."""
        if re.match(r"[a-z]+:|#", link):
            return link
        path, _, fragment = link.partition("#")
        name = os.path.normpath(os.path.join(os.path.dirname(page.name), path)).replace(os.sep, "/")
        place = self.locate(name)
        if place.is_dir():
            name = f"{name}/README.md"
        if name not in self.pages:
            if not self.locate(name).is_file():
                raise SystemExit(f"{page.name}: nothing stands at {link}")
            if name.endswith(PICTURES):
                self.pictures.add(name)
                return relative(name, page.address)
            self.shown[name] = self.locate(name)
        return relative(address_of(name), page.address) + (f"#{fragment}" if fragment else "")

    def write(self):
        self.out.mkdir(parents=True, exist_ok=True)
        bodies = {page.name: self.body_of(page) for page in self.pages.values()}
        for page in self.pages.values():
            self.put(page.address, self.framed(page.address, page.title, bodies[page.name], page))
        for name, path in self.shown.items():
            body = f"<h1><code>{html.escape(name)}</code></h1>\n{highlighted(path)}"
            self.put(address_of(name), self.framed(address_of(name), name, body))
        for name in self.pictures:
            (self.out / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(self.locate(name), self.out / name)
        for asset in ASSETS:
            shutil.copyfile(HERE / asset, self.out / asset)
        index = [[page.address, page.title, *part] for page in self.pages.values()
                 for part in page.parts]
        if self.has_api:
            index += parts_of_api(self.out / API_TAGS)
        self.put("search.js", "const zolIndex = " +
                 json.dumps(index, ensure_ascii=False, separators=(",", ":")) + ";\n")

    def put(self, address, text):
        path = self.out / address
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def body_of(self, page):
        md = markdown.Markdown(
            extensions=["tables", "fenced_code", "toc", "sane_lists", "codehilite"],
            extension_configs={"toc": {"slugify": slug},
                               "codehilite": {"guess_lang": False, "css_class": "code"}})
        md.treeprocessors.register(Links(md, self, page), "links", 0)
        body = md.convert(re.sub(r"<!--.*?-->\n?", "", page.text, flags=re.S))
        body = body.replace("<pre>", '<pre tabindex="0">')
        page.headings = list(flattened(md.toc_tokens))
        page.parts = list(parts_of(body))
        if page.name.startswith("reference/") and not page.name.endswith("README.md"):
            page.parts += rows_of(body)
        return body

    def framed(self, address, title, body, page=None):
        full = title if title == "Zol" else f"{title} \N{EN DASH} Zol"
        root = relative("index.html", address).removesuffix("index.html")
        return PAGE.read_text(encoding="utf-8").format(
            title=html.escape(full), root=root,
            styles=f'<link rel="stylesheet" href="{root}site.css">',
            navigation=self.navigation(address, page), body=body, version=html.escape(self.version))

    def navigation(self, address, page):
        lines = []
        for title, pages in self.sections:
            lines.append(f"<h2>{html.escape(title)}</h2>\n<ul>")
            for one in pages:
                if one is not page:
                    lines.append(f'<li><a href="{relative(one.address, address)}">'
                                 f"{html.escape(one.title)}</a></li>")
                    continue
                inner = "".join(f'<li><a href="#{anchor}">{text}</a></li>'
                                for level, anchor, text in one.headings if level == 2)
                lines.append(f'<li><a href="{relative(one.address, address)}" aria-current="page">'
                             f"{html.escape(one.title)}</a>{f'<ul>{inner}</ul>' if inner else ''}</li>")
            lines.append("</ul>")
        if self.has_api:
            lines.append(f'<h2>API</h2>\n<ul>\n<li><a href="{relative(API, address)}">'
                         "Headers, classes and functions</a></li>\n</ul>")
        return "\n".join(lines)


def flattened(tokens):
    for token in tokens:
        yield token["level"], token["id"], token["name"]
        yield from flattened(token["children"])


def parts_of(body):
    """What can be searched: a part for each heading, with the words below it."""
    pieces = re.split(r'<h[1-6] id="([^"]*)">(.*?)</h[1-6]>', body, flags=re.S)
    for anchor, heading, text in zip(pieces[1::3], pieces[2::3], pieces[3::3]):
        yield anchor, words(heading), words(text)


def rows_of(body):
    """The rows of the format, each a part of its own."""
    pieces = re.split(r'<h2 id="([^"]*)">(.*?)</h2>', body, flags=re.S)
    for anchor, heading, text in zip(pieces[1::3], pieces[2::3], pieces[3::3]):
        for row in re.findall(r"<tr>\s*<td>(.*?)</tr>", text, re.S):
            name, *cells = map(words, row.split("</td>"))
            yield anchor, f"{words(heading)}.{name}", " ".join(cells)


def parts_of_api(tags):
    """The classes and functions of the API. Members of the model are not among them: they are all of
    one pattern, and the reference of the format has the rows."""
    root = ElementTree.parse(tags).getroot()
    model = {one.text for one in root.iterfind("compound[name='Zol.h']/class")}
    parts = {}
    for compound in root:
        kind, name, address = compound.get("kind"), *map(compound.findtext, ("name", "filename"))
        if kind in ("class", "struct"):
            outer, _, last = name.rpartition("::")
            parts[name] = [f"api/{address}", outer or "API", "content", last, ""]
        for member in () if name in model else compound.iterfind("member"):
            own = member.findtext("name")
            if member.get("kind") not in ("function", "enumeration", "typedef", "define"):
                continue
            if member.findtext("anchorfile") == address and own != name.rpartition("::")[2]:
                parts.setdefault(f"{name}::{own}", [
                    f"api/{address}", name, member.findtext("anchor"), own,
                    f"{member.findtext('type')} {own}{member.findtext('arglist')}"])
    return list(parts.values())


def words(markup):
    apart = re.sub(r"</?(a|code|em|span|strong)\b[^>]*>", "", markup)
    return " ".join(html.unescape(re.sub(r"<[^>]*>", " ", apart)).split())


def highlighted(path):
    """A file of the source as markup."""
    text = path.read_text(encoding="utf-8", errors="replace")
    try:
        lexer = pygments.lexers.get_lexer_for_filename(path.name)
    except pygments.util.ClassNotFound:
        lexer = pygments.lexers.TextLexer()
    formatter = pygments.formatters.HtmlFormatter(cssclass="code")
    return pygments.highlight(text, lexer, formatter).replace("<pre>", '<pre tabindex="0">')


def main():
    if sys.argv[1:] == ["--check"]:
        return
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--source", type=pathlib.Path, required=True)
    parser.add_argument("--reference", type=pathlib.Path, required=True)
    parser.add_argument("--version", required=True)
    parser.add_argument("--out", type=pathlib.Path, required=True)
    options = parser.parse_args()
    Site(options.source, options.reference, options.version, options.out).write()


if __name__ == "__main__":
    main()
