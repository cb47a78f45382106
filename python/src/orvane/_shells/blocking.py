"""Plans on a socket whose calls block."""

import errno
import socket
import time
from typing import Any, Callable, Iterable, Optional, Tuple, TypeVar

from orvane._core import steps
from orvane._core.steps import Late, Limit, Plan, Step
from orvane._shells.hearing import LONGEST_DATAGRAM, open_group
from orvane._shells.limits import Waiting, lookup_error
from orvane._shells.ready import wait_readable, wait_writable

T = TypeVar("T")

_CHUNK = 65536
# The results of a connection in progress on different systems.
_UNDER_WAY = (0, errno.EINPROGRESS, errno.EWOULDBLOCK, errno.EAGAIN)


class BlockingShell:
    """One connection at a time. Used from one thread at a time."""

    def __init__(self, cancelled: Optional[Callable[[], bool]] = None) -> None:
        self._waiting = Waiting(cancelled)
        self._socket: Optional[socket.socket] = None
        self._hearing: Optional[socket.socket] = None

    def run(self, plan: Plan[T]) -> T:
        """Carries out the whole plan, and returns its result or raises its error."""
        try:
            step = next(plan)
            while True:
                try:
                    result = self._do(step)
                except BaseException as error:  # for the plan, which cleans up
                    step = plan.throw(error)
                else:
                    step = plan.send(result)
        except StopIteration as end:
            value: T = end.value
            return value

    def _do(self, step: Step) -> Optional[bytes]:
        if isinstance(step, steps.Receive):
            return self._receive(step.limit)
        if isinstance(step, steps.Look):
            return self._look()
        if isinstance(step, steps.Hear):
            return self._hear(step)
        if isinstance(step, steps.Send):
            self._send(step)
        elif isinstance(step, steps.Wait):
            self._wait(step.limit)
        elif isinstance(step, steps.Connect):
            self._connect(step)
        elif isinstance(step, steps.StopHearing):
            self._stop_hearing()
        else:
            assert isinstance(step, steps.Close)
            self._close()
        return None

    @property
    def _connected(self) -> socket.socket:
        assert self._socket is not None
        return self._socket

    def _connect(self, step: steps.Connect) -> None:
        self._close()
        failure = OSError("no such host")
        for found in self._resolve(step):
            made = socket.socket(*found[:3])
            try:
                self._connect_to(made, found[4], step.limit)
            except BaseException as error:
                made.close()
                if not isinstance(error, OSError):
                    raise
                failure = error
            else:
                self._socket = made
                return
        raise failure

    def _resolve(self, step: steps.Connect) -> Iterable[Tuple[Any, ...]]:
        try:
            return socket.getaddrinfo(step.host, step.port, socket.AF_INET, socket.SOCK_STREAM)
        except socket.gaierror as error:
            raise lookup_error(error) from None

    def _connect_to(self, made: socket.socket, address: Any, limit: Limit) -> None:
        made.setblocking(False)
        error = made.connect_ex(address)
        if error not in _UNDER_WAY:
            raise OSError(error, "")
        while not wait_writable(made, self._waiting.next_slice(limit)):
            pass
        error = made.getsockopt(socket.SOL_SOCKET, socket.SO_ERROR)
        if error != 0:
            raise OSError(error, "")
        # Requests are single writes that wait for an answer: delaying them gains nothing.
        made.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)

    # Usually the first call sends everything; a full socket takes the rest later.
    def _send(self, step: steps.Send) -> None:
        sent = self._try_to_send(step.data)
        while sent < len(step.data):
            if wait_writable(self._connected, self._waiting.next_slice(step.limit)):
                sent += self._try_to_send(step.data[sent:])

    def _try_to_send(self, data: bytes) -> int:
        try:
            return self._connected.send(data)
        except BlockingIOError:
            return 0

    def _receive(self, limit: Limit) -> bytes:
        while not wait_readable(self._connected, self._waiting.next_slice(limit)):
            pass
        return self._connected.recv(_CHUNK)

    def _look(self) -> Optional[bytes]:
        if not wait_readable(self._connected, 0):
            return None
        return self._connected.recv(1, socket.MSG_PEEK)

    def _wait(self, limit: Limit) -> None:
        try:
            while True:
                time.sleep(self._waiting.next_slice(limit))
        except Late:
            return

    def _hear(self, step: steps.Hear) -> bytes:
        if self._hearing is None:
            self._hearing = open_group(step.group, step.port)
        while not wait_readable(self._hearing, self._waiting.next_slice(step.limit)):
            pass
        try:
            data, (address, _) = self._hearing.recvfrom(LONGEST_DATAGRAM)
        except BlockingIOError:
            return b""  # with a wrong checksum
        return socket.inet_aton(address) + data

    def _stop_hearing(self) -> None:
        if self._hearing is not None:
            self._hearing.close()
            self._hearing = None

    def _close(self) -> None:
        if self._socket is not None:
            self._socket.close()
            self._socket = None
