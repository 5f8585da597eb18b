#!/usr/bin/python3
# Run by `make bench-page`, before a release and after changes that affect speed.
"""Writes the numbers of a result into the page about speed, and draws its plot.

Usage: page.py RESULT DOCS LIMITS

RESULT is the output of run.py, DOCS the directory of speed.md and speed.svg, and LIMITS the page of the limits. The
parts of the pages between "<!-- NAME -->" and "<!-- /NAME -->" are replaced.
"""

import re
import sys
from pathlib import Path

import plot
import ratios

PROJECT_SIZES = (100, 1000, 10_000, 100_000, 1_000_000)
COMMAND_SIZES = (1, 3, 10, 30, 100, 300, 1000)

# The same colours in all panels, named in the legend.
OURS, BARE, LIBXML2, TINYXML2, PUGIXML = range(5)
NAMES = {
    OURS: "this library",
    BARE: "bare Expat pass",
    LIBXML2: "libxml2",
    TINYXML2: "tinyxml2",
    PUGIXML: "pugixml",
}


def markdown(headings, lines, words):
    """Returns a table whose columns are right-aligned, except those numbered in `words`."""
    rule = [":---" if index in words else "---:" for index in range(len(headings))]
    return "\n".join("| " + " | ".join(line) + " |" for line in (headings, rule, *lines))


def ratio_table(rows, headings):
    """Returns the given columns of rows of ratios.HEADINGS."""
    wanted = [index for index, heading in enumerate(ratios.HEADINGS) if heading in headings]
    chosen = [[ratios.cells(row)[index] for index in wanted] for row in rows]
    words = [position for position, index in enumerate(wanted) if index in (0, 1, 6)]
    return markdown([ratios.HEADINGS[index] for index in wanted], chosen, words)


def machine(context, measured):
    spread = ratios.largest_spread(measured, ratios.TARGETS + ratios.OTHERS)
    gigahertz = context["mhz_per_cpu"] / 1000
    lines = [
        ("Processor", f"{context['processor']}, {context['num_cpus']} cores, {gigahertz:.1f} GHz"),
        ("Compiler", context["compiler"]),
        ("Flags", f"`{context['flags'].strip()}`"),
        ("Day", context["date"][:10]),
        ("Spread of a measurement's runs", f"{spread:.0%} or less (standard deviation)"),
    ]
    text = markdown(("", ""), lines, (0, 1))
    if context["optimised"] != "yes":
        text += "\n\n**This was an unoptimised build; its figures are not meaningful.**"
    return text


def costs(measured):
    rows = [ratios.outcome(measured, comparison) for comparison in ratios.TARGETS]
    return ratio_table(rows, set(ratios.HEADINGS) - {"at most", ""})


def targets(measured):
    rows = [ratios.outcome(measured, comparison) for comparison in ratios.TARGETS]
    return f"{ratio_table(rows, ratios.HEADINGS)}\n\n{ratios.summary(rows)}"


def layouts(measured):
    """Returns the costs of a project with and without white space between its elements."""

    def line(layout, comparison):
        size = ratios.figure_of(measured, comparison.pairs[0][0], "size")
        return layout, ratios.bytes_text(size), *ratios.cells(ratios.outcome(measured, comparison))[2:5]

    lines = [line("indented", ratios.INDENTED), line("compact", ratios.COMPACT)]
    return markdown(("project", "size", "parse + valid", "bare Expat pass", "ratio"), lines, (0,))


def others(measured):
    rows = [ratios.outcome(measured, comparison) for comparison in ratios.OTHERS]
    return ratio_table(rows, set(ratios.HEADINGS) - {"at most", ""})


def operations(measured):
    """Returns the costs of single operations."""
    entries = [
        ("`getParam`", "CmdMessage/GetParam/3"),
        ("`getParam` of a variable parameter", "CmdMessage/GetVariableParam/3"),
        ("`getParamRequiredInt`", "CmdMessage/GetParamRequiredInt/3"),
        ("`getParamRequiredIntRanged`", "CmdMessage/GetParamRequiredIntRanged/3"),
        ("`getParamRequiredULong`", "CmdMessage/GetParamRequiredULong/3"),
        ("`getParamRequiredBool`", "CmdMessage/GetParamRequiredBool/3"),
        ("`getParamRequiredDouble`", "CmdMessage/GetParamRequiredDouble/3"),
        ("`Test` of a bool", "CondMessage/TestBool"),
        ("`Test` of two ints", "CondMessage/TestInts"),
        ("`Test` of two doubles", "CondMessage/TestDoubles"),
        ("`Test` of a string, first parameter", "CondMessage/TestTextWithFirstParameter"),
        ("`Test` of an int, first parameter", "CondMessage/TestIntWithFirstParameter"),
        ("`Test` of an int, named parameter", "CondMessage/TestIntWithNamedParameter"),
        ("`Test` of a level, first parameter", "CondMessage/TestLevelWithFirstParameter"),
        ("reading a conditional", "CondMessage/FromXml"),
        ("writing a conditional", "CondMessage/ToXml"),
        ("reading a binding message", "BindMessage/ParseAndFromXml"),
        ("writing a binding message, XML", "BindMessage/ToXml"),
        ("writing a binding message, printed form", "BindMessage/ToJson"),
        ("`getParamInt` of a binding message", "BindMessage/TypedRead"),
        ("`toCCTTable`", "ZqColor/ToCCTTable/3127/3290"),
        ("`toHSV`", "ZqColor/ToHSV/3127/3290"),
        ("`nearestSRGB`", "ZqColor/NearestSRGB/3127/3290"),
        ("`isSRGB`", "ZqColor/IsSRGB/3127/3290"),
        ("`fromCCT`", "ZqColor/FromCCT"),
        ("`getHSVFromRGB`", "ZqColor/GetHSVFromRGB"),
        ("`getRGBFromHSV`", "ZqColor/GetRGBFromHSV"),
        ("`ZqColor::fromString`", "ZqColor/FromString"),
        ("`ZqColor::toString`", "ZqColor/ToString"),
    ]
    lines = [
        (
            work,
            ratios.time_text(ratios.figure_of(measured, name, "cpu_time")),
            f"{ratios.figure_of(measured, name, 'instructions'):.0f}",
        )
        for work, name in entries
    ]
    loading = ratios.figure_of(measured, "LoadTime/LoadLibrary", "real_time")
    lines.append(("loading the library into a fresh process", ratios.time_text(loading), ""))
    return markdown(("work", "time", "instructions"), lines, (0,))


