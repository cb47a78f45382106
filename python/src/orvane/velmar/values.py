"""Datarefs and commands as a Velmar client knows them."""

import enum
import re
from array import array
from dataclasses import dataclass
from typing import Optional, Sequence, Union

from orvane._core.checks import check_name

_LONGEST_NAME = 255
# The server ends the simulator's process if an answer does not fit into its buffer of 0x0FFFFFFF
# bytes.
_MOST_ELEMENTS = 60_000_000

Value = Union[int, float, "array[int]", "array[float]"]
"""What is read: a byte as an int from 0 to 255."""

Writable = Union[int, float, Sequence[int], Sequence[float]]
"""What can be written: arrays, and lists and tuples."""


class Type(enum.IntEnum):
    """How a dataref is accessed. You choose, and the server does not check.

    A dataref without this type reads as 0.
    """

    INT = 1
    FLOAT = 2
    BYTE = 3
    INT_ARRAY = 4
    FLOAT_ARRAY = 5

    @property
    def is_array(self) -> bool:
        return self in (Type.INT_ARRAY, Type.FLOAT_ARRAY)


class Action(enum.IntEnum):
    """What to do with a command."""

    ONCE = 1
    BEGIN = 2
    END = 3


class CommandState(enum.Enum):
    """Of a command, since the last poll."""

    UP = 0
    DOWN = 1
    PRESSED = 2
    """and released"""


@dataclass(frozen=True)
class CommandReport:
    """A command that was pressed."""

    name: str
    state: CommandState


@dataclass(frozen=True)
class Dataref:
    """A dataref to register. Arrays are read and written from element 0 on, `size` elements of
    them.

    ValueError: an empty name, one of more than 255 bytes, an array without a size.
    """

    name: str
    type: Type = Type.FLOAT
    size: int = 0

    def __post_init__(self) -> None:
        check_name(self.name, _LONGEST_NAME)
        object.__setattr__(self, "type", Type(self.type))
        if self.type.is_array and not 1 <= self.size <= _MOST_ELEMENTS:
            raise ValueError(
                f"the array {self.name} has {self.size} elements;"
                f" 1 to {_MOST_ELEMENTS} are allowed"
            )

    @property
    def value_size(self) -> int:
        """Bytes of a value."""
        if self.type.is_array:
            return 4 * self.size
        return 1 if self.type is Type.BYTE else 4


_TYPED_NAME = re.compile(r"(?P<name>[^:]+):(?P<type>int|float|byte)(\[(?P<size>\d+)\])?")


def parse_dataref(text: str) -> "tuple[str, Optional[Dataref]]":
    """The name in "NAME" and, in "NAME:TYPE", what it is read as.

    TYPE is int, float, byte, int[N] or float[N]. ValueError for another type.
    """
    name, colon, _ = text.partition(":")
    if not colon:
        check_name(name, _LONGEST_NAME)
        return name, None
    match = _TYPED_NAME.fullmatch(text)
    if match is None or (match["type"] == "byte" and match["size"]):
        raise ValueError(f"{text}: the type is not int, float, byte, int[N] or float[N]")
    scalar = Type[match["type"].upper()]
    if match["size"] is None:
        return name, Dataref(name, scalar)
    return name, Dataref(name, Type[f"{scalar.name}_ARRAY"], int(match["size"]))


def check_command(name: str) -> None:
    check_name(name, _LONGEST_NAME)
