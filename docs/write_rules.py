#!/usr/bin/env python3
# Run by `make update-docs` after changes to rules, and by `make test`.
"""Writes the page of the rules from the registry of the tool. Usage: write_rules.py TAVRIN > rules.md"""
import json
import subprocess
import sys

HEAD = """# The rules of diagnostics

The library `tavrin::diagnostics` and the tool report what is wrong with messages and projects, and what the lenient
loaders ignore of them. Each diagnostic names a rule of this page; `tavrin explain RULE` prints the same. An **error** is
reported where a controller refuses the message, or its check reports the project. A **warning** is reported where
something is ignored, inherited, truncated or surely not meant, and a **note** where something is unusual.

The page is written by `docs/write_rules.py` from the registry, and tests run its examples: each wrong one breaks exactly
its rule, each right one none.
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
