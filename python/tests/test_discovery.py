"""Simulators that are heard on the network."""

import asyncio
import socket
from dataclasses import replace
from typing import Any, List

import pytest
from scripted import ScriptedServer, wire
from styles import Make, velmar_in_both_styles
from test_tarnel_session import VERSION, Client

from orvane import (
    ANY_HOST,
    Backoff,
    CancelledError,
    ConnectError,
    HeardSimulator,
    SimulatorRole,
    discover,
    discover_async,
)
from orvane._core.discovery import parse_beacon
from orvane._core.steps import Late
from orvane.testing import Simulator

# Version 1.2 of the beacon: a simulator, version 121400, a master with UDP port 49000.
BEGIN = wire('"BECN" 00 01 02 01 00 00 00 38 DA 01 00 01 00 00 00 68 BF')
BEACON = BEGIN + wire('"simpc" 00 72 BF')
AT_7 = wire("C0 00 02 07")
AT_8 = wire("C0 00 02 08")


def changed(position: int, value: int) -> bytes:
    return BEACON[:position] + bytes([value]) + BEACON[position + 1 :]


VISUAL = changed(15, 2)


def test_a_beacon_says_what_a_simulator_is() -> None:
    master = HeardSimulator("192.0.2.7", "simpc", 121400, SimulatorRole.MASTER)
    assert parse_beacon("192.0.2.7", BEACON) == master
    roles = [parse_beacon("", changed(15, code)) for code in (2, 3, 4)]
    assert [each and each.role for each in roles] == [
        SimulatorRole.EXTERNAL_VISUAL,
        SimulatorRole.INSTRUCTOR_STATION,
        SimulatorRole.UNKNOWN,
    ]


@pytest.mark.parametrize(
    "data, computer",
    [
        (BEGIN + b"sim\0", "sim"),
        (BEGIN + b"\0\1\2\3\4", ""),
        (changed(6, 9), "simpc"),
        (BEGIN + b"\xFF\0", "\uFFFD"),
        (BEGIN + b"n" * 500 + b"\0", "n" * 500),
    ],
)
def test_a_beacon_of_another_minor_version_may_be_shorter_or_longer(
    data: bytes, computer: str
) -> None:
    parsed = parse_beacon("", data)
    assert parsed is not None and parsed.computer == computer


def test_what_is_cut_off_or_something_else_is_no_beacon() -> None:
    wrong = [BEACON[:size] for size in range(len(BEACON) - 2)]
    wrong += [changed(0, 0x62), changed(4, 1), changed(5, 2), changed(7, 2), changed(10, 1)]
    wrong += [BEGIN + b"n" * 501 + b"\0"]
    assert [data for data in wrong if parse_beacon("", data) is not None] == []


def connected(server: ScriptedServer) -> Client:
    client = Client(server, host=ANY_HOST)
    assert not server.is_hearing
    return client


def failure(server: ScriptedServer) -> str:
    with pytest.raises(ConnectError) as caught:
        connected(server)
    assert not server.is_hearing
    return str(caught.value)


def test_connects_to_the_first_master_that_answers_as_soon_as_it_is_heard() -> None:
    server = ScriptedServer(ConnectionRefusedError(111, ""), [])
    server.heard = [wire("C0 00 02 06") + VISUAL, AT_7 + BEACON, AT_8 + BEACON, AT_7 + BEACON]
    client = connected(server)
    assert server.places == [("192.0.2.7", 48000), ("192.0.2.8", 48000)]
    assert client.session.link.host == "192.0.2.8"
    assert len(server.heard) == 1


def test_connects_to_another_role_if_no_master_answers() -> None:
    server = ScriptedServer(Late(), [])
    server.heard = [AT_7 + VISUAL, AT_7 + VISUAL, b"", AT_8 + BEACON]
    connected(server)
    assert server.places == [("192.0.2.8", 48000), ("192.0.2.7", 48000)]


def test_a_flood_of_false_beacons_does_not_fill_the_memory() -> None:
    server = ScriptedServer(*[Late()] * 64)
    server.heard = [wire(f"C0 00 02 {last:02X}") + BEACON for last in range(100)]
    assert "192.0.2.63:48000" in failure(server)
    assert len(server.places) == 64


def test_says_what_was_heard_and_tried() -> None:
    assert failure(ScriptedServer()) == (
        "auto:48000: connecting: no simulator was heard within 3000 ms (UDP multicast 239.255.1.1,"
        " port 49707); is one running on this network? Otherwise give its address"
    )
    server = ScriptedServer(ConnectionRefusedError(111, ""))
    server.heard = [AT_7 + BEACON]
    assert failure(server) == (
        "auto:48000: connecting: a simulator was heard, but its plugin does not answer:"
        " 192.0.2.7:48000: connecting: Connection refused"
    )


def test_a_reconnection_first_tries_the_address_that_it_had_and_then_listens_again() -> None:
    server = ScriptedServer([], [VERSION], ConnectionRefusedError(111, ""), [VERSION])
    server.heard = [AT_7 + BEACON]
    client = connected(server)
    server.run(client.session.reconnect())
    server.run(client.session.version())
    server.heard = [AT_8 + BEACON]
    server.run(client.session.reconnect())
    server.run(client.session.version())
    assert [host for host, _ in server.places] == ["192.0.2.7"] * 3 + ["192.0.2.8"]


def test_a_client_keeps_the_address_where_its_commands_may_be_held() -> None:
    refused = ConnectionRefusedError(111, "")
    server = ScriptedServer([], refused)
    server.heard = [AT_7 + BEACON]
    client = connected(server)
    client.session.link.options = replace(client.session.link.options, backoff=Backoff(within=0))
    with pytest.raises(ConnectError, match="auto:48000: connecting: no simulator was heard"):
        server.run(client.session.reconnect())
    assert client.session.link.host == "192.0.2.7"


@pytest.fixture
def alone() -> None:
    """A beacon on a real network could lead somebody's client here."""
    if len(socket.if_nameindex()) > 1:
        pytest.skip("this system permits no network namespace: nothing may be sent")


@pytest.mark.usefixtures("alone")
def test_listening_can_be_cancelled() -> None:
    with pytest.raises(CancelledError, match="auto:1: listening for simulators: was cancelled"):
        discover(1, cancelled=lambda: True)


def discover_in_asyncio(**arguments: Any) -> List[HeardSimulator]:
    return asyncio.run(discover_async(**arguments))


@pytest.mark.usefixtures("alone")
@pytest.mark.simulator(hz=200, arguments=["--beacon"])
@velmar_in_both_styles
def test_a_client_finds_the_simulator_that_is_heard(connect: Make, simulator: Simulator) -> None:
    with connect(ANY_HOST) as client:
        assert client.host == "127.0.0.1"
        assert client.read("sim/time/paused:int") == 0


@pytest.mark.usefixtures("alone")
@pytest.mark.simulator(hz=200, arguments=["--beacon"])
@pytest.mark.parametrize("listed", [discover, discover_in_asyncio])
def test_a_simulator_that_is_heard_is_listed(listed: Any, simulator: Simulator) -> None:
    heard = HeardSimulator("127.0.0.1", socket.gethostname(), 121400, SimulatorRole.MASTER, True)
    # Beacons come once a second, on a busy machine later.
    found: List[HeardSimulator] = []
    for _ in range(20):
        found = found or listed(listen_time=1.0)
    assert found == [heard]
