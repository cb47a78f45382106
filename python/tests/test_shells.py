"""Both shells on real sockets: what the core is told of networks."""

import asyncio
import gc
import socket
import struct
import threading
import time
import warnings
from array import array
from typing import Any, Callable, Iterator, List

import pytest
from styles import Make, tarnel_in_both_styles
from test_tarnel_session import ASK, DEFINE, DEFINITIONS, VERSION, outputs

from orvane import CancelledError, ClosedError, ConnectError, OnLoss, TimeoutError
from orvane.tarnel import AsyncClient, Definitions, Output, Version, _wire

Script = Callable[[socket.socket], None]
LOCAL = "127.0.0.1"
VERSION_REQUEST, VERSION_ANSWER = VERSION


class Server:
    """Plays one script for each connection, in a thread of its own."""

    def __init__(self, scripts: List[Script]) -> None:
        self._listener = socket.create_server((LOCAL, 0))
        self._listener.settimeout(30)
        self.port: int = self._listener.getsockname()[1]
        self._scripts = scripts
        self._failures: List[BaseException] = []
        self._thread = threading.Thread(target=self._play)
        self._thread.start()

    def _play(self) -> None:
        try:
            for script in self._scripts:
                accepted, _ = self._listener.accept()
                with accepted:
                    accepted.settimeout(30)
                    script(accepted)
        except BaseException as error:
            self._failures.append(error)

    def join(self) -> None:
        self._thread.join()
        self._listener.close()
        if self._failures:
            raise self._failures[0]


@pytest.fixture
def serve() -> Iterator[Callable[..., int]]:
    """Starts servers, which must have played their scripts by the end; returns the port."""
    servers: List[Server] = []

    def start(*scripts: Script) -> int:
        servers.append(Server(list(scripts)))
        return servers[-1].port

    yield start
    for server in servers:
        server.join()


def take(connection: socket.socket, request: bytes) -> None:
    got = b""
    while len(got) < len(request):
        got += connection.recv(65536)
    assert got == request


def wait_for_end(connection: socket.socket) -> None:
    try:
        assert connection.recv(1) == b""
    except ConnectionResetError:
        pass


def answering(*turns: Any) -> Script:
    def script(connection: socket.socket) -> None:
        for request, answer in turns:
            take(connection, request)
            connection.sendall(answer)
        wait_for_end(connection)

    return script


def silent(connection: socket.socket) -> None:
    while connection.recv(65536):
        pass


def resetting(connection: socket.socket) -> None:
    take(connection, VERSION_REQUEST)
    connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))


def ending(connection: socket.socket) -> None:
    take(connection, VERSION_REQUEST)


@tarnel_in_both_styles
def test_an_answer_may_come_byte_by_byte(connect: Make, serve: Any) -> None:
    def script(connection: socket.socket) -> None:
        take(connection, VERSION_REQUEST)
        connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        for byte in bytes(VERSION_ANSWER):
            connection.sendall(bytes([byte]))
        wait_for_end(connection)

    with connect(LOCAL, serve(script)) as client:
        assert client.version().revision == 6


@tarnel_in_both_styles
def test_nobody_listens(connect: Make) -> None:
    with socket.create_server((LOCAL, 0)) as taken:
        port = taken.getsockname()[1]
    with pytest.raises(ConnectError, match=f"^{LOCAL}:{port}: connecting: Connection refused$"):
        connect(LOCAL, port)


@tarnel_in_both_styles
def test_nobody_accepts(connect: Make) -> None:
    with socket.create_server((LOCAL, 0), backlog=0) as full:
        port = full.getsockname()[1]
        # What does not fit into its queue is not answered.
        queued = [socket.socket() for _ in range(4)]
        for each in queued:
            each.setblocking(False)
            each.connect_ex((LOCAL, port))
        with pytest.raises(TimeoutError, match="connecting: expected a connection within 100 ms"):
            connect(LOCAL, port, timeout=0.1)
        for each in queued:
            each.close()


@tarnel_in_both_styles
def test_there_is_no_such_host(connect: Make) -> None:
    with pytest.raises(ConnectError, match="^no.such.host.invalid:1: connecting: "):
        connect("no.such.host.invalid", 1)


@tarnel_in_both_styles
@pytest.mark.parametrize("port", [-1, 65536])
def test_there_is_no_such_port(connect: Make, port: int) -> None:
    with pytest.raises(ValueError, match=f"^a port of {port} is not between 1 and 65535$"):
        connect(LOCAL, port)


@tarnel_in_both_styles
def test_no_answer_comes_in_time(connect: Make, serve: Any) -> None:
    with connect(LOCAL, serve(silent), timeout=0.05) as client:
        with pytest.raises(TimeoutError, match=r"version: no answer within 50 ms \(is the simul"):
            client.version()


