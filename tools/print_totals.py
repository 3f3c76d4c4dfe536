"""Prints the verdict of each part of a test run, then the totals in a line of their own.

usage: print_totals.py RESULTS PART...

RESULTS/PART holds `verdict`, the exit status and the seconds, and what JUnit files the part wrote.
A part without them counts as one test. So does the failure of a part whose tests all passed, a build
that broke say: the totals show a failure whenever something failed.
"""

import pathlib
import sys
import xml.etree.ElementTree as ElementTree

SKIPPED_STATUS = 77


def outcome(case):
    children = {child.tag for child in case}
    if children & {"failure", "error"}:
        return "failed"
    return "skipped" if "skipped" in children else "passed"


def count_cases(folder, counts):
    for path in folder.glob("*.xml"):
        try:
            for case in ElementTree.parse(path).iter("testcase"):
                counts[outcome(case)] += 1
        except ElementTree.ParseError as error:
            print(f"{path}: no result of a test run: {error}")
            counts["failed"] += 1


def text(counts):
    return ", ".join(f"{count} {name}" for name, count in counts.items())


def main(results, parts):
    total = {"passed": 0, "failed": 0, "skipped": 0}
    width = max(map(len, parts))
    for part in parts:
        status, seconds = map(int, (results / part / "verdict").read_text().split())
        counts = dict.fromkeys(total, 0)
        count_cases(results / part, counts)
        verdict = {0: "passed", SKIPPED_STATUS: "skipped"}.get(status, "failed")
        if verdict == "failed" and not counts["failed"] or not any(counts.values()):
            counts[verdict] += 1
        if counts["failed"]:
            verdict = "failed"
        print(f"{part:{width}}  {verdict:7}  {seconds // 60}:{seconds % 60:02}  {text(counts)}")
        for name, count in counts.items():
            total[name] += count
    print(text(total))
    return 1 if total["failed"] or not total["passed"] else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]), sys.argv[2:]))
