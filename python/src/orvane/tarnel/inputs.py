"""What a client sends."""

import enum
from dataclasses import dataclass, field
from typing import Optional, Tuple, Union

from orvane._core.checks import INT32, check_float32, check_int32
from orvane.tarnel._names import check_element, check_name, only_name


class TargetType(enum.IntEnum):
    """Of an input, on the wire."""

    INT = 1
    FLOAT = 2
    INT_ELEMENT = 3
    FLOAT_ELEMENT = 4
    COMMAND = 6


class ConditionType(enum.IntEnum):
    """How the dataref of a condition is read, on the wire."""

    INT = 1
    FLOAT = 2
    INT_ELEMENT = 3
    FLOAT_ELEMENT = 4


@dataclass(frozen=True)
class ConditionDataref:
    """The dataref that a condition reads; `element` is that of an array."""

    name: str
    type: ConditionType = ConditionType.FLOAT
    element: int = 0

    def __post_init__(self) -> None:
        check_name(self.name)
        ConditionType(self.type)
        check_element(self.element, self.name)


@dataclass(frozen=True)
class Input:
    """What the server does with the values of an action.

    `action` is the number under which values are sent, a 32-bit int; if several inputs share one,
    each gets the value. Exactly one argument says what gets it; values are 32-bit ints:

    - `to_int`, `to_int_element`: a dataref, or the `element` of an array, gets the value.
    - `to_float`, `to_float_element`: gets the value / 65535, or as scaled.
    - `to_command`: the value 1 presses a command, any other releases it. It runs once per 1 unless
      held. Without a repeat interval the server runs the commands of actions 1002 to 1005 twice
      per 1.

    Scaling of floats, which maps 0 to 65535 to a range:

    - `scaled_by_int_range`, `scaled_by_float_range`: (minimum, maximum).
    - `scaled_by_datarefs`: (minimum, maximum), the names of two float datarefs that are read for
      each value. If both have the same value v other than 0, the range goes from -v to v.
    - `scaled_by_dataref_elements`: (minimum, maximum, element), of float arrays.

    Conditions, of which an input has at most one:

    - `skipped_when_one`, `skipped_when_zero`: this value is ignored.
    - `skipped_while_positive`, `skipped_while_zero`: all values are ignored while a dataref is
      positive or zero.

    Others:

    - `fixed`: the target gets this value instead of the one sent. For an element of an int array
      only 1 is accepted, since the server always writes 1.
    - `held`: a command begins at the first 1 and ends at the first other value. The client releases
      it if it is left down.
    - `repeated_every`: seconds for which further 1s of a command that is not held are ignored;
      at least 0.001, in whole milliseconds.

    ValueError for anything that the server would silently misread. A name that the simulator does
    not know goes unnoticed: a target gets nothing, and a dataref of a range or a condition reads
    as 0.
    """

    action: int
    to_int: Optional[str] = None
    to_float: Optional[str] = None
    to_int_element: Optional[str] = None
    to_float_element: Optional[str] = None
    to_command: Optional[str] = None
    element: int = 0
    scaled_by_int_range: Optional[Tuple[int, int]] = None
    scaled_by_float_range: Optional[Tuple[float, float]] = None
    scaled_by_datarefs: Optional[Tuple[str, str]] = None
    scaled_by_dataref_elements: Optional[Tuple[str, str, int]] = None
    skipped_when_one: bool = False
    skipped_when_zero: bool = False
    skipped_while_positive: Optional[ConditionDataref] = None
    skipped_while_zero: Optional[ConditionDataref] = None
    fixed: Optional[Union[int, float]] = None
    held: bool = False
    repeated_every: Optional[float] = None

    type: TargetType = field(init=False, repr=False)
    target: str = field(init=False, repr=False)

    def __post_init__(self) -> None:
        check_int32(self.action, "the action of an input")
        self._find_target()
        check_element(self.element, self.target)
        is_element = self.type in (TargetType.INT_ELEMENT, TargetType.FLOAT_ELEMENT)
        self._refuse_unless(is_element or self.element == 0, "is not an array and has no elements")
        self._check_scaling()
        conditions = (
            self.skipped_when_one,
            self.skipped_when_zero,
            self.skipped_while_positive is not None,
            self.skipped_while_zero is not None,
        )
        self._refuse_unless(sum(conditions) <= 1, "has more than one condition")
        self._check_fixed()
        self._check_command()

    def _find_target(self) -> None:
        targets = {
            TargetType.INT: self.to_int,
            TargetType.FLOAT: self.to_float,
            TargetType.INT_ELEMENT: self.to_int_element,
            TargetType.FLOAT_ELEMENT: self.to_float_element,
            TargetType.COMMAND: self.to_command,
        }
        type, name = only_name(targets, f"the input of action {self.action}")
        object.__setattr__(self, "type", type)
        object.__setattr__(self, "target", name)

    def _refuse_unless(self, allowed: bool, what: str) -> None:
        if not allowed:
            raise ValueError(f"the input of {self.target} {what}")

    def _check_scaling(self) -> None:
        scalings = (
            self.scaled_by_int_range,
            self.scaled_by_float_range,
            self.scaled_by_datarefs,
            self.scaled_by_dataref_elements,
        )
        count = sum(scaling is not None for scaling in scalings)
        self._refuse_unless(count <= 1, "has more than one scaling")
        self._refuse_unless(count == 0 or is_float(self), "is not a float and cannot be scaled")
        if self.scaled_by_int_range is not None:
            minimum, maximum = self.scaled_by_int_range
            check_int32(minimum, f"the minimum of {self.target}")
            check_int32(maximum, f"the maximum of {self.target}")
            # The server takes the difference in 32 bits.
            self._refuse_unless(maximum - minimum in INT32, "has a range wider than 32 bits")
        for end in self.scaled_by_float_range or ():
            check_float32(end, f"an end of the range of {self.target}")
        for name in range_names(self):
            check_name(name)
        if self.scaled_by_dataref_elements is not None:
            check_element(self.scaled_by_dataref_elements[2], range_names(self)[0])

    def _check_fixed(self) -> None:
        if self.fixed is None:
            return
        if is_float(self):
            check_float32(self.fixed, f"the fixed value of {self.target}")
            return
        check_int32(self.fixed, f"the fixed value of {self.target}")
        self._refuse_unless(
            self.type is not TargetType.INT_ELEMENT or self.fixed == 1,
            "is an element of an int array and can be fixed to 1 only",
        )

    def _check_command(self) -> None:
        is_command = self.type is TargetType.COMMAND
        self._refuse_unless(is_command or not self.held, "is not a command and cannot be held")
        if self.repeated_every is None:
            return
        self._refuse_unless(is_command, "is not a command and cannot be repeated")
        self._refuse_unless(not self.held, "is held and cannot have a repeat interval")
        self._refuse_unless(
            self.repeated_every <= (2**31 - 1) / 1000 and repeat_ms(self) >= 1,
            f"cannot have a repeat interval of {self.repeated_every} seconds",
        )


def is_float(input: Input) -> bool:
    return input.type in (TargetType.FLOAT, TargetType.FLOAT_ELEMENT)


def range_names(input: Input) -> Tuple[str, ...]:
    """The datarefs of the range, if it has some."""
    if input.scaled_by_dataref_elements is not None:
        return input.scaled_by_dataref_elements[:2]
    return input.scaled_by_datarefs or ()


def repeat_ms(input: Input) -> int:
    """The repeat interval in milliseconds, 0 for none."""
    return round((input.repeated_every or 0) * 1000)
