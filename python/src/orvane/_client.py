"""The base classes of all clients."""

import asyncio
import os
import weakref
from typing import Any, Callable, Generic, List, Optional, Protocol, Type, TypeVar

from orvane._core.link import Link
from orvane._core.steps import Plan
from orvane._shells.aio import AsyncioShell
from orvane._shells.blocking import BlockingShell
from orvane.errors import Error
from orvane.options import Backoff, Callbacks, OnLoss, OnStart, Options


class Session(Protocol):
    """What a client does, as plans."""

    link: Link

    def __init__(self, options: Options) -> None:
        ...

    def reconnect(self) -> Plan[None]:
        ...


S = TypeVar("S", bound=Session)
T = TypeVar("T")
C = TypeVar("C", bound="BlockingClient[Any]")
A = TypeVar("A", bound="AsyncioClient[Any]")


class AnyClient(Generic[S]):
    """The arguments and callbacks of every client."""

    _session_type: Type[S]

    def __init__(
        self,
        host: str = "127.0.0.1",
        port: int = 48000,
        *,
        timeout: float = 2.0,
        on_loss: OnLoss = OnLoss.RECONNECT,
        on_start: OnStart = OnStart.THROW,
        backoff: Backoff = Backoff(),
        cancelled: Optional[Callable[[], bool]] = None,
        release_held: bool = True,
        release_within: float = 0.5,
    ) -> None:
        """All times are in seconds.

        host: a name or an IPv4 address; the server speaks IPv4 only. ANY_HOST ("auto") is the
            simulator that is heard on the network; see `discover`.
        timeout: for connecting, and for each answer, counted from the request. The server answers
            in the second frame after a request: a simulator at 20 frames per second takes 0.1.
        on_loss: what a call does when the connection is lost.
        on_start: what the client does if it cannot connect at first.
        backoff: how long to wait between two tries to connect, and when to give up.
        cancelled: called ten times a second while a call waits. True ends the call with a
            CancelledError.
        release_held: whether commands that were begun and not ended are ended when the client
            closes, is cancelled or interrupted, reconnects, or sends new definitions.
        release_within: how long that may take when the client closes.
        """
        options = Options(
            host=host,
            port=port,
            timeout=timeout,
            on_loss=on_loss,
            on_start=on_start,
            backoff=backoff,
            cancelled=cancelled,
            release_held=release_held,
            release_within=release_within,
        )
        self._session: S = self._session_type(options)
        self._open()

    def _open(self) -> None:
        raise NotImplementedError

    @property
    def is_connected(self) -> bool:
        return self._session.link.is_connected

    @property
    def host(self) -> str:
        """The host of the client, or the address that was last found for ANY_HOST."""
        return self._session.link.host

    def set_callbacks(
        self,
        connected: Optional[Callable[[], None]] = None,
        disconnected: Optional[Callable[[Error], None]] = None,
        not_released: Optional[Callable[[List[str], Error], None]] = None,
    ) -> None:
        """Functions that are called during the calls of the client. They may not call it.

        connected: after each new connection, once the declarations are repeated; not the first.
        disconnected: with the reason, when the connection was lost, or closed because an answer
            was wrong or late. Not for `close` and `reconnect`.
        not_released: with the names of commands that may still be down, and why they could not be
            released. Without it there is a NotReleasedWarning. The next connection and the next
            `close` try again.
        """
        self._session.link.callbacks = Callbacks(connected, disconnected, not_released)


class BlockingClient(AnyClient[S]):
    """Calls block until their answer arrives. Use it from one thread at a time.

    `with` closes it; a forgotten client is closed when it is collected or the program ends.
    """

    def _open(self) -> None:
        """Connects. ConnectError, TimeoutError."""
        self._shell = BlockingShell(self._session.link.options.cancelled)
        self._run(self._session.link.start())
        weakref.finalize(self, _forget, self._shell, self._session.link, os.getpid())

    def _run(self, plan: Plan[T]) -> T:
        return self._shell.run(self._session.link.call(plan))

    def reconnect(self) -> None:
        """Closes the connection if there is one, makes a new one and declares everything again.

        ConnectError: `backoff.within` is over.
        """
        self._run(self._session.reconnect())

    def close(self) -> None:
        """Releases what is held and closes the connection. The next call makes a new one."""
        self._run(self._session.link.close())

    def __enter__(self: C) -> C:
        return self

    def __exit__(self, *error: object) -> None:
        self.close()


class AsyncioClient(AnyClient[S]):
    """Calls are awaited. Tasks of one event loop may share a client: their calls take turns.

    `async with` connects and closes it; a forgotten client that holds a command releases it when it
    is collected or the program ends, which may block for `release_within`. A cancelled call closes
    the connection and releases what is held before it raises asyncio's CancelledError.
    """

    def _open(self) -> None:
        self._shell = AsyncioShell(self._session.link.options.cancelled)
        self._turn: Optional[asyncio.Lock] = None
        weakref.finalize(self, _abandon, self._session.link, os.getpid())

    async def connect(self) -> None:
        """ConnectError, TimeoutError."""
        await self._run(self._session.link.start())

    async def _run(self, plan: Plan[T]) -> T:
        # Made here, since it belongs to the running loop.
        self._turn = self._turn or asyncio.Lock()
        async with self._turn:
            return await self._shell.run(self._session.link.call(plan))

    async def reconnect(self) -> None:
        """Closes the connection if there is one, makes a new one and declares everything again.

        ConnectError: `backoff.within` is over.
        """
        await self._run(self._session.reconnect())

    async def close(self) -> None:
        """Releases what is held and closes the connection. The next call makes a new one."""
        await self._run(self._session.link.close())

    async def __aenter__(self: A) -> A:
        await self.connect()
        return self

    async def __aexit__(self, *error: object) -> None:
        await self.close()


def _forget(shell: BlockingShell, link: Link, process: int) -> None:
    if os.getpid() != process:
        # A forked copy: the connection, and what is held, belong to the process that made it.
        shell.run(link.disconnect())
    elif not link.is_done:
        shell.run(link.close())


def _abandon(link: Link, process: int) -> None:
    """Releases what is held without the event loop, which may be gone."""
    if os.getpid() == process and not link.is_done:
        BlockingShell().run(link.abandon())
