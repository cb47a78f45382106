"""Keeps a connection to the server, and makes a new one when it is lost or out of step."""

import time
import warnings
from collections import Counter
from dataclasses import dataclass
from typing import Callable, List, Optional, Protocol, Type, TypeVar

from orvane._core.connection import Connection, UnknownHost
from orvane._core.discovery import connect_anywhere
from orvane._core.frames import UnexpectedAnswer
from orvane._core.pace import Pace
from orvane._core.steps import Cancelled, Close, Limit, Plan, Wait
from orvane.errors import (
    CancelledError,
    ClosedError,
    ConnectError,
    Error,
    NotReleasedWarning,
    ProtocolError,
    TimeoutError,
)
from orvane.options import Callbacks, OnLoss, OnStart, Options

T = TypeVar("T")

RELEASING = "releasing what is held"
DECLARING = "repeating the declarations"
BETWEEN_RELEASES = 0.02  # seconds
# Declarations can be torn like any other request.
TRIES_TO_DECLARE = 2


@dataclass(frozen=True)
class Repeat:
    """When work may be repeated on a new connection."""

    when_torn: bool = False
    """after an answer of unexpected shape"""
    when_lost: bool = False
    """after the end of the connection, with OnLoss.RECONNECT"""


class NotRepeated(Exception):
    """The connection was lost and replaced, and the work was not repeated on it."""


class Owner(Protocol):
    """What a link needs from its owner. Held commands are counted by name."""

    def declare(self) -> Plan[None]:
        """Repeats the declarations on a new connection."""

    def take_held(self) -> "Counter[str]":
        """What was held on the connection, which has ended; the owner forgets it."""

    def release_here(self, limit: Limit) -> Plan[None]:
        """Releases what is held on the connection, and forgets it."""

    def release_by_name(self, held: "Counter[str]", limit: Limit) -> Plan[None]:
        """Releases what was held on another connection."""


