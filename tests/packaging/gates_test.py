#!/usr/bin/env python3
# Run by `make test`, for every change.
"""Tests that the checks of the project report the errors that they exist for.

Usage: gates_test.py CMAKE SOURCE_DIRECTORY BUILD_DIRECTORY
"""

import collections
import importlib.machinery
import importlib.util
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import unittest.mock

cmake, source, build = sys.argv[1], pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3])
ctest = pathlib.Path(cmake).with_name("ctest")
del sys.argv[1:]


def run(*command, **options):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)


def module(name, path):
    """Returns a script as a module."""
    sys.dont_write_bytecode = True
    loader = importlib.machinery.SourceFileLoader(name, str(path))
    sys.modules[name] = importlib.util.module_from_spec(importlib.util.spec_from_loader(name, loader))
    loader.exec_module(sys.modules[name])
    return sys.modules[name]


class WithScratchDirectory(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.scratch = pathlib.Path(directory.name)

    def write(self, name, text, mode=0o644):
        path = self.scratch / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
        path.chmod(mode)
        return path

    def compile(self, name, code, *options):
        self.write(name + ".cpp", code)
        compiled = run("c++", *options, "-o", name, name + ".cpp", cwd=self.scratch)
        self.assertEqual(compiled.returncode, 0, compiled.stdout)


class InstallPackages(WithScratchDirectory):
    """packaging/install-packages, on a machine where only "present" is installed."""

    def install(self, packages, *sections, apt_status=0, simulated=""):
        self.write("bin/dpkg-query", '#!/bin/sh\nfor name; do :; done\n[ "$name" = present ] && printf installed\n', 0o755)
        self.write("bin/id", "#!/bin/sh\necho 0\n", 0o755)
        self.write("bin/apt-get", f'''#!/bin/sh
case "$*" in
  *--simulate*) echo "{simulated}" ;;
  install*) echo "apt-get $*"; exit {apt_status} ;;
  *) echo "apt-get $*" ;;
esac
''', 0o755)
        environment = {**os.environ, "PATH": f"{self.scratch}/bin:{os.environ['PATH']}"}
        return run(source / "packaging/install-packages", self.write("list", packages), *sections, env=environment)

    def test_installs_exactly_the_missing_packages(self):
        result = self.install("# a comment\npresent\n\nabsent # why\nother\n")
        self.assertEqual(result.returncode, 0, result.stdout)
        installed = [line.split() for line in result.stdout.splitlines() if line.startswith("apt-get") and "install" in line]
        self.assertEqual(len(installed), 1, result.stdout)
        self.assertEqual([word for word in installed[0] if word in ("present", "absent", "other")], ["absent", "other"])

    def test_updates_the_lists_before_it_installs(self):
        calls = [line for line in self.install("absent\n").stdout.splitlines() if line.startswith("apt-get")]
        self.assertEqual(calls[0], "apt-get update")

    def test_calls_nothing_when_nothing_is_missing(self):
        self.assertEqual(self.install("present\n").stdout, "")

    def test_installs_the_named_sections(self):
        packages = "[run]\nfirst\n[test]\nsecond\n# more\n[tests]\nthird\n"
        for sections, expected in (((), {"first", "second", "third"}), (("run",), {"first"}),
                                   (("test",), {"second"}), (("run", "tests"), {"first", "third"})):
            last = self.install(packages, *sections).stdout.splitlines()[-1].split()
            self.assertEqual({word for word in last if word in ("first", "second", "third")}, expected, sections)

    def test_accepts_a_command_in_place_of_its_package(self):
        self.assertEqual(self.install("absent sh\n").stdout, "")
        self.assertIn("absent", self.install("absent no-such-command\n").stdout)

    def test_fails_when_installing_fails(self):
        self.assertNotEqual(self.install("absent\n", apt_status=100).returncode, 0)

    def test_removes_no_package_and_names_those_that_conflict(self):
        self.assertIn("--no-remove", self.install("absent\n").stdout)
        result = self.install("absent\n", apt_status=100, simulated="Remv rival [1.0]")
        self.assertEqual(result.returncode, 100)
        self.assertRegex(result.stdout, r"conflict .*: rival\n")


class PackageList(unittest.TestCase):
    """packaging/debian-packages.txt, compared with what the build looks for."""

    OWNERS = {
        "abidiff": "abigail-tools", "abidw": "abigail-tools", "bash": "bash", "clang++": "clang", "dpkg-architecture": "dpkg-dev",
        "dpkg-deb": "dpkg-dev", "fish": "fish", "gcovr": "gcovr", "jsonschema": "python3-jsonschema",
        "ld.lld": "lld", "lintian": "lintian", "man": "man-db", "mandoc": "mandoc", "matplotlib": "python3-matplotlib",
        "mpmath": "python3-mpmath", "sphinx": "python3-sphinx", "myst_parser": "python3-myst-parser", "furo": "furo",
        "sphinx_copybutton": "python3-sphinx-copybutton",
        "ninja": "ninja-build", "npm": "npm", "pkg-config": "pkgconf", "script": "bsdutils", "valgrind": "valgrind",
        "zsh": "zsh",
        "Boost": "libboost-dev", "fmt": "libfmt-dev", "jsoncpp": "libjsoncpp-dev", "log4cplus": "liblog4cplus-dev",
        "EXPAT": "libexpat1-dev", "CLI11": "libcli11-dev", "GTest": "libgtest-dev", "Python3": "python3",
        "Doxygen": "doxygen", "benchmark": "libbenchmark-dev", "pugixml": "libpugixml-dev", "LibXml2": "libxml2-dev",
        "tinyxml2": "libtinyxml2-dev", "lcms2": "liblcms2-dev", "PkgConfig": "pkgconf", "Threads": "g++",
    }

    REQUIRED = {"Boost", "fmt", "jsoncpp", "log4cplus", "EXPAT", "CLI11"}

    def test_has_the_owner_of_everything_that_the_build_looks_for(self):
        sections = {}
        for line in (source / "packaging/debian-packages.txt").read_text().splitlines():
            word = line.split("#")[0].strip().split(" ")[0]
            if word.startswith("["):
                section = sections.setdefault(word, set())
            elif word:
                section.add(word)
        listed = set().union(*sections.values())
        wanted = set()
        directories = [entry for entry in source.iterdir() if entry.is_dir() and entry.name not in ("build", ".git")]
        lists = [file for directory in directories for file in directory.rglob("CMakeLists.txt")]
        for file in [source / "CMakeLists.txt", *lists, *source.glob("cmake/*.cmake")]:
            text = file.read_text()
            wanted |= set(re.findall(r"^ *(?:find_package\(|tavrin_find_package_for\(TAVRIN_\w+ )(\w+)", text, re.M))
            for words in re.findall(r'^ *tavrin_find_(?:programs|python_modules)_for\("[^"]*" \w+ ([^$)]+)\)', text, re.M):
                wanted |= set(words.split())
        wanted -= {"tavrin_driver"}
        self.assertTrue({"EXPAT", "Doxygen", "valgrind", "mpmath"} < wanted, wanted)
        self.assertEqual({name for name in wanted if self.OWNERS.get(name) not in listed}, set())
        self.assertEqual({name for name in self.REQUIRED if self.OWNERS[name] not in sections["[run]"]}, set())

    def test_is_installed_for_the_first_run_only_as_far_as_that_needs(self):
        for target, sections in (("run", [["run"]]), ("install", [["run"]]), ("build-default", [["run", "test"]]), ("lint", [["run", "test"], []])):
            commands = run("make", "--dry-run", target, cwd=source).stdout
            installed = [line.split()[2:] for line in commands.splitlines() if line.startswith("packaging/install-packages")]
            self.assertEqual(sorted(installed), sorted(sections), commands)


class CompilerOptions(unittest.TestCase):
    def test_no_target_contracts_floating_point_expressions(self):
        commands = json.loads((build / "compile_commands.json").read_text())
        self.assertGreater(len(commands), 10)
        without = [entry["file"] for entry in commands if "-ffp-contract=off" not in entry["command"].split()]
        self.assertEqual(without, [])


class Memcheck(WithScratchDirectory):
    """`ctest -T memcheck` with the settings of the build."""

    def memcheck(self, code):
        self.compile("program", code, "-g")
        self.write("CTestTestfile.cmake", "add_test(program program)\n")
        settings = (build / "DartConfiguration.tcl").read_text()
        self.write("DartConfiguration.tcl", settings.replace(str(build), str(self.scratch)))
        return run(ctest, "-T", "memcheck", "--no-tests=error", cwd=self.scratch)

    def test_passes_a_correct_program(self):
        result = self.memcheck("int main() { delete new int; }")
        self.assertEqual(result.returncode, 0, result.stdout)

    def test_fails_for_an_error(self):
        for name, code in (("leak", "int* leaked; int main() { leaked = new int; leaked = nullptr; }"),
                           ("failure", "int main() { return 1; }"),
                           ("started program", """#include <sys/wait.h>
                                #include <unistd.h>
                                int main(int count, char** program) {
                                  if (count > 1) return *new char[1]() == *new int ? 0 : 0;
                                  if (fork() == 0) execl(*program, *program, "again", nullptr);
                                  int status = 0;
                                  wait(&status);
                                  return WEXITSTATUS(status);
                                }""")):
            with self.subTest(name):
                result = self.memcheck(code)
                self.assertNotEqual(result.returncode, 0, result.stdout)

    def test_includes_the_programs_of_the_library_and_the_fuzz_targets(self):
        listed = run(ctest, "-C", "Memcheck", "-L", "^memcheck$", "--show-only", cwd=build).stdout
        for program in ("CmdMessage_test", "XmlDocument_test", "TestKit_test", "CmdMessageJson_fuzz"):
            self.assertIn(f"Memcheck.{program}\n", listed)


class ExportedSymbols(WithScratchDirectory):
    """packaging/abi, which lists the same symbols for every linker."""

    CODE = """
        struct Slot { ~Slot() {} };
        template <class T> struct Cache { static Slot& Get() { static thread_local Slot slot; return slot; } };
        struct Shown { void first(); void later(); };
        void Shown::first() { Cache<int>::Get(); }
        void Shown::later() {}
    """
    VERSIONS = 'V_1 { global: _ZN5Shown5firstEv; local: *; };\nV_1.1 { global: _ZN5Shown5laterEv; } V_1;\n'

    def test_are_the_same_with_every_linker(self):
        self.write("versions", self.VERSIONS)
        linkers = [linker for linker in ("bfd", "gold", "lld") if shutil.which(f"ld.{linker}")]
        self.assertTrue({"bfd", "lld"} <= set(linkers), linkers)
        for linker in linkers:
            with self.subTest(linker):
                self.compile(linker, self.CODE, "-shared", "-fPIC", f"-fuse-ld={linker}",
                             "-Wl,--version-script=versions,-soname,libshown.so.1")
                symbols = run(source / "packaging/abi", "symbols", self.scratch / linker).stdout.splitlines()
                self.assertEqual(symbols, ["libshown.so.1", " V_1.1@V_1.1", " V_1@V_1", " _ZN5Shown5firstEv@V_1",
                                           " _ZN5Shown5laterEv@V_1.1"])


class Coverage(WithScratchDirectory):
    def gcovr(self, code):
        self.compile("tavrin_driver/program", code, "--coverage", "-O0")
        self.assertEqual(run(self.scratch / "tavrin_driver/program").returncode, 0)
        shutil.copy(source / "gcovr.cfg", self.scratch)  # whose filter is relative to it
        return run("gcovr", cwd=self.scratch)

    def test_passes_when_every_line_and_branch_runs(self):
        result = self.gcovr("int main() {\n  int sum = 0;\n  for (int i = 0; i < 3; ++i) sum += i;\n  return sum - 3;\n}\n")
        self.assertEqual(result.returncode, 0, result.stdout)

    def test_fails_when_a_line_does_not_run(self):
        result = self.gcovr("int twice(int i) {\n  return 2 * i;\n}\nint main() {\n  return 0;\n}\n")
        self.assertNotEqual(result.returncode, 0, result.stdout)

    def test_fails_when_a_branch_does_not_run(self):
        result = self.gcovr("int main(int argc, char**) {\n  return argc > 5 ? 1 : 0;\n}\n")
        self.assertNotEqual(result.returncode, 0, result.stdout)


class Mutation(WithScratchDirectory):
    @classmethod
    def setUpClass(cls):
        cls.mutate = module("mutate", source / "scripts/mutation/mutate")

    def test_counts_a_mutant_as_killed_only_when_a_test_fails(self):
        for program, killed in (("/bin/true", False), ("/bin/false", True)):
            self.assertEqual(self.mutate.Worker.fails(self.mutate.Run(pathlib.Path(program), "*", 0.1, False)), killed)

    def test_refuses_tests_that_fail_without_a_mutant(self):
        passing, failing = (self.mutate.Run(pathlib.Path(program), "*", 0.1, False) for program in ("/bin/true", "/bin/false"))
        self.mutate.Worker.must_pass([passing])
        self.assertRaises(SystemExit, self.mutate.Worker.must_pass, [passing, failing])

    def test_counts_a_mutant_that_never_ends_as_killed(self):
        program = self.write("endless_test", "#!/bin/sh\nwhile :; do :; done\n", 0o755)
        self.assertTrue(self.mutate.Worker.fails(self.mutate.Run(program, "*", 0, False)))

    def keys_of(self, code):
        with unittest.mock.patch.object(self.mutate, "ROOT", self.scratch):
            return [mutant.key for mutant in self.mutate.mutants_of(self.write("a.cpp", code).name)]

    def test_excuses_only_mutants_of_the_present_sources(self):
        keys = [mutant.key for path in self.mutate.default_files() for mutant in self.mutate.mutants_of(path)]
        self.assertEqual(sorted(self.mutate.equivalents().keys() - set(keys)), [])
        self.assertEqual([key for key, count in collections.Counter(keys).items() if count > 1], [])

    def test_identifies_mutants_by_their_declaration_and_not_by_the_text_of_the_line(self):
        key = "a.cpp\tzq::Sum\t+\t-\t1"
        for code in ("int zq::Sum(int a, int b) {\n  return a + b;\n}\n",
                     "int c = 1 + 1;\n\n// the sum\nint zq::Sum(int left, int right) { return twice(left) + right; }\n"):
            self.assertIn(key, self.keys_of(code))
        for code in ("int zq::Sum(int a, int b) { return a - b; }\n", "int zq::Total(int a, int b) { return a + b; }\n"):
            self.assertNotIn(key, self.keys_of(code))

    def test_numbers_equal_changes_in_a_declaration(self):
        keys = self.keys_of("int Sum(int a) { return a + a + a; }\nint Other(int a) { return a + a; }\n")
        self.assertEqual(keys, ["a.cpp\tSum\t+\t-\t1", "a.cpp\tSum\t+\t-\t2", "a.cpp\tOther\t+\t-\t1"])

    def test_names_the_declaration_of_a_mutant(self):
        for code, name in (("namespace zq { namespace { int one = 1 + 2; } }", "one"),
                           ("int values[] = {1 + 2, 3};", "values"),
                           ("std::size_t size{1 + 2};", "size"),
                           ("constexpr int big = int{2} + 20;", "big"),
                           ("enum class Kind { first = 1 + 2 };", "Kind"),
                           ("class A final : public B { public: int Get() const { return 1 + 2; } };", "A::Get"),
                           ("struct A { struct B { int field = 1 + 2; }; };", "A::B::field"),
                           ("A::A(int a) : a_(a), b_{a} { Run(a + 1); }", "A::A"),
                           ("template <class T, class = Enable<A<T>>> T zq::Get() { return T() + 1; }", "zq::Get"),
                           ("bool operator==(A a, A b) { return a + 1; }", "operator=="),
                           ("bool A::operator()(A a) const { return a + 1; }", "A::operator()"),
                           ("namespace zq { MACRO(one) } int Get() { return 1 + 2; }", "Get"),
                           ("[[nodiscard]] int Get() { return 1 + 2; }", "Get")):
            plus = [key.split("\t")[1] for key in self.keys_of(code) if "\t+\t" in key]
            self.assertEqual(plus, [name], code)

    def test_fails_when_a_mutant_survives(self):
        mutant = self.mutate.Mutant("a.cpp", 2, 3, "-", 1, "a + b", "a - b", "a.cpp\tSum\t+\t-\t1")
        for outcome, passes in (("killed", True), ("no mutant", True), ("survived", False)):
            self.mutate.fingerprint = lambda mutant: "id"
            with open(os.devnull, "w") as nowhere:
                output, sys.stdout = sys.stdout, nowhere
                try:
                    self.assertEqual(self.mutate.report([mutant], {"id": outcome}), passes, outcome)
                finally:
                    sys.stdout = output


class Changelog(WithScratchDirectory):
    """The version of the packages and the version of the build."""

    def configure(self):
        return run(cmake, "-S", self.scratch / "source", "-B", self.scratch / "build", "-G", "Ninja",
                   "-DBUILD_SHARED_LIBS=ON", "-DTAVRIN_TESTS=OFF", "-DTAVRIN_BENCHMARKS=OFF", "-DTAVRIN_DOCS=OFF")

    def test_that_names_another_version_is_refused(self):
        ignored = shutil.ignore_patterns("build", ".git", "corpora")
        shutil.copytree(source, self.scratch / "source", ignore=ignored)
        self.assertEqual(self.configure().returncode, 0)
        changelog = self.scratch / "source/packaging/debian/changelog"
        changelog.write_text(re.sub(r"\(\d+\.\d+\.\d+-", "(99.0.0-", changelog.read_text(), count=1))
        refused = self.configure()
        self.assertNotEqual(refused.returncode, 0)
        self.assertIn('"99.0.0"', refused.stdout)


class Fuzzing(unittest.TestCase):
    def test_of_documents_reaches_beyond_4_kib(self):
        targets = re.findall(r"tavrin_fuzz\((\w+) MAX_LENGTH (\d+) DICTIONARY (\w+)", (source / "fuzz/CMakeLists.txt").read_text())
        lengths = {name: int(length) for name, length, kind in targets if kind not in ("number", "csv")}
        self.assertGreater(len(lengths), 8)
        self.assertEqual({name for name, length in lengths.items() if length <= 4096}, set())


class Corpora(unittest.TestCase):
    """scripts/minimise-corpora, and what it has left in fuzz/corpora."""

    @classmethod
    def setUpClass(cls):
        cls.minimise = module("minimise", source / "scripts/minimise-corpora")

    def test_are_within_their_limits(self):
        files = [file for file in (source / "fuzz/corpora").rglob("*") if file.is_file()]
        self.assertGreater(len(files), 100)
        self.assertLessEqual(len(files), self.minimise.LIMITS["files"])
        self.assertLessEqual(sum(file.stat().st_size for file in files), self.minimise.LIMITS["bytes"])

    def test_keep_the_inputs_that_reach_most(self):
        inputs = [("a", 10, {1, 2}), ("b", 10, {1, 2, 3}), ("c", 10, {4}), ("d", 9, {4, 5}), ("e", 1, set())]
        for files, size, chosen in ((9, 99, ["b", "d"]), (1, 99, ["b"]), (9, 18, ["b"]), (9, 9, ["d"])):
            limits = {"files": files, "bytes": size}
            self.assertEqual(self.minimise.choose(inputs, limits), chosen, limits)


class Scripts(unittest.TestCase):
    def test_begin_with_who_runs_them_and_when(self):
        directories = [entry for entry in source.iterdir() if entry.is_dir() and entry.name not in ("build", ".git", "fuzz")]
        without, count = [], 0
        for path in (path for directory in directories for path in directory.rglob("*") if path.is_file()):
            begin = path.read_bytes()[:300].decode(errors="replace")
            if not begin.startswith("#!") and path.suffix not in (".py", ".sh", ".awk"):
                continue
            count += 1
            if not re.match(r"(#!.*\n)?# Run by .", begin):
                without.append(str(path))
        self.assertEqual(without, [])
        self.assertGreater(count, 20)


class SecurityContact(unittest.TestCase):
    def test_is_reachable_or_documented_as_missing(self):
        address = re.search(r" -- .*<.*@(.*)>", (source / "packaging/debian/changelog").read_text()).group(1)
        isPlaceholder = re.search(r"(^|\.)(home\.arpa|example|invalid|localhost|test)$", address) is not None
        isMissing = "There is no address for confidential reports yet" in (source / "docs/security.md").read_text()
        self.assertEqual(isMissing, isPlaceholder, address)


if __name__ == "__main__":
    unittest.main()
