"""Reads files and texts."""

from __future__ import annotations

import os
from collections.abc import Iterable, Iterator

from ._native import Reading, read_idcodes
from .device import Device
from .records import Idcode
from .trees import maker

Path = str | os.PathLike[str]

IDCODES = maker(tuple[Idcode, ...])

ENDINGS = (".bsd", ".bsdl", ".bsm")
"""Of descriptions, in either case."""


def read(
    path: Path,
    *,
    package: str | None = None,
    include: Iterable[Path] = (),
    strict: bool = False,
) -> Device:
    """Read and check a description or a PPC/PRG file.

    Mistakes in the file do not raise: they are findings of the device. `package` names the device
    package whose pin map is used, `include` folders that are searched first for package files.
    With `strict`, what the standard forbids but files often do is an error.

    Raises OSError if the file cannot be read.
    """
    with open(path, "rb") as file:
        text = file.read()
    return read_text(text, name=path, package=package, include=include, strict=strict)


def read_text(
    text: str | bytes,
    *,
    name: Path = "<text>",
    package: str | None = None,
    include: Iterable[Path] = (),
    strict: bool = False,
) -> Device:
    """Read and check a description that is in memory. `name` stands for it in findings, and
    package files are searched in its folder too. For the rest see `read`.
    """
    if isinstance(text, str):
        text = text.encode()
    elif not isinstance(text, bytes):
        raise TypeError(f"text must be str or bytes, not {type(text).__name__}")
    folders = [_for_c(folder) for folder in include]
    if package is not None:
        _for_c(package)
    return Device(Reading(text, _for_c(name), package, folders, strict), os.fsdecode(name))


def find(idcode: int, folder: Path) -> list[str]:
    """The descriptions in a folder, and in those below it, whose IDCODE matches; X matches both
    bits. Of each file no more is read than it takes, and nothing is checked.

    Raises OSError if the folder or a description in it cannot be read.
    """
    return [
        path
        for path in descriptions(folder)
        if any(each.matches(idcode) for each in _idcodes(path))
    ]


def descriptions(folder: Path) -> Iterator[str]:
    """The paths of the descriptions in a folder and in those below it, sorted by folder."""

    def refuse(error: OSError) -> None:
        raise error

    for parent, folders, names in os.walk(os.fspath(folder), onerror=refuse):
        folders.sort()
        for name in sorted(names):
            if name.lower().endswith(ENDINGS):
                yield os.path.join(parent, name)


def _idcodes(path: str) -> tuple[Idcode, ...]:
    with open(path, "rb") as file:
        idcodes: tuple[Idcode, ...] = IDCODES(read_idcodes(file.read(), _for_c(path)))
    return idcodes


def _for_c(name: Path) -> bytes:
    encoded = os.fsencode(name)
    if b"\0" in encoded:
        raise ValueError("embedded null character")
    return encoded
