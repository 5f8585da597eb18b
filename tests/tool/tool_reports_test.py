# Run by `make test`, for every change.
"""Tests reports of the tool for people: options, hints, carets, directories, and created messages.

Usage: tool_reports_test.py TAVRIN EXAMPLES [--unlimited]
"""
import json
import os
import pty
import signal
import subprocess
import sys
import tempfile
import unittest

TAVRIN, EXAMPLES, *OPTIONS = sys.argv[1:]


def run(*arguments, text="", cwd=EXAMPLES):
    process = subprocess.run([TAVRIN, *arguments], cwd=cwd, input=text.encode(), stdout=subprocess.PIPE,
                             stderr=subprocess.PIPE, check=False)
    return process.returncode, process.stdout.decode(), process.stderr.decode()


def on_terminal(*arguments, text=""):
    """Returns the output on a terminal. If FILE is an argument, it is replaced by a file with the text."""
    with tempfile.TemporaryDirectory() as directory:
        path = os.path.join(directory, "FILE")
        with open(path, "wb") as file:
            file.write(text.encode())
        master, slave = pty.openpty()
        process = subprocess.Popen([TAVRIN, "--color", "never", *arguments], cwd=directory, stdin=slave,
                                   stdout=slave, stderr=slave)
        os.close(slave)
        shown = b""
        while True:
            try:
                block = os.read(master, 65536)
            except OSError:
                break
            if not block:
                break
            shown += block
        os.close(master)
        process.wait()
    return shown.decode().replace("\r\n", "\n")


class Strict(unittest.TestCase):
    def test_misspelt_elements_end_with_status_1_only_if_asked_for(self):
        text = ("<devicecommand><comand>X</comand><params><param><nane>A</nane><value><statc>1</statc></value>"
                "</param></params></devicecommand>")
        for options, status in (((), 0), (("--strict",), 1)):
            self.assertEqual(run("command", "-", *options, text=text)[0], status)
        err = run("command", "-", text=text)[2]
        for name in ("command", "name", "static"):
            self.assertIn(f'did you mean "{name}"?', err)

    def test_notes_are_no_findings(self):
        self.assertEqual(run("conditional", "--strict", "-", text="EQUAL")[0], 0)

    def test_unreadable_files_stay_worse(self):
        self.assertEqual(run("command", "--strict", "commands/scene_lenient.xml", "none.xml")[0], 3)


