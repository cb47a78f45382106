"""Plays the server for a plan, without a socket and without time."""

import time
from typing import Any, Iterator, List, Optional, Sequence, Tuple, TypeVar, Union

from vectors import bytes_of

from orvane._core import steps
from orvane._core.steps import Cancelled, Late, Plan, Step
from orvane._shells.blocking import BlockingShell

T = TypeVar("T")

# What a request gets: an answer, the end of the connection (no bytes), or a failure.
Outcome = Union[bytes, BaseException]
Turn = Tuple[bytes, Outcome]


def wire(*texts: str) -> bytes:
    """Bytes, as tests/vectors writes them."""
    return bytes_of(" ".join(texts))


def framed(*texts: str) -> bytes:
    """An answer, with its length in front."""
    payload = wire(*texts)
    return len(payload).to_bytes(4, "little") + payload


class ScriptedServer(BlockingShell):
    """Accepts connections one after the other, and expects the requests written down on each.

    An exception in place of a connection is how it fails.
    """

    def __init__(self, *connections: Union[Sequence[Turn], BaseException]) -> None:
        super().__init__()
        self._coming: Iterator[Union[Sequence[Turn], BaseException]] = iter(connections)
        self._turns: Optional[List[Turn]] = None
        self._outcome: Optional[Outcome] = None
        self.waits: List[float] = []
        # Whether the client's `cancelled` ends a wait.
        self.is_cancelled = False
        self.places: List[Tuple[str, int]] = []
        # What a Look finds, once.
        self.waiting: Optional[bytes] = None
        # What a Hear finds, one after the other: a sender's address and its datagram.
        self.heard: List[bytes] = []
        self.is_hearing = False

    def interrupt(self, plan: Plan[T], error: BaseException) -> None:
        """Throws this into the first step of the plan, and carries out what follows."""
        next(plan)

        def rest() -> Plan[None]:
            step = plan.throw(error)
            while True:
                step = plan.send((yield step))

        self.run(rest())

    @property
    def is_connected(self) -> bool:
        return self._turns is not None

    def expect_end(self) -> None:
        """Everything that was written down has happened."""
        assert not self._turns, "requests did not come"
        assert next(self._coming, None) is None, "a connection was not made"

    def _do(self, step: Step) -> Optional[bytes]:
        if isinstance(step, steps.Connect):
            self._accept(step)
        elif isinstance(step, steps.Close):
            assert not self._turns or self._outcome is not None, "closed too early"
            self._turns = self._outcome = None
        elif isinstance(step, steps.Wait):
            self.waits.append(round(step.limit.deadline - time.monotonic(), 2))
            if self.is_cancelled and step.limit.is_cancellable:
                raise Cancelled
        elif isinstance(step, steps.Send):
            self._take(step.data)
        elif isinstance(step, steps.Look):
            found, self.waiting = self.waiting, None
            return found
        elif isinstance(step, steps.Hear):
            self.is_hearing = True
            if not self.heard:
                raise Late
            return self.heard.pop(0)
        elif isinstance(step, steps.StopHearing):
            self.is_hearing = False
        else:
            return self._answer(step)
        return None

    def _accept(self, step: steps.Connect) -> None:
        assert self._turns is None, "there is a connection already"
        self.places.append((step.host, step.port))
        coming: Any = next(self._coming, None)
        assert coming is not None, "another connection"
        if isinstance(coming, BaseException):
            raise coming
        self._turns = list(coming)

    def _take(self, request: bytes) -> None:
        assert self._turns is not None, "there is no connection"
        assert self._turns, f"another request: {request.hex(' ')}"
        expected, self._outcome = self._turns.pop(0)
        assert request.hex(" ") == expected.hex(" ")

    def _answer(self, step: steps.Receive) -> bytes:
        outcome, self._outcome = self._outcome, None
        assert outcome is not None
        if isinstance(outcome, BaseException):
            raise outcome
        return outcome
