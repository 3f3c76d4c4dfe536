#!/usr/bin/env python3
"""Holds the JSON, SARIF and GitLab forms of check to their schemas, all forms to each other, and
looks at what a terminal gets.

usage: check_output.py TOOL SOURCE_FOLDER FILE_OR_FOLDER...
"""

import collections
import json
import os
import pathlib
import pty
import re
import subprocess
import sys
from xml.etree import ElementTree

from expectations import Schemas, expect, finish

tool, root, inputs = sys.argv[1], pathlib.Path(sys.argv[2]), sys.argv[3:]
schemas = Schemas(root / "docs" / "schemas")


def run(form, *options):
    result = subprocess.run([tool, "check", "--format", form, *options, *inputs],
                            stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
    return result.returncode, result.stdout.decode("ascii" if form in ("json", "sarif") else "utf-8")


def compare_forms(*options):
    status, lines = run("json", *options)
    files = [json.loads(line) for line in lines.splitlines()]
    for file in files:
        schemas.expect_valid("check", file, file["file"])
        counts = collections.Counter(message["severity"] for message in file["messages"]
                                     if message["because"] is None and not message.get("accepted"))
        expect((counts["error"] + file["withheld"], counts["warning"]) ==
               (file["errors"], file["warnings"]), f"{file['file']}: counts")
        expect(file["follow_ups"] == sum(m["because"] is not None for m in file["messages"]),
               f"{file['file']}: follow-ups")
    messages = [message for file in files for message in file["messages"]
                if message["because"] is None]

    sarif_status, text = run("sarif", *options)
    log = json.loads(text)
    schemas.expect_valid("sarif", log, "sarif")
    results = log["runs"][0]["results"]
    rules = log["runs"][0]["tool"]["driver"]["rules"]
    ruled = [message for message in messages if message["rule"]]
    expect([(r["ruleId"], r["level"]) for r in results] ==
           [(m["rule"], m["severity"]) for m in ruled], f"sarif and json differ {options}")
    expect(all(r["message"]["text"].startswith(m["text"].strip())
               for r, m in zip(results, ruled)), f"texts of sarif {options}")
    expect(all(rules[r["ruleIndex"]]["id"] == r["ruleId"] for r in results), "indexes of rules")

    gcc_status, text = run("gcc", *options)
    shown = collections.Counter(
        found[1] for found in re.finditer(r"^.+?(?::\d+)*: (error|warning): ", text, re.M))
    expect(shown == collections.Counter(
        m["severity"] for m in messages if m["severity"] != "note" and not m.get("accepted")),
        f"gcc and json {options}")
    matcher = json.loads((root / "docs/pipelines/problem-matcher.json").read_text())
    pattern = re.compile(matcher["problemMatcher"][0]["pattern"][0]["regexp"], re.M)
    expect(len(pattern.findall(text)) == sum(shown.values()), "the problem matcher")
    expect(status == sarif_status == gcc_status, f"status {options}")
    compare_with_gitlab(ruled, *options)
    compare_with_junit(ruled, *options)
    return files


def compare_with_gitlab(messages, *options):
    issues = json.loads(run("gitlab", *options)[1])
    schemas.expect_valid("gitlab", issues, "gitlab")
    expect([issue["check_name"] for issue in issues] ==
           [message["rule"] for message in messages if not message["accepted"]], "rules of gitlab")
    fingerprints = {issue["fingerprint"] for issue in issues}
    expect(len(fingerprints) == len(issues), "a fingerprint for each issue")


def compare_with_junit(messages, *options):
    """The form that build servers take: suites of cases, with the counts of both."""
    top = ElementTree.fromstring(run("junit", *options)[1])
    kinds = {"failures": "failure", "errors": "error", "skipped": "skipped"}
    expect(top.tag == "testsuites" and all(suite.tag == "testsuite" for suite in top), "suites")
    for element in (top, *top):
        cases = list(element.iter("testcase"))
        counted = {"tests": len(cases)} | {
            name: sum(case.find(kind) is not None for case in cases)
            for name, kind in kinds.items()}
        expect({name: int(element.get(name)) for name in counted} == counted,
               f"counts of {element.get('name')}")
        expect(all(case.get("classname") and case.get("name") and len(case) <= 1
                   for case in cases), f"cases of {element.get('name')}")
    failed = [each.get("type") for kind in ("failure", "error") for each in top.iter(kind)]
    expect(sorted(failed) == sorted(message["rule"] for message in messages if not
                                    message["accepted"] and message["severity"] == "error"),
           "failures of junit")


def on_terminal(*options, **environment):
    """What the tool writes when both its outputs are a terminal."""
    controller, terminal = pty.openpty()
    child = subprocess.Popen([tool, "check", *options, *inputs], stdin=subprocess.DEVNULL,
                             stdout=terminal, stderr=terminal,
                             env={**os.environ, "TERM": "xterm", **environment})
    os.close(terminal)
    output = b""
    try:
        while chunk := os.read(controller, 65536):
            output += chunk
    except OSError:
        pass
    child.wait()
    os.close(controller)
    return output.decode("utf-8", "replace").replace("\r\n", "\n")


files = compare_forms()
compare_forms("--verbose", "--strict")
compare_forms("--error-limit", "1")

progress = re.compile(r"\r\x1b\[K\[\d+/%d\] " % len(files))
seen = on_terminal("-j", "2")
expect(progress.search(seen), "progress on a terminal")
expect("\x1b[1;31merror:" in seen, "colours on a terminal")
expect(re.search(r"\d+ files? checked", seen.splitlines()[-1]), "totals on a terminal")
expect("\x1b[1;" not in on_terminal(NO_COLOR="1"), "colours despite NO_COLOR")
expect(not progress.search(on_terminal("--quiet")), "progress despite --quiet")

finish(f"{len(files)} files", files)
