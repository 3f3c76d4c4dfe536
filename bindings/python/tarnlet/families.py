"""Codes and records of IEEE 1532, IEEE 1149.6, IEEE 1149.4 and PPC/PRG files, as tarnlet.codes and
tarnlet.records have the others. Most descriptions need none of them.
"""

from enum import StrEnum
from typing import NamedTuple

from .records import PortBit

# ---------------------------------------------------------------------------------------- codes


class IscConformance(StrEnum):
    """Value of ISC_Conformance."""

    IEEE_1532_2001 = "STD_1532_2001"
    IEEE_1532_2002 = "STD_1532_2002"


class IscPinBehavior(StrEnum):
    """Value of ISC_Pin_Behavior."""

    HIGHZ = "HIGHZ"
    CLAMP = "CLAMP"


class IscStatus(StrEnum):
    """Value of ISC_Status."""

    IMPLEMENTED = "implemented"
    NOT_IMPLEMENTED = "not implemented"


class IscOperation(StrEnum):
    """Operation of a data expression."""

    HEX = "hex"
    VARIABLE = "variable"
    ASSIGN = "assign"
    INPUT = "input"
    VARIABLE_INPUT = "variable-input"
    IO = "io"
    VARIABLE_IO = "variable-io"
    ADD = "add"
    SUBTRACT = "subtract"
    SHIFT_LEFT = "shift-left"
    SHIFT_RIGHT = "shift-right"
    COMPLEMENT = "complement"


class IscTag(StrEnum):
    """Tag of a capture field."""

    CRC = "CRC"
    OST = "OST"
    CRC_OST = "CRC_OST"


class BlockKind(StrEnum):
    """Kind of a block of a flow."""

    INITIALIZE = "initialize"
    REPEAT = "repeat"
    TERMINATE = "terminate"


class StepKind(StrEnum):
    """Kind of a step of a block."""

    ACTIVITY = "activity"
    LOOP_START = "loop-start"
    LOOP_END = "loop-end"


class ProgramType(StrEnum):
    """Type of a program in a PPC/PRG file."""

    ISC = "ISC"
    SVF = "SVF"
    STAPL = "STAPL"
    JAM = "JAM"
    JCS = "JCS"


# ------------------------------------------------------------------------------------ IEEE 1532


class Security(NamedTuple):
    """ISC_Security: bit positions in the register ISC_PDATA, or "*"."""

    disable_read: int | str
    disable_program: int | str
    disable_erase: int | str
    disable_key_lsb: int | str
    disable_key_msb: int | str


class Expression(NamedTuple):
    """Data of a field."""

    operation: IscOperation | None
    variable: int | None
    """Index of the variable in its flow."""
    operand: int | None
    """Second operand of add, subtract and the shifts."""
    hex: str | None
    defines_length: bool
    """The variable gets its length here."""


class UpdateField(NamedTuple):
    """A field to shift in."""

    width: int
    data: Expression | None


class CaptureField(NamedTuple):
    """A field to shift out and compare."""

    width: int
    expected: Expression | None
    expected_output: bool
    """'!' was written."""
    mask: Expression | None
    mask_output: bool
    """'!' was written."""
    tag: IscTag | None


class Activity(NamedTuple):
    """Load an instruction, shift, and wait: in clock cycles and microseconds, 0 if not given."""

    kind: StepKind
    instruction: str
    min_cycles: int
    min_time_us: int
    max_cycles: int
    max_time_us: int
    update: tuple[UpdateField, ...]
    capture: tuple[CaptureField, ...]


class Loop(NamedTuple):
    """Start or end of a loop of activities."""

    kind: StepKind
    max_loops: int
    min_loops: int


class Block(NamedTuple):
    """Activities and loop markers that are run once, or `count_` times in a repeat block."""

    kind: BlockKind
    count_: int | None
    activities: tuple[Activity | Loop, ...]


class Flow(NamedTuple):
    """A flow of a procedure."""

    name: str | None
    data: str | None
    unprocessed: bool
    exit_on_error: bool
    variables: int
    """Number of its variables."""
    blocks: tuple[Block, ...]


