#!/usr/bin/env python3
# Run by `make test`, for every change.
"""Lists the relative links of Markdown and HTML files that lead to no file or no anchor. The tests run it for the
repository, for the documentation as HTML and for an installation. Usage: check_links.py DIRECTORY [PATTERN...]

Without patterns, "*.md" and "*.html" are searched. Directories named "build", and those whose names begin with ".", are
left out. The exit status is 1 if there are dead links, or no links at all.
"""

import functools
import pathlib
import re
import sys
import urllib.parse
from html.parser import HTMLParser


class Page(HTMLParser):
    """The anchors and links of an HTML file."""

    def __init__(self, text):
        super().__init__()
        self.anchors, self.links = set(), []
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        self.anchors |= {attributes[name] for name in ("id", "name") if name in attributes}
        self.links += [attributes[name] for name in ("href", "src", "data") if attributes.get(name)]


class Markdown:
    """The anchors and links of a Markdown file. Headings have the anchors that forges and MyST generate."""

    def __init__(self, text):
        text = re.sub(r"^( *)(```|~~~).*?^\1\2", "", text, flags=re.M | re.S)
        headings = re.findall(r"^#+ (.*)$", text, re.M)
        self.anchors = {re.sub(r"[^\w -]", "", heading.lower()).strip().replace(" ", "-") for heading in headings}
        self.links = re.findall(r"\]\(<?([^)>\s]+)", re.sub(r"`[^`\n]*`", "", text))


@functools.lru_cache(maxsize=None)
def read(file):
    return (Markdown if file.suffix == ".md" else Page)(file.read_text())


def leads_somewhere(file, link):
    url = urllib.parse.urlsplit(link)
    if url.scheme or url.netloc or link in ("#", "javascript:void(0)"):
        return True
    target = (file.parent / urllib.parse.unquote(url.path)).resolve() if url.path else file
    if not target.exists():
        return False
    fragment = urllib.parse.unquote(url.fragment)
    return not fragment or target.suffix not in (".md", ".html") or fragment in read(target).anchors


def main():
    root = pathlib.Path(sys.argv[1]).resolve()
    count, dead = 0, []
    patterns = sys.argv[2:] or ["*.md", "*.html"]
    for file in sorted(file for pattern in patterns for file in root.rglob(pattern)):
        if any(part == "build" or part.startswith(".") for part in file.relative_to(root).parts):
            continue
        links = read(file).links
        count += len(links)
        dead += [f"{file.relative_to(root)}: {link}" for link in links if not leads_somewhere(file, link)]
    print(*dead, sep="\n", end="\n" if dead else "")
    if count == 0:
        print(f"{root}: no links")
    return 1 if dead or count == 0 else 0


sys.exit(main())
