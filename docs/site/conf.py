# Run by Sphinx, for `make docs` and `make test`.
"""Configures Sphinx, which writes the guides as HTML, after Doxygen has written the reference.

The sources are Markdown that is also read in the repository, so the pages have the same paths in both. The
project's directory is the source directory; REFERENCE_TAGS in the environment is the tag file of Doxygen.
"""

import os
import pathlib
import re
import xml.etree.ElementTree

from docutils import nodes
from sphinx import addnodes
from sphinx.transforms import SphinxTransform

project = "libtavrin_driver"
html_title = "libtavrin_driver"

smartquotes = False  # quoted values are shown verbatim
extensions = ["myst_parser", "sphinx_copybutton"]
root_doc = "docs/index"
include_patterns = ["docs/**.md", "CHANGELOG.md"]
exclude_patterns = ["build", "fuzz", ".*"]  # directories that need not be searched
myst_heading_anchors = 3

html_theme = "furo"
html_copy_source = False
html_show_copyright = False
html_show_sphinx = False
html_extra_path = ["root"]  # index.html, which opens the front page
templates_path = ["templates"]
html_static_path = ["static"]
html_css_files = ["guides.css"]
html_js_files = ["guides.js"]
html_sidebars = {
    "**": ["sidebar/brand.html", "sidebar/search.html", "sidebar/scroll-start.html", "sidebar/navigation.html",
           "reference.html", "sidebar/scroll-end.html"]
}
copybutton_prompt_text = "$ "
copybutton_only_copy_prompt_lines = True

# The order in which the pages are read: of "previous" and "next", and of the list of pages.
contents = {
    "For the authors of drivers": ["guides/commands", "guides/bindings", "guides/conditionals", "guides/colours",
                                   "guides/temperatures", "guides/discovery", "guides/projects", "guides/testing",
                                   "guides/tool", "rules"],
    "For the developers of a controller": ["integration", "security", "abi", "speed", "/CHANGELOG"],
}


def add_contents(app, page, source):
    """Adds the list of all pages to the front page, where readers of the Markdown have the table."""
    if page != root_doc:
        return
    for caption, pages in contents.items():
        entries = "\n".join(pages)
        source[0] += f"\n```{{toctree}}\n:hidden:\n:caption: {caption}\n\n{entries}\n```\n"


def symbols():
    """Returns the pages of the reference by what they describe: classes, functions and headers."""
    pages = {}
    for compound in xml.etree.ElementTree.parse(os.environ["REFERENCE_TAGS"]).getroot().iter("compound"):
        name, file = compound.findtext("name"), compound.findtext("filename")
        kind = compound.get("kind")
        if kind == "file":
            pages[f"<{pathlib.Path(compound.findtext('path')).name}/{name}>"] = file
        elif kind in ("class", "struct") or (kind == "namespace" and len(name) > 2):
            pages[name] = file
        for member in compound.iter("member"):
            if kind in ("class", "struct", "namespace"):
                target = f"{member.findtext('anchorfile')}#{member.findtext('anchor')}"
                pages.setdefault(f"{name}::{member.findtext('name')}", target)
    return pages


class ReferenceLinks(SphinxTransform):
    """Links the names of classes, functions and headers to the reference."""

    default_priority = 500
    name = re.compile(r"<[\w/.]+>|\b\w+(?:::\w+)*")
    pages = None

    def apply(self):
        if ReferenceLinks.pages is None:
            ReferenceLinks.pages = symbols()
        for text in list(self.document.findall(nodes.Text)):
            parent = text.parent
            if isinstance(parent, nodes.literal):
                self.link_literal(parent)
            elif not self.is_within(text, (nodes.reference, nodes.literal_block, nodes.title, nodes.raw, nodes.comment,
                                           addnodes.pending_xref)):
                parent.replace(text, self.linked(str(text)))

    @staticmethod
    def is_within(node, types):
        while node is not None and not isinstance(node, types):
            node = node.parent
        return node is not None

    def link(self, target, *children):
        root = "../" * self.env.docname.count("/")
        return nodes.reference("", "", *children, refuri=f"{root}reference/{target}", internal=True)

    def link_literal(self, literal):
        target = self.pages.get(literal.astext().removesuffix("()"))
        if target and not self.is_within(literal, (nodes.reference, addnodes.pending_xref)):
            literal.replace_self(self.link(target, literal.deepcopy()))

    def linked(self, text):
        """Returns a string as nodes, with a link for each name that the reference describes."""
        result = []
        begin = 0
        for match in self.name.finditer(text):
            target = self.pages.get(match[0])
            if not target:
                continue
            end = match.end() + (2 if text.startswith("()", match.end()) else 0)
            result.append(nodes.Text(text[begin : match.start()]))
            result.append(self.link(target, nodes.literal("", text[match.start() : end])))
            begin = end
        return [*result, nodes.Text(text[begin:])]


# The imports of Debian's theme that work only on a web server of Debian, or only in a module, which its script is not.
imports = {
    "styles/furo.css": (r"@import url\(/javascript/normalize\.css/normalize\.css\);",
                        "/usr/share/javascript/normalize.css/normalize.css"),
    "scripts/furo.js": (r'import (\* as )?Gumshoe from "\./gumshoe-patched\.js";', "scripts/gumshoe-patched.js"),
}


def replace_imports(app, exception):
    """Replaces the imports of the theme with the imported files."""
    if exception:
        return
    static = pathlib.Path(app.outdir, "_static")
    for name, (statement, imported) in imports.items():
        file = static / name
        file.write_text(re.sub(statement, lambda _: (static / imported).read_text(), file.read_text()))


def setup(app):
    app.connect("source-read", add_contents)
    app.connect("build-finished", replace_imports)
    app.add_transform(ReferenceLinks)
    return {"parallel_read_safe": True}
