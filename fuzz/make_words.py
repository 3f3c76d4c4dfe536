#!/usr/bin/env python3
"""make_words.py KEYWORDS.cpp dictionary|include OUT: the words of the language for the fuzzers.

They come from the scanner's own tables, as a libFuzzer dictionary or as rows of a C array."""

import re
import sys

OTHER = ['"', '" & "', '";\n', "(", ")", ",", ":", ";", "*", "-", "--", "::", ":=", "<>", "&", "=",
         "!", "?", "?!", "$", "[", "]", "+", "<<", ">>", "~", "{", "}", "\x1a", "\n", ".all;\n",
         "attribute ", " of ", " : entity is ", " : signal is ", "0", "1", "-1", "2147483647",
         "2147483648", "4294967295", "4294967296", "1.0e-3", "1e308", "1e999", "0xFFFFFFFF",
         "XXXX", "BC_0", "BC_1", "BC_7", "PROGRAM_JCS12", "FLOW_ENABLE", "PROC_ENABLE", "ARRAY",
         " -- tarnlet: off ", "-- tarnlet: off-file ", "pin-without-cell", "syntax-error: "]


def main():
    source, kind, out = sys.argv[1:]
    with open(source, encoding="utf-8") as file:
        words = re.findall(r'^ +\{"([^"]+)", ', file.read(), re.M)
    words = list(dict.fromkeys(words + OTHER))
    with open(out, "w", encoding="utf-8") as file:
        for word in words:
            text = "".join(c if c.isprintable() and c not in '"\\' else f"\\x{ord(c):02x}"
                           for c in word)
            if kind == "include":
                # The end of a hexadecimal escape is the end of the piece.
                text = re.sub(r"(\\x..)", r'\1""', text)
            file.write(f'"{text}",\n' if kind == "include" else f'"{text}"\n')


main()
