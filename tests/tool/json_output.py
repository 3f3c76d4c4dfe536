#!/usr/bin/env python3
"""Holds the JSON outputs of the tool to their schemas, and the other forms to the JSON.

usage: json_output.py TOOL SCHEMA_FOLDER FILE_OR_FOLDER...
"""

import csv
import io
import json
import pathlib
import re
import subprocess
import sys

from expectations import Schemas, expect, finish

tool, schemas = sys.argv[1], Schemas(sys.argv[2])


def run(*arguments, binary=False):
    result = subprocess.run([tool, *map(str, arguments)], stdout=subprocess.PIPE,
                            stderr=subprocess.DEVNULL, check=False)
    return result.returncode, result.stdout if binary else result.stdout.decode("utf-8")


def first_number(label, text):
    found = re.search(rf"^{label}\s+(\d+)", text, re.M)
    return int(found[1]) if found else None


def expect_text_agrees(path, document):
    """The summary counts what the document holds."""
    _, text = run("info", path)
    counts = {"Pins": "pins", "Instructions": "instructions", "Registers": "registers"}
    for label, key in counts.items():
        expect(first_number(label, text) == len(document[key]), f"{path}: number of {key}")
    rows = re.search(r"^Boundary .* in (\d+) row", text, re.M)
    expect(rows and int(rows[1]) == len(document["boundary"]["cells"]), f"{path}: rows of cells")
    by_type = re.search(r"^Pins\s+\d+: (.*)$", text, re.M)
    if by_type:
        numbers = [int(part.split()[0]) for part in by_type[1].split(",")]
        expect(sum(numbers) == len(document["pins"]), f"{path}: pins by type")


def expect_table_agrees(path, command, rows):
    _, as_json = run(command, path, "--json")
    expect(json.loads(as_json) == rows, f"{path}: {command} --json")
    if len(rows) <= 100:  # long ones have been seen within the document
        schemas.expect_valid(command, rows, f"{path}: {command}")
    _, as_text = run(command, path)
    expect(len(as_text.splitlines()) == len(rows) + 1, f"{path}: lines of {command}")
    _, as_csv = run(command, path, "--csv", binary=True)
    table = list(csv.reader(io.StringIO(as_csv.decode("utf-8"), newline="")))
    expect(len(table) == len(rows) + 1, f"{path}: {command} --csv")
    expect(all(len(row) == len(table[0]) for row in table), f"{path}: columns of {command} --csv")


def check_description(path, document):
    expect_text_agrees(path, document)
    expect_table_agrees(path, "pins", document["pins"])
    expect_table_agrees(path, "cells", document["boundary"]["cells"])
    expect_table_agrees(path, "instructions", document["instructions"])
    expect_table_agrees(path, "registers", document["registers"])
    status, differences = run("diff", path, path, "--json")
    expect(status == 0 and json.loads(differences)["equal"], f"{path}: differs from itself")


def is_description(path):
    endings = (".bsd", ".bsdl", ".bsm", ".prg", ".ppc")
    return path.is_file() and path.suffix.lower() in endings


def files_of(arguments):
    for argument in map(pathlib.Path, arguments):
        yield from sorted(filter(is_description, argument.rglob("*"))) if argument.is_dir() \
            else [argument]


counts = {"bsdl": 0, "prg": 0}
syntax_errors = {}  # by file
previous = None
for path in files_of(sys.argv[3:]):
    status, output = run("info", "--json", path)
    if status == 2:
        expect(output == "", f"{path}: output of a file that cannot be read")
        continue
    document = json.loads(output)
    expect(output.isascii(), f"{path}: characters beyond ASCII")
    schemas.expect_valid("info", document, str(path))
    counts[document["kind"]] += 1
    syntax_errors[str(path)] = document["syntax_errors"]
    if document["kind"] == "bsdl":
        check_description(path, document)
    if previous:
        status, output = run("diff", previous, path, "--json")
        differences = json.loads(output)
        schemas.expect_valid("diff", differences, f"diff {previous} {path}")
        expect(status == (0 if differences["equal"] else 1), f"diff {previous} {path}: status")
    previous = path

fields = [line.split()[0] for line in run("list", "--list-fields")[1].splitlines()]
fields = ",".join(fields).replace("opcode:NAME", "opcode:EXTEST")
_, output = run("list", "--json", "--fields", fields, *sys.argv[3:])
rows = json.loads(output)
schemas.expect_valid("list", rows, "list")
# list reads a file as it is, so one with syntax errors may have no row.
listed = {row["file"] for row in rows}
expect(len(listed) == len(rows) and listed <= syntax_errors.keys(), "rows of list")
expect(not any(syntax_errors[file] == 0 for file in syntax_errors.keys() - listed),
       "files that list leaves out")

finish(f"{counts['bsdl']} descriptions, {counts['prg']} data files", rows)
