"""Which held commands are down, judging by what was sent."""

from collections import Counter
from typing import Dict, Iterable, List, Sequence, Tuple

from orvane.tarnel.inputs import Input

_PRESSED = 1


class _HeldInput:
    """A held command of the definitions. It counts as down unless it is known to be up."""

    def __init__(self, input: Input) -> None:
        self.input = input
        self.is_down = False

    def sending(self, value: int) -> None:
        if self._counts(value) and self._presses(value):
            self.is_down = True

    def sent(self, value: int) -> None:
        if self._counts(value) and not self._is_conditional:
            self.is_down = self._presses(value)

    @property
    def ends_at_zero(self) -> bool:
        """Whether the value 0 certainly releases it."""
        is_skipped = self.input.skipped_when_zero or self._is_conditional
        return self.input.fixed is None and not is_skipped

    def _counts(self, value: int) -> bool:
        if value == 1:
            return not self.input.skipped_when_one
        return value != 0 or not self.input.skipped_when_zero

    def _presses(self, value: int) -> bool:
        return (value if self.input.fixed is None else self.input.fixed) == _PRESSED

    # A dataref decides whether the server skips a value.
    @property
    def _is_conditional(self) -> bool:
        conditions = (self.input.skipped_while_positive, self.input.skipped_while_zero)
        return any(condition is not None for condition in conditions)


class HeldInputs:
    """All held commands of one connection."""

    def __init__(self, inputs: Sequence[Input] = ()) -> None:
        self._by_action: Dict[int, List[_HeldInput]] = {}
        for input in inputs:
            if input.held:
                self._by_action.setdefault(input.action, []).append(_HeldInput(input))

    def sending(self, items: Iterable[Tuple[int, int]]) -> None:
        """Called before items are sent: what they press may now be down."""
        for held, value in self._of(items):
            held.sending(value)

    def sent(self, items: Iterable[Tuple[int, int]]) -> None:
        """Called when the items were answered: what they release is up."""
        for held, value in self._of(items):
            held.sent(value)

    def releasing_items(self) -> List[Tuple[int, int]]:
        """Items that release all commands that the value 0 releases."""
        actions = [held.input.action for held in self._down() if held.ends_at_zero]
        return [(action, 0) for action in dict.fromkeys(actions)]

    def other_held(self) -> "Counter[str]":
        """The others, by name."""
        return Counter(held.input.target for held in self._down() if not held.ends_at_zero)

    def take(self) -> "Counter[str]":
        """All that are down, by name; forgets them."""
        down = Counter(held.input.target for held in self._down())
        for held in self._down():
            held.is_down = False
        return down

    def _of(self, items: Iterable[Tuple[int, int]]) -> Iterable[Tuple[_HeldInput, int]]:
        if not self._by_action:
            return ()
        return (
            (held, value) for action, value in items for held in self._by_action.get(action, ())
        )

    def _down(self) -> List[_HeldInput]:
        return [held for each in self._by_action.values() for held in each if held.is_down]