class Files(unittest.TestCase):
    def test_directories_are_searched_in_order(self):
        with tempfile.TemporaryDirectory() as directory:
            os.makedirs(os.path.join(directory, "b", "c"))
            for name in ("b/c/2.xml", "b/1.json", "3.xml", "4.txt"):
                with open(os.path.join(directory, name), "w", encoding="utf-8") as file:
                    file.write('[{"command": "X"}]' if name.endswith("json") else "<a><command/></a>")
            _, out, _ = run("command", "--json", ".", cwd=directory)
            self.assertEqual([json.loads(line)["file"] for line in out.splitlines()],
                             ["./3.xml", "./b/1.json", "./b/c/2.xml"])
            _, out, _ = run("binding", "--json", "b", cwd=directory)
            self.assertEqual([json.loads(line)["file"] for line in out.splitlines()], ["b/c/2.xml"])

    def test_a_directory_without_files_is_an_error(self):
        with tempfile.TemporaryDirectory() as directory:
            self.assertEqual(run("validate", directory),
                             (3, "", f"tavrin: {directory}: the directory contains no *.xml\n"))
            self.assertIn('"file/no-files"', run("command", "--json", directory)[1])

    def test_several_files_have_a_total(self):
        self.assertTrue(run("validate", "projects")[2].endswith("\ntavrin: 13 files: 47 errors\n"),
                        run("validate", "projects")[2][-100:])
        self.assertNotIn("files", run("validate", "projects/house.xml")[2])

    def test_options_end_at_two_dashes(self):
        with tempfile.TemporaryDirectory() as directory:
            with open(os.path.join(directory, "--json"), "w", encoding="utf-8") as file:
                file.write('[{"command": "X"}]')
            for arguments in (("command", "--", "--json"), ("--", "command", "--json"),
                              ("--color", "never", "--", "command", "--json"),
                              ("command", "--quiet", "--", "--json"),
                              ("command", "--json", "./--json", "--", "--json")):
                with self.subTest(arguments):
                    self.assertEqual(run(*arguments, cwd=directory)[0], 0)
            for arguments, problem in ((("command", "./--json", "--", "-x", "rules"), "-x: No such file"),
                                       (("command", "--", "rules"), "rules: No such file"),
                                       (("command", "--max-messages", "--", "a"), "--max-messages"),
                                       (("rules", "--", "-x"), '"-x"')):
                with self.subTest(arguments):
                    status, _, err = run(*arguments, cwd=directory)
                    self.assertNotEqual(status, 0)
                    self.assertIn(problem, err)
                    self.assertNotIn("\0", err)

    def test_quiet_leaves_the_status(self):
        for arguments, status in ((["command", "broken"], 3), (["binding", "bindings/lenient.xml"], 0),
                                  (["conditional", "conditionals/level_below.xml", "--test", "60"], 1),
                                  (["validate", "projects"], 1)):
            self.assertEqual(run(*arguments, "--quiet"), (status, "", ""))

    def test_a_closed_pipe_ends_quietly(self):
        for ignored in (False, True):
            def prepare(ignored=ignored):
                signal.signal(signal.SIGPIPE, signal.SIG_IGN if ignored else signal.SIG_DFL)
            reader, writer = os.pipe()
            os.close(reader)
            process = subprocess.run([TAVRIN, "rules"], stdout=writer, stderr=subprocess.PIPE, check=False,
                                     restore_signals=False, preexec_fn=prepare)
            os.close(writer)
            self.assertEqual((process.returncode, process.stderr), (-signal.SIGPIPE, b""))

    def test_an_interrupt_ends_quietly(self):
        process = subprocess.Popen([TAVRIN, "command", "-"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE)
        process.stdin.write(b" " * (1 << 20))  # more than the buffer of a pipe: the tool is reading
        process.send_signal(signal.SIGINT)
        out, err = process.communicate()
        self.assertEqual((process.returncode, out, err), (-signal.SIGINT, b"", b""))

    # AddressSanitizer reserves more addresses than any limit allows.
    if "--unlimited" not in OPTIONS:
        def test_a_file_that_does_not_fit_into_memory_is_named_and_the_next_one_read(self):
            with tempfile.TemporaryDirectory() as directory:
                with open(os.path.join(directory, "large.xml"), "wb") as file:
                    file.truncate((1 << 31) - 1)  # the largest size that a 32-bit program opens
                process = subprocess.run(["sh", "-c", 'ulimit -v 1000000; exec "$0" command large.xml "$1"', TAVRIN,
                                          os.path.join(EXAMPLES, "commands/light_on.xml")], cwd=directory,
                                         stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
            self.assertEqual(process.returncode, 3)
            self.assertIn(b"tavrin: large.xml: out of memory\n", process.stderr)
            self.assertIn(b'command "ON"', process.stdout)

        def test_missing_memory_for_threads_is_reported(self):
            # The size of the stack is that of the stacks of threads.
            process = subprocess.run(["sh", "-c", 'ulimit -s 1000000; ulimit -v 500000; exec "$@"', "sh", TAVRIN, "rules"],
                                     stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
            self.assertEqual((process.returncode, process.stdout), (3, b""))
            self.assertEqual(process.stderr, b"tavrin: Resource temporarily unavailable\n")

    def test_a_quiet_color_leaves_the_status_and_the_picture(self):
        self.assertEqual(run("color", "--quiet", "2700K", "0.2,0.9"), (0, "", ""))
        self.assertEqual(run("color", "--quiet", "2700K", "none"), (3, "", ""))
        self.assertEqual(run("color", "-q", "--input", "-", text="2700K\nnone\n"), (3, "", ""))
        self.assertEqual(run("color", "--quiet", "--input", "none.csv"),
                         (3, "", "tavrin: none.csv: No such file or directory\n"))
        status, out, _ = run("color", "--quiet", "--plot", "-", "2700K")
        self.assertEqual((status, out[:5]), (0, "<?xml"))


class Terminal(unittest.TestCase):
    def test_a_caret_and_underline_mark_the_place(self):
        self.assertEqual(on_terminal("command", "FILE", text='<devicecommand>\n\t<command>X</command>\n'
                                                             '\t<日本/>\t<params ö="1"/>\n</devicecommand>\n'),
                         'tavrin: FILE:3:2: warning: element "日本" in "devicecommand" is ignored '
                         '[command/unknown-element]\n'
                         '  3 |     <日本/> <params ö="1"/>\n'
                         '    |     ^~~~~~~\n'
                         'tavrin: FILE:3:20: warning: attribute "ö" of "params" is ignored '
                         '[command/unknown-attribute]\n'
                         '  3 |     <日本/> <params ö="1"/>\n'
                         '    |                     ^~~~~\n'
                         'FILE: command "X", 0 parameters\n')

    def test_long_lines_are_cut_around_the_place(self):
        shown = on_terminal("command", "FILE", text='[{"command": "' + "x" * 500 + '", "y": "z", "params": []}]')
        line, underline = shown.splitlines()[1:3]
        self.assertLess(len(line), 90)
        self.assertEqual(line[underline.index("^"):underline.rindex("~") + 1], '"y": "z"')
        self.assertTrue(line.startswith("  1 | ...xxx"))

    def test_the_cut_of_a_very_long_line_leaves_characters_whole(self):
        for filler in ("é", "xé", "日", "x日", "xx日"):
            with self.subTest(filler):
                shown = on_terminal("command", "FILE", text='[{"command": "' + filler * 2000 + '", "y": "' +
                                    filler * 2000 + '", "params": []}]')
                line = shown.splitlines()[1]
                self.assertTrue(line.startswith("  1 | ...") and line.endswith("..."), line)
                self.assertLess(len(line), 90)
                self.assertNotIn("\\x", line)

    def test_secrets_in_the_line_are_masked(self):
        text = '[{"command": "X", "params": [{"name": "PIN", "type": "s", "unit": 1, "value": {"static": "4711"}}]}]'
        hidden = on_terminal("command", "FILE", text=text)
        self.assertNotIn("4711", hidden)
        self.assertIn('"static": ******', hidden)
        self.assertIn('"static": "4711"', on_terminal("command", "--show-secrets", "FILE", text=text))

    def test_secrets_in_comments_and_ignored_text_are_masked(self):
        for text in ('[{"command": "X", "y": "" /* "pin": 4711 */}]', '[{"command": "X"}] {"password": 4711}',
                     '<a><command/><!-- <pin>4711</pin> --><b/></a>', "<a><command/><b name='pin' value='4711'/></a>"):
            with self.subTest(text):
                shown = on_terminal("command", "FILE", text=text)
                self.assertIn("******", shown)
                self.assertNotIn("4711", shown)

    def test_only_the_secrets_of_a_line_are_masked(self):
        text = "<a><x/>\n<pin>1</pin><b><pin>2</pin>3</b><y/><pin>4</pin>\n<pin>5</pin></a>"
        self.assertIn("  2 | <pin>******</pin><b><pin>******</pin>3</b><y/><pin>******</pin>\n",
                      on_terminal("command", "FILE", text=text))

    def test_hints_have_a_line(self):
        self.assertIn('\n  hint: did you mean "params"?\n',
                      on_terminal("command", "FILE", text='[{"command": "X", "prams": ""}]'))

    def test_the_caret_of_an_unfinished_text_is_behind_it(self):
        self.assertIn("  1 | [{\n    |   ^\n", on_terminal("command", "FILE", text="[{"))


class Rules(unittest.TestCase):
    def test_every_rule_is_listed_and_explained(self):
        rules = [json.loads(line) for line in run("rules", "--json")[1].splitlines()]
        listed = run("rules")[1]
        self.assertGreater(len(rules), 80)
        self.assertRegex(listed, r"\A  RULE +SEVERITY +WHY IT MATTERS\n")
        for rule in rules:
            self.assertIn(f'\n  {rule["rule"]} ', listed)
        for rule in rules[::10]:
            status, out, err = run("explain", rule["rule"])
            self.assertEqual((status, err), (0, ""))
            self.assertTrue(out.startswith(f'{rule["rule"]} ({rule["severity"]})\n{rule["reason"]}\n\nWrong:\n  '))
            self.assertEqual(json.loads(run("explain", "--json", rule["rule"])[1]), rule)

    def test_an_unknown_rule_is_a_usage_error(self):
        status, out, err = run("explain", "project/duplicate-ids")
        self.assertEqual((status, out), (2, ""))
        self.assertIn('did you mean "project/duplicate-id"?', err)

    def test_examples_of_requirements_and_files(self):
        for rule in map(json.loads, run("rules", "--json")[1].splitlines()):
            if rule["rule"].startswith("require/"):
                self.check_example(rule, lambda text: run("command", "-", "--json", "--require", "LEVEL:0..100",
                                                          text=text))
            if rule["rule"].startswith("file/"):
                with tempfile.TemporaryDirectory(dir=EXAMPLES + "/commands") as directory:
                    os.mkdir(os.path.join(directory, "empty_directory"))
                    with open(os.path.join(directory, "light_on.xml"), "w", encoding="utf-8") as file:
                        file.write("<devicecommand><command>ON</command></devicecommand>")
                    self.check_example(rule, lambda name: run("command", "--json", name, cwd=directory))

    def check_example(self, rule, report):
        def rules_in(text):
            return [d["rule"] for line in report(text)[1].splitlines() for d in json.loads(line)["diagnostics"]]
        self.assertEqual(rules_in(rule["wrong"]), [rule["rule"]])
        self.assertEqual(rules_in(rule["right"]), [])


class Make(unittest.TestCase):
    def test_commands_read_as_they_were_made(self):
        options = ["--param", "LEVEL=75", "--param", "NOTE=a <b> & 'c'=\"d\"", "--param", "ON=true",
                   "--variable-param", "A=7:1001"]
        expected = {"command": "SET <&>", "parameters": [
            {"name": "A", "type": "number", "device": 7, "variable": 1001},
            {"name": "LEVEL", "type": "number", "value": "75"},
            {"name": "NOTE", "type": "string", "value": "a <b> & 'c'=\"d\""},
            {"name": "ON", "type": "bool", "value": "true"}]}
        for form in ((), ("--json",)):
            status, made, err = run("make", "command", "SET <&>", *options, *form)
            self.assertEqual((status, err), (0, ""))
            read = json.loads(run("command", "--json", "-", text=made)[1])
            self.assertEqual({key: read[key] for key in expected}, expected)
            self.assertEqual(read["diagnostics"], [])

    def test_bindings_read_as_they_were_made(self):
        made = run("make", "binding", "A&B", "--notify", "--answer", "--data", "<x/>", "--path", "p",
                   "--param", "P=1")[1]
        read = json.loads(run("binding", "--json", "-", text=made)[1])
        self.assertEqual((read["notification"], read["answersQuery"], read["data"], read["path"]),
                         ("A&B", True, "<x/>", "p"))
        self.assertEqual(read["diagnostics"], [])

    def test_conditionals_read_as_they_were_made(self):
        made = run("make", "conditional", "A<B", "--comparison", "LESS_THAN", "--param", "P=1")[1]
        read = json.loads(run("conditional", "--json", "-", text=made)[1])
        self.assertEqual((read["name"], read["comparison"]), ("A<B", "LESS_THAN"))
        self.assertEqual(read["diagnostics"], [])

    def test_what_cannot_be_made_is_a_usage_error(self):
        for arguments in (["message", "X"], ["command"], ["command", "X", "--param", "A"],
                          ["command", "X", "--param", "=1"], ["command", "X", "--param", "A=1", "--param", "A=2"],
                          ["command", "X", "--variable-param", "A=7"], ["command", "X", "--variable-param", "A=7:x"],
                          ["command", "X", "--data", "1"], ["binding", "X", "--json"],
                          ["binding", "X", "--answer"], ["binding", "X", "--data", "<x>"], ["binding", ""],
                          ["conditional", "X", "--comparison", "LESS"]):
            status, out, err = run("make", *arguments)
            self.assertEqual((status, out), (2, ""), arguments)
            self.assertIn("Try 'tavrin make --help'.\n", err)

    def test_a_repeated_parameter_is_reported_with_its_option(self):
        for repeated in (("--param", "A=2"), ("--variable-param", "A=7:1001")):
            self.assertEqual(run("make", "command", "X", "--param", "A=1", *repeated)[2],
                             f"tavrin: {' '.join(repeated)}: another parameter has the same name\n"
                             "Try 'tavrin make --help'.\n")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
