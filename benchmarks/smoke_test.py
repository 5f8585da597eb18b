#!/usr/bin/env python3
# Run by `make test`, for every change.
"""Tests that all benchmarks run, and that those exist which the tables use.

Usage: smoke_test.py BUILD
"""

import io
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import page
import ratios
import run

BUILD = Path(sys.argv.pop()) if len(sys.argv) == 2 else sys.exit(__doc__)


class Recording(dict):
    """Results that contain every measurement, and record which ones were requested."""

    def __init__(self):
        super().__init__()
        self.names = set()

    def __missing__(self, name):
        self.names.add(name)
        return dict.fromkeys(
            ("cpu_time", "real_time", "instructions", "allocations", "bytes", "elements", "peak_bytes", "size"), 1.0
        )


def existing():
    """Returns the names of all measurements."""
    names = set()
    for program, path in run.programs(BUILD):
        listed = subprocess.run([path, "--benchmark_list_tests"], capture_output=True, text=True, check=True)
        names |= {run.plain_name(program, {"run_name": name}) for name in listed.stdout.split()}
    return names


class Benchmarks(unittest.TestCase):
    def test_everything_that_is_shown_is_measured(self):
        shown = Recording()
        for make in (page.targets, page.layouts, page.others, page.operations, page.memory):
            make(shown)
        page.draw_growth(shown, io.BytesIO())
        self.assertGreater(len(shown.names), 50)
        self.assertEqual(shown.names - existing(), set())

    def test_all_run(self):
        with tempfile.TemporaryDirectory() as directory:
            result = Path(directory) / "result.json"
            small = "--benchmark_filter=-/(30|300|1000)$|/10000"
            options = (small, "--benchmark_min_time=0.000000001", "--benchmark_repetitions=1")
            run.main(BUILD, result, *options)
            _, measured = ratios.read(result)
        self.assertEqual(measured["Memory/GetParam"]["allocations"], 1)
        self.assertGreater(measured["LoadTime/LoadLibrary"]["real_time"], 0)
        self.assertGreater(measured["Memory/PeakOfLibxml2Dom/1000"]["peak_bytes"], 1_000_000)
        row = ratios.outcome(measured, ratios.TARGETS[0])
        self.assertGreater(row.ratio, 0)
        self.assertGreater(row.instructions, 1)


if __name__ == "__main__":
    unittest.main()