def memory(measured):
    def line(work, name):
        allocations = ratios.figure_of(measured, name, "allocations")
        count = ratios.figure_of(measured, name, "bytes")
        return work, f"{allocations:.0f}", ratios.bytes_text(count)

    def per_element(work, name):
        elements = ratios.figure_of(measured, name, "elements")
        allocations = ratios.figure_of(measured, name, "allocations") / elements
        return work, f"{allocations:.2g}", f"{ratios.figure_of(measured, name, 'bytes') / elements:.0f} B"

    lines = [
        line("command of 3 parameters, loaded from XML", "Memory/CommandFromXml/3"),
        line("the same, by hand on pugixml", "Memory/PugixmlByHand/3"),
        line("the same, by hand on tinyxml2", "Memory/TinyXml2ByHand/3"),
        line("the same, by hand on libxml2", "Memory/Libxml2ByHand/3"),
        line("command of 3 parameters, loaded from JSON", "Memory/CommandFromJson/3"),
        line("the same, the bare JsonCpp reader's value", "Memory/BareJsonReader/3"),
        line("command of 100 parameters, loaded from XML", "Memory/CommandFromXml/100"),
        line("`getParam` of a long text", "Memory/GetParam"),
        line("`getParamRequiredInt` of a long text", "Memory/GetParamRequiredInt"),
        line("`getParamRequiredDouble` of a long text", "Memory/GetParamRequiredDouble"),
        per_element("one element of a parsed project, beyond the text", "Memory/Document/100000"),
        per_element("the same in libxml2", "Memory/Libxml2Document/100000"),
    ]
    return markdown(("of", "allocations", "bytes that stay"), lines, (0,))


def draw_growth(measured, file):
    """Draws the cost by size."""

    def per_piece(name, sizes, figure, unit):
        return [(size, ratios.figure_of(measured, f"{name}/{size}", figure) / size / unit) for size in sizes]

    def panel(title, x_title, y_title, sizes, figure, unit, lines):
        series = [
            plot.Series(NAMES[color], per_piece(name, sizes, figure, unit), color) for name, color in lines
        ]
        return plot.Panel(title, x_title, y_title, series)

    commands = [
        ("CmdMessage/CreateFromXml", OURS),
        ("CmdMessage/BareExpatPass", BARE),
        ("CmdMessage/Libxml2ByHand", LIBXML2),
        ("CmdMessage/TinyXml2ByHand", TINYXML2),
        ("CmdMessage/PugixmlByHand", PUGIXML),
    ]
    validation = [
        ("ProjectValidator/ParseAndValid", OURS),
        ("ProjectValidator/BarePass", BARE),
        ("ProjectValidator/Libxml2Dom", LIBXML2),
    ]
    peaks = [("Memory/PeakOfParseAndValidInPlace", OURS), ("Memory/PeakOfLibxml2Dom", LIBXML2)]
    plot.save(
        file,
        "Time and memory per parameter of a command and per item of a project, by their number",
        [
            panel("Loading a command", "parameters", "µs per parameter", COMMAND_SIZES, "cpu_time", 1e3, commands),
            panel("Validating a project", "items", "µs per item", PROJECT_SIZES, "cpu_time", 1e3, validation),
            panel("Peak memory of the same", "items", "kB per item, beyond the text", PROJECT_SIZES[1:], "peak_bytes",
                  1e3, peaks),
        ],
    )


def place(page, name, text):
    """Returns the page with a new text between the two comments of that name."""
    marks = re.compile(rf"(<!-- {name} -->\n).*?(<!-- /{name} -->)", re.DOTALL)
    placed, count = marks.subn(lambda match: f"{match[1]}\n{text}\n\n{match[2]}", page)
    if count != 1:
        raise SystemExit(f"the page has {count} places for {name}")
    return placed


def main(result, docs, limits):
    context, measured = ratios.read(result)
    file = Path(docs) / "speed.md"
    page = file.read_text()
    page = place(page, "machine", machine(context, measured))
    page = place(page, "costs", costs(measured))
    page = place(page, "layouts", layouts(measured))
    page = place(page, "others", others(measured))
    page = place(page, "operations", operations(measured))
    page = place(page, "memory", memory(measured))
    file.write_text(page)
    limits = Path(limits)
    limits.write_text(place(limits.read_text(), "targets", targets(measured)))
    draw_growth(measured, Path(docs) / "speed.svg")


if __name__ == "__main__":
    if len(sys.argv) != 4 or sys.argv[1].startswith("-"):
        raise SystemExit(__doc__)
    main(*sys.argv[1:])
