"""The documentation: everything public has some, what has none is noticed, and no link leads nowhere.

Usage: documentation_test.py DOXYGEN DOXYFILE, where the Doxyfile is the one of the build.
"""

import html
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import urllib.parse
import xml.etree.ElementTree
from html.parser import HTMLParser

doxygen, doxyfile = sys.argv.pop(1), pathlib.Path(sys.argv.pop(1))
source = pathlib.Path(__file__).resolve().parents[2]


def copy_sources(directory):
    """Copies what the documentation is written from."""
    for name in ("docs", "examples", "include", "tavrin_driver"):
        shutil.copytree(source / name, directory / name)
    shutil.copy(source / "CHANGELOG.md", directory)


def write_documentation(directory, inputs=None, sources=source):
    """Runs Doxygen into a directory; returns its exit status and what it complains about."""
    settings = doxyfile.read_text() + f'\nOUTPUT_DIRECTORY = "{directory}"\nGENERATE_XML = YES\n'
    if inputs:
        settings += f'INPUT = "{inputs}"\nSTRIP_FROM_PATH = "{inputs}"\nUSE_MDFILE_AS_MAINPAGE =\n'
    run = subprocess.run([source / "docs/run-doxygen", sources, doxygen, "-"], input=settings, capture_output=True, text=True)
    return run.returncode, run.stdout + run.stderr


def is_blank(element):
    return element is None or not "".join(element.itertext()).strip()


def undocumented(directory):
    """What Doxygen does not warn about: files and values of enumerations without a description."""
    for file in sorted(pathlib.Path(directory, "xml").glob("*.xml")):
        root = xml.etree.ElementTree.parse(file).getroot()
        elements = [c for c in root.iter("compounddef") if c.get("kind") == "file"]
        elements += [v for v in root.iter("enumvalue") if v.get("prot") != "private"]
        for element in elements:
            if is_blank(element.find("briefdescription")) and is_blank(element.find("detaileddescription")):
                name = element.find("compoundname" if element.tag == "compounddef" else "name").text
                if not name.endswith(".md"):
                    yield name


class Links(HTMLParser):
    """The anchors of a page, and where its links lead."""

    def __init__(self, page):
        super().__init__()
        self.anchors, self.targets = set(), []
        self.feed(page.read_text())

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        self.anchors |= {attributes[name] for name in ("id", "name") if name in attributes}
        self.targets += [attributes[name] for name in ("href", "src") if name in attributes]


class Documentation(unittest.TestCase):
    """The documentation of sources below a directory with spaces and letters beyond ASCII in its name."""

    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.sources = pathlib.Path(cls.scratch.name, "Verzeichnis für Quellen")
        copy_sources(cls.sources)
        cls.result = write_documentation(cls.scratch.name, sources=cls.sources)
        cls.html = pathlib.Path(cls.scratch.name, "html")

    @classmethod
    def tearDownClass(cls):
        cls.scratch.cleanup()

    def test_is_written_without_a_warning(self):
        self.assertEqual(self.result, (0, ""))

    def test_describes_every_header_and_every_value(self):
        self.assertEqual(list(undocumented(self.scratch.name)), [])

    def test_has_a_page_for_every_text_below_docs(self):
        found = [re.search("<title>.*?: (.*)</title>", page.read_text()) for page in self.html.glob("*.html")]
        titles = {html.unescape(title.group(1)) for title in found}
        texts = [*source.glob("docs/**/*.md"), source / "CHANGELOG.md"]
        headings = {text: re.sub(r"^# | *{#\w+}$|`", "", text.read_text().splitlines()[0]) for text in texts}
        missing = [text for text in texts if headings[text] not in titles]
        self.assertGreater(len(texts), 8)
        self.assertEqual(missing, [])

    def test_has_no_dead_links(self):
        pages = {page.name: Links(page) for page in self.html.glob("*.html")}
        self.assertGreater(len(pages), 20)
        dead = []
        for name, page in pages.items():
            for target in page.targets:
                url = urllib.parse.urlsplit(target)
                if url.scheme or url.netloc or target in ("#", "javascript:void(0)"):
                    continue
                file = urllib.parse.unquote(url.path) or name
                found = (self.html / file).is_file()
                if found and url.fragment and file in pages:
                    found = urllib.parse.unquote(url.fragment) in pages[file].anchors
                if not found:
                    dead.append(f"{name}: {target}")
        self.assertEqual(dead, [])

    def test_names_nothing_of_the_machine_it_was_written_on(self):
        for page in self.html.rglob("*.html"):
            self.assertFalse(str(source) in page.read_text(), page.name)
            self.assertFalse(self.scratch.name in page.read_text(), page.name)


class Mistakes(unittest.TestCase):
    """What the checks above are there to find, each in a header of its own."""

    mistakes = {
        "A class": "class Undocumented {\n public:\n  /// F.\n  void f();\n};",
        "A member function": "/// C.\nclass C {\n public:\n  void undocumented();\n};",
        "A member variable": "/// C.\nstruct C {\n  int undocumented;\n};",
        "A member of a namespace": "namespace zq {\nvoid undocumented();\n}",
        "A free function": "void undocumented();",
        "A macro": "#define UNDOCUMENTED 1",
        "An enumeration": "enum class Undocumented { /** V. */ value };",
        "A value": "/// E.\nenum class E {\n  undocumented\n};",
        "A parameter of another name": "/// F.\n/// @param wrong what\nvoid f(int right);",
        "A parameter left out": "/// F.\n/// @param a what\nvoid f(int a, int b);",
        "A link that leads nowhere": "/// See @ref Nobody.\nvoid f();",
    }

    def complaints(self, header):
        with tempfile.TemporaryDirectory() as scratch:
            inputs = pathlib.Path(scratch, "source")
            inputs.mkdir()
            (inputs / "header.h").write_text(header + "\n")
            (inputs / "zq.dox").write_text("/// @file\n/// F.\n\n/// @namespace zq\n/// N.\n")
            status, text = write_documentation(scratch, inputs)
            self.assertEqual(status != 0, text != "", text)
            return text + "".join(undocumented(scratch))

    def test_are_found(self):
        for what, code in self.mistakes.items():
            with self.subTest(what):
                self.assertNotEqual(self.complaints("/// @file\n/// H.\n" + code), "")

    def test_are_found_in_a_header_without_a_description(self):
        self.assertNotEqual(self.complaints("/// F.\nvoid f();"), "")

    def test_are_not_found_where_there_are_none(self):
        code = "/// @file\n/// H.\nnamespace zq {\n/// E.\nenum class E {\n  v  ///< V.\n};\n}"
        self.assertEqual(self.complaints(code), "")


if __name__ == "__main__":
    unittest.main()
