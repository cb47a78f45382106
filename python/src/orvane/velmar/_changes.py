"""What is new in a row of readings."""

from array import array
from typing import Dict, Iterable, List, Optional, Sequence, Set

from orvane.velmar.values import CommandReport, CommandState, Value


class Changes:
    """Values that differ by more than the deadband from what was reported of them before."""

    def __init__(self, names: Iterable[str], deadband: float) -> None:
        if not deadband >= 0:
            raise ValueError(f"a deadband of {deadband} is not 0 or more")
        self.names = _list_of(names)
        self._deadband = deadband
        self._reported: Dict[str, Value] = {}

    def among(self, values: Sequence[Value]) -> Dict[str, Value]:
        """Of the names' values: those that are new, which at first all are."""
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
        # Two values that are not numbers are the same; a number and another are not.
        is_number, was_number = value == value, former == former
        if not (is_number and was_number):
            return is_number != was_number
        return value != former and not abs(value - former) <= self._deadband


def _list_of(names: Iterable[str]) -> List[str]:
    # A text is a row of names, too: those of its characters, which nobody means.
    return [names] if isinstance(names, str) else list(names)


def _elements(value: Value) -> Sequence[float]:
    if isinstance(value, array):
        return value
    return [value]


class Presses:
    """Each press once: a command that stays down is not pressed again, nor when it is released."""

    def __init__(self, names: Iterable[str]) -> None:
        self.names = _list_of(names)
        self._down: Set[str] = set()

    def among(self, reports: Sequence[CommandReport]) -> List[CommandReport]:
        """Of what happened since the call before: the presses of these names."""
        new = [
            report
            for report in reports
            if report.name in self.names and report.name not in self._down
        ]
        self._down = {report.name for report in reports if report.state is CommandState.DOWN}
        return new
