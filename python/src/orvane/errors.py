"""What can go wrong between a client and the server.

The text of each error names the host, the port and the call, and, where it applies, what was
expected and what came instead.
"""

from typing import Sequence, Tuple


class Error(Exception):
    """The base of all errors of this package."""


class ConnectError(Error):
    """The server was not reached: no such host, nobody listens, no route."""


class TimeoutError(Error):
    """No answer in time: the simulator may be paused or loading.

    The connection is closed, since a late answer would be taken for the next one.
    """


class ClosedError(Error):
    """The connection ended while it was in use, or there was none.

    Usually the simulator has ended.
    """


class ProtocolError(Error):
    """Twice in a row, the answer did not fit the request.

    The connection is closed.
    """


class CancelledError(Error):
    """`cancelled` returned True.

    The connection is closed, for the same reason as after a TimeoutError.
    """


class Refused(Error):
    """The simulator does not have some of the names."""

    def __init__(self, message: str, names: Sequence[str]) -> None:
        super().__init__(message)
        self.refused_names: Tuple[str, ...] = tuple(names)
        """All names that were refused in this call, in its order."""

    def __reduce__(self) -> "Tuple[type[Refused], Tuple[str, Tuple[str, ...]]]":
        return Refused, (str(self), self.refused_names)


class NotReleasedWarning(RuntimeWarning):
    """Commands that a client has begun are still down, and there is no `not_released`."""