@tarnel_in_both_styles
@pytest.mark.parametrize("script, why", [(ending, "the end"), (resetting, "reset")])
def test_the_connection_ends_instead(connect: Make, serve: Any, script: Any, why: str) -> None:
    with connect(LOCAL, serve(script), on_loss=OnLoss.THROW) as client:
        with pytest.raises(ClosedError, match=f"(?i){why}"):
            client.version()


@tarnel_in_both_styles
def test_a_new_connection_begins_with_the_definitions(connect: Make, serve: Any) -> None:
    defining = (DEFINE, outputs(3))

    def script(connection: socket.socket) -> None:
        take(connection, DEFINE)
        connection.sendall(outputs(3))

    port = serve(script, answering(defining, (ASK, outputs(5))))
    with connect(LOCAL, port) as client:
        assert client.define(DEFINITIONS)[1] == 3
        values = [client.exchange()[1]]
        # Whether the end was noticed before the first request, only the system knows.
        values.append(client.exchange()[1] if values == [3] else 5)
        assert values[-1] == 5


@tarnel_in_both_styles
def test_a_question_whether_to_go_on_ends_the_wait(connect: Make, serve: Any) -> None:
    asked: List[float] = []

    def is_over() -> bool:
        asked.append(time.monotonic())
        return len(asked) > 3

    with connect(LOCAL, serve(silent), timeout=30, cancelled=is_over) as client:
        with pytest.raises(CancelledError, match="was cancelled and got 0 bytes$"):
            client.version()
    assert asked[-1] - asked[0] < 10


@tarnel_in_both_styles
def test_a_large_request_is_sent_whole(connect: Make, serve: Any) -> None:
    items = [(7, value) for value in range(500_000)]

    def script(connection: socket.socket) -> None:
        take(connection, DEFINE)
        connection.sendall(outputs(3))
        left = 16 + 8 * len(items)
        while left > 0:
            left -= len(connection.recv(65536))
        connection.sendall(outputs(4))
        wait_for_end(connection)

    with connect(LOCAL, serve(script), timeout=30) as client:
        client.define(DEFINITIONS)
        assert client.exchange(items)[1] == 4


@tarnel_in_both_styles
def test_a_large_answer_arrives_whole(
    connect: Make, serve: Any, monkeypatch: pytest.MonkeyPatch
) -> None:
    # So that reading stops and goes on in between.
    monkeypatch.setattr("orvane._shells.aio._Stream.MOST", 1000)
    large = Definitions(outputs=[Output(1, of_int_array="a", count=1_000_000)])
    values = array("i", range(1_000_000))
    head = struct.pack("<3I", 8 + 4_000_000 + 12, 1, 4_000_000)
    answer = head + values.tobytes() + struct.pack("<3I", 0xFFFF, 4, 7)
    port = serve(answering((_wire.definitions_request(large), answer)))
    with connect(LOCAL, port) as client:
        assert client.define(large)[1] == values


def flooding(connection: socket.socket) -> None:
    try:
        while True:
            connection.sendall(bytes(65536))
    except ConnectionError:
        pass


def test_bytes_that_nobody_asked_for_do_not_fill_the_memory(serve: Any) -> None:
    async def is_stopped(port: int) -> bool:
        async with AsyncClient(LOCAL, port, timeout=20) as client:
            transport: Any = client._shell._stream.transport
            deadline = time.monotonic() + 20
            while transport.is_reading() and time.monotonic() < deadline:
                await asyncio.sleep(0)
            return not transport.is_reading()

    assert asyncio.run(is_stopped(serve(flooding)))


def test_connecting_can_be_cancelled_at_any_moment() -> None:
    async def connect_for(rounds: int, port: int) -> None:
        client = AsyncClient(LOCAL, port)
        task = asyncio.ensure_future(client.connect())
        for _ in range(rounds):
            await asyncio.sleep(0)
        task.cancel()
        await asyncio.wait({task})
        if not task.cancelled():
            await client.close()

    with socket.create_server((LOCAL, 0), backlog=50) as listener:
        with warnings.catch_warnings(record=True) as left_open:
            warnings.simplefilter("always")
            for rounds in range(30):
                asyncio.run(connect_for(rounds, listener.getsockname()[1]))
            gc.collect()
    assert left_open == []


def test_tasks_take_turns(serve: Any) -> None:
    async def ask_at_once(port: int) -> List[Version]:
        async with AsyncClient(LOCAL, port) as client:
            return await asyncio.gather(*(client.version() for _ in range(3)))

    port = serve(answering(VERSION, VERSION, VERSION))
    assert [version.revision for version in asyncio.run(ask_at_once(port))] == [6, 6, 6]


def test_a_cancelled_task_closes_the_connection(serve: Any) -> None:
    async def give_up(port: int) -> bool:
        async with AsyncClient(LOCAL, port, timeout=30) as client:
            with pytest.raises(asyncio.TimeoutError):
                await asyncio.wait_for(client.version(), 0.05)
            return client.is_connected

    assert not asyncio.run(give_up(serve(silent)))
