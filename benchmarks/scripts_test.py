#!/usr/bin/env python3
# Run by `make test`, for every change.
"""Tests of ratios.py, plot.py and page.py with generated results."""

import contextlib
import io
import json
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

import page
import plot
import ratios
from ratios import Comparison, outcome

CONTEXT = {
    "processor": "Some Processor",
    "num_cpus": 2,
    "mhz_per_cpu": 2300,
    "compiler": "GNU 12.2.0",
    "flags": " -O2",
    "date": "2026-11-21T14:25:42+00:00",
    "optimised": "yes",
}


def names_in_use():
    """Returns every measurement that a row or the page uses."""
    comparisons = ratios.TARGETS + ratios.OTHERS
    pairs = [pair for comparison in comparisons for pair in comparison.pairs + (comparison.counted or [])]
    return {name for pair in pairs for name in pair if name is not None}


class AnyMeasurement(dict):
    """Returns results that contain every measurement, with the same figures."""

    def __missing__(self, name):
        return {
            "cpu_time": 2000.0,
            "spread": 0.034,
            "real_time": 3000.0,
            "instructions": 40.0,
            "allocations": 3.0,
            "bytes": 500.0,
            "elements": 10.0,
            "peak_bytes": 6e6,
            "size": 41e6,
        }


def result_file(directory, entries, **context):
    file = Path(directory) / "result.json"
    file.write_text(json.dumps({"context": {**CONTEXT, **context}, "benchmarks": entries}))
    return file


class Ratios(unittest.TestCase):
    MEASURED = {
        "ours/3": {"cpu_time": 30.0, "instructions": 90},
        "theirs/3": {"cpu_time": 20.0, "instructions": 100},
        "ours/100": {"cpu_time": 50.0, "instructions": 400},
        "theirs/100": {"cpu_time": 40.0, "instructions": 100},
        "memory": {"allocations": 21},
    }

    def test_a_row_shows_the_largest_ratio_of_its_inputs(self):
        row = outcome(self.MEASURED, Comparison("w", "a", 1.5, [("ours/100", "theirs/100"), ("ours/3", "theirs/3")]))
        self.assertEqual((row.ours, row.theirs, row.ratio, row.instructions), (30, 20, 1.5, 4))
        self.assertEqual(ratios.verdict(row), "met")

    def test_a_ratio_above_the_target_is_not_met(self):
        row = outcome(self.MEASURED, Comparison("w", "a", 1.49, [("ours/3", "theirs/3")]))
        self.assertEqual(ratios.verdict(row), "NOT met")
        self.assertEqual(
            ratios.cells(row), ("w", "a", "30 ns", "20 ns", "1.50", "1.49", "NOT met", "0.90")
        )

    def test_instructions_may_be_those_of_another_input(self):
        row = outcome(
            self.MEASURED, Comparison("w", "a", 2, [("ours/3", "theirs/3")], counted=[("ours/100", "theirs/100")])
        )
        self.assertEqual((row.ratio, row.instructions), (1.5, 4))

    def test_a_figure_alone_is_compared_itself(self):
        for at_most, verdict in ((20, "NOT met"), (21, "met")):
            row = outcome(self.MEASURED, Comparison("w", "a", at_most, [("memory", None)], "allocations"))
            self.assertEqual(ratios.cells(row), ("w", "a", "21", "", "21", str(at_most), verdict, ""))

    def test_a_row_without_a_target_has_no_verdict(self):
        row = outcome(self.MEASURED, Comparison("w", "a", None, [("ours/3", "theirs/3")]))
        self.assertEqual(ratios.cells(row)[5:7], ("", ""))

    def test_a_measurement_that_lacks_is_named(self):
        with self.assertRaisesRegex(SystemExit, "the result has no cpu_time of gone"):
            outcome(self.MEASURED, Comparison("w", "a", 1, [("gone", "theirs/3")]))

    def test_the_summary_names_what_is_not_met(self):
        rows = [
            outcome(self.MEASURED, Comparison("one", "a", 1.5, [("ours/3", "theirs/3")])),
            outcome(self.MEASURED, Comparison("other", "b", 1.2, [("ours/100", "theirs/100")])),
        ]
        self.assertEqual(ratios.summary(rows[:1]), "1 of 1 targets are met.")
        self.assertEqual(ratios.summary(rows), "1 of 2 targets are met. Not met:\n\n- other against b")

    def test_times_of_any_unit_are_compared(self):
        with tempfile.TemporaryDirectory() as directory:
            timed = {"name": "a", "cpu_time": 2, "real_time": 3, "time_unit": "ms"}
            entries = [timed, {"name": "b", "instructions": 7}]
            context, measured = ratios.read(result_file(directory, entries))
        self.assertEqual(context, CONTEXT)
        self.assertEqual((measured["a"]["cpu_time"], measured["a"]["real_time"]), (2e6, 3e6))
        self.assertEqual(measured["b"]["instructions"], 7)

    def test_figures_have_three_digits(self):
        texts = [ratios.time_text(value) for value in (0.5, 12.34, 999, 1234, 3.4567e6, 2e9)]
        self.assertEqual(texts, ["0.50 ns", "12.3 ns", "999 ns", "1.23 µs", "3.46 ms", "2 s"])
        self.assertEqual([ratios.bytes_text(count) for count in (0, 40, 2944)], ["0 B", "40 B", "2.94 kB"])

    def test_the_largest_spread_is_that_of_a_time(self):
        measured = {"a": {"spread": 0.02}, "b": {"spread": 0.05}, "c": {"spread": 0.5}}
        comparisons = [Comparison("w", "a", 1, [("a", "b")]), Comparison("w", "a", 1, [("c", None)], "allocations")]
        self.assertEqual(ratios.largest_spread(measured, comparisons), 0.05)

    def test_an_unoptimised_build_is_told_of(self):
        entries = [{"name": name, **AnyMeasurement()[name]} for name in names_in_use()]
        with tempfile.TemporaryDirectory() as directory:
            for optimised in ("yes", "no"):
                output = io.StringIO()
                with contextlib.redirect_stdout(output):
                    ratios.main(result_file(directory, entries, optimised=optimised))
                self.assertIn("Some Processor, GNU 12.2.0, -O2", output.getvalue())
                self.assertEqual("unoptimised" in output.getvalue(), optimised == "no")


