"""A device: what one file holds, after the checks."""

from __future__ import annotations

import os
from collections.abc import Callable
from types import TracebackType
from typing import TYPE_CHECKING, Any, NoReturn

from ._native import Reading
from .codes import Severity
from .lists import Cells, Instructions, Pins, Ports, Registers
from .records import (
    CellDescription,
    CellRow,
    Check,
    Compliance,
    Finding,
    Idcode,
    Instruction,
    InstructionRegister,
    Packages,
    Pin,
    PortGroup,
    Register,
    Standards,
    Tap,
)
from .trees import maker, plain

if TYPE_CHECKING:
    from .families import Aio, Analog, Isc, Prg


def _decoded(text: bytes) -> tuple[str, str]:
    try:
        return text.decode(), "utf-8"
    except UnicodeDecodeError:
        return text.decode("latin-1"), "latin-1"


class Device:
    """What a description or a PPC/PRG file holds. `tarnlet.read` and `tarnlet.read_text` make it.

    Each part is taken from the library when it is first asked for. It belongs to whoever holds it
    and outlives the device. A device may be used from any thread.
    """

    def __init__(self, reading: Reading, file: str) -> None:
        self._reading = reading
        self._parts: dict[str, Any] = {}
        self.file = file

    def _once(self, name: str, make: Callable[[], Any]) -> Any:
        if self._reading.is_closed:
            raise ValueError("the device is closed")
        if name not in self._parts:
            # Of two threads that ask at once both get what the first one has put here.
            self._parts.setdefault(name, make())
        return self._parts[name]

    def _part(self, name: str, kind: Any = str) -> Any:
        """A part of the document, as a value of this type."""
        return self._once(name, lambda: maker(kind)(self._reading.part(name)))

    def close(self) -> None:
        """Give the memory of the reading back. Parts that were taken stay as they are."""
        self._reading.close()

    def __enter__(self) -> Device:
        return self

    def __exit__(
        self,
        kind: type[BaseException] | None,
        error: BaseException | None,
        trace: TracebackType | None,
    ) -> None:
        self.close()

    def __reduce__(self) -> NoReturn:
        raise TypeError(
            "a Device cannot be pickled, since it holds a reading of the library; "
            "its parts and device.to_dict() can"
        )

    def __repr__(self) -> str:
        if self._reading.is_closed:
            return f"<Device {self.file}: closed>"
        verdict = "ok" if self.ok else "with errors"
        return f"<Device {self.component} from {self.file}: {verdict}>"

    # --------------------------------------------------------------------- the file as a whole

    @property
    def kind(self) -> str:
        """ "bsdl" for a description, "prg" for a PPC/PRG file."""
        kind: str = self._part("kind")
        return kind

    @property
    def findings(self) -> tuple[Finding, ...]:
        """What is wrong in the file, in the order of the text."""
        findings: tuple[Finding, ...] = self._once("findings", self._reading.findings)
        return findings

    @property
    def ok(self) -> bool:
        """No error was found, but for what a comment turns off."""
        return self.check.passed

    @property
    def check(self) -> Check:
        """Outcome of the checks."""
        errors = self._count(Severity.ERROR) - self.syntax_errors
        passed = self.component is not None and not errors and not self.syntax_errors
        return Check(passed, errors, self._count(Severity.WARNING))

    @property
    def syntax_errors(self) -> int:
        """Number of syntax errors."""
        return self._count(Severity.ERROR, "syntax-error")

    def _count(self, severity: Severity, rule: str | None = None) -> int:
        """Findings that stand for themselves."""
        return sum(
            finding.severity is severity
            and finding.because is None
            and not finding.suppressed
            and rule in (None, finding.rule)
            for finding in self.findings
        )

    @property
    def unchecked(self) -> str | None:
        """What was not looked at, in words; None when all was."""
        return self._reading.unchecked()

    @property
    def encoding(self) -> str:
        """Encoding of the text: "utf-8", or "latin-1" if it is no UTF-8."""
        return _decoded(self._reading.fixed_text())[1]

    def fixed_text(self) -> str:
        """The text with its mistakes of syntax fixed as the findings say, sure or not; the text
        itself when there is nothing to fix."""
        return _decoded(self._reading.fixed_text())[0]

    @property
    def component(self) -> str | None:
        """Name of the device, in a PPC/PRG file of the design."""
        component: str | None = self._part("component")
        return component

    @property
    def standards(self) -> Standards:
        """The standards that the file names."""
        standards: Standards = self._part("standards", Standards)
        return standards

    @property
    def packages(self) -> Packages:
        """The packages that the description uses."""
        packages: Packages = self._part("packages", Packages)
        return packages

    @property
    def design_warning(self) -> str | None:
        """Text of DESIGN_WARNING."""
        warning: str | None = self._part("design_warning")
        return warning

    def corvane_class(self, key: str) -> str | None:
        """Value of a key in the CORVANE_CLASS attribute; letter case makes no difference."""
        return self._reading.corvane_class(key)

    # --------------------------------------------------------------------------- ports and pins

    @property
    def pin_map(self) -> str | None:
        """Name of the pin map in use."""
        pin_map: str | None = self._part("pin_map")
        return pin_map

    @property
    def pin_maps(self) -> tuple[str | None, ...]:
        """Names of all pin maps; None for one with a syntax error."""
        pin_maps: tuple[str | None, ...] = self._part("pin_maps", tuple[str, ...])
        return pin_maps

    @property
    def ports(self) -> Ports:
        """The ports by name: ``device.ports["D"][3]``."""
        ports: Ports = self._once("ports", lambda: Ports(self.pins.rows))
        return ports

    @property
    def pins(self) -> Pins:
        """The pins by the name of the physical pin: ``device.pins["AB12"]``."""
        pins: Pins = self._once("pins", lambda: Pins(self._reading.pin_rows()))
        return pins

    @property
    def groups(self) -> tuple[PortGroup, ...]:
        """The differential pairs."""
        groups: tuple[PortGroup, ...] = self._part("port_groups", tuple[PortGroup, ...])
        return groups

    @property
    def tap(self) -> Tap:
        """The test access port."""
        tap: Tap = self._part("tap", Tap)
        return tap

    @property
    def compliance(self) -> Compliance | None:
        """COMPLIANCE_PATTERNS."""
        compliance: Compliance | None = self._part("compliance", Compliance)
        return compliance

    # -------------------------------------------------------------------- registers and cells

    @property
    def instruction_register(self) -> InstructionRegister:
        """Length of the instruction register and what it captures."""
        register: InstructionRegister = self._part("instruction_register", InstructionRegister)
        return register

    @property
    def instructions(self) -> Instructions:
        """The instructions by name: ``device.instructions["EXTEST"].opcodes``."""
        instructions: Instructions = self._once(
            "Instructions",
            lambda: Instructions(self._part("instructions", tuple[Instruction, ...])),
        )
        return instructions

    @property
    def registers(self) -> Registers:
        """The data registers that instructions select, by name."""
        registers: Registers = self._once(
            "Registers", lambda: Registers(self._part("registers", tuple[Register, ...]))
        )
        return registers

    @property
    def idcodes(self) -> tuple[Idcode, ...]:
        """The patterns of IDCODE_REGISTER."""
        idcodes: tuple[Idcode, ...] = self._part("idcodes", tuple[Idcode, ...])
        return idcodes

    @property
    def usercodes(self) -> tuple[str, ...]:
        """The patterns of USERCODE_REGISTER."""
        usercodes: tuple[str, ...] = self._part("usercodes", tuple[str, ...])
        return usercodes

    @property
    def boundary_length(self) -> int | None:
        """BOUNDARY_LENGTH: the number of cells that the description announces."""
        boundary = self._once("boundary", lambda: self._reading.part("boundary"))
        length: int | None = boundary["length"]
        return length

    @property
    def cells(self) -> Cells:
        """The boundary register by cell number: ``device.cells[17]``."""
        cells: Cells = self._once("cells", lambda: Cells(self._reading.cell_rows()))
        return cells

    @property
    def cell_descriptions(self) -> tuple[CellDescription, ...]:
        """The cell types: those of the standard, then those of packages."""
        descriptions: tuple[CellDescription, ...] = self._part(
            "cell_descriptions", tuple[CellDescription, ...]
        )
        return descriptions

    # ---------------------------------------------------------------------------------- families

    @property
    def isc(self) -> Isc | None:
        """Statements of IEEE 1532."""
        from .families import Isc

        isc: Isc | None = self._part("isc", Isc)
        return isc

    @property
    def aio(self) -> Aio | None:
        """Statements of IEEE 1149.6."""
        from .families import Aio

        aio: Aio | None = self._part("aio", Aio)
        return aio

    @property
    def analog(self) -> Analog | None:
        """What is known of an IEEE 1149.4 device by its name."""
        from .families import Analog

        analog: Analog | None = self._part("analog", Analog)
        return analog

    @property
    def prg(self) -> Prg | None:
        """Design, scan chains and programs of a PPC/PRG file."""
        from .families import Prg

        prg: Prg | None = self._part("prg", Prg)
        return prg

    # ------------------------------------------------------------------------------ other forms

    def to_dict(self) -> dict[str, Any]:
        """All of it as `tarnlet info --json` prints it: dicts, lists and plain values."""
        document: dict[str, Any] = {
            "schema": "tarnlet-info-1",
            "kind": self.kind,
            "file": self.file,
            "component": self.component,
            "standards": self.standards,
            "syntax_errors": self.syntax_errors,
            "check": self.check,
        }
        if self.kind == "prg":
            document["prg"] = self.prg
        else:
            document |= {
                "packages": self.packages,
                "pin_map": self.pin_map,
                "pin_maps": self.pin_maps,
                "pins": self.pins.rows,
                "port_groups": self.groups,
                "tap": self.tap,
                "compliance": self.compliance,
                "instruction_register": self.instruction_register,
                "instructions": self.instructions.rows,
                "registers": self.registers.rows,
                "idcodes": self.idcodes,
                "usercodes": self.usercodes,
                "boundary": {"length": self.boundary_length, "cells": plain(self.cells.rows)},
                "cell_descriptions": self.cell_descriptions,
                "design_warning": self.design_warning,
                "isc": self.isc,
                "aio": self.aio,
                "analog": self.analog,
            }
        return {name: plain(value) for name, value in document.items()}

    def write_ebst(self, path: str | os.PathLike[str], *, force: bool = False) -> None:
        """Write the EBST file.

        Raises ValueError for a description with errors, unless forced, and for a PPC/PRG file,
        which has none; OSError if the file cannot be written.
        """
        if self.kind == "prg":
            raise ValueError("a PPC/PRG file has no EBST file")
        if not self.ok and not force:
            raise ValueError(f"{self.file} has errors; force=True writes the EBST file anyway")
        self._reading.write_ebst(os.fsencode(path))

    def to_frame(self, table: str) -> Any:
        """A table as a DataFrame of pandas: "pins", "cells", "instructions" or "registers"."""
        tables: dict[str, tuple[Any, tuple[Any, ...]]] = {
            "pins": (Pin, self.pins.rows),
            "cells": (CellRow, self.cells.rows),
            "instructions": (Instruction, self.instructions.rows),
            "registers": (Register, self.registers.rows),
        }
        if table not in tables:
            raise ValueError(f"no table {table}; there are {', '.join(tables)}")
        import pandas

        record, rows = tables[table]
        columns = [name.rstrip("_") for name in record._fields]
        return pandas.DataFrame([[plain(value) for value in row] for row in rows], columns=columns)
