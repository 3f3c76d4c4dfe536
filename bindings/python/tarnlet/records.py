"""The rows and values of a device; those of the further standards are in tarnlet.families.

Every record is a named tuple of plain Python values: it belongs to whoever holds it, outlives its
device, compares by value, can be pickled and put into sets. A value that a description does not
give is None. The fields have the names of `tarnlet info --json`; where such a name is taken in
Python, an underscore follows it.
"""

from typing import NamedTuple

from .codes import (
    CaptureInstruction,
    CaptureSource,
    CellFunction,
    Conformance,
    DisableResult,
    DisableValue,
    HaltState,
    InstructionType,
    PairType,
    PinFunction,
    PinType,
    SafeBit,
    Severity,
    Standard,
)


class PortBit(str):
    """A port, ``"CLK"``, or one bit of a vector, ``"DATA(7)"``, as the description writes it."""

    __slots__ = ()

    @property
    def name(self) -> str:
        """The name of the port: DATA."""
        return self.partition("(")[0]

    @property
    def subscript(self) -> int | None:
        """The bit of the vector: 7; None for a port as a whole."""
        subscript = self.partition("(")[2]
        return int(subscript[:-1]) if subscript else None


# ------------------------------------------------------------------------------------- findings


class Place(NamedTuple):
    """A range of a file: lines and columns count from 1, columns in bytes; the end is after the
    last byte. A line of 0: the file as a whole."""

    file: str | None
    line: int
    column: int
    end_line: int
    end_column: int

    def __str__(self) -> str:
        return f"{self.file}:{self.line}:{self.column}" if self.line else f"{self.file}"


class Edit(NamedTuple):
    """A replacement of a range. An empty range inserts, an empty text deletes."""

    place: Place
    text: str


class Related(NamedTuple):
    """A further place that has to do with a finding, and what is there."""

    place: Place
    text: str


class Finding(NamedTuple):
    """One mistake: where it is and what fixes it."""

    severity: Severity
    rule: str
    """Stable identifier of the rule; `tarnlet explain` tells what it means."""
    place: Place
    text: str
    hint: str | None
    """What is wrong and what to do, in plain words."""
    fix: str | None
    """What the edits do."""
    edits: tuple[Edit, ...]
    """What fixes it, in the order of the text."""
    sure: bool
    """The edits are certain to be what was meant."""
    related: tuple[Related, ...]
    because: "Finding | None"
    """The finding that this one follows from; None for one that stands for itself."""
    alike: int
    """How many alike it stands for, itself counted."""
    suppressed: bool
    """A comment in the text turns it off."""
    pin_map: str | None
    """The pin map it was found with, where several were checked."""
    reason: str | None
    """Why that comment turns it off."""

    def __str__(self) -> str:
        return f"{self.place}: {self.severity}: {self.text} [{self.rule}]"


# ------------------------------------------------------------------------------ ports and pins


class Pin(NamedTuple):
    """One bit of a port and the physical pin that it has in the pin map in use."""

    port: PortBit | None
    number: str | None
    """Name of the physical pin, such as "AB12"."""
    type: PinType | None
    function: PinFunction | None
    cells: tuple[int, ...]
    """Numbers of its boundary cells."""


class PortGroup(NamedTuple):
    """A differential pair."""

    type: PairType | None
    representative: PortBit
    associated: PortBit


class Tap(NamedTuple):
    """The test access port."""

    tdi: PortBit | None
    tdo: PortBit | None
    tms: PortBit | None
    tck: PortBit | None
    trst: PortBit | None
    tck_frequency: float | None
    """In hertz."""
    tck_halt: HaltState | None


class Compliance(NamedTuple):
    """COMPLIANCE_PATTERNS: what has to be applied so that the device obeys the standard."""

    ports: tuple[PortBit, ...]
    patterns: tuple[str, ...]
    """One character of 01X for each port, in their order."""


# ---------------------------------------------------------------------- instructions, registers


