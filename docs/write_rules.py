#!/usr/bin/env python3
# Run by `make update-docs` after changes to rules, and by `make test`.
"""Writes the page of the rules from the registry of the tool. Usage: write_rules.py TAVRIN > rules.md"""
import json
import subprocess
import sys

HEAD = """# The rules of diagnostics

The library `tavrin::diagnostics` and the tool report errors in messages and projects, and the parts that the lenient
loaders ignore. Each diagnostic names a rule of this page; `tavrin explain RULE` prints the same text. A diagnostic is

- an **error** if the loader of a controller rejects the message, the project validator reports the project, a required
  parameter is missing or out of range, or a file cannot be read;
- a **warning** if something is ignored, inherited, truncated or probably a mistake;
- a **note** if something is unusual.

`docs/write_rules.py` writes this page from the source code of the library. Tests run the examples: a wrong one violates
its own rule and no other, and a right one violates none.
"""


def example(text):
    longest = 600
    shown = text if len(text) <= longest else f"{text[:longest]}... ({len(text)} bytes)"
    return "\n".join("    " + line for line in shown.splitlines() or [""])


def main():
    output = subprocess.run([sys.argv[1], "rules", "--json"], stdout=subprocess.PIPE, check=True).stdout
    rules = [json.loads(line) for line in output.splitlines()]
    print(HEAD)
    print("| rule | severity | why it matters |\n|---|---|---|")
    for rule in rules:
        print(f"| `{rule['rule']}` | {rule['severity']} | {rule['reason']} |")
    for rule in rules:
        print(f"\n## {rule['rule']}\n\n{rule['severity'].capitalize()}. {rule['reason']}\n")
        print(f"Wrong:\n\n{example(rule['wrong'])}\n\nRight:\n\n{example(rule['right'])}")


main()
