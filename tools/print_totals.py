"""Prints the sum of some JUnit result files: what was skipped, then 'N passed, N failed'."""

import sys
import xml.etree.ElementTree as ElementTree

passed = failed = skipped = 0
for path in sys.argv[1:]:
    try:
        suite = ElementTree.parse(path).getroot()
    except (OSError, ElementTree.ParseError) as error:
        sys.exit(f"{path}: no result of a test run: {error}")
    count = {name: int(suite.get(name, 0)) for name in ("tests", "failures", "skipped", "disabled")}
    failed += count["failures"]
    skipped += count["skipped"] + count["disabled"]
    passed += count["tests"] - count["failures"] - count["skipped"] - count["disabled"]
if skipped:
    print(f"{skipped} skipped")
print(f"{passed} passed, {failed} failed")
sys.exit(1 if failed or not passed else 0)
