"""Waiting for a socket, on systems with `poll` and on others."""

import math
import select
import socket

if hasattr(select, "poll"):

    def wait_readable(waited: socket.socket, seconds: float) -> bool:
        return _poll(waited, select.POLLIN, seconds)

    def wait_writable(waited: socket.socket, seconds: float) -> bool:
        return _poll(waited, select.POLLOUT, seconds)

    def _poll(waited: socket.socket, events: int, seconds: float) -> bool:
        poller = select.poll()
        poller.register(waited, events)
        # Rounded up, so that a wait does not end just before its deadline.
        return bool(poller.poll(math.ceil(seconds * 1000)))

else:

    def wait_readable(waited: socket.socket, seconds: float) -> bool:
        return bool(select.select([waited], [], [], seconds)[0])

    def wait_writable(waited: socket.socket, seconds: float) -> bool:
        # A failed connection shows as an exceptional condition.
        return any(select.select([], [waited], [waited], seconds))
