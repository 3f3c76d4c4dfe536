"""Lists of a device: by name, by number, and as the rows of a table."""

from __future__ import annotations

from collections.abc import Iterable, Iterator, Mapping, Sequence
from typing import TypeVar, overload

from .codes import PinType
from .records import Cell, CellRow, Instruction, Pin, Register

Item = TypeVar("Item")


def no_such(noun: str, name: object, names: Iterable[str]) -> KeyError:
    """An error for a name that is not there, with the names that are most like it."""
    from difflib import get_close_matches

    by_upper = {each.upper(): each for each in names}
    near = get_close_matches(str(name).upper()[:100], by_upper, n=3)
    hint = " or ".join(by_upper[each] for each in near)
    return KeyError(f"no {noun} {name}" + (f"; did you mean {hint}?" if hint else ""))


class ByName(Mapping[str, Item]):
    """Items by their names, in the order of the description. Letter case makes no difference."""

    _noun = "item"

    def __init__(self, items: Iterable[tuple[str | None, Item]]) -> None:
        self._items: dict[str, Item] = {}
        self._names: dict[str, str] = {}
        for name, item in items:
            if name is not None and self._names.setdefault(name.upper(), name) == name:
                self._items.setdefault(name, item)

    def __getitem__(self, name: str) -> Item:
        try:
            return self._items[name]
        except KeyError:
            pass
        if isinstance(name, str) and (written := self._names.get(name.upper())) is not None:
            return self._items[written]
        raise no_such(self._noun, name, self._items)

    def __iter__(self) -> Iterator[str]:
        return iter(self._items)

    def __len__(self) -> int:
        return len(self._items)

    def __repr__(self) -> str:
        shown = ", ".join([*self._items][:6]) + (", ..." if len(self) > 6 else "")
        return f"<{type(self).__name__}: {len(self)} ({shown})>"


class Port:
    """A port: ``port[3]`` is the pin of bit 3, and iteration gives all its pins in order."""

    __slots__ = ("name", "bits")

    name: str
    bits: tuple[Pin, ...]

    def __init__(self, name: str, bits: tuple[Pin, ...]) -> None:
        self.name = name
        self.bits = bits

    @property
    def type(self) -> PinType | None:
        """Mode of the port."""
        return self.bits[0].type

    @property
    def is_vector(self) -> bool:
        """Whether its bits have subscripts."""
        return self.subscripts != (None,)

    @property
    def subscripts(self) -> tuple[int | None, ...]:
        """The subscripts in the order of the port clause; (None,) for a port that is no vector."""
        return tuple(pin.port.subscript if pin.port else None for pin in self.bits)

    @property
    def numbers(self) -> tuple[str | None, ...]:
        """Names of the physical pins, such as ("A1", "A2")."""
        return tuple(pin.number for pin in self.bits)

    @overload
    def __getitem__(self, subscript: int) -> Pin:
        ...

    @overload
    def __getitem__(self, subscript: slice) -> tuple[Pin, ...]:
        ...

    def __getitem__(self, subscript: int | slice) -> Pin | tuple[Pin, ...]:
        bits = {bit: pin for bit, pin in zip(self.subscripts, self.bits) if bit is not None}
        if isinstance(subscript, slice):
            wanted = range(*subscript.indices(max(bits, default=-1) + 1))
            found = tuple(bits[bit] for bit in sorted(bits) if bit in wanted)
            return found if wanted.step > 0 else found[::-1]
        if subscript in bits:
            return bits[subscript]
        has = f"has the bits {min(bits)} to {max(bits)}" if bits else "is no vector"
        raise IndexError(f"{self.name} {has}, so there is no bit {subscript}")

    def __len__(self) -> int:
        return len(self.bits)

    def __iter__(self) -> Iterator[Pin]:
        return iter(self.bits)

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Port):
            return NotImplemented
        return self.bits == other.bits

    def __hash__(self) -> int:
        return hash(self.bits)

    def __repr__(self) -> str:
        return f"<Port {self.name}: {self.type}, {len(self)} bit{'' if len(self) == 1 else 's'}>"


class Ports(ByName[Port]):
    """The ports by their names."""

    _noun = "port"

    def __init__(self, rows: tuple[Pin, ...]) -> None:
        bits: dict[str, list[Pin]] = {}
        for pin in rows:
            if pin.port is not None:
                bits.setdefault(pin.port.name, []).append(pin)
        super().__init__((name, Port(name, tuple(pins))) for name, pins in bits.items())


class Pins(ByName[Pin]):
    """The pins by the names of the physical pins, such as "AB12"."""

    _noun = "pin"

    rows: tuple[Pin, ...]
    """All port bits in the order of the port clause, also those without a physical pin."""

    def __init__(self, rows: tuple[Pin, ...]) -> None:
        super().__init__((pin.number, pin) for pin in rows)
        self.rows = rows


class Instructions(ByName[Instruction]):
    """The instructions by their names, the one that preloads first."""

    _noun = "instruction"

    rows: tuple[Instruction, ...]

    def __init__(self, rows: tuple[Instruction, ...]) -> None:
        super().__init__((instruction.name, instruction) for instruction in rows)
        self.rows = rows


class Registers(ByName[Register]):
    """The data registers that instructions select, by their names."""

    _noun = "register"

    rows: tuple[Register, ...]

    def __init__(self, rows: tuple[Register, ...]) -> None:
        super().__init__((register.name, register) for register in rows)
        self.rows = rows


class Cells(Sequence[Cell]):
    """The boundary register: ``cells[17]`` is the cell with the number 17; 0 is next to TDO.

    A description with mistakes may leave numbers out. Then there is no cell of that number, and
    the length is the number of cells that are there.
    """

    rows: tuple[CellRow, ...]
    """The rows in the order of the description."""

    def __init__(self, rows: tuple[CellRow, ...]) -> None:
        self.rows = rows
        of_number: dict[int, tuple[CellRow, ...]] = {}
        for row in rows:
            of_number[row.number] = of_number.get(row.number, ()) + (row,)
        self._cells = {number: Cell(number, of_number[number]) for number in sorted(of_number)}
        self._end = max(of_number, default=-1) + 1

    @overload
    def __getitem__(self, number: int) -> Cell:
        ...

    @overload
    def __getitem__(self, number: slice) -> tuple[Cell, ...]:
        ...

    def __getitem__(self, number: int | slice) -> Cell | tuple[Cell, ...]:
        if isinstance(number, slice):
            wanted = range(*number.indices(self._end))
            if len(wanted) <= len(self):
                return tuple(self._cells[each] for each in wanted if each in self._cells)
            found = tuple(cell for cell in self if cell.number in wanted)
            return found if wanted.step > 0 else found[::-1]
        found_cell = self._cells.get(number + self._end if number < 0 else number)
        if found_cell is None:
            has = f"the cells have the numbers {min(self._cells)} to {self._end - 1}"
            raise IndexError(f"no cell {number}; {has if self._cells else 'there are none'}")
        return found_cell

    def __len__(self) -> int:
        return len(self._cells)

    def __iter__(self) -> Iterator[Cell]:
        return iter(self._cells.values())

    def __reversed__(self) -> Iterator[Cell]:
        return reversed(self._cells.values())

    def __contains__(self, cell: object) -> bool:
        return isinstance(cell, Cell) and self._cells.get(cell.number) == cell

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Cells):
            return NotImplemented
        return self.rows == other.rows

    def __hash__(self) -> int:
        return hash(self.rows)

    def __repr__(self) -> str:
        return f"<Cells: {len(self)} in {len(self.rows)} rows>"
