#!/usr/bin/env python3
"""Holds the values in the JSON outputs to samples, small enough to be reviewed. Of a list, a sample
has each element that shows something new: keys with a value that no other at its place had, or
another word for a code. What is null, false, 0 or empty is left out; that such keys are there, the
schemas say.

usage: [TARNLET_UPDATE=1] json_golden.py TOOL SOURCE_FOLDER
"""

import json
import os
import pathlib
import subprocess
import sys

from expectations import expect, finish

tool, root = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2])
COLUMNS = 100
EMPTY = (None, False, 0, "", [])
WORDS = ("kind", "type", "operation", "function", "severity", "level")
# The sample, the command, and the key that it is about: the rest has been seen in another one.
SAMPLES = [
    ("info_bsdl.json", "info --json examples/demo_1994.bsd", None),
    ("info_isc.json", "info --json examples/isc_2002.bsd", "isc"),
    ("info_aio.json", "info --json examples/aio_2003.bsd", "aio"),
    ("info_prg.json", "info --json examples/two_taps.prg", "prg"),
    ("registers.json", "registers --json examples/demo.bsd", None),
    ("diff.json", "diff --json --ignore device,instructions examples/demo.bsd "
     "examples/demo_mistakes.bsd", None),
    ("check.json", "check --format json tests/tool/mistakes.bsd", None),
    ("check.sarif", "check --format sarif tests/tool/mistakes.bsd", "runs"),
]


def shape(value, path):
    if not isinstance(value, dict):
        return path, type(value)
    return path, tuple((key, part if key in WORDS else type(part))
                       for key, part in value.items() if part not in EMPTY)


def shapes(value, path):
    if isinstance(value, list):
        for part in value:
            yield from shapes(part, path)
        return
    yield shape(value, path)
    if isinstance(value, dict):
        for key, part in value.items():
            yield from shapes(part, f"{path}/{key}")


def sample(value, seen, path=""):
    if isinstance(value, dict):
        return {key: sample(part, seen, f"{path}/{key}")
                for key, part in value.items() if part not in EMPTY}
    if not isinstance(value, list):
        return value
    kept = []
    for part in value:
        if not seen.issuperset(shapes(part, path)):
            kept.append(sample(part, seen, path))
            seen.update(shapes(part, path))
    left = len(value) - len(kept)
    return kept + ([f"and {left} alike"] if left else [])


def written(value, indent=0):
    line = json.dumps(value)
    if indent + len(line) <= COLUMNS or not isinstance(value, (dict, list)):
        return line
    inner = "\n" + " " * (indent + 1)
    if isinstance(value, dict):
        parts = [f"{json.dumps(key)}: {written(part, indent + 1)}" for key, part in value.items()]
        return "{" + inner + ("," + inner).join(parts) + "}"
    return "[" + inner + ("," + inner).join(written(part, indent + 1) for part in value) + "]"


for name, command, key in SAMPLES:
    output = subprocess.run([tool, *command.split()], cwd=root, stdout=subprocess.PIPE,
                            stderr=subprocess.DEVNULL, check=False).stdout
    document = json.loads(output)
    text = written(sample(document[key] if key else document, set())) + "\n"
    golden = root / "tests" / "tool" / "golden" / name
    if os.environ.get("TARNLET_UPDATE"):
        golden.write_text(text)
    expect(golden.read_text() == text,
           f"{name} differs from what '{command}' gives; TARNLET_UPDATE=1 rewrites it")

finish(f"{len(SAMPLES)} samples", SAMPLES)
