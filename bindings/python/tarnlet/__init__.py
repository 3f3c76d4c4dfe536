"""Boundary-scan descriptions (BSDL) and PPC/PRG files as Python objects.

>>> device = tarnlet.read("device.bsd")
>>> device.ports["D"][3].number
'AB12'
"""

from ._native import library_version
from .compare import Change, diff
from .device import Device
from .reading import descriptions, find, read, read_text

__all__ = [
    "Change",
    "Device",
    "descriptions",
    "diff",
    "find",
    "library_version",
    "read",
    "read_text",
]
