"""A network that brings one request in two pieces."""

from typing import List

import pytest

from orvane._core.steps import Send
from orvane._shells.aio import AsyncioShell
from orvane._shells.blocking import BlockingShell
from orvane._shells.ready import wait_readable


def tear_next_request(monkeypatch: pytest.MonkeyPatch, after: int) -> None:
    """The rest of it arrives when the first bytes have been answered."""
    send = BlockingShell._send
    write = AsyncioShell._send
    torn: List[object] = []

    def send_torn(self: BlockingShell, step: Send) -> None:
        if torn:
            return send(self, step)
        torn.append(step)
        self._connected.sendall(step.data[:after])
        assert wait_readable(self._connected, 20)
        self._connected.sendall(step.data[after:])

    def write_torn(self: AsyncioShell, data: bytes) -> None:
        if torn:
            return write(self, data)
        torn.append(data)
        write(self, data[:after])
        take = self._stream.data_received

        def answer(answer: bytes) -> None:
            write(self, data[after:])
            take(answer)

        monkeypatch.setattr(self._stream, "data_received", answer)

    monkeypatch.setattr(BlockingShell, "_send", send_torn)
    monkeypatch.setattr(AsyncioShell, "_send", write_torn)
