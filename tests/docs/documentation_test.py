# Run by `make test`, for every change.
"""Tests the documentation: the public interface is documented completely, links work, and the search finds words.

Usage: documentation_test.py DOXYGEN DOXYFILE, where the Doxyfile is the one of the build.
"""

import json
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

doxygen, doxyfile = sys.argv.pop(1), pathlib.Path(sys.argv.pop(1))
source = pathlib.Path(__file__).resolve().parents[2]


def copy_sources(directory):
    """Copies the sources of the documentation."""
    for name in ("docs", "include", "tavrin_driver"):
        shutil.copytree(source / name, directory / name)
    shutil.copy(source / "CHANGELOG.md", directory)


def run(*command, **options):
    """Runs a program; returns its exit status and its output."""
    process = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)
    return process.returncode, process.stdout


def settings(directory):
    """Returns the Doxyfile of the build with another output directory."""
    text = doxyfile.read_text().replace(str(doxyfile.parent), str(directory))
    return text + "\nGENERATE_XML = YES\n"


def write_documentation(directory, sources):
    """Writes guides and reference into a directory."""
    (directory / "Doxyfile").write_text(settings(directory))
    return run(sources / "docs/site/write-pages", sources, doxygen, sys.executable, directory)


def write_reference(directory, inputs):
    """Writes the reference of other headers into a directory."""
    (directory / "html").mkdir()
    text = settings(directory) + f'INPUT = "{inputs}"\nSTRIP_FROM_PATH = "{inputs}"\n'
    return run(source / "docs/site/run-doxygen", source, doxygen, "-", input=text)


def is_blank(element):
    return element is None or not "".join(element.itertext()).strip()


def undocumented(directory):
    """Returns what Doxygen does not warn about: files and values of enumerations without a description."""
    for file in sorted(pathlib.Path(directory, "xml").glob("*.xml")):
        root = xml.etree.ElementTree.parse(file).getroot()
        elements = [c for c in root.iter("compounddef") if c.get("kind") == "file"]
        elements += [v for v in root.iter("enumvalue") if v.get("prot") != "private"]
        for element in elements:
            if is_blank(element.find("briefdescription")) and is_blank(element.find("detaileddescription")):
                name = element.find("compoundname" if element.tag == "compounddef" else "name").text
                if not name.endswith(".md"):
                    yield name


class Documentation(unittest.TestCase):
    """The documentation of sources below a directory with spaces and letters beyond ASCII in its name."""

    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.directory = pathlib.Path(cls.scratch.name)
        cls.sources = cls.directory / "Verzeichnis für Quellen"
        copy_sources(cls.sources)
        cls.result = write_documentation(cls.directory, cls.sources)
        cls.html = cls.directory / "html"

    @classmethod
    def tearDownClass(cls):
        cls.scratch.cleanup()

    def test_is_written_without_a_warning(self):
        self.assertEqual(self.result, (0, ""))

    def test_describes_every_header_and_every_value(self):
        self.assertEqual(list(undocumented(self.scratch.name)), [])

    def test_has_a_page_for_every_guide_with_links_to_the_pages_around_it(self):
        pages = [page.relative_to(source) for page in [*source.glob("docs/**/*.md"), source / "CHANGELOG.md"]]
        self.assertGreater(len(pages), 8)
        for page in pages:
            text = (self.html / page).with_suffix(".html").read_text()
            self.assertIn('<div class="toc-tree">', text, page)
            self.assertRegex(text, '<link rel="(next|prev)"', page)

    def test_links_names_of_the_interface_to_the_reference(self):
        commands = (self.html / "docs/guides/commands.html").read_text()
        for target in ("classICmdMessage.html", "Required_8h.html", "namespacezq.html#"):
            self.assertIn(f'href="../../reference/{target}', commands)

    def test_finds_words_of_the_guides(self):
        index = (self.html / "searchindex.js").read_text()
        terms = json.loads(index[index.index("{") : index.rindex("}") + 1])["terms"]
        for stem in ("mask", "rang", "thermostat"):  # of "ranged"
            self.assertIn(stem, terms)

    def test_contains_all_styles_and_scripts_of_the_theme(self):
        for name in ("styles/furo.css", "scripts/furo.js"):
            self.assertNotRegex((self.html / "_static" / name).read_text(), r"(?m)^@?import\b", name)

    def test_has_no_dead_links(self):
        self.assertEqual(run(source / "docs/check_links.py", self.html), (0, ""))

    def test_names_nothing_of_the_machine_it_was_written_on(self):
        for page in self.html.rglob("*.html"):
            self.assertFalse(str(source) in page.read_text(), page.name)
            self.assertFalse(self.scratch.name in page.read_text(), page.name)


class Links(unittest.TestCase):
    """docs/check_links.py."""

    def test_work_in_the_repository(self):
        self.assertEqual(run(source / "docs/check_links.py", source, "*.md"), (0, ""))

    def test_are_reported_if_they_are_dead(self):
        with tempfile.TemporaryDirectory() as scratch:
            directory = pathlib.Path(scratch)
            (directory / "page.md").write_text(
                "# A heading: `code`\n[a](#a-heading-code) [b](other.html#here) [c](https://example.org/) `[d](d.md)`\n"
                "```\n[e](e.md)\n```\n[f](f.md) [g](#g) ![h](h.svg) [i](other.html#i)\n")
            (directory / "other.html").write_text('<a id="here" href="page.md#j"></a><img src="k.png">')
            self.assertEqual(run(source / "docs/check_links.py", scratch), (1, "".join(
                f"{link}\n" for link in ("other.html: page.md#j", "other.html: k.png", "page.md: f.md", "page.md: #g",
                                         "page.md: h.svg", "page.md: other.html#i"))))

    def test_are_expected(self):
        with tempfile.TemporaryDirectory() as scratch:
            self.assertEqual(run(source / "docs/check_links.py", scratch), (1, f"{scratch}: no links\n"))


class Mistakes(unittest.TestCase):
    """The mistakes that Doxygen or undocumented() must report, each in a separate header."""

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
            status, text = write_reference(pathlib.Path(scratch), inputs)
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
