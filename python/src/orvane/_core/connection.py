"""Exchanges on one connection, and the texts of their errors."""

import os
import time
from typing import Optional

from orvane._core.frames import FrameReader, UnexpectedAnswer
from orvane._core.steps import (
    Cancelled,
    Connect,
    Late,
    Limit,
    Look,
    NoSuchHost,
    Plan,
    Receive,
    Send,
)
from orvane.errors import CancelledError, ClosedError, ConnectError, TimeoutError
from orvane.options import ANY_HOST, Options


class UnknownHost(ConnectError):
    """A ConnectError that waiting does not fix."""


class Connection:
    """At most one request is outstanding. After a failed exchange it is out of step."""

    def __init__(self, options: Options) -> None:
        self._options = options
        self.host = options.host
        """The host of the next connection."""

    @property
    def is_sought(self) -> bool:
        """Whether the host is to be found."""
        return self._options.host == ANY_HOST

    def place(self, doing: str) -> str:
        """The beginning of an error text."""
        return f"{self.host}:{self._options.port}: {doing}: "

    def default_limit(self) -> Limit:
        return Limit(time.monotonic() + self._options.timeout)

    def connect(self, limit: Optional[Limit] = None) -> Plan[None]:
        """ConnectError, TimeoutError, CancelledError."""
        limit = limit or self.default_limit()
        begin = time.monotonic()
        place = self.place("connecting")
        try:
            yield Connect(self.host, self._options.port, limit)
        except Late:
            time_text = _time_text(limit.deadline - begin)
            raise TimeoutError(
                f"{place}expected a connection within {time_text}, got none"
            ) from None
        except Cancelled:
            raise CancelledError(f"{place}expected a connection, was cancelled") from None
        except NoSuchHost as error:
            raise UnknownHost(place + error_text(error)) from None
        except OSError as error:
            raise ConnectError(place + error_text(error)) from error

    def exchange(
        self, request: bytes, doing: str, most: int, limit: Optional[Limit] = None
    ) -> Plan[bytes]:
        """Sends a request and returns the payload of its answer, which has at most `most` bytes.

        UnexpectedAnswer, ClosedError, TimeoutError, CancelledError.
        """
        limit = limit or self.default_limit()
        begin = time.monotonic()
        frame = FrameReader(most)
        try:
            self._expect_no_bytes((yield Look()), doing)
            yield Send(request, limit)
            while True:
                data = yield Receive(limit)
                if not data:
                    raise self._lost(doing, frame, "the end of the connection")
                payload = frame.feed(data)
                if payload is not None:
                    return payload
        except Late:
            text = _timeout_text(frame, _time_text(limit.deadline - begin))
            raise TimeoutError(self.place(doing) + text) from None
        except Cancelled:
            raise CancelledError(
                f"{self.place(doing)}expected {frame.expected}, was cancelled and got {frame.got}"
            ) from None
        except OSError as error:
            raise self._lost(doing, frame, error_text(error)) from error

    def _expect_no_bytes(self, waiting: Optional[bytes], doing: str) -> None:
        """Detects a connection that has ended or is out of step before anything is sent on it."""
        if waiting:
            raise UnexpectedAnswer("no bytes before the request", "some")
        if waiting is not None:
            raise ClosedError(f"{self.place(doing)}expected an open connection, got a closed one")

    def _lost(self, doing: str, frame: FrameReader, why: str) -> ClosedError:
        return ClosedError(
            f"{self.place(doing)}expected {frame.expected}, got {frame.got} and {why}"
        )


def _time_text(seconds: float) -> str:
    return f"{max(seconds, 0.0) * 1000:.0f} ms"


def _timeout_text(frame: FrameReader, time_text: str) -> str:
    if frame.has_begun:
        return f"expected {frame.expected} within {time_text}, got {frame.got}"
    return f"no answer within {time_text} (is the simulator paused or loading?)"


def error_text(error: OSError) -> str:
    """The system's words."""
    # asyncio has its own texts, but the same numbers.
    return os.strerror(error.errno) if error.errno else str(error) or type(error).__name__
