#!/usr/bin/env python3
"""Prints the orders in which the statements of the test access port may stand.

Each statement stands exactly once and the reset may be absent. With one production per order a
missing or repeated statement is a syntax error at its own place, where a list would need a check
after the fact.
"""
from itertools import permutations

MANDATORY = ["tck_stmt", "tms_stmt", "tdi_stmt", "tdo_stmt"]
OPTIONAL = ["trst_stmt"]


def main():
    orders = [*permutations(MANDATORY + OPTIONAL), *permutations(MANDATORY)]
    print("scan_port_identification:")
    print("\n".join(f"{'|' if i else ' '} {' '.join(order)}" for i, order in enumerate(orders)))
    print(";")


if __name__ == "__main__":
    main()
