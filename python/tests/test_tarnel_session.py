"""What a Tarnel client sends, and what it makes of what comes back."""

from typing import Any, List

import pytest
from scripted import ScriptedServer, Turn, framed, wire

from orvane import (
    Backoff,
    CancelledError,
    ClosedError,
    ConnectError,
    OnLoss,
    OnStart,
    ProtocolError,
    TimeoutError,
)
from orvane._core.pace import Pace
from orvane._core.steps import Cancelled, Late, NoSuchHost
from orvane.options import Callbacks, Options
from orvane.tarnel import Answer, Definitions, Input, Output, Version
from orvane.tarnel._session import Session

PLACE = "127.0.0.1:48000: "
TRAILER = "FF FF 00 00 04 00 00 00 AA 00 00 00"


def outputs(value: int) -> bytes:
    """The answer to both: output 1 is this int."""
    return framed(f"01 00 00 00 04 00 00 00 {value:02X} 00 00 00", TRAILER)


ASK = wire("11 22 33 44 DE AD BE EF 08 00 00 00 00 00 00 00")
SEND = wire("11 22 33 44 DE AD BE EF 08 00 00 00 01 00 00 00 07 00 00 00 09 00 00 00")
# How a message that arrived in pieces is answered on a new connection.
TORN = framed(TRAILER)
VERSION = (
    wire("11 22 33 44 B1 6B 00 B5"),
    framed("B1 6B 00 B5 01 00 07 0A 06 00 00 00"),
)
DEFINE = wire(
    "11 22 33 44 C0 FF EE DD E8 01 00 00 01 00 00 00 74 00 00 00 01 00 00 00",
    '[ 07 00 00 00 @32 01 00 00 00 @280 "a" @488 ]',
    '[ 01 00 00 00 "a" @104 01 00 00 00 00 00 00 00 01 00 00 00 ]',
)
# Action 7 to the int dataref "a"; output 1, the int dataref "a".
DEFINITIONS = Definitions(inputs=[Input(7, to_int="a")], outputs=[Output(1, of_int="a")])
DEFINING: Turn = (DEFINE, outputs(3))


class Client:
    """A session on a scripted server."""

    def __init__(self, server: ScriptedServer, **options: Any) -> None:
        self.server = server
        self.session = Session(Options(**options))
        self.happened: List[str] = []
        self.session.link.callbacks = Callbacks(
            connected=lambda: self.happened.append("connected"),
            disconnected=lambda error: self.happened.append(str(error)),
            not_released=lambda names, why: self.happened.append(f"not released: {names}, {why}"),
        )
        self.run(self.session.link.start())

    def run(self, plan: Any) -> Any:
        return self.server.run(self.session.link.call(plan))

    def define(self, definitions: Definitions = DEFINITIONS) -> Answer:
        answer = self.run(self.session.define(definitions))
        assert isinstance(answer, Answer)
        return answer

    def exchange(self, items: Any = ()) -> Answer:
        answer = self.run(self.session.exchange(items))
        assert isinstance(answer, Answer)
        return answer

    def close(self) -> None:
        self.run(self.session.link.close())


def defined(server: ScriptedServer, **options: Any) -> Client:
    """A client that has sent its definitions."""
    client = Client(server, **options)
    client.define()
    return client


def test_asks_defines_and_exchanges() -> None:
    server = ScriptedServer([VERSION, DEFINING, (SEND, outputs(4)), (ASK, outputs(5))])
    client = Client(server, host="here", port=7)
    assert client.run(client.session.version()) == Version((1, 0, 7, 10), 6)
    first = client.define()
    assert (first[1], first.aircraft_id) == (3, 0xAA)
    assert client.exchange({7: 9})[1] == 4
    assert client.exchange()[1] == 5
    assert server.places == [("here", 7)]
    server.expect_end()


def test_takes_items_as_pairs_too() -> None:
    server = ScriptedServer([DEFINING, (SEND, outputs(4))])
    client = defined(server)
    assert client.exchange([(7, 9)])[1] == 4


