"""Which held commands are down, by what was sent."""

from collections import Counter
from typing import Dict, Iterable, List, Optional, Sequence, Tuple

from orvane.tarnel.inputs import Input

_PRESSED = 1


class _HeldInput:
    """A held command of the definitions. As far as nobody knows, it is down."""

    def __init__(self, input: Input) -> None:
        self.input = input
        self.is_down = False

    def note(self, value: int) -> None:
        if (
            self.input.skipped_when_one
            and value == 1
            or self.input.skipped_when_zero
            and value == 0
        ):
            return
        if (value if self.input.fixed is None else self.input.fixed) == _PRESSED:
            self.is_down = True
        elif not self._is_conditional:
            self.is_down = False

    @property
    def release(self) -> Optional[int]:
        """The value that surely releases it; None if there is none."""
        if self.input.fixed is not None or self._is_conditional:
            return None
        return 2 if self.input.skipped_when_zero else 0

    # A dataref decides whether a value counts.
    @property
    def _is_conditional(self) -> bool:
        conditions = (self.input.skipped_while_positive, self.input.skipped_while_zero)
        return any(condition is not None for condition in conditions)


class HeldInputs:
    """All of them, of one connection."""

    def __init__(self, inputs: Sequence[Input] = ()) -> None:
        self._by_action: Dict[int, List[_HeldInput]] = {}
        for input in inputs:
            if input.held:
                self._by_action.setdefault(input.action, []).append(_HeldInput(input))

    def note(self, items: Iterable[Tuple[int, int]]) -> None:
        """These are about to be sent."""
        if not self._by_action:
            return
        for action, value in items:
            for held in self._by_action.get(action, ()):
                held.note(value)

    def releasing_items(self) -> List[Tuple[int, int]]:
        """What releases those that can be released so."""
        items = {
            (held.input.action, held.release): None
            for held in self._down()
            if held.release is not None
        }
        return [(action, value) for action, value in items if value is not None]

    def beyond_items(self) -> "Counter[str]":
        """The others, by name."""
        return Counter(held.input.target for held in self._down() if held.release is None)

    def take(self) -> "Counter[str]":
        """All that are down, by name; none are any more."""
        down = Counter(held.input.target for held in self._down())
        for held in self._down():
            held.is_down = False
        return down

    def _down(self) -> List[_HeldInput]:
        return [held for each in self._by_action.values() for held in each if held.is_down]
