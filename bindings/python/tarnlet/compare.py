"""What differs between two devices, as `tarnlet diff` tells it."""

from __future__ import annotations

from collections import Counter
from typing import Any, NamedTuple

from .device import Device

Json = Any


class Change(NamedTuple):
    """One difference."""

    section: str
    """Such as "pins", "cells" or "device" for single values."""
    key: str | None
    """Which row of the section: a port, a number, a name."""
    change: str
    """"added", "removed" or "changed"."""
    field: str | None
    a: Json
    """What the one has, as in `Device.to_dict`."""
    b: Json
    """What the other has."""


# Single values, with their places in the document of `Device.to_dict`.
DEVICE = {
    "component": "component",
    "standards": "standards/uses",
    "conformance": "standards/conformance",
    "packages": "packages/names",
    "pin_map": "pin_map",
    "pin_maps": "pin_maps",
    "tdi": "tap/tdi",
    "tdo": "tap/tdo",
    "tms": "tap/tms",
    "tck": "tap/tck",
    "trst": "tap/trst",
    "tck_frequency": "tap/tck_frequency",
    "tck_halt": "tap/tck_halt",
    "compliance": "compliance",
    "instruction_length": "instruction_register/length",
    "instruction_captures": "instruction_register/captures",
    "idcodes": "idcodes",
    "usercodes": "usercodes",
    "boundary_length": "boundary/length",
    "design_warning": "design_warning",
}

# Lists whose rows are found again by a key, the first field: their order makes no difference.
LISTS = {
    "pins": ("pins", "port number type function cells"),
    "port_groups": ("port_groups", "representative associated type"),
    "instructions": ("instructions", "name opcodes class preload register length capture"),
    "registers": ("registers", "name length instructions"),
    "cells": (
        "boundary/cells",
        "number cell port function safe control disable_value disable_result",
    ),
}

# Families that are compared value by value.
TREES = ("isc", "aio", "prg")

# Fields whose order says nothing, and those in which letter case is a difference.
SETS = ("cells", "instructions", "opcodes")
EXACT = ("number", "design_warning")


def diff(a: Device, b: Device) -> list[Change]:
    """What differs between two devices; an empty list for equal ones."""
    one, other = a.to_dict(), b.to_dict()
    if a.kind != b.kind:
        return [Change("device", None, "changed", "kind", a.kind, b.kind)]
    changes = [
        Change("device", None, "changed", field, at(one, place), at(other, place))
        for field, place in DEVICE.items()
        if not same(field, at(one, place), at(other, place))
    ]
    for section, (place, fields) in LISTS.items():
        changes += compare_rows(section, fields.split(), at(one, place), at(other, place))
    for section in TREES:
        changes += compare_trees(section, "", one.get(section), other.get(section))
    return changes


def at(document: Json, place: str) -> Json:
    """The value at a place, None if there is none."""
    for name in place.split("/"):
        document = document.get(name) if document else None
    return document


def folded(value: Json) -> str:
    """Of names and patterns letter case is no difference."""
    return repr(value).lower()


def same(field: str, a: Json, b: Json) -> bool:
    if a == b or field in EXACT:
        return bool(a == b)
    if field in SETS:
        return Counter(map(folded, a)) == Counter(map(folded, b))
    return folded(a) == folded(b)


def keyed(rows: list[Json], names: list[str]) -> dict[str, tuple[str, Json]]:
    """Elements by folded names. The second one of a name, as of a merged cell, is "5 (2)"."""
    repeats: Counter[str] = Counter()
    result = {}
    for row, name in zip(rows, names):
        repeats[name.lower()] += 1
        if (repeat := repeats[name.lower()]) > 1:
            name += f" ({repeat})"
        result[name.lower()] = name, row
    return result


def compare_rows(section: str, fields: list[str], a: Json, b: Json) -> list[Change]:
    key, *others = fields

    def by_key(rows: list[Json]) -> dict[str, tuple[str, Json]]:
        return keyed(rows, ["" if row[key] is None else str(row[key]) for row in rows])

    one, other = by_key(a or []), by_key(b or [])
    changes = []
    for name, (shown, row) in one.items():
        if name not in other:
            changes.append(Change(section, shown, "removed", None, row, None))
            continue
        counterpart = other[name][1]
        changes += [
            Change(section, shown, "changed", field, row[field], counterpart[field])
            for field in others
            if not same(field, row[field], counterpart[field])
        ]
    new = [each for name, each in other.items() if name not in one]
    return changes + [Change(section, shown, "added", None, None, row) for shown, row in new]


def element_name(element: Json, place: int) -> str:
    """What tells an element of a list from the others, else its place: "PROC_PROGRAM(ARRAY)"."""
    if not isinstance(element, dict):
        return str(place)
    fields = ("name", "procedure", "port", "part", "tap")
    name = next((str(element[each]) for each in fields if element.get(each) is not None), "")
    if not name:
        return str(place)
    return f"{name}({element['data']})" if element.get("data") else name


def children(value: Json) -> dict[str, tuple[str, Json]]:
    if isinstance(value, dict):
        return {name.lower(): (name, each) for name, each in value.items()}
    return keyed(value, [element_name(each, place) for place, each in enumerate(value)])


def has_parts(value: Json) -> bool:
    return isinstance(value, dict) or any(isinstance(each, (dict, list)) for each in value)


def compare_trees(section: str, path: str, a: Json, b: Json) -> list[Change]:
    alike = type(a) is type(b) and isinstance(a, (dict, list))
    if not alike or not (has_parts(a) or has_parts(b)):
        if folded(a) == folded(b):
            return []
        change = "added" if a is None else "removed" if b is None else "changed"
        return [Change(section, path or None, change, None, a, b)]
    one, other = children(a), children(b)
    changes = []
    for name in [*one, *(name for name in other if name not in one)]:
        shown = (one.get(name) or other[name])[0]
        place = f"{path}/{shown}" if path else shown
        found = [side[name][1] if name in side else None for side in (one, other)]
        changes += compare_trees(section, place, *found)
    return changes
