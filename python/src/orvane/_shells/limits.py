"""What both shells need: slices of waiting time, and failed name look-ups."""

import socket
import time
from typing import Callable, Optional

from orvane._core.steps import Cancelled, Late, Limit, NoSuchHost

# Seconds between two checks whether the client is cancelled.
BETWEEN_QUESTIONS = 0.1
# Some systems deliver Ctrl-C only between two waits.
LONGEST_WAIT = 1.0


class Waiting:
    """Splits a wait into slices, and checks in between whether the client is cancelled."""

    def __init__(self, cancelled: Optional[Callable[[], bool]]) -> None:
        self._cancelled = cancelled

    def next_slice(self, limit: Limit) -> float:
        """Seconds to wait now. Late or Cancelled if there are none left."""
        longest = LONGEST_WAIT
        if self._cancelled is not None and limit.is_cancellable:
            longest = BETWEEN_QUESTIONS
            if self._cancelled():
                raise Cancelled
        left = limit.deadline - time.monotonic()
        if left <= 0:
            raise Late
        return min(left, longest)


def lookup_error(error: socket.gaierror) -> OSError:
    """The error of a name look-up, whose numbers differ from those of other errors."""
    kind = NoSuchHost if error.errno == socket.EAI_NONAME else OSError
    return kind(error.strerror)
