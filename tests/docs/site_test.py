#!/usr/bin/env python3
"""The static site: site_test.py SITE LinksTest|BrowserTest [unittest options].

Where Chromium or chromedriver is missing, BrowserTest ends with status 77; without axe-core the test
that needs it is skipped.
"""

import html.parser
import pathlib
import re
import sys
import unittest
import urllib.parse

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "tools"))

import browser  # noqa: E402

SKIPPED = 77
SITE = None
# One of each kind of page that Doxygen makes.
API_PAGES = ("api/index.html", "api/files.html", "api/annotated.html", "api/classlmx_1_1c__decimal.html",
             "api/namespacezol__v2.html", "api/dates_8h_source.html")


class Links(html.parser.HTMLParser):
    """The anchors of a page, and where it leads."""

    def __init__(self, path):
        super().__init__()
        self.ids, self.targets, self.headings = set(), [], []
        self.feed(path.read_text(encoding="utf-8", errors="replace"))

    def handle_starttag(self, tag, attributes):
        given = dict(attributes)
        if given.get("id") is not None:
            self.ids.add(given["id"])
        if tag == "a" and given.get("name"):
            self.ids.add(given["name"])
        self.targets += [given[key] for key in ("href", "src") if given.get(key)]
        if re.fullmatch("h[1-6]", tag):
            self.headings.append(int(tag[1]))


class LinksTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.pages = {path: Links(path) for path in sorted(SITE.rglob("*.html"))}

    def test_every_link_arrives(self):
        self.assertGreater(len(self.pages), 30)
        count = 0
        for path, page in self.pages.items():
            for target in page.targets:
                parts = urllib.parse.urlsplit(target)
                if parts.scheme:
                    self.assertIn(parts.scheme, ("https", "http", "mailto", "data", "javascript"))
                    continue
                count += 1
                name = urllib.parse.unquote(parts.path)
                goal = (path.parent / name).resolve() if name else path
                with self.subTest(f"{path.relative_to(SITE)}: {target}"):
                    self.assertTrue(goal.is_file())
                    if parts.fragment == "nested-classes" and SITE / "api" in path.parents:
                        continue  # Doxygen counts nested classes that it does not show
                    if parts.fragment and goal in self.pages:
                        self.assertIn(urllib.parse.unquote(parts.fragment), self.pages[goal].ids)
        self.assertGreater(count, 2000)

    def test_the_index_leads_to_anchors(self):
        text = (SITE / "search.js").read_text(encoding="utf-8")
        parts = re.findall(r'\["([^"]+\.html)","(?:[^"\\]|\\.)*","([^"]*)"', text)
        self.assertGreater(len(parts), 300)
        for address, anchor in parts:
            with self.subTest(f"{address}#{anchor}"):
                self.assertIn(anchor, self.pages[SITE / address].ids)

    def test_headings_go_down_by_steps(self):
        for path, page in self.pages.items():
            if path.parent == SITE / "api" or SITE / "api" in path.parents:
                continue
            # Those of the navigation stand before those of the page.
            levels = page.headings[page.headings.index(1):]
            with self.subTest(path.relative_to(SITE)):
                self.assertEqual(levels.count(1), 1)
                for above, below in zip(levels, levels[1:]):
                    self.assertLessEqual(below, above + 1)

    def test_every_page_of_the_source_is_there(self):
        for place in ("docs", "examples/documents", "examples/csharp", "examples/lake", "."):
            for path in sorted((ROOT / place).glob("*.md")):
                name = path.relative_to(ROOT).with_suffix(".html")
                name = pathlib.Path("index.html") if str(name) == "README.html" else name
                self.assertTrue((SITE / name).is_file(), f"{path} is on no page of the navigation")


class BrowserTest(unittest.TestCase):
    """What a person meets who opens it from the disk."""

    @classmethod
    def setUpClass(cls):
        cls.browser = browser.Browser()
        cls.addClassCleanup(cls.browser.__exit__)
        # A machine may have other work to do while axe looks through a page.
        cls.browser.ask("POST", cls.browser.session + "/timeouts", {"script": 110_000})

    def show(self, name, width, dark=False):
        self.browser.look(width, dark=dark)
        self.browser.open((SITE / name).as_uri())

    def test_nothing_is_wider_than_a_phone(self):
        for name in ("index.html", "docs/guide.html", "docs/errors.html", "docs/command.html",
                     "reference/README.html", "reference/spaces.html", "ARCHITECTURE.html",
                     "model/reflection.h.html", *API_PAGES):
            with self.subTest(name):
                self.show(name, 390)
                self.assertEqual(self.browser.evaluate(
                    "return document.documentElement.scrollWidth"), 390)

    def test_the_menu_of_a_phone_opens(self):
        self.show("index.html", 390)
        is_shown = "return document.getElementById('pages').checkVisibility()"
        self.assertFalse(self.browser.evaluate(is_shown))
        self.browser.evaluate("document.getElementById('menu').click()")
        self.assertTrue(self.browser.evaluate(is_shown))

    def test_search_finds(self):
        for name in ("index.html", "docs/guide.html"):
            self.show(name, 1280)
            for wanted, expected in (("ReflectancePointType", "ReflectancePointType"),
                                     ("aperture mm", "DeviceSettings.Aperture"),
                                     ("wavelength", ".Wavelength"),
                                     ("SaveFile", "zol_v2: saveFile"),
                                     ("c_decimal", "lmx: c_decimal"),
                                     ("thread", "Threads")):
                with self.subTest(f"{name}: {wanted}"):
                    found = self.browser.evaluate("""
                        search.value = arguments[0];
                        search.dispatchEvent(new Event('input'));
                        return [...found.querySelectorAll('a')].map(link => link.textContent)""",
                                                  wanted)
                    self.assertTrue(any(expected in text for text in found[:3]), found)
            self.browser.evaluate("search.form.requestSubmit()")
            self.assertRegex(self.browser.evaluate("return location.href"), r"guide\.html#")
            self.show(name, 1280)
            self.assertEqual(self.browser.evaluate("""
                search.value = 'qqqzzz';
                search.dispatchEvent(new Event('input'));
                return found.textContent"""), "Nothing was found.")

    def test_axe_finds_nothing(self):
        if not browser.AXE.exists():
            self.skipTest("needs axe-core")
        for name, width, dark in (("index.html", 390, False), ("docs/guide.html", 1280, True),
                                  ("reference/substrates.html", 390, True),
                                  ("reference/README.html", 1280, False),
                                  ("model/reflection.h.html", 1280, True),
                                  ("model/reflection.h.html", 390, False),
                                  *zip(API_PAGES, (1280, 390) * 3, (False, False, True) * 2)):
            self.show(name, width, dark)
            self.browser.evaluate("search.value = 'nm'; search.dispatchEvent(new Event('input'))")
            with self.subTest(f"{name}, {width}"):
                self.assertEqual(self.browser.violations(), [])


if __name__ == "__main__":
    SITE = pathlib.Path(sys.argv.pop(1)).resolve()
    if sys.argv[1].startswith("BrowserTest") and not browser.available():
        print("needs Chromium and chromedriver", file=sys.stderr)
        sys.exit(SKIPPED)
    unittest.main()
