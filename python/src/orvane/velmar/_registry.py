"""What is registered, and its numbers on the current connection."""

from typing import Dict, List, Optional, Sequence

from orvane.velmar._open import candidates
from orvane.velmar.values import Dataref


class Registry:
    """Names live as long as the client, numbers as long as a connection.

    A dataref that is accessed in several ways has a number for each. A number is never reused, so
    nothing is ever written to the wrong dataref.
    """

    def __init__(self) -> None:
        # None: its type is not known yet.
        self.datarefs: Dict[str, Optional[Dataref]] = {}
        self.commands: List[str] = []
        # Further ways in which datarefs of unknown type were written.
        self._ways: Dict[str, List[Dataref]] = {}
        self._dataref_numbers: Dict[Dataref, int] = {}
        self._command_numbers: Dict[str, int] = {}

    def forget_numbers(self) -> None:
        self._dataref_numbers.clear()
        self._command_numbers.clear()

    def dataref_number(self, dataref: Dataref) -> int:
        return self._dataref_numbers.setdefault(dataref, len(self._dataref_numbers) + 1)

    def command_number(self, name: str) -> int:
        return self._command_numbers.setdefault(name, len(self._command_numbers) + 1)

    def command_of(self, number: int) -> Optional[str]:
        for name, known in self._command_numbers.items():
            if known == number:
                return name
        return None

    def variants(self, name: str) -> List[Dataref]:
        """All that is registered for a wanted name."""
        dataref = self.datarefs[name]
        if dataref is not None:
            return [dataref]
        return candidates(name) + self._ways.get(name, [])

    def add_ways(self, name: str, ways: Sequence[Dataref]) -> List[Dataref]:
        """The new ones among ways to write a dataref of unknown type."""
        new = [way for way in ways if way not in self.variants(name)]
        self._ways.setdefault(name, []).extend(new)
        return new

    def want(self, name: str, dataref: Optional[Dataref]) -> None:
        self.datarefs[name] = dataref
        self._ways.pop(name, None)

    def forget_dataref(self, name: str) -> None:
        del self.datarefs[name]
        self._ways.pop(name, None)
