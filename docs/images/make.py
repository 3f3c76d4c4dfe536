#!/usr/bin/env python3
"""Prints the picture of findings that README.md shows, from what the tool prints.

usage: docs/images/make.py build/release/bin/tarnlet > docs/images/check.svg

Run it in the root of the sources, again whenever the output of `tarnlet check` has changed.
"""

import re
import subprocess
import sys
from xml.sax.saxutils import escape

COMMAND = ["check", "--color", "always", "examples/demo_mistakes.bsd"]
FINDINGS = 4  # that are shown, before the last line
FONT, CHARACTER, LINE, MARGIN = 14, 8.4, 19, 16
COLOURS = {"31": "#ff7b72", "32": "#7ee787", "33": "#e3b341", "34": "#79c0ff", "35": "#d2a8ff",
           "36": "#56d4dd"}
SGR = re.compile(r"\x1b\[([\d;]*)m")


def spans(line):
    """Pairs of attributes and text."""
    colour, bold, at = "", False, 0
    for mark in [*SGR.finditer(line), None]:
        text = line[at:mark.start() if mark else len(line)]
        if text:
            yield (f' fill="{colour}"' if colour else "") + (' font-weight="bold"' if bold else ""), text
        for code in (mark[1].split(";") if mark else ()):
            if code in ("", "0"):
                colour, bold = "", False
            bold |= code == "1"
            colour = COLOURS.get(code, colour)
        at = mark.end() if mark else at


def main(tool):
    output = subprocess.run([tool, *COMMAND], stdout=subprocess.PIPE, encoding="utf-8", check=False)
    lines = output.stdout.splitlines()
    heads = [row for row, line in enumerate(lines) if COMMAND[-1] + ":" in SGR.sub("", line)]
    if output.returncode != 1 or len(heads) <= FINDINGS:
        sys.exit(f"{tool}: these are not the findings of the example")
    shown = ["$ tarnlet check " + COMMAND[-1], *lines[:heads[FINDINGS]], "...", "", lines[-1]]
    columns = max(len(SGR.sub("", line)) for line in shown)
    width, height = columns * CHARACTER + 2 * MARGIN, len(shown) * LINE + 2 * MARGIN
    print(f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width:.0f} {height}" '
          f'width="{width:.0f}" height="{height}">\n'
          f'<rect width="100%" height="100%" rx="8" fill="#161b22"/>\n'
          f'<g font-family="monospace" font-size="{FONT}" fill="#e6edf3">')
    for row, line in enumerate(shown):
        column = 0
        for attributes, text in spans(line):
            # The length keeps columns in place, whatever font there is.
            print(f'<text x="{MARGIN + column * CHARACTER:.1f}" y="{MARGIN + (row + 0.75) * LINE:.1f}" '
                  f'textLength="{len(text) * CHARACTER:.1f}"{attributes}>{escape(text.replace(" ", chr(0xa0)))}</text>')
            column += len(text)
    print("</g>\n</svg>")


if __name__ == "__main__":
    main(sys.argv[1])