class Link:
    """Any failure during an exchange closes the connection.

    Each new connection begins with the declarations. What was held on a connection that has ended
    is released by name.
    """

    def __init__(self, options: Options, owner: Owner) -> None:
        self.options = options
        self.callbacks = Callbacks()
        self.is_connected = False
        self._connection = Connection(options)
        self._owner = owner
        # What was begun on earlier connections and not ended since.
        self._left_over: "Counter[str]" = Counter()
        self._is_reported = False

    def exchange(
        self, request: bytes, doing: str, most: int, limit: Optional[Limit] = None
    ) -> Plan[bytes]:
        """On the current connection; see `Connection.exchange`."""
        return self._connection.exchange(request, doing, most, limit)

    @property
    def host(self) -> str:
        """Of the connection."""
        return self._connection.host

    def place(self, doing: str) -> str:
        """The beginning of an error text."""
        return self._connection.place(doing)

    def wait_for(self, pace: Pace) -> Plan[None]:
        """Waits until the next time is due. CancelledError."""
        try:
            yield Wait(Limit(pace.due))
        except Cancelled:
            raise CancelledError(self.place("waiting") + "was cancelled") from None
        pace.advance()

    # Work ----------------------------------------------------------------------------------------

    def carry_out(self, doing: str, repeat: Repeat, work: Callable[[], Plan[T]]) -> Plan[T]:
        """Does the work, connecting first if needed, and repeats it if `repeat` allows.

        NotRepeated: it may or may not have been done.
        """
        if not self.is_connected:
            yield from self._connect_for(doing)
        try:
            return (yield from self._attempt(doing, work))
        except ProtocolError:
            if not repeat.when_torn:
                raise
            is_lost = False
        except ClosedError:
            if self.options.on_loss is OnLoss.THROW:
                raise
            is_lost = True
        if is_lost:
            yield from self.reconnect()
            if not repeat.when_lost:
                raise NotRepeated
        else:
            yield from self._connect_anew(1)
        return (yield from self._attempt(doing, work))

    def _connect_for(self, doing: str) -> Plan[None]:
        if self.options.on_loss is OnLoss.THROW:
            raise ClosedError(f"{self.place(doing)}not connected: the connection was closed before")
        yield from self.reconnect()

    def _attempt(self, doing: str, work: Callable[[], Plan[T]]) -> Plan[T]:
        try:
            return (yield from work())
        except UnexpectedAnswer as answer:
            error = ProtocolError(self.place(doing) + str(answer))
            yield from self._drop(error)
            raise error from None
        except Error as error:
            yield from self._drop(error)
            raise
        except GeneratorExit:
            raise
        except BaseException:
            yield from self.disconnect()
            raise

    # Connections ---------------------------------------------------------------------------------

    def start(self) -> Plan[None]:
        """The first connection, unless there is one."""
        if self.is_connected:
            return
        if self.options.on_start is OnStart.WAIT:
            # A name that does not exist is probably mistyped.
            yield from self._back_off(lambda: self._make_declared(TRIES_TO_DECLARE), UnknownHost)
        else:
            yield from self._make_declared(TRIES_TO_DECLARE)

    def reconnect(self) -> Plan[None]:
        """Reconnects with back-off. ConnectError when its time is over; other errors at once."""
        yield from self.release_before()
        yield from self.disconnect()
        yield from self._back_off(lambda: self._connect_anew(TRIES_TO_DECLARE))

    def renew(self) -> Plan[None]:
        """For a server that has just answered: backs off only with OnLoss.RECONNECT."""
        if self.options.on_loss is OnLoss.RECONNECT:
            yield from self.reconnect()
        else:
            yield from self._connect_anew(TRIES_TO_DECLARE)

    def disconnect(self) -> Plan[None]:
        """Closes the connection; what was held on it is kept for a later release."""
        held = self._owner.take_held()
        if held:
            self._left_over += held
            self._is_reported = False
        self.is_connected = False
        yield Close()

    def _back_off(
        self, connect: Callable[[], Plan[None]], *hopeless: Type[ConnectError]
    ) -> Plan[None]:
        backoff = self.options.backoff
        end = time.monotonic() + backoff.within
        delay = backoff.first_delay
        tries = 1
        while True:
            try:
                return (yield from connect())
            except hopeless:
                raise
            except (ConnectError, TimeoutError, ClosedError) as error:
                reason = str(error)
            again = time.monotonic() + delay
            if again >= end:
                raise ConnectError(f"{reason}; gave up at try {tries}")
            try:
                yield Wait(Limit(again))
            except Cancelled:
                raise CancelledError(f"{reason}; was cancelled at try {tries}") from None
            delay = min(delay * 2, backoff.longest_delay)
            tries += 1

    def _connect_anew(self, tries_to_declare: int) -> Plan[None]:
        yield from self.disconnect()
        yield from self._make_declared(tries_to_declare)
        if self.callbacks.connected is not None:
            self.callbacks.connected()

    def _make_declared(self, tries: int) -> Plan[None]:
        while True:
            yield from connect_anywhere(self._connection)
            try:
                yield from self._release_left_over(self._connection.default_limit())
                yield from self._owner.declare()
                self.is_connected = True
                return
            except UnexpectedAnswer as answer:
                yield from self.disconnect()
                tries -= 1
                if tries < 1:
                    raise ProtocolError(self.place(DECLARING) + str(answer)) from None
            except GeneratorExit:
                raise
            except BaseException:
                yield from self.disconnect()
                raise

    def _drop(self, reason: Error) -> Plan[None]:
        yield from self.disconnect()
        if self.callbacks.disconnected is not None:
            self.callbacks.disconnected(reason)

    # What is held --------------------------------------------------------------------------------

    def call(self, work: Plan[T]) -> Plan[T]:
        """Runs a call of the user; if it is cancelled or interrupted, nothing stays held."""
        try:
            return (yield from work)
        except CancelledError as error:
            held = yield from self.close()
            if held:
                raise CancelledError(f"{error}; not released: {', '.join(held)}") from None
            raise
        except (Exception, GeneratorExit):
            raise
        except BaseException:
            yield from self.close()
            raise

    def release_before(self, share: float = 1.0) -> Plan[None]:
        """Releases what is held on the current connection, if there is one.

        If that fails, the next connection releases what was held. `share` is of `release_within`.
        """
        if self.is_connected and self.options.release_held:
            limit = self._release_limit(share)
            try:
                yield from self._attempt(RELEASING, lambda: self._owner.release_here(limit))
            except Error:
                pass

    def close(self) -> Plan[List[str]]:
        """Releases what is held and closes the connection. Returns what may still be held."""
        limit = self._release_limit()
        # A connection that does not answer may be out of step; a new one may still be answered.
        yield from self.release_before(share=0.5)
        return (yield from self._release_elsewhere(limit))

    def abandon(self) -> Plan[List[str]]:
        """The same, without the current connection."""
        return (yield from self._release_elsewhere(self._release_limit()))

    def _release_elsewhere(self, limit: Limit) -> Plan[List[str]]:
        yield from self.disconnect()
        if not self.options.release_held:
            self._left_over.clear()
        while self._left_over:
            try:
                yield from self._connection.connect(limit)
                yield from self._release_left_over(limit)
            except (Error, UnexpectedAnswer) as error:
                # A plugin that is reloaded listens again within a frame or two.
                again = time.monotonic() + BETWEEN_RELEASES
                if not isinstance(error, ConnectError) or again >= limit.deadline:
                    self._report_not_released(error)
                    break
                yield Wait(Limit(again, is_cancellable=False))
        yield Close()
        return sorted(self._left_over)

    def _release_left_over(self, limit: Limit) -> Plan[None]:
        if self._left_over and self.options.release_held:
            yield from self._owner.release_by_name(self._left_over, limit)
        self._left_over.clear()

    def _release_limit(self, share: float = 1.0) -> Limit:
        seconds = share * self.options.release_within
        return Limit(time.monotonic() + seconds, is_cancellable=False)

    @property
    def is_done(self) -> bool:
        """Nothing is open, and everything held was released or reported."""
        return not self.is_connected and (self._is_reported or not self._left_over)

    def _report_not_released(self, why: Exception) -> None:
        self._is_reported = True
        names = sorted(self._left_over)
        if self.callbacks.not_released is not None:
            error = (
                why if isinstance(why, Error) else ProtocolError(self.place(RELEASING) + str(why))
            )
            self.callbacks.not_released(names, error)
        else:
            text = f"{self.place(RELEASING)}still held: {', '.join(names)}"
            warnings.warn(text, NotReleasedWarning, stacklevel=2)