def test_sends_nothing_that_is_not_declared_or_not_an_int() -> None:
    server = ScriptedServer([DEFINING])
    client = Client(server)
    with pytest.raises(ValueError, match="^values cannot be exchanged before anything is defined$"):
        client.exchange()
    client.define()
    with pytest.raises(ValueError, match="^the action 8 is not declared$"):
        client.exchange({7: 1, 8: 1})
    for value in (1.5, 2**31, "1"):
        with pytest.raises(ValueError, match="^a value that is sent is not a 32-bit int$"):
            client.exchange({7: value})
    assert client.session.link.is_connected


def test_asks_again_on_a_new_connection_after_a_torn_request() -> None:
    server = ScriptedServer([DEFINING, (SEND, TORN)], [DEFINING, (SEND, outputs(5))])
    client = defined(server)
    assert client.exchange({7: 9})[1] == 5
    expected = "exchanging values: expected an answer of 24 bytes, got 12"
    assert client.happened == [PLACE + expected, "connected"]
    server.expect_end()


def test_gives_up_after_a_second_torn_request() -> None:
    server = ScriptedServer([DEFINING, (SEND, TORN)], [DEFINING, (SEND, TORN)])
    client = defined(server)
    with pytest.raises(ProtocolError, match="expected an answer of 24 bytes, got 12$"):
        client.exchange({7: 9})
    assert not client.session.link.is_connected


def test_gives_up_after_definitions_that_are_torn_twice() -> None:
    server = ScriptedServer([(DEFINE, TORN)], [(DEFINE, TORN)])
    client = Client(server)
    with pytest.raises(ProtocolError, match="the declarations: expected an answer of 24 bytes, g"):
        client.define()


def test_gives_declarations_that_are_torn_a_second_try() -> None:
    server = ScriptedServer([DEFINING, (ASK, b"")], [(DEFINE, TORN)], [DEFINING, (ASK, outputs(6))])
    client = defined(server)
    assert client.exchange()[1] == 3  # of the repeated definitions
    assert client.exchange()[1] == 6
    server.expect_end()


def test_does_not_send_values_again_when_the_connection_was_lost() -> None:
    server = ScriptedServer([DEFINING, (SEND, b"")], [(DEFINE, outputs(8))])
    client = defined(server)
    assert client.exchange({7: 9})[1] == 8
    text = "exchanging values: expected the length of an answer, got 0 bytes and the end of the"
    assert client.happened == [PLACE + text + " connection", "connected"]


def test_notices_an_end_before_it_sends() -> None:
    server = ScriptedServer([DEFINING], [DEFINING])
    client = defined(server)
    server.waiting = b""
    assert client.exchange({7: 9})[1] == 3
    assert client.happened[0].endswith("expected an open connection, got a closed one")


def test_notices_bytes_that_nobody_asked_for() -> None:
    server = ScriptedServer([DEFINING], [DEFINING, (ASK, outputs(5))])
    client = defined(server)
    server.waiting = b"\0"
    assert client.exchange()[1] == 5
    assert client.happened[0].endswith("expected no bytes before the request, got some")


def test_raises_at_once_if_that_is_wanted() -> None:
    server = ScriptedServer([DEFINING, (ASK, ConnectionResetError(104, "Connection reset"))])
    client = defined(server, on_loss=OnLoss.THROW)
    with pytest.raises(ClosedError, match="got 0 bytes and Connection reset by peer$"):
        client.exchange()
    with pytest.raises(ClosedError, match="not connected: the connection was closed before$"):
        client.exchange()


def test_says_what_a_pilot_can_do_when_no_answer_comes() -> None:
    server = ScriptedServer([DEFINING, (ASK, Late())], [DEFINING, (ASK, outputs(5))])
    client = defined(server)
    text = r"no answer within 2000 ms \(is the simulator paused or loading\?\)"
    with pytest.raises(TimeoutError, match=f"^{PLACE}exchanging values: {text}$"):
        client.exchange()
    # The next call makes a connection first and then does its work.
    assert client.exchange()[1] == 5


def test_says_how_much_of_an_answer_came() -> None:
    server = ScriptedServer([DEFINING, (ASK, outputs(5)[:9])])
    client = defined(server, timeout=0.5)
    plan = client.session.link.call(client.session.exchange(()))
    # Look, send, receive five bytes of the payload, and no more.
    next(plan)
    plan.send(None)
    plan.send(None)
    plan.send(outputs(5)[:9])
    with pytest.raises(
        TimeoutError, match="expected an answer of 24 bytes within 500 ms, got 5 by"
    ):
        plan.throw(Late())
        plan.send(None)


