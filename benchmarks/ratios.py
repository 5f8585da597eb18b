#!/usr/bin/env python3
# Run by `make bench`, before and after changes that affect speed; page.py imports it.
"""Prints the costs of the library as ratios to those of a reference, and whether each ratio is within its limit.

Usage: ratios.py RESULT

RESULT is what run.py wrote. A row of several inputs shows the one with the largest ratio.
"""

import json
import sys
from collections import namedtuple
from pathlib import Path

# The measured work, the reference, the maximum ratio or None, and pairs of measurements. Without a reference the figure
# itself is compared. The instructions are those of `counted` if the pairs are too large to count.
Comparison = namedtuple("Comparison", "work against at_most pairs figure counted", defaults=("cpu_time", None))

# The outcome of a comparison; an unknown ratio of instructions is None.
Row = namedtuple("Row", "comparison ours theirs ratio instructions")

NEAR_THE_LOCUS = ("4500/4100", "3127/3290", "2565/2576")
FAR_FROM_THE_LOCUS = ("3000/6000", "2000/4000")
COLORS = NEAR_THE_LOCUS + FAR_FROM_THE_LOCUS


def sizes(ours, theirs, *arguments):
    return [(f"{ours}/{argument}", f"{theirs}/{argument}") for argument in arguments]


def project(ours, theirs):
    return sizes(f"ProjectValidator/{ours}", f"ProjectValidator/{theirs}", 1000)


INDENTED = Comparison("parse + valid, 100,000 items", "bare Expat pass", 1.40,
                      sizes("ProjectValidator/ParseAndValid", "ProjectValidator/BarePass", 100_000),
                      counted=project("ParseAndValid", "BarePass"))
COMPACT = Comparison("parse + valid, 100,000 items, compact", "bare Expat pass", 1.60,
                     sizes("ProjectValidator/CompactParseAndValid", "ProjectValidator/CompactBarePass", 100_000),
                     counted=project("CompactParseAndValid", "CompactBarePass"))

TARGETS = [
    Comparison("CreateFromString, XML, 3 parameters", "bare Expat pass on the same text", 1.35,
               sizes("CmdMessage/CreateFromXml", "CmdMessage/BareExpatPass", 3)),
    Comparison("CreateFromString, XML, 100 parameters", "bare Expat pass", 1.25,
               sizes("CmdMessage/CreateFromXml", "CmdMessage/BareExpatPass", 100)),
    Comparison("CreateFromString, JSON, 3 parameters", "bare JsonCpp reader", 1.20,
               sizes("CmdMessage/CreateFromJson", "CmdMessage/BareJsonReader", 3)),
    INDENTED,
    COMPACT,
    Comparison("parse + valid, 100,000 items", "libxml2's DOM parse alone", 0.25,
               sizes("ProjectValidator/ParseAndValid", "ProjectValidator/Libxml2Dom", 100_000),
               counted=project("ParseAndValid", "Libxml2Dom")),
    Comparison("peak memory of parse + valid, beyond the text", "libxml2's DOM", 0.25,
               sizes("Memory/PeakOfParseAndValidInPlace", "Memory/PeakOfLibxml2Dom", 100_000), "peak_bytes"),
    Comparison("toXml of a 3-parameter command", "pugixml building and writing it", 1.00,
               sizes("CmdMessage/ToXml", "CmdMessage/PugixmlWriter", 3)),
    Comparison("getParamRequiredInt", "std::map::find of the same name", 1.5,
               sizes("CmdMessage/GetParamRequiredInt", "CmdMessage/MapFind", 3, 100)),
    Comparison("allocations of getParamRequiredInt", "", 0, [("Memory/GetParamRequiredInt", None)], "allocations"),
    Comparison("getParam, copying a string out", "std::map::find and a std::string copy", 1.1,
               sizes("CmdMessage/GetParam", "CmdMessage/MapFindAndCopy", 3, 100)),
    Comparison("toCCTTable near the Planckian locus", "plain scalar loop at -O2", 0.35,
               sizes("ZqColor/ToCCTTable", "ZqColor/ToCCTTableRowByRow", *NEAR_THE_LOCUS)),
    Comparison("toCCTTable far from it", "plain scalar loop at -O2", 0.5,
               sizes("ZqColor/ToCCTTable", "ZqColor/ToCCTTableRowByRow", *FAR_FROM_THE_LOCUS)),
    Comparison("allocations of loading XML, 3 parameters", "", 20, [("Memory/CommandFromXml/3", None)],
               "allocations"),
]

OTHERS = [
    *(
        Comparison(f"CreateFromString, XML, {count} parameters", f"{library} by hand", None,
                   sizes("CmdMessage/CreateFromXml", f"CmdMessage/{measured}ByHand", count))
        for count in (3, 100)
        for library, measured in (("tinyxml2", "TinyXml2"), ("pugixml", "Pugixml"), ("libxml2", "Libxml2"))
    ),
    Comparison("CreateFromString, JSON, 100 parameters", "bare JsonCpp reader", None,
               sizes("CmdMessage/CreateFromJson", "CmdMessage/BareJsonReader", 100)),
    Comparison("toXml of a 100-parameter command", "pugixml building and writing it", None,
               sizes("CmdMessage/ToXml", "CmdMessage/PugixmlWriter", 100)),
    Comparison("print of a 3-parameter command", "pugixml building and writing its XML", None,
               sizes("CmdMessage/Print", "CmdMessage/PugixmlWriter", 3)),
    Comparison("toXml of a binding message", "pugixml building and writing it", None,
               [("BindMessage/ToXml", "BindMessage/PugixmlWriter")]),
    Comparison("toJson of a binding message", "pugixml building and writing its XML", None,
               [("BindMessage/ToJson", "BindMessage/PugixmlWriter")]),
    Comparison("getParamRequiredDouble", "std::map::find of the same name", None,
               sizes("CmdMessage/GetParamRequiredDouble", "CmdMessage/MapFind", 3, 100)),
    Comparison("toCCTTable", "Little CMS, with 31 isotemperature lines", None,
               sizes("ZqColor/ToCCTTable", "ZqColor/LittleCms", *COLORS)),
    Comparison("peak memory of parse + valid, with a copy of the text", "libxml2's DOM", None,
               sizes("Memory/PeakOfParseAndValid", "Memory/PeakOfLibxml2Dom", 100_000), "peak_bytes"),
]

NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def read(path):
    """Returns the context of a result, and its measurements by name with all times in nanoseconds."""
    result = json.loads(Path(path).read_text())
    measured = {}
    for entry in result["benchmarks"]:
        unit = NANOSECONDS[entry.get("time_unit", "ns")]
        times = {key: entry[key] * unit for key in ("cpu_time", "real_time") if key in entry}
        measured[entry["name"]] = {**entry, **times}
    return result["context"], measured


def figure_of(measured, name, figure):
    try:
        return measured[name][figure]
    except KeyError:
        raise SystemExit(f"the result has no {figure} of {name}") from None


def sides(measured, pair, figure):
    """Returns a ratio with its two figures, or a single figure."""
    ours = figure_of(measured, pair[0], figure)
    if pair[1] is None:
        return ours, ours, None
    theirs = figure_of(measured, pair[1], figure)
    return ours / theirs, ours, theirs


def outcome(measured, comparison):
    ratio, ours, theirs = max(sides(measured, pair, comparison.figure) for pair in comparison.pairs)
    instructions = None
    if comparison.figure == "cpu_time":
        counted = comparison.counted or comparison.pairs
        instructions = max(sides(measured, pair, "instructions")[0] for pair in counted)
    return Row(comparison, ours, theirs, ratio, instructions)


def verdict(row):
    if row.comparison.at_most is None:
        return ""
    return "met" if row.ratio <= row.comparison.at_most else "NOT met"


def in_units(value, units):
    """Returns a value in its largest unit, with at most three digits."""
    factor, unit = next((pair for pair in units if value >= pair[0]), units[-1])
    digits = max(0, 3 - len(f"{value / factor:.0f}"))
    text = f"{value / factor:.{digits}f}" if value % factor else f"{value / factor:.0f}"
    return f"{text} {unit}"


def time_text(nanoseconds):
    return in_units(nanoseconds, ((1e9, "s"), (1e6, "ms"), (1e3, "µs"), (1, "ns")))


def bytes_text(count):
    return in_units(count, ((1e9, "GB"), (1e6, "MB"), (1e3, "kB"), (1, "B")))


FIGURE_TEXTS = {"cpu_time": time_text, "peak_bytes": bytes_text, "allocations": "{:.0f}".format}

HEADINGS = ("work", "against", "ours", "theirs", "ratio", "at most", "", "of instructions")


def cells(row):
    """Returns the cells of a row below HEADINGS."""
    text = FIGURE_TEXTS[row.comparison.figure]
    of_two = row.theirs is not None
    return (
        row.comparison.work,
        row.comparison.against,
        text(row.ours),
        text(row.theirs) if of_two else "",
        f"{row.ratio:.2f}" if of_two else text(row.ratio),
        "" if row.comparison.at_most is None else f"{row.comparison.at_most:g}",
        verdict(row),
        "" if row.instructions is None else f"{row.instructions:.2f}",
    )


def table(rows):
    """Returns rows in columns: words left-aligned, numbers right-aligned."""
    lines = [HEADINGS, *map(cells, rows)]
    widths = [max(map(len, column)) for column in zip(*lines)]
    words = (0, 1, 6)
    return "\n".join(
        "  ".join(
            cell.ljust(width) if index in words else cell.rjust(width)
            for index, (cell, width) in enumerate(zip(line, widths))
        ).rstrip()
        for line in lines
    )


def summary(rows):
    """Returns a sentence and a list of the targets that are met or not."""
    missed = [row for row in rows if row.ratio > row.comparison.at_most]
    text = f"{len(rows) - len(missed)} of {len(rows)} targets are met."
    if missed:
        names = [" against ".join(filter(None, row.comparison[:2])) for row in missed]
        text += " Not met:\n\n" + "\n".join(f"- {name}" for name in names)
    return text


def largest_spread(measured, comparisons):
    """Returns the largest standard deviation of the runs of a measurement, relative to the mean."""
    timed = [comparison for comparison in comparisons if comparison.figure == "cpu_time"]
    return max(measured[name]["spread"] for comparison in timed for pair in comparison.pairs for name in pair)


def main(path):
    context, measured = read(path)
    targets = [outcome(measured, comparison) for comparison in TARGETS]
    others = [outcome(measured, comparison) for comparison in OTHERS]
    print(f"{context['processor']}, {context['compiler']}, {context['flags'].strip()}\n")
    print(table(targets + others))
    print(f"\n{summary(targets)}")
    spread = largest_spread(measured, TARGETS + OTHERS)
    print("\nProcessor time, medians; the last column is the ratio of the instructions that were executed.")
    print(f"The runs of a measurement differ by {spread:.0%} or less (standard deviation).")
    if context["optimised"] != "yes":
        print("warning: this is an unoptimised build; its figures are not meaningful")


if __name__ == "__main__":
    if len(sys.argv) != 2 or sys.argv[1].startswith("-"):
        raise SystemExit(__doc__)
    main(sys.argv[1])