class Procedure(NamedTuple):
    """A procedure that an action runs."""

    name: str | None
    data: str | None
    flows: tuple[Flow, ...]


class ProcedureCall(NamedTuple):
    """One entry of an action."""

    procedure: str | None
    data: str | None
    proprietary: bool
    optional: bool
    recommended: bool


class Action(NamedTuple):
    """An action and the procedures that it runs."""

    name: str | None
    data: str | None
    proprietary: bool
    procedures: tuple[ProcedureCall, ...]


class Isc(NamedTuple):
    """Statements of IEEE 1532. Without a passed check all of it is None or empty."""

    conformance: IscConformance | None
    pin_behavior: IscPinBehavior | None
    status: IscStatus | None
    blank_usercode: str | None
    security: Security | None
    fixed_pins: tuple[PortBit, ...]
    illegal_exit: tuple[str, ...]
    """Names of instructions."""
    design_warning: str | None
    actions: tuple[Action, ...]
    procedures: tuple[Procedure, ...]
    """Those that actions run."""

    def procedure(self, name: str, data: str | None = None) -> Procedure:
        """The procedure of a name, whatever the case of its letters."""
        for procedure in self.procedures:
            if (_folded(procedure.name), _folded(procedure.data)) == (_folded(name), _folded(data)):
                return procedure
        raise KeyError(f"no procedure {name}" if data is None else f"no procedure {name}({data})")


def _folded(name: str | None) -> str | None:
    return name if name is None else name.upper()


# ---------------------------------------------------------------------------- IEEE 1149.6, 1149.4


class ExtestPulse(NamedTuple):
    """AIO_EXTEST_Pulse_Execution; one of the two is 0."""

    cycles: int
    time: float
    """In seconds."""


class ExtestTrain(NamedTuple):
    """AIO_EXTEST_Train_Execution."""

    pulses: int
    max_time: float
    """In seconds; 0 if not given."""


class AioPin(NamedTuple):
    """AC behaviour of a port bit; times are in seconds."""

    port: PortBit | None
    select_cell: int | None
    """Number of the cell that selects AC mode."""
    low_pass_time: float | None
    high_pass_time: float | None
    high_pass_on_chip: bool
    input_cell: int | None
    """Number of the cell that observes the bit."""


class Aio(NamedTuple):
    """Statements of IEEE 1149.6."""

    conformance: str | None
    extest_pulse: ExtestPulse | None
    extest_train: ExtestTrain | None
    pins: tuple[AioPin, ...]


class AnalogBus(NamedTuple):
    """Analog test bus of an IEEE 1149.4 device."""

    at1: PortBit | None
    at2: PortBit | None
    values: tuple[int, ...]


class AnalogModule(NamedTuple):
    """Analog boundary module of an IEEE 1149.4 device."""

    number: int
    pin: PortBit | None
    values: tuple[int, ...]


class Analog(NamedTuple):
    """What is known of an IEEE 1149.4 device by its name."""

    test_bus: AnalogBus | None
    partitions: tuple[tuple[int, ...], ...]
    modules: tuple[AnalogModule, ...]


# ---------------------------------------------------------------------------------- PPC/PRG files


class ComponentSetting(NamedTuple):
    """What is loaded into one part of a scan chain."""

    part: str | None
    instruction: str | None
    register_values: str | None


class Channel(NamedTuple):
    """A serial channel and what its parts are set to."""

    tap: int
    components: tuple[ComponentSetting, ...]


class Program(NamedTuple):
    """A program of a part."""

    part: str | None
    part_type: str | None
    type: ProgramType | None
    jcs_number: int | None
    in_file: str | None
    out_file: str | None
    isc: Isc | None


class Prg(NamedTuple):
    """A PPC/PRG file: a design, its scan chains and its programs."""

    design: str | None
    revision: str | None
    frequency: int
    """As written."""
    channels: tuple[Channel, ...]
    programs: tuple[Program, ...]
