"""Plans on asyncio's event loop."""

import asyncio
import socket
from typing import Any, Awaitable, Callable, List, Optional, Tuple, TypeVar, cast

from orvane._core import steps
from orvane._core.steps import Late, Limit, Plan, Step
from orvane._shells.hearing import open_group
from orvane._shells.limits import Waiting, lookup_error

T = TypeVar("T")


class _Stream(asyncio.Protocol):
    """What has arrived on a connection, and the task that waits for it."""

    # What arrives unasked must not fill the memory.
    MOST = 1 << 20

    def __init__(self) -> None:
        self.transport: Optional[asyncio.Transport] = None
        self.arrived = bytearray()
        self.has_ended = False
        self.failure: Optional[Exception] = None
        self.waiter: Optional["asyncio.Future[None]"] = None

    def connection_made(self, transport: asyncio.BaseTransport) -> None:
        self.transport = cast(asyncio.Transport, transport)

    def data_received(self, data: bytes) -> None:
        self.arrived += data
        if len(self.arrived) >= self.MOST and self.transport is not None:
            self.transport.pause_reading()
        self._wake()

    def eof_received(self) -> bool:
        self.has_ended = True
        self._wake()
        return False

    def connection_lost(self, exc: Optional[Exception]) -> None:
        self.has_ended = True
        self.failure = exc
        self._wake()

    def _wake(self) -> None:
        if self.waiter is not None and not self.waiter.done():
            self.waiter.set_result(None)

    def peek(self) -> Optional[bytes]:
        """The bytes that have arrived, no bytes at the end, None if there is nothing yet."""
        if self.arrived:
            return bytes(self.arrived)
        if self.failure is not None:
            raise self.failure
        return b"" if self.has_ended else None

    def take(self) -> bytes:
        """What has arrived."""
        taken = self.peek() or b""
        self.arrived.clear()
        if self.transport is not None:
            self.transport.resume_reading()
        return taken

    def abort(self) -> None:
        if self.transport is not None:
            self.transport.abort()
            self.transport = None


class _Datagrams(asyncio.DatagramProtocol):
    """What has been heard, and the task that waits for it."""

    MOST = 64

    def __init__(self) -> None:
        self.arrived: List[bytes] = []
        self.waiter: Optional["asyncio.Future[None]"] = None

    def datagram_received(self, data: bytes, addr: Tuple[Any, ...]) -> None:
        if len(self.arrived) < self.MOST:
            self.arrived.append(socket.inet_aton(addr[0]) + data)
        if self.waiter is not None and not self.waiter.done():
            self.waiter.set_result(None)


class AsyncioShell:
    """One connection at a time. Used by one task at a time."""

    def __init__(self, cancelled: Optional[Callable[[], bool]] = None) -> None:
        self._waiting = Waiting(cancelled)
        self._stream = _Stream()
        self._datagrams = _Datagrams()
        self._hearing: Optional[asyncio.BaseTransport] = None

    async def run(self, plan: Plan[T]) -> T:
        """Carries out the whole plan, and returns its result or raises its error."""
        try:
            step = next(plan)
            while True:
                try:
                    result = await self._do(step)
                except BaseException as error:  # for the plan, which cleans up
                    step = plan.throw(error)
                else:
                    step = plan.send(result)
        except StopIteration as end:
            value: T = end.value
            return value

    async def _do(self, step: Step) -> Optional[bytes]:
        if isinstance(step, steps.Receive):
            return await self._receive(step.limit)
        if isinstance(step, steps.Look):
            return self._stream.peek()
        if isinstance(step, steps.Hear):
            return await self._hear(step)
        if isinstance(step, steps.Send):
            self._send(step.data)
        elif isinstance(step, steps.Wait):
            await self._wait(step.limit)
        elif isinstance(step, steps.Connect):
            await self._connect(step)
        elif isinstance(step, steps.StopHearing):
            await self._stop_hearing()
        else:
            assert isinstance(step, steps.Close)
            await self._close()
        return None

    async def _connect(self, step: steps.Connect) -> None:
        await self._close()
        stream = self._stream = _Stream()
        loop = asyncio.get_running_loop()
        making = loop.create_connection(lambda: stream, step.host, step.port, family=socket.AF_INET)
        try:
            await self._within(making, step.limit)
        except socket.gaierror as error:
            raise lookup_error(error) from None

    # The first call sends everything that the system takes.
    def _send(self, data: bytes) -> None:
        assert self._stream.transport is not None
        self._stream.transport.write(data)

    async def _receive(self, limit: Limit) -> bytes:
        stream = self._stream
        while stream.peek() is None:
            stream.waiter = asyncio.get_running_loop().create_future()
            await self._within(stream.waiter, limit)
        return stream.take()

    async def _hear(self, step: steps.Hear) -> bytes:
        loop = asyncio.get_running_loop()
        if self._hearing is None:
            self._datagrams = _Datagrams()
            self._hearing, _ = await loop.create_datagram_endpoint(
                lambda: self._datagrams, sock=open_group(step.group, step.port)
            )
        while not self._datagrams.arrived:
            self._datagrams.waiter = loop.create_future()
            await self._within(self._datagrams.waiter, step.limit)
        return self._datagrams.arrived.pop(0)

    async def _stop_hearing(self) -> None:
        if self._hearing is not None:
            self._hearing.close()
            self._hearing = None
            # The loop closes the socket in its next round.
            await asyncio.sleep(0)

    async def _wait(self, limit: Limit) -> None:
        try:
            while True:
                await asyncio.sleep(self._waiting.next_slice(limit))
        except Late:
            return

    async def _within(self, awaited: Awaitable[Any], limit: Limit) -> Any:
        task = asyncio.ensure_future(awaited)
        try:
            while not task.done():
                await asyncio.wait({task}, timeout=self._waiting.next_slice(limit))
            return task.result()
        finally:
            task.cancel()

    async def _close(self) -> None:
        if self._stream.transport is not None:
            self._stream.abort()
            # The loop closes the socket in its next round.
            await asyncio.sleep(0)
