"""Records from the document of `tarnlet info --json`, and back.

The fields of a record have the names and the order that they have in the document; where a name is
taken in Python, an underscore stands behind it.
"""

from collections.abc import Callable
from functools import cache
from types import NoneType
from typing import Any, get_args, get_origin, get_type_hints


def plain(value: Any) -> Any:
    """A record as a dict, a tuple as a list, a word as a str, and so on inside of them."""
    if isinstance(value, tuple):
        if hasattr(value, "_fields"):
            return dict(zip(field_names(type(value)), map(plain, value)))
        return [plain(each) for each in value]
    return str(value) if isinstance(value, str) else value


@cache
def field_names(record: Any) -> tuple[str, ...]:
    """What the document calls the fields of a record."""
    return tuple(name.rstrip("_") for name in record._fields)


@cache
def maker(kind: Any) -> Callable[[Any], Any]:
    """What makes a value of a type, as a field is annotated with it, from what is in the document:
    a record, one of several, a word of an enumeration, a tuple of them, or None."""
    if get_origin(kind) is tuple:
        make = maker(get_args(kind)[0])
        return lambda values: tuple([make(value) for value in values])
    choices = [choice for choice in get_args(kind) or (kind,) if choice is not NoneType]
    if hasattr(choices[0], "_fields"):
        return _record_maker(choices)
    if issubclass(choices[0], str) and choices[0] is not str:
        return lambda word: None if word is None else choices[0](word)
    return lambda value: value


def _record_maker(choices: list[Any]) -> Callable[[Any], Any]:
    makers = {}
    for record in choices:
        types = get_type_hints(record)
        makers[field_names(record)] = record, [maker(types[name]) for name in record._fields]

    def make(tree: Any) -> Any:
        if tree is None:
            return None
        record, fields = makers[tuple(tree)]
        return record._make([make_field(tree[name]) for make_field, name in zip(fields, tree)])

    return make
