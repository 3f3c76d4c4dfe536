"""Words that a description uses for its codes; those of the further standards are in
tarnlet.families.

Each member is the word itself, so that ``row.function == "OUTPUT3"`` holds as well as
``row.function is CellFunction.OUTPUT3``.
"""

from enum import StrEnum


class Severity(StrEnum):
    """How bad a finding is."""

    ERROR = "error"
    WARNING = "warning"
    NOTE = "note"


class Standard(StrEnum):
    """A standard, by the name of its package."""

    IEEE_1149_1_1990 = "STD_1149_1_1990"
    IEEE_1149_1_1994 = "STD_1149_1_1994"
    IEEE_1149_1_2001 = "STD_1149_1_2001"
    IEEE_1532_2001 = "STD_1532_2001"
    IEEE_1532_2002 = "STD_1532_2002"
    PRG_2001 = "STD_PRG_2001"
    IEEE_1149_6_2003 = "STD_1149_6_2003"


class Conformance(StrEnum):
    """Value of COMPONENT_CONFORMANCE."""

    IEEE_1149_1_1990 = "STD_1149_1_1990"
    IEEE_1149_1_1993 = "STD_1149_1_1993"
    IEEE_1149_1_2001 = "STD_1149_1_2001"


class PinType(StrEnum):
    """Mode of a port."""

    IN = "in"
    OUT = "out"
    INOUT = "inout"
    BUFFER = "buffer"
    LINKAGE = "linkage"


class PinFunction(StrEnum):
    """Role of a pin."""

    TDI = "TDI"
    TDO = "TDO"
    TCK = "TCK"
    TMS = "TMS"
    TRST = "TRST"
    REPRESENTATIVE = "representative"
    ASSOCIATED = "associated"
    COMPLIANCE = "compliance"


class PairType(StrEnum):
    """Kind of a differential pair."""

    VOLTAGE = "voltage"
    CURRENT = "current"


class HaltState(StrEnum):
    """States in which TCK may be halted."""

    LOW = "LOW"
    BOTH = "BOTH"


class CellFunction(StrEnum):
    """Function of a boundary cell."""

    INPUT = "INPUT"
    OUTPUT2 = "OUTPUT2"
    OUTPUT3 = "OUTPUT3"
    CONTROL = "CONTROL"
    CONTROLR = "CONTROLR"
    INTERNAL = "INTERNAL"
    CLOCK = "CLOCK"
    BIDIR = "BIDIR"
    BIDIR_IN = "BIDIR_IN"
    BIDIR_OUT = "BIDIR_OUT"
    OBSERVE_ONLY = "OBSERVE_ONLY"


class CaptureInstruction(StrEnum):
    """Instruction under which a cell captures."""

    EXTEST = "EXTEST"
    SAMPLE = "SAMPLE"
    INTEST = "INTEST"
    KEEPER = "KEEPER"
    RUNBIST = "RUNBIST"


class CaptureSource(StrEnum):
    """What a cell captures."""

    PI = "PI"
    PO = "PO"
    CAP = "CAP"
    UPD = "UPD"
    ZERO = "ZERO"
    ONE = "ONE"
    X = "X"


class SafeBit(StrEnum):
    """Safe value of a boundary cell."""

    ZERO = "0"
    ONE = "1"
    X = "X"


class DisableValue(StrEnum):
    """Value of a control cell that disables the driver."""

    ZERO = "0"
    ONE = "1"


class DisableResult(StrEnum):
    """State of a pin whose driver is disabled."""

    Z = "Z"
    WEAK0 = "WEAK0"
    WEAK1 = "WEAK1"
    PULL0 = "PULL0"
    PULL1 = "PULL1"
    KEEPER = "KEEPER"


class InstructionType(StrEnum):
    """Class of an instruction."""

    PUBLIC = "public"
    STANDARD = "standard"
    PRIVATE = "private"
