# Run by `make test`, for every change.
"""Checks the machine-readable formats of the tool against their schemas.

Usage: tool_formats_test.py TAVRIN EXAMPLES REPORT_SCHEMA [SARIF_SCHEMA]
"""
import json
import subprocess
import sys
import unittest

import jsonschema

TAVRIN, EXAMPLES, REPORT_SCHEMA, *SARIF_SCHEMA = sys.argv[1:]

RUNS = [
    ["command", "commands", "broken", "none.xml"],
    ["command", "commands/light_follow.xml", "--variable", "7:1001=40", "--require", "LEVEL:0..30", "--require", "X"],
    ["command", "commands/lock_unlock.xml", "--require", "PIN"],
    ["binding", "bindings", "bindings/broken/not_xml.json"],
    ["conditional", "conditionals", "--test", "40"],
    ["conditional", "conditionals/code_is.xml", "--test", "40"],
    ["validate", "projects", "none.xml"],
]


def run(arguments):
    process = subprocess.run([TAVRIN, *arguments], cwd=EXAMPLES, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                             check=False)
    return process.stdout.decode("ascii"), process.stderr.decode()


def validator(path):
    with open(path, encoding="utf-8") as file:
        schema = json.load(file)
    checker = jsonschema.validators.validator_for(schema)
    checker.check_schema(schema)
    return checker(schema)


class Formats(unittest.TestCase):
    def test_every_json_document_is_valid(self):
        report = validator(REPORT_SCHEMA)
        count = 0
        for arguments in RUNS:
            out, err = run([*arguments, "--format", "json"])
            self.assertEqual(err, "")
            for line in out.splitlines():
                report.validate(json.loads(line))
                count += 1
        self.assertGreater(count, 60)

    def test_the_schema_refuses_other_documents(self):
        report = validator(REPORT_SCHEMA)
        valid = {"version": 1, "file": "x", "diagnostics": [{"rule": "a/b", "severity": "note", "message": ""}]}
        report.validate(valid)
        for change in ({"version": 2}, {"diagnostics": [{}]}, {"unknown": 1}):
            with self.assertRaises(jsonschema.ValidationError):
                report.validate({**valid, **change})

    def test_lines_are_documents_with_their_line(self):
        process = subprocess.run([TAVRIN, "command", "--lines", "--json", "-"], check=False, stdout=subprocess.PIPE,
                                 input=b'[{"command": "A"}]\n\n[{"command": "B", "x": ""}]\n[1]\n')
        documents = [json.loads(line) for line in process.stdout.splitlines()]
        for document in documents:
            validator(REPORT_SCHEMA).validate(document)
        self.assertEqual([document["line"] for document in documents], [1, 3, 4])
        self.assertEqual([[d["line"] for d in document["diagnostics"]] for document in documents], [[], [3], [4]])
        self.assertEqual(process.returncode, 3)

    if SARIF_SCHEMA:

        def test_sarif_logs_are_valid(self):
            sarif = validator(SARIF_SCHEMA[0])
            for arguments in RUNS:
                out, err = run([*arguments, "--format", "sarif"])
                self.assertEqual(err, "")
                log = json.loads(out)
                sarif.validate(log)
                rules = {rule["id"] for rule in log["runs"][0]["tool"]["driver"]["rules"]}
                for result in log["runs"][0]["results"]:
                    self.assertIn(result["ruleId"], rules)

    def test_sarif_rules_have_their_severity_as_level(self):
        expected = {rule["rule"]: rule["severity"] for rule in map(json.loads, run(["rules", "--json"])[0].splitlines())}
        log = json.loads(run([*RUNS[0], "--format", "sarif"])[0])
        rules = log["runs"][0]["tool"]["driver"]["rules"]
        self.assertEqual({rule["id"]: rule["defaultConfiguration"]["level"] for rule in rules}, expected)

    def test_every_format_shows_only_so_many_findings(self):
        arguments = ["validate", "projects/broken/duplicate_ids.xml", "--max-messages", "2", "--format"]
        self.assertEqual(len(json.loads(run([*arguments, "json"])[0])["diagnostics"]), 2)
        self.assertEqual(len(json.loads(run([*arguments, "sarif"])[0])["runs"][0]["results"]), 2)
        self.assertEqual(len(run([*arguments, "github"])[0].splitlines()), 2)

    def test_sarif_columns_count_characters(self):
        process = subprocess.run([TAVRIN, "command", "--format", "sarif", "-"], check=False, stdout=subprocess.PIPE,
                                 input='[{"command": "äöü", "x": "ß"}]'.encode())
        region = json.loads(process.stdout)["runs"][0]["results"][0]["locations"][0]["physicalLocation"]["region"]
        self.assertEqual(region, {"startLine": 1, "startColumn": 21, "endLine": 1, "endColumn": 29})

    def test_github_annotations_name_file_place_and_rule(self):
        out, _ = run(["validate", "projects/broken/old_version.xml", "--format", "github"])
        self.assertTrue(out.startswith("::error file=projects/broken/old_version.xml,line=5,col=5,endLine=5,"), out)
        self.assertIn(",title=project/old-version::the validator can only check 2.1.0 or greater (", out)

    def test_github_annotations_stay_on_one_line(self):
        process = subprocess.run([TAVRIN, "validate", "--format", "github", "-"], check=False, stdout=subprocess.PIPE,
                                 input=b"<a%:\n,/>")
        self.assertEqual(len(process.stdout.splitlines()), 1)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
