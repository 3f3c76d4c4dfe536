#!/usr/bin/env python3
"""Holds the catalogue of rules to the identifiers in the sources of the library, and docs/rules.md
to the catalogue. Levels and texts are compared where the unit tests see messages.

usage: rules.py TOOL SOURCE_FOLDER
"""

import json
import pathlib
import re
import subprocess
import sys

from expectations import expect, finish

tool, root = sys.argv[1], pathlib.Path(sys.argv[2])
OF_NO_MESSAGE = {"check-failed", "instruction-listed-twice", "process-ended"}
# Of walks that no file reaches.
UNPUBLISHED = {"merged-instruction-length", "merged-instruction-without-register",
               "merged-instruction-unchecked", "control-cell-shared"}
IDENTIFIER = re.compile(r'"([a-z0-9]+(?:-[a-z0-9]+)+)"')


def run(*arguments):
    return subprocess.run([tool, "check", *arguments], stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, check=True, encoding="utf-8").stdout


NO_RULE = {"off-file"}  # a word of suppressions
in_code = set()
for path in (root / "src").rglob("*.cpp"):
    if path.parent.name != "diagnosis" or path.name == "suppressions.cpp":
        in_code |= set(IDENTIFIER.findall(re.sub(r"^\s*//.*?$", "", path.read_text(), flags=re.M)))

in_code -= NO_RULE

catalogue = json.loads(run("--list-rules", "--format", "json"))
ids = [rule["id"] for rule in catalogue]
published = in_code - UNPUBLISHED | OF_NO_MESSAGE
expect(len(ids) == len(set(ids)), "an identifier stands twice in the catalogue")
expect(published <= set(ids), f"not in the catalogue: {sorted(published - set(ids))}")
expect(set(ids) <= published, f"not in the code: {sorted(set(ids) - published)}")
for rule in catalogue:
    expect(rule["meaning"], f"{rule['id']}: no meaning")
    expect(rule["fix"] or rule["level"] == "note", f"{rule['id']}: how to fix it is not told")

expect((root / "docs" / "rules.md").read_text() == run("--list-rules", "--format", "markdown"),
       "docs/rules.md is out of date: tarnlet check --list-rules --format markdown > docs/rules.md")

finish(f"{len(catalogue)} rules", catalogue)