def test_backs_off_and_gives_up() -> None:
    refused = ConnectionRefusedError(111, "Connection refused")
    backoff = Backoff(first_delay=1, longest_delay=3, within=100)
    server = ScriptedServer([DEFINING, (ASK, b"")], refused, refused, refused, [DEFINING])
    client = defined(server, backoff=backoff)
    assert client.exchange()[1] == 3
    assert server.waits == [1, 2, 3]

    server = ScriptedServer([DEFINING, (ASK, b"")], refused)
    client = defined(server, backoff=Backoff(within=0))
    with pytest.raises(ConnectError, match="connecting: Connection refused; gave up at try 1$"):
        client.exchange()


def test_waits_for_a_simulator_that_is_not_there_yet() -> None:
    refused = ConnectionRefusedError(111, "Connection refused")
    with pytest.raises(ConnectError, match=f"^{PLACE}connecting: Connection refused$"):
        Client(ScriptedServer(refused))
    server = ScriptedServer(refused, refused, [DEFINING])
    Client(server, on_start=OnStart.WAIT).define()
    assert server.waits == [0.25, 0.5]
    with pytest.raises(ConnectError, match="connecting: no such host$"):
        Client(ScriptedServer(NoSuchHost("no such host")), on_start=OnStart.WAIT)


def test_stops_waiting_when_cancelled() -> None:
    server = ScriptedServer([DEFINING, (ASK, Cancelled())])
    client = defined(server)
    with pytest.raises(CancelledError, match="the length of an answer, was cancelled and got 0 by"):
        client.exchange()
    assert not server.is_connected


def test_stops_waiting_between_two_answers_when_cancelled() -> None:
    server = ScriptedServer([DEFINING])
    client = defined(server)
    plan = client.session.link.call(client.session.next_answer(Pace(1), None))
    with pytest.raises(CancelledError, match=f"^{PLACE}waiting: was cancelled$"):
        server.interrupt(plan, Cancelled())


def test_leaves_out_times_that_were_missed() -> None:
    pace = Pace(rate=1000)
    begin = pace.due
    pace.advance()
    assert pace.due >= begin + 0.001
    pace.due = begin - 10
    pace.advance()
    assert pace.due >= begin


def observing(id: int, letter: str) -> Definitions:
    return Definitions(outputs=[Output(id, of_command=f"kyr/{letter}")])


def observing_turn(id: int, letter: str) -> Turn:
    head = "11 22 33 44 C0 FF EE DD E8 01 00 00 00 00 00 00 74 00 00 00 01 00 00 00"
    record = f'[ {id:02X} 00 00 00 "kyr/{letter}" @104 06 00 00 00 00 00 00 00 01 00 00 00 ]'
    return wire(head, record), framed(f"{id:02X} 00 00 00 01 00 00 00 00", TRAILER)


@pytest.mark.parametrize("second", [(2, "a"), (1, "b")])
def test_reconnects_when_a_command_gets_another_identifier(second: Any) -> None:
    server = ScriptedServer([observing_turn(1, "a")], [observing_turn(*second)])
    client = Client(server)
    client.define(observing(1, "a"))
    client.define(observing(*second))
    server.expect_end()


def test_keeps_the_connection_when_commands_keep_their_identifiers() -> None:
    server = ScriptedServer(
        [observing_turn(1, "a"), observing_turn(2, "b"), observing_turn(1, "a")]
    )
    client = Client(server)
    for id, letter in ((1, "a"), (2, "b"), (1, "a")):
        client.define(observing(id, letter))
    server.expect_end()


def test_tells_when_the_aircraft_changes() -> None:
    other = framed("01 00 00 00 04 00 00 00 05 00 00 00 FF FF 00 00 04 00 00 00 BB 00 00 00")
    none = framed("01 00 00 00 04 00 00 00 00 00 00 00 FF FF 00 00 04 00 00 00 00 00 00 00")
    server = ScriptedServer([DEFINING, (ASK, other), (ASK, other), (ASK, none)])
    client = Client(server)
    ids: List[int] = []
    client.session.aircraft_changed = ids.append
    client.define()
    for _ in range(3):
        answer = client.exchange()
    assert ids == [0xBB, 0]
    assert not answer.is_aircraft_loaded
