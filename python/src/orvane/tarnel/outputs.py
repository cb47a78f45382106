"""What the server reports to a client."""

import enum
from dataclasses import dataclass, field
from typing import Optional

from orvane._core.checks import UINT32, check_int32
from orvane.tarnel._names import check_element, only_name

AIRCRAFT_ID = 0xFFFF
_OWN_PREFIX = "kyr/"


class OutputType(enum.IntEnum):
    """Of an output, on the wire."""

    INT = 1
    FLOAT = 2
    INT_ARRAY = 3
    FLOAT_ARRAY = 4
    COMMAND = 6


@dataclass(frozen=True)
class Output:
    """A value that the server reports in every answer.

    `id` is a number of your choice, unique among the outputs, from 0 to 4294967295 except 65535,
    which is reserved for the aircraft. Exactly one argument says what is reported, and as what:

    - `of_int`, `of_float`: a dataref, as an int or a float.
    - `of_int_array`, `of_float_array`: `count` elements of one, from `first_element` on, as an
      `array.array`.
    - `of_command`: a command under "kyr/", as a bool: true while it is down, or if it was pressed
      since the previous answer.

    A dataref whose name begins with "kyr/" is the plugin's own and is created if it does not exist.
    Any other must be the simulator's; an unknown one is reported as zero.

    ValueError for anything that the server would silently misread.
    """

    id: int
    of_int: Optional[str] = None
    of_float: Optional[str] = None
    of_int_array: Optional[str] = None
    of_float_array: Optional[str] = None
    of_command: Optional[str] = None
    count: int = 1
    first_element: int = 0

    type: OutputType = field(init=False, repr=False)
    name: str = field(init=False, repr=False)

    def __post_init__(self) -> None:
        self._find_name()
        if not isinstance(self.id, int) or self.id not in UINT32:
            raise ValueError(f"the output {self.name} has the identifier {self.id!r}")
        if self.id == AIRCRAFT_ID:
            raise ValueError(f"the output {self.name} has the aircraft's number, 65535")
        if self.type is OutputType.COMMAND and not self.name.startswith(_OWN_PREFIX):
            raise ValueError(
                f"the command {self.name} cannot be observed: only those under kyr/ can"
            )
        self._check_elements()

    def _find_name(self) -> None:
        kinds = {
            OutputType.INT: self.of_int,
            OutputType.FLOAT: self.of_float,
            OutputType.INT_ARRAY: self.of_int_array,
            OutputType.FLOAT_ARRAY: self.of_float_array,
            OutputType.COMMAND: self.of_command,
        }
        type, name = only_name(kinds, f"the output {self.id}")
        object.__setattr__(self, "type", type)
        object.__setattr__(self, "name", name)

    def _check_elements(self) -> None:
        check_int32(self.count, f"the number of elements of {self.name}")
        if self.count < 1:
            raise ValueError(
                f"the output {self.name} has {self.count} elements; at least 1 is needed"
            )
        check_element(self.first_element, self.name)
        if not self.is_array and (self.count, self.first_element) != (1, 0):
            raise ValueError(f"the output {self.name} is not an array and has no elements")

    @property
    def is_array(self) -> bool:
        return self.type in (OutputType.INT_ARRAY, OutputType.FLOAT_ARRAY)

    @property
    def value_size(self) -> int:
        """Bytes of the value in an answer."""
        return 1 if self.type is OutputType.COMMAND else 4 * self.count
