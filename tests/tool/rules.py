#!/usr/bin/env python3
"""Holds the table of rules to the sources of the library and to the catalogue.

usage: rules.py TOOL SOURCE_FOLDER
"""

import json
import pathlib
import re
import subprocess
import sys

from expectations import expect, finish

tool, root = sys.argv[1], pathlib.Path(sys.argv[2])
OF_THE_TOOL = {"check-failed", "process-ended"}
IDENTIFIER = re.compile(r'"([a-z0-9]+(?:-[a-z0-9]+)+)"')
LITERAL = re.compile(r'"((?:[^"\\\n]|\\.)*)"')


def run(*arguments):
    return subprocess.run([tool, *arguments], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                          check=True, encoding="utf-8").stdout


def without_comments(text):
    return re.sub(r"/\*.*?\*/|^\s*//.*?$", "", text, flags=re.S | re.M)


def unescaped(literal):
    return re.sub(r"\\(.)", lambda m: {"t": "\t", "n": "\n"}.get(m[1], m[1]), literal)


sources = [without_comments(path.read_text()) for path in sorted((root / "src").rglob("*.cpp"))]
in_code = {found for text in sources for found in IDENTIFIER.findall(text)} | OF_THE_TOOL
# Literals side by side are one; formats that are put together at run time stand for anything.
joined = [re.sub(r'(?<!\\)"\s*"', "", text) for text in sources]
literals = {unescaped(part) for text in joined for part in LITERAL.findall(text)}


def pattern_of(literal):
    """What a format can give; the formats of a form count as texts."""
    fixed = re.split(r"%[-.*0-9]*[a-z]", literal.strip())
    return re.compile(".*".join(map(re.escape, fixed))) if len("".join(fixed)) > 8 else None


patterns = [pattern for pattern in map(pattern_of, literals) if pattern]


def formats_of(text):
    """Identifiers with the formats that stand in the same statement, or behind it in the function
    that keeps the rule in a variable. A few words, or a text that begins with a blank, are a part
    of a format."""
    for found in IDENTIFIER.finditer(text):
        kept = text.endswith("Rule rule = {", 0, found.start())
        statement = text[found.end():text.find("\n}" if kept else ";", found.end())]
        following = IDENTIFIER.search(statement)
        for part in LITERAL.findall(statement[:following.start()] if following else statement):
            if len(part) > 16 and " " in part and not part.startswith(" "):
                yield found[1], unescaped(part)


table = json.loads(run("check", "--list-rules", "--format", "json"))
in_table = [rule["id"] for rule in table]
expect(len(in_table) == len(set(in_table)), "an identifier stands twice in the table")
expect(in_code <= set(in_table), f"not in the table: {sorted(in_code - set(in_table))}")
expect(set(in_table) <= in_code, f"not in the code: {sorted(set(in_table) - in_code)}")

listed = [line.split()[0] for line in run("check", "--list-rules").splitlines()]
expect(listed == in_table, "--list-rules differs from its JSON form")
for rule in table:
    for form in filter(None, rule["text"].split("\n")):
        expect(form in literals or any(pattern.fullmatch(form) for pattern in patterns) or
               form.startswith("parse error"),
               f"{rule['id']}: no message reads {form!r}")
    expect(rule["meaning"], f"{rule['id']}: no meaning")
    expect(rule["mend"] or rule["level"] == "note", f"{rule['id']}: how to mend is not told")
    explained = run("check", "--explain", rule["id"])
    expect(explained.startswith(f"{rule['id']}: {rule['level']}\n"), f"--explain {rule['id']}")

forms_of = {rule["id"]: rule["text"].split("\n") for rule in table}
for text in joined:
    for identifier, text_format in formats_of(text):
        expect(any(pattern_of(text_format).fullmatch(form) or
                   text_format.strip() in form for form in forms_of.get(identifier, [])),
               f"{identifier}: {text_format!r} is none of the texts in the table")

catalogue = (root / "docs" / "rules.md").read_text()
expect(catalogue == run("check", "--list-rules", "--format", "markdown"),
       "docs/rules.md is out of date: tarnlet check --list-rules --format markdown > docs/rules.md")

finish(f"{len(table)} rules", table)
