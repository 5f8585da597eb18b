#!/usr/bin/env python3
# Run by `make update-docs` after changes to code or output that pages show, and by `make test` with --check.
"""Fills the code and output blocks of the Markdown pages from their sources. The target update_docs runs it.

Usage: embed.py [--check] [PAGE...]

A comment before a fenced block names the source of the block, relative to the project:

    <!-- docs/snippets/commands.cpp: light -->      the lines between two lines with //! [light] or [light]
    <!-- examples/commands/light_level.xml -->      the whole file

Without pages, all pages of the project are read. With --check nothing is written: the exit status is 1 if a page is out
of date.
"""

import argparse
import pathlib
import re
import sys
import textwrap

project = pathlib.Path(__file__).resolve().parent.parent
languages = {".cpp": "cpp", ".h": "cpp", ".xml": "xml", ".json": "json", ".properties": "properties", ".txt": "text"}
named_languages = {"CMakeLists.txt": "cmake", "tool.txt": "console"}
block = re.compile(r"^<!-- (?P<source>[\w./-]+)(: (?P<region>[\w-]+))? -->\n```\w*\n(.*?\n)??```$", re.M | re.S)


def content(source, region):
    """Returns a source without its region markers, or one region of it."""
    text = source.read_text()
    marker = r"[ \t]*(?://! )?\[{}\]\n"
    if region is None:
        return re.sub("^" + marker.format(r"[\w-]+"), "", text, flags=re.M)
    parts = re.split("^" + marker.format(re.escape(region)), text + "\n", flags=re.M)
    if len(parts) != 3:
        raise SystemExit(f"embed.py: {source}: expected two lines with [{region}], found {len(parts) - 1}")
    return textwrap.dedent(parts[1])


def filled(match):
    """Returns a block, with its comment, filled from its source."""
    source = project / match["source"]
    language = named_languages.get(source.name) or languages[source.suffix]
    comment = match[0].partition("\n")[0]
    return f"{comment}\n```{language}\n{content(source, match['region'])}```"


def all_pages():
    return sorted([*project.glob("*.md"), *project.glob("docs/**/*.md")])


def main():
    arguments = argparse.ArgumentParser(usage=__doc__)
    arguments.add_argument("--check", action="store_true")
    arguments.add_argument("pages", nargs="*", type=pathlib.Path)
    options = arguments.parse_args()
    status = 0
    for page in options.pages or all_pages():
        old = page.read_text()
        new = block.sub(filled, old)
        if new == old:
            continue
        if options.check:
            print(f"{page}: out of date; build the target update_docs", file=sys.stderr)
            status = 1
        else:
            page.write_text(new)
    return status


sys.exit(main())
