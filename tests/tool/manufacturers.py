#!/usr/bin/env python3
"""Holds the names of manufacturers to the JEDEC list in decode-dimms of i2c-tools, by bank and
number. Names differ, companies are renamed: a word has to be the same, or the initials.

usage: manufacturers.py SOURCE_FOLDER
"""

import pathlib
import re
import shutil
import sys

from expectations import expect, finish

decoder = shutil.which("decode-dimms") or shutil.which("decode-dimms", path="/usr/bin:/usr/sbin")
if not decoder:
    print("skipped: decode-dimms of i2c-tools is not installed")
    sys.exit(77)
listing = pathlib.Path(decoder).read_text(encoding="utf-8")
listing = listing[listing.index("@vendors = ("):]
banks = [re.findall(r'"([^"]+)"', bank)
         for bank in re.split(r"\],\s*\[", listing[:listing.index("\n);")])]


def letters(text):
    return re.sub(r"[^a-z0-9]", "", text.lower())


def is_same(name, listed):
    words = re.findall(r"[\w.&/-]+", listed)
    initials = letters("".join(word[0] for word in words))
    return any(letters(word) in letters(listed) or letters(word)[:2] in initials
               for word in re.findall(r"[\w.&/-]+", name))


source = (pathlib.Path(sys.argv[1]) / "tool" / "manufacturers.cpp").read_text()
rows = re.findall(r'\{(\d+), 0x([0-9A-F]{2}), "([^"]+)"\}', source)
for bank, number, name in rows:
    listed = banks[int(bank) - 1][int(number, 16) - 1]
    expect(is_same(name, listed), f"bank {bank}, number 0x{number}: {name}, the list has {listed}")
places = [row[:2] for row in rows]
expect(places == sorted(set(places), key=lambda row: (int(row[0]), row[1])), "order of the rows")
finish(f"{len(rows)} manufacturers", rows)