class Instruction(NamedTuple):
    """One instruction. Its opcodes are bits, the most significant first."""

    name: str | None
    opcodes: tuple[str, ...]
    class_: InstructionType | None
    preload: bool
    """It preloads the boundary register."""
    register: str | None
    """Name of the data register that it selects."""
    length: int | None
    """Length of that register in bits."""
    capture: str | None
    """What the register captures."""


class Register(NamedTuple):
    """A data register and the instructions that select it."""

    name: str
    length: int | None
    instructions: tuple[str, ...]


class InstructionRegister(NamedTuple):
    """The instruction register."""

    length: int | None
    captures: tuple[str, ...]


class Manufacturer(NamedTuple):
    """Manufacturer in an IDCODE: bank of the JEDEC list, counted from 1, and number in it."""

    bank: int
    number: int
    name: str | None


class Idcode(NamedTuple):
    """An IDCODE and its fields; a field with unknown bits is None."""

    pattern: str
    """32 characters of 01X."""
    hex: str
    version: int | None
    part: int | None
    manufacturer: Manufacturer | None

    def matches(self, idcode: int) -> bool:
        """Whether a device may answer with this number; X matches both bits."""
        if len(self.pattern) != 32 or not 0 <= idcode < 1 << 32:
            return False
        return all(bit in ("X", "x", read) for bit, read in zip(self.pattern, f"{idcode:032b}"))


# ------------------------------------------------------------------------------ boundary register


class Disable(NamedTuple):
    """How a driver is disabled: cell `control` holds `value`, the pin is then `result`."""

    control: int
    value: DisableValue | None
    result: DisableResult | None


class CellRow(NamedTuple):
    """One row of the boundary register."""

    number: int
    """0 is next to TDO."""
    cell: str | None
    """Cell type, such as "BC_1"."""
    port: PortBit | None
    function: CellFunction | None
    safe: SafeBit | None
    control: int | None
    """Number of the cell that disables the driver."""
    disable_value: DisableValue | None
    disable_result: DisableResult | None

    @property
    def disable(self) -> Disable | None:
        """How the driver of the pin is disabled; None without such a part."""
        if self.control is None:
            return None
        return Disable(self.control, self.disable_value, self.disable_result)


class Cell(NamedTuple):
    """One cell of the boundary register. A merged cell, which serves two ports, has two rows."""

    number: int
    rows: tuple[CellRow, ...]

    @property
    def type(self) -> str | None:
        """Cell type of the first row, such as "BC_1"."""
        return self.rows[0].cell

    @property
    def port(self) -> PortBit | None:
        """Port of the first row."""
        return self.rows[0].port

    @property
    def function(self) -> CellFunction | None:
        """Function of the first row."""
        return self.rows[0].function

    @property
    def safe(self) -> SafeBit | None:
        """Safe value of the first row."""
        return self.rows[0].safe

    @property
    def control(self) -> int | None:
        """Number of the cell that disables the driver, of the first row that has one."""
        return next((row.control for row in self.rows if row.control is not None), None)

    @property
    def disable(self) -> Disable | None:
        """How the driver is disabled, of the first row that says it."""
        return next((row.disable for row in self.rows if row.control is not None), None)


class Capture(NamedTuple):
    """What a cell type captures under an instruction when it has a function."""

    function: CellFunction | None
    instruction: CaptureInstruction | None
    source: CaptureSource | None


class CellDescription(NamedTuple):
    """A cell type; without a package it is built into the standard."""

    name: str | None
    package: str | None
    captures: tuple[Capture, ...]


# ------------------------------------------------------------------------------------ the whole


class Standards(NamedTuple):
    """The standards that a file names."""

    governing: Standard | None
    uses: tuple[str, ...]
    conformance: Conformance | None


class Packages(NamedTuple):
    """The packages that a description uses: names as written, and the files that were read."""

    names: tuple[str, ...]
    files: tuple[str, ...]


class Check(NamedTuple):
    """Outcome of the checks."""

    passed: bool
    errors: int
    warnings: int
