"""Simulators that are heard on the network, and the connection to one of them."""

import struct
import time
from dataclasses import dataclass, replace
from enum import Enum
from typing import List, Optional, Set, TypeVar

from orvane._core.connection import Connection, error_text
from orvane._core.steps import (
    Cancelled,
    Close,
    Hear,
    Late,
    Limit,
    Plan,
    StopHearing,
)
from orvane.errors import CancelledError, ConnectError, TimeoutError
from orvane.options import ANY_HOST, Options

T = TypeVar("T")

BEACON_GROUP = "239.255.1.1"
BEACON_PORT = 49707

# Seconds: three beacons of a simulator.
LISTEN_TIME = 3.0

# The mark, major and minor version, program, simulator's version, role, and its own UDP port.
_BEACON = struct.Struct("<5sBBIIIH")
_MARK = b"BECN\0"
_MAJOR_VERSION = 1
_SIMULATOR_PROGRAM = 1
_LONGEST_NAME = 500
# A flood of false beacons must not fill the memory.
_MOST_SIMULATORS = 64


class SimulatorRole(Enum):
    """What a computer does for the simulation."""

    MASTER = 1
    EXTERNAL_VISUAL = 2
    INSTRUCTOR_STATION = 3
    UNKNOWN = 0


@dataclass(frozen=True)
class HeardSimulator:
    """A simulator, as its beacon describes it."""

    address: str
    """IPv4, of the beacon's sender."""
    computer: str
    """Whatever the sender says, and not necessarily printable."""
    version: int
    """121400 is 12.1.4."""
    role: SimulatorRole
    has_server: bool = False
    """Whether a server answers there."""


def parse_beacon(address: str, data: bytes) -> Optional[HeardSimulator]:
    """None if the data is not one whole beacon of major version 1, of a simulator.

    What newer minor versions append is ignored.
    """
    if len(data) < _BEACON.size:
        return None
    mark, major, _, program, version, role, _ = _BEACON.unpack_from(data)
    name, end, _ = data[_BEACON.size :].partition(b"\0")
    if (mark, major, program) != (_MARK, _MAJOR_VERSION, _SIMULATOR_PROGRAM):
        return None
    if not end or len(name) > _LONGEST_NAME:
        return None
    known = {each.value: each for each in SimulatorRole}
    return HeardSimulator(
        address, name.decode("utf-8", "replace"), version, known.get(role, SimulatorRole.UNKNOWN)
    )


class _Listener:
    """Returns each simulator that is heard once."""

    def __init__(self, connection: Connection, limit: Limit) -> None:
        self._connection = connection
        self._limit = limit
        self._known: Set[str] = set()

    def next(self) -> Plan[Optional[HeardSimulator]]:
        """None when the time is over. ConnectError, CancelledError."""
        place = self._connection.place("listening for simulators")
        # The time also ends a flood of datagrams.
        while time.monotonic() < self._limit.deadline:
            try:
                datagram = yield Hear(BEACON_GROUP, BEACON_PORT, self._limit)
            except Late:
                break
            except Cancelled:
                raise CancelledError(f"{place}was cancelled") from None
            except OSError as error:
                raise ConnectError(place + error_text(error)) from error
            heard = self._take(datagram or b"")
            if heard is not None:
                return heard
        return None

    def _take(self, datagram: bytes) -> Optional[HeardSimulator]:
        heard = parse_beacon(".".join(str(byte) for byte in datagram[:4]), datagram[4:])
        if heard is None or heard.address in self._known or len(self._known) >= _MOST_SIMULATORS:
            return None
        self._known.add(heard.address)
        return heard


def connect_anywhere(connection: Connection, listen_time: float = LISTEN_TIME) -> Plan[None]:
    """Connects to the previous server, or for ANY_HOST to one that is heard.

    The previous server comes first: commands may be held there, and it knows the declarations.
    """
    if not connection.is_sought:
        yield from connection.connect()
        return
    previous = connection.host
    if previous != ANY_HOST:
        try:
            return (yield from connection.connect())
        except (ConnectError, TimeoutError):
            connection.host = ANY_HOST
    try:
        yield from _with_hearing_stopped(_connect_to_heard(connection, listen_time))
    except BaseException:
        connection.host = previous
        raise


def _connect_to_heard(connection: Connection, listen_time: float) -> Plan[None]:
    listener = _Listener(connection, Limit(time.monotonic() + listen_time))
    others: List[HeardSimulator] = []
    reasons: List[str] = []
    while True:
        heard = yield from listener.next()
        if heard is None:
            break
        if heard.role is not SimulatorRole.MASTER:
            others.append(heard)
        elif (yield from _try_to_connect(connection, heard, reasons)):
            return
    for other in others:
        if (yield from _try_to_connect(connection, other, reasons)):
            return
    place = connection.place("connecting")
    if reasons:
        raise ConnectError(
            f"{place}a simulator was heard, but its plugin does not answer: {', '.join(reasons)}"
        )
    raise ConnectError(
        f"{place}no simulator was heard within {listen_time * 1000:g} ms (UDP multicast "
        f"{BEACON_GROUP}, port {BEACON_PORT}); is one running on this network? Otherwise give its "
        "address"
    )


def _try_to_connect(
    connection: Connection, simulator: HeardSimulator, reasons: List[str]
) -> Plan[bool]:
    connection.host = simulator.address
    is_connected = False
    try:
        yield from connection.connect()
        is_connected = True
    except (ConnectError, TimeoutError) as error:
        reasons.append(str(error))
    finally:
        if not is_connected:
            connection.host = ANY_HOST
    return is_connected


def list_heard(options: Options, listen_time: float) -> Plan[List[HeardSimulator]]:
    """What `discover` does."""
    return (yield from _with_hearing_stopped(_list_heard(options, listen_time)))


def _list_heard(options: Options, listen_time: float) -> Plan[List[HeardSimulator]]:
    connection = Connection(replace(options, host=ANY_HOST))
    listener = _Listener(connection, Limit(time.monotonic() + listen_time))
    listed: List[HeardSimulator] = []
    while True:
        heard = yield from listener.next()
        if heard is None:
            break
        listed.append(heard)
    for index, each in enumerate(listed):
        has_server = yield from _try_to_connect(connection, each, [])
        yield Close()
        listed[index] = replace(each, has_server=has_server)
    return listed


def _with_hearing_stopped(work: Plan[T]) -> Plan[T]:
    try:
        result = yield from work
    except GeneratorExit:
        raise
    except BaseException:
        yield StopHearing()
        raise
    yield StopHearing()
    return result