class Plot(unittest.TestCase):
    SERIES = [plot.Series("a & b", [(1, 0.5), (100, 4.0)], 0)]

    def test_lines_are_drawn_from_zero_and_by_powers_of_ten(self):
        figure = plot.draw([plot.Panel("t", "x", "y", self.SERIES)])
        axes, = figure.axes
        self.assertEqual(axes.lines[0].get_xydata().tolist(), [[1, 0.5], [100, 4]])
        self.assertEqual((axes.get_xscale(), axes.get_yscale(), axes.get_ylim()[0]), ("log", "linear", 0))
        self.assertEqual((axes.get_title(), axes.get_xlabel(), axes.get_ylabel()), ("t", "x", "y"))
        self.assertEqual([text.get_text() for text in figure.legends[0].texts], ["a & b"])

    def test_the_same_lines_are_the_same_file(self):
        files = [io.BytesIO(), io.BytesIO()]
        for file in files:
            plot.save(file, "d", [plot.Panel("t", "x", "y", self.SERIES)])
        self.assertEqual(files[0].getvalue(), files[1].getvalue())


class Page(unittest.TestCase):
    def test_numbers_are_placed_between_their_marks(self):
        text = "a\n<!-- x -->\nold\n<!-- /x -->\nb\n<!-- y -->\n<!-- /y -->\n"
        self.assertEqual(
            page.place(text, "x", "1 \\2"), "a\n<!-- x -->\n\n1 \\2\n\n<!-- /x -->\nb\n<!-- y -->\n<!-- /y -->\n"
        )
        with self.assertRaisesRegex(SystemExit, "the page has 0 places for z"):
            page.place(text, "z", "")

    def test_the_page_has_a_place_for_everything(self):
        benchmarks = Path(__file__).parent
        with tempfile.TemporaryDirectory() as directory:
            file = Path(directory) / "speed.md"
            file.write_text((benchmarks.parent / "docs" / "speed.md").read_text())
            limits = Path(directory) / "limits.md"
            limits.write_text((benchmarks / "limits.md").read_text())
            original, ratios.read = ratios.read, lambda _: (CONTEXT, AnyMeasurement())
            try:
                page.main("", directory, limits)
                once = file.read_text()
                page.main("", directory, limits)
            finally:
                ratios.read = original
            self.assertEqual(file.read_text(), once)
            self.assertIn("| Processor | Some Processor, 2 cores, 2.3 GHz |", once)
            self.assertIn("| Spread of a measurement's runs | 3% or less", once)
            self.assertIn("| compact | 41 MB | 2 µs | 2 µs | 1.00 |", once)
            self.assertIn("| `getParam` | 2 µs | 40 |", once)
            self.assertIn("| one element of a parsed project, beyond the text | 0.3 | 50 B |", once)
            self.assertIn("loading the library into a fresh process | 3 µs |", once)
            self.assertNotIn("at most |", once)
            self.assertRegex(limits.read_text(), r"\d+ of \d+ targets are met\. Not met:\n\n- ")
            ElementTree.fromstring((Path(directory) / "speed.svg").read_text())


if __name__ == "__main__":
    unittest.main()
