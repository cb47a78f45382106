"""What is new from reading to reading."""

from array import array
from typing import Dict, Iterable, List, Optional, Sequence, Set

from orvane.velmar.values import CommandReport, CommandState, Value


class Changes:
    """Values that differ by more than the deadband from what was last reported."""

    def __init__(self, names: Iterable[str], deadband: float) -> None:
        if not deadband >= 0:
            raise ValueError(f"a deadband must be at least 0, not {deadband}")
        self.names = _list_of(names)
        self._deadband = deadband
        self._reported: Dict[str, Value] = {}

    def among(self, values: Sequence[Value]) -> Dict[str, Value]:
        """The new ones among the names' values; at first all are new."""
        changed = {
            name: value
            for name, value in zip(self.names, values)
            if self._is_new(self._reported.get(name), value)
        }
        self._reported.update(changed)
        return changed

    def _is_new(self, former: Optional[Value], value: Value) -> bool:
        if former is None or isinstance(former, array) != isinstance(value, array):
            return True
        old, new = _elements(former), _elements(value)
        return len(old) != len(new) or any(map(self._differ, old, new))

    def _differ(self, former: float, value: float) -> bool:
        # NaN equals NaN; a number and NaN differ.
        is_number, was_number = value == value, former == former
        if not (is_number and was_number):
            return is_number != was_number
        return value != former and not abs(value - former) <= self._deadband


def _list_of(names: Iterable[str]) -> List[str]:
    # A string is iterable, too, but nobody means its characters.
    return [names] if isinstance(names, str) else list(names)


def _elements(value: Value) -> Sequence[float]:
    if isinstance(value, array):
        return value
    return [value]


class Presses:
    """Each press once: staying down or being released is not a press."""

    def __init__(self, names: Iterable[str]) -> None:
        self.names = _list_of(names)
        self._down: Set[str] = set()

    def among(self, reports: Sequence[CommandReport]) -> List[CommandReport]:
        """The presses of these names since the previous call."""
        new = [
            report
            for report in reports
            if report.name in self.names and report.name not in self._down
        ]
        self._down = {report.name for report in reports if report.state is CommandState.DOWN}
        return new
