# Run by `make test`, for every change.
"""Tests that installed files are hardened, and that missing hardening is detected.

Usage: hardening_test.py CMAKE BUILD_DIRECTORY COMPILER OBJDUMP FILE..., with the program last.
"""

import json
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile
import unittest

cmake, build, compiler, objdump = sys.argv[1], pathlib.Path(sys.argv[2]), sys.argv[3], sys.argv[4]
files = [pathlib.Path(file) for file in sys.argv[5:]]
targets = ["tavrin_driver", "tavrin_colorimetry", "tavrin_diagnostics", "tavrin_xml", "tavrin_support", "tavrin_logger",
           "tavrin_tool_parts", "tavrin_tool"]
del sys.argv[1:]

# Functions of the C library's start files and of the compiler.
FOREIGN = re.compile(r"_init|_fini|_start|_dl_relocate_static_pie|__stack_chk_fail_local|__x86\.get_pc_thunk\..*")

# By the compiler's architecture: the option that enables the processor's check of targets of calls and jumps, the
# option that disables it, and the instructions at the beginning of checked functions. 32-bit ARM has no such check.
BRANCHES = {
    "x86_64": ("-fcf-protection=full", "-fcf-protection=none", ("endbr64",)),
    "i686": ("-fcf-protection=full", "-fcf-protection=none", ("endbr32",)),
    "aarch64": ("-mbranch-protection=standard", "-mbranch-protection=none", ("bti", "paciasp")),
    "arm": (None, None, None),
}


def output_of(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, **options).stdout


SWITCH, NO_SWITCH, BEGINNINGS = BRANCHES[output_of(compiler, "-dumpmachine").split("-")[0]]
PRODUCER_SWITCHES = ["-fstack-protector-strong", "-fstack-clash-protection", *([SWITCH] if SWITCH else [])]


def readelf(file, *options):
    return output_of("readelf", "--wide", *options, file)


def segment_findings(file):
    """Checks which parts are writable and executable."""
    segments = re.findall(r"^  (\w+) +0x.* ([R ][W ][E ]) 0x\w+$", readelf(file, "--program-headers"), re.M)
    flags = {name: access for name, access in segments if name != "LOAD"}
    if "GNU_STACK" not in flags or "E" in flags["GNU_STACK"]:
        yield "the stack is executable"
    if "GNU_RELRO" not in flags:
        yield "there is no RELRO"
    if not any(name == "LOAD" and "E" in access for name, access in segments):
        yield "no code has been found"
    if any(name == "LOAD" and "W" in access and "E" in access for name, access in segments):
        yield "a segment can be written and executed"


def dynamic_findings(file):
    dynamic = readelf(file, "--dynamic")
    if not re.search(r"\(FLAGS_1\).*\bNOW\b", dynamic):
        yield "symbols are bound lazily, so RELRO leaves the table of functions writable"
    if "TEXTREL" in dynamic:
        yield "it has relocations in code"
    if "Type:                              DYN" not in readelf(file, "--file-header"):
        yield "it is not position-independent"


def function_findings(file):
    """Checks control-flow protection and stack protection."""
    symbols = readelf(file, "--symbols")
    if not re.search(r"UND __stack_chk_fail\b", symbols):
        yield "no function has a stack protector"
    shown = re.findall(r": ([0-9a-f]+) +\w+ FUNC +(?:GLOBAL|WEAK) +\w+ +\d+ ([^@\s]+)", symbols)
    functions = {int(address, 16): name for address, name in shown if not FOREIGN.fullmatch(name)}
    if not functions:
        yield "no function has been found"
    if not BEGINNINGS:
        return
    disassembly = output_of(objdump, "--disassemble", "--no-show-raw-insn", file)
    begins = re.findall(r"^([0-9a-f]+) <.*>:\n +[0-9a-f]+:\t(\S+)", disassembly, re.M)
    instructions = {int(address, 16): instruction for address, instruction in begins}
    for address, name in sorted(functions.items()):
        if instructions[address] not in BEGINNINGS:
            yield f"{name} does not begin with {' or '.join(BEGINNINGS)}"


