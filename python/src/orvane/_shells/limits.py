"""What both shells need: how long one may wait at a time, and names that are not found."""

import socket
import time
from typing import Callable, Optional

from orvane._core.steps import Cancelled, Late, Limit, NoSuchHost

# Seconds between two questions whether the client is cancelled.
BETWEEN_QUESTIONS = 0.1
# Some systems tell of Ctrl-C only between two waits.
LONGEST_WAIT = 1.0


class Waiting:
    """Cuts a wait into slices, between which it asks whether the client is cancelled."""

    def __init__(self, cancelled: Optional[Callable[[], bool]]) -> None:
        self._cancelled = cancelled

    def next_slice(self, limit: Limit) -> float:
        """Seconds that may be waited now. Late and Cancelled when there are none left."""
        longest = LONGEST_WAIT
        if self._cancelled is not None and limit.is_cancellable:
            longest = BETWEEN_QUESTIONS
            if self._cancelled():
                raise Cancelled
        left = limit.deadline - time.monotonic()
        if left <= 0:
            raise Late
        return min(left, longest)


def named_failure(error: socket.gaierror) -> OSError:
    """The failure of a name resolution, whose numbers are not those of other errors."""
    kind = NoSuchHost if error.errno == socket.EAI_NONAME else OSError
    return kind(error.strerror)
