#!/usr/bin/env python3
# Run by `make bench`, before and after changes that affect speed; the other scripts import it.
"""Runs all benchmarks of a build and writes their results as one file.

Usage: run.py BUILD RESULT [OPTION...]

BUILD is a build directory, RESULT a JSON file in the form of Google Benchmark's, with the median of each
measurement under the name of its program: "CmdMessage/ToXml/3". Where callgrind can count, "instructions" are
those of one round. "spread" is the standard deviation of the processor time as a part of its mean.

Each OPTION is passed to the programs. They are --benchmark_... options; later ones win over those given here.
"""

import json
import re
import subprocess
import sys
import tempfile
from pathlib import Path

TIMED = [
    "--benchmark_repetitions=7",
    "--benchmark_min_time=0.05",
    "--benchmark_enable_random_interleaving=true",
    "--benchmark_report_aggregates_only=true",
]
WITHOUT_LARGE_INPUTS = "--benchmark_filter=-/300(/|$)|/10000"
ONE_ROUND = "--benchmark_min_time=0.000000001"
WITHOUT_COUNTS = ("LoadTime", "Memory")

# The suffixes that Google Benchmark adds to the names of measurements that are repeated or timed manually.
ADDED_TO_NAMES = re.compile(r"/(iterations:\d+|repeats:\d+|manual_time)")


def run(command, directory):
    """Returns the result file of a benchmark program. Its output is shown only if it fails."""
    out = Path(directory) / "result.json"
    process = subprocess.run(
        [*command, f"--benchmark_out={out}", "--benchmark_out_format=json"],
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        text=True,
        check=False,
    )
    if process.returncode != 0:
        raise SystemExit(f"{process.stdout}{' '.join(command)}: exit status {process.returncode}")
    text = out.read_text()
    result = json.loads(text) if text else {"context": None, "benchmarks": []}  # no output if the filter matches nothing
    for entry in result["benchmarks"]:
        if entry.get("error_occurred"):
            raise SystemExit(f"{entry['name']}: {entry['error_message']}")
    return result


def programs(build):
    """Returns the benchmark programs of a build by their names."""
    paths = sorted((Path(build) / "benchmarks").glob("*_benchmark"))
    if not paths:
        raise SystemExit(f"{build}: no benchmark programs")
    return [(path.name.removesuffix("_benchmark"), path) for path in paths]


def plain_name(program, entry):
    return f"{program}/{ADDED_TO_NAMES.sub('', entry['run_name'])}"


def medians(program, entries):
    """Returns the entries of a program by their names: medians, and measurements that run once."""
    spreads = {entry["run_name"]: entry["cpu_time"] for entry in entries if entry.get("aggregate_name") == "cv"}
    return {
        plain_name(program, entry): {
            **entry,
            "name": plain_name(program, entry),
            "spread": spreads.get(entry["run_name"], 0),
        }
        for entry in entries
        if entry.get("aggregate_name", "median") == "median"
    }


def instructions(program, path, options):
    """Returns the instructions of one iteration of each measurement, by name."""
    with tempfile.TemporaryDirectory() as directory:
        dump = Path(directory) / "callgrind"
        callgrind = ["valgrind", "--tool=callgrind", "--collect-atstart=no", f"--callgrind-out-file={dump}"]
        entries = run([*callgrind, str(path), WITHOUT_LARGE_INPUTS, *options, ONE_ROUND], directory)["benchmarks"]
        counted = [entry for entry in entries if "counted_rounds" in entry]
        dumps = [Path(f"{dump}.{number}") for number in range(1, len(counted) + 1)]
        if not all(map(Path.exists, dumps)) or Path(f"{dump}.{len(counted) + 1}").exists():
            raise SystemExit(f"{path}: callgrind's dumps are not those of the {len(counted)} measurements")
        totals = [int(re.search(r"^summary: (\d+)", file.read_text(), re.MULTILINE)[1]) for file in dumps]
    return {
        plain_name(program, entry): total / entry["counted_rounds"] for entry, total in zip(counted, totals)
    }


def processor():
    """Returns the name of the processor."""
    for line in Path("/proc/cpuinfo").read_text().splitlines():
        if line.startswith("model name"):
            return line.partition(":")[2].strip()
    return "unknown"


def main(build, result, *options):
    context = {}
    measured = {}
    for program, path in programs(build):
        print(f"{program} ...", file=sys.stderr, flush=True)
        with tempfile.TemporaryDirectory() as directory:
            timed = run([str(path), *TIMED, *options], directory)
        context = timed["context"] or context
        measured |= medians(program, timed["benchmarks"])
        if program not in WITHOUT_COUNTS:
            for name, count in instructions(program, path, options).items():
                measured.setdefault(name, {"name": name})["instructions"] = count
    if not context:
        raise SystemExit("no measurement matches")
    if context["optimised"] != "yes":
        print("warning: this is an unoptimised build; its figures are not meaningful", file=sys.stderr)
    context["processor"] = processor()
    merged = {"context": context, "benchmarks": list(measured.values())}
    Path(result).write_text(json.dumps(merged, indent=1) + "\n")


if __name__ == "__main__":
    if len(sys.argv) < 3 or sys.argv[1].startswith("-"):
        raise SystemExit(__doc__)
    main(*sys.argv[1:])
