#!/usr/bin/env python3
# Run by `make instructions`, before and after changes that affect speed, also on a machine with other load.
"""Prints the instructions of one iteration of each measurement, which hardly depend on other load of the machine.

Usage: instructions.py BUILD [OPTION...]

Each OPTION is passed to the benchmark programs: --benchmark_filter=ToXml counts only those measurements.
"""

import sys

import run


def main(build, *options):
    for program, path in run.programs(build):
        if program not in run.WITHOUT_COUNTS:
            for name, count in run.instructions(program, path, options).items():
                print(f"{count:12.0f}  {name}", flush=True)


if __name__ == "__main__":
    if len(sys.argv) < 2 or sys.argv[1].startswith("-"):
        raise SystemExit(__doc__)
    main(*sys.argv[1:])