def compiler_findings(file):
    """Yields the options that the debug information shows to be missing."""
    information = readelf(file, "--debug-dump=info", "--dwarf-depth=1")
    producers = re.findall(r"DW_AT_producer.*: (GNU C\+\+.*)", information)
    if not producers:
        yield "the debug information does not contain the compiler options"
    for switch in PRODUCER_SWITCHES:
        if not all(re.search(rf" {switch}(?= |$)", producer) for producer in producers):
            yield f"a source file was compiled without {switch}"


def findings(file):
    checks = [segment_findings, dynamic_findings, function_findings, compiler_findings]
    return [finding for check in checks for finding in check(file)]


def fortification(entry):
    """Returns the level of _FORTIFY_SOURCE of a source file of the compilation database."""
    command = shlex.split(entry["command"])
    del command[command.index("-c"):]
    del command[command.index("-o"):]
    macros = output_of(*command, "-E", "-dM", "-x", "c++", "-include", "features.h", "/dev/null", cwd=entry["directory"])
    return int(re.search(r"^#define __USE_FORTIFY_LEVEL (\d)", macros, re.M)[1])


class Hardening(unittest.TestCase):
    def test_is_in_every_file(self):
        self.assertEqual(len(files), 7)
        for file in files:
            with self.subTest(file=file.name):
                self.assertEqual(findings(file), [])

    def test_calls_of_the_c_library_are_checked(self):
        entries = json.loads((build / "compile_commands.json").read_text())
        for target in targets:
            own = [entry for entry in entries if f"/{target}.dir/" in entry["command"]]
            with self.subTest(target=target):
                self.assertTrue(own)
                self.assertEqual({bool(re.search("-D_FORTIFY_SOURCE=[23]", entry["command"])) for entry in own}, {True})
                self.assertGreaterEqual(fortification(own[0]), 2)
        self.assertRegex(readelf(files[-1], "--dyn-syms"), r"UND __\w+_chk@GLIBC")

    def test_what_is_installed_looks_for_libraries_beside_itself_only(self):
        with tempfile.TemporaryDirectory() as prefix:
            for component in ("runtime", "tools"):
                output_of(cmake, "--install", build, "--prefix", prefix, "--component", component)
            # A completion has the same name as the tool.
            installed = {file.name: path for file in files for path in pathlib.Path(prefix).rglob(file.name)
                         if path.is_file() and path.read_bytes().startswith(b"\x7fELF")}
            self.assertEqual(len(installed), len(files))
            for name, path in installed.items():
                with self.subTest(file=name):
                    places = re.findall(r"\((?:RPATH|RUNPATH)\).*\[(.*)\]", readelf(path, "--dynamic"))
                    self.assertTrue(places)
                    for place in ":".join(places).split(":"):
                        self.assertRegex(place, r"^\$ORIGIN(/\.\./lib[\w/-]*)?$")

    def test_lack_of_it_is_noticed(self):
        weak = ["-fno-stack-protector", "-fno-stack-clash-protection", *([NO_SWITCH] if NO_SWITCH else []),
                "-Wl,-z,norelro,-z,lazy,-z,execstack", "-shared", "-fPIC", "-g", "-O2", "-x", "c++"]
        with tempfile.TemporaryDirectory() as directory:
            library = pathlib.Path(directory, "weak.so")
            output_of(compiler, *weak, "-o", library, "-", input="int exported(int a) { return a + 1; }")
            self.assertEqual(findings(library), [
                "the stack is executable",
                "there is no RELRO",
                "symbols are bound lazily, so RELRO leaves the table of functions writable",
                "no function has a stack protector",
                *([f"_Z8exportedi does not begin with {' or '.join(BEGINNINGS)}"] if BEGINNINGS else []),
                *(f"a source file was compiled without {switch}" for switch in PRODUCER_SWITCHES),
            ])


if __name__ == "__main__":
    unittest.main()
