"""What can go wrong between a client and the server.

The text of each error says host, port, what was being done, and, where that applies, what was
expected and what came instead.
"""

from typing import Sequence, Tuple


class Error(Exception):
    """The base of all errors of this package."""


class ConnectError(Error):
    """The server was not reached: no such host, nobody listens, no way there."""


class TimeoutError(Error):
    """No answer in time: the simulator may be paused or loading, when it serves nobody.

    The connection is closed, since a late answer would be taken for that of another request.
    """


class ClosedError(Error):
    """The connection ended while it was in use, or there was none.

    Most often the simulator ended.
    """


class ProtocolError(Error):
    """The answer was not one that this request can have, twice in a row.

    The connection is closed.
    """


class CancelledError(Error):
    """`cancelled` said so.

    The connection is closed, for the same reason as after a TimeoutError.
    """


class Refused(Error):
    """The server answered, and the answer is no: the simulator does not have some of the names."""

    def __init__(self, message: str, names: Sequence[str]) -> None:
        super().__init__(message)
        self.refused_names: Tuple[str, ...] = tuple(names)
        """All that were refused in this call, in the order of the call."""


class NotReleasedWarning(RuntimeWarning):
    """Commands that a client has begun are still down, and nobody listens to `not_released`."""
