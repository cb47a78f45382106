"""What is held is released: on the living connection, else by name on another."""

from typing import Any, List

import pytest
from scripted import ScriptedServer, Turn, framed, wire
from test_tarnel_session import Client, TRAILER

from orvane import CancelledError, ClosedError, NotReleasedWarning, OnLoss, TimeoutError
from orvane._core.pace import Pace
from orvane._core.steps import Cancelled, Late
from orvane.options import Callbacks, Options
from orvane.tarnel import ConditionDataref, Definitions, Input
from orvane.velmar import Action
from orvane.velmar._session import Session

EMPTY = framed(TRAILER)
NONE = Definitions()
NO_DEFINITIONS: Turn = (
    wire("11 22 33 44 C0 FF EE DD E8 01 00 00 00 00 00 00 74 00 00 00 00 00 00 00"),
    EMPTY,
)
BRAKES = Definitions(inputs=[Input(7, to_command="brakes/max", held=True)])
DEFINING: Turn = (
    wire(
        "11 22 33 44 C0 FF EE DD E8 01 00 00 01 00 00 00 74 00 00 00 00 00 00 00",
        '[ 07 00 00 00 @32 06 00 00 00 @68 01 00 00 00 @280 "brakes/max" @488 ]',
    ),
    EMPTY,
)


def sending(*values: int, answer: Any = EMPTY) -> Turn:
    """Values for action 7."""
    items = " ".join(f"07 00 00 00 {value:02X} 00 00 00" for value in values)
    head = f"11 22 33 44 DE AD BE EF 08 00 00 00 {len(values):02X} 00 00 00"
    return wire(head, items), answer


def releasing(name: str = "brakes/max", times: int = 1, answer: Any = None) -> Turn:
    """By name, on a connection that knows nothing of it."""
    register = f'03 00 00 00 01 00 00 00 {len(name):02X} "{name}"'
    ends = "07 00 00 00 01 00 00 00 03 " * times
    request = wire("55 66 77 88", register, ends, "04 00 00 00 01 00 00 00")
    success = framed("03 00 00 00 01 00 00 00 01 00 00 00 04 00 00 00 01 00 00 00 01 00 00 00")
    return request, success if answer is None else answer


def holding(*connections: Any, **options: Any) -> Client:
    """A client that holds the brakes; the server then answers these turns."""
    first, *others = connections
    client = Client(ScriptedServer([DEFINING, sending(1), *first], *others), **options)
    client.define(BRAKES)
    client.exchange({7: 1})
    return client


def test_close_releases_on_the_living_connection() -> None:
    client = holding([sending(0)])
    client.close()
    client.server.expect_end()
    assert client.happened == []


def test_nothing_is_released_that_was_released_or_never_pressed() -> None:
    server = ScriptedServer([DEFINING, sending(2), sending(1, 0)])
    client = Client(server)
    client.define(BRAKES)
    client.exchange({7: 2})
    client.exchange([(7, 1), (7, 0)])
    client.close()
    server.expect_end()


def test_connecting_a_second_time_keeps_what_is_held() -> None:
    client = holding([sending(0)])
    client.run(client.session.link.start())
    client.close()
    client.server.expect_end()


def test_define_releases_before_it_drops_a_held_input() -> None:
    client = holding([sending(0), NO_DEFINITIONS])
    client.define(NONE)
    client.server.expect_end()


def test_a_reconnection_releases_by_name_before_it_declares() -> None:
    client = holding([sending(1, answer=b"")], [releasing(), DEFINING])
    client.exchange({7: 1})
    client.server.expect_end()
    client.close()  # nothing is held any more
    assert client.happened[1:] == ["connected"]


def test_a_press_whose_answer_never_came_counts_as_held() -> None:
    server = ScriptedServer([DEFINING, sending(1, answer=Late())], [releasing()])
    client = Client(server)
    client.define(BRAKES)
    with pytest.raises(TimeoutError):
        client.exchange({7: 1})
    client.close()
    server.expect_end()


@pytest.mark.parametrize("interruption", [Cancelled(), KeyboardInterrupt()])
def test_an_interrupted_call_releases_by_name(interruption: BaseException) -> None:
    client = holding([sending(1, answer=interruption)], [releasing()])
    with pytest.raises((CancelledError, KeyboardInterrupt)):
        client.exchange({7: 1})
    client.server.expect_end()
    assert not client.server.is_connected


def test_what_cannot_be_released_is_reported() -> None:
    client = holding(
        [sending(1, answer=Cancelled())], ConnectionRefusedError(111, "no"), release_within=0
    )
    with pytest.raises(CancelledError, match="got 0 bytes; not released: brakes/max$"):
        client.exchange({7: 1})
    why = "127.0.0.1:48000: connecting: Connection refused"
    assert client.happened[1:] == [f"not released: ['brakes/max'], {why}"]


def test_a_release_that_is_not_answered_says_how_long_it_waited() -> None:
    client = holding([sending(0, answer=Late())], [releasing(answer=Late())])
    client.close()
    # Half of the time on the living connection, so that another one can be tried.
    place, question = "127.0.0.1:48000: ", "(is the simulator paused or loading?)"
    assert client.happened == [
        f"{place}releasing what is held: no answer within 250 ms {question}",
        f"not released: ['brakes/max'], {place}releasing: no answer within 500 ms {question}",
    ]
    assert client.session.link.is_done


def test_what_is_held_after_a_report_is_still_to_be_released() -> None:
    again = [releasing(), DEFINING, sending(1, answer=Late())]
    client = holding([sending(0, answer=Late())], Late(), again)
    client.close()
    with pytest.raises(TimeoutError):
        client.exchange({7: 1})
    assert not client.session.link.is_done


def test_what_cannot_be_released_is_a_warning_if_nobody_listens() -> None:
    client = holding([sending(0, answer=Late())], Late())
    client.session.link.callbacks = Callbacks()
    with pytest.warns(NotReleasedWarning, match="releasing what is held: still held: brakes/max$"):
        client.close()


def test_a_plugin_that_is_reloaded_is_waited_for() -> None:
    refused = ConnectionRefusedError(111, "no")
    server = ScriptedServer([DEFINING, sending(1, answer=Late())], refused, [releasing()])
    client = Client(server)
    client.define(BRAKES)
    with pytest.raises(TimeoutError):
        client.exchange({7: 1})
    server.is_cancelled = True
    client.close()
    server.expect_end()
    assert server.waits == [0.02]


def test_an_interruption_between_two_exchanges_releases_on_the_living_connection() -> None:
    client = holding([sending(0)])
    plan = client.session.link.call(client.session.link.wait_for(Pace(1)))
    with pytest.raises(KeyboardInterrupt):
        client.server.interrupt(plan, KeyboardInterrupt())
    client.server.expect_end()


def test_a_release_whose_answer_never_came_counts_as_none() -> None:
    client = holding([sending(0, answer=Late())], [releasing(), DEFINING])
    with pytest.raises(TimeoutError):
        client.exchange({7: 0})
    client.run(client.session.reconnect())
    client.server.expect_end()


def test_reconnecting_releases_on_the_living_connection() -> None:
    client = holding([sending(0)], [DEFINING])
    client.run(client.session.reconnect())
    client.server.expect_end()


def test_what_was_not_released_is_released_by_the_next_connection() -> None:
    client = holding([sending(0, answer=Late())], Late(), [releasing(), DEFINING])
    client.close()
    client.run(client.session.reconnect())
    client.server.expect_end()


def test_nothing_is_released_if_that_is_wanted() -> None:
    lost = sending(1, answer=b"")
    client = holding([NO_DEFINITIONS, DEFINING, lost], [DEFINING], release_held=False)
    client.define(NONE)
    client.define(BRAKES)
    client.exchange({7: 1})
    client.close()
    client.server.expect_end()


GATE = ConditionDataref("gate")


@pytest.mark.parametrize(
    "refinement, values, releases",
    [
        ({}, [1], [sending(0)]),
        ({"skipped_when_one": True}, [1], []),
        # Another value might also go to other inputs.
        ({"skipped_when_zero": True}, [1, 0], [releasing()]),
        ({"skipped_when_zero": True}, [1, 3], []),
        ({"fixed": 0}, [1], []),
        ({"fixed": 1}, [0], [releasing()]),
        # Whether these values counted, only the dataref knows.
        ({"skipped_while_positive": GATE}, [1, 0], [releasing()]),
        ({"skipped_while_zero": GATE}, [0], []),
    ],
)
def test_follows_what_values_do(refinement: Any, values: List[int], releases: List[Turn]) -> None:
    from orvane.tarnel import _wire

    definitions = Definitions(inputs=[Input(7, to_command="brakes/max", held=True, **refinement)])
    defining: Turn = (_wire.definitions_request(definitions), EMPTY)
    server = ScriptedServer([defining, sending(*values), *releases])
    client = Client(server)
    client.define(definitions)
    client.exchange([(7, value) for value in values])
    client.close()
    server.expect_end()


def test_counts_what_is_held_twice() -> None:
    from orvane.tarnel import _wire

    twice = Definitions(inputs=[Input(7, to_command="brakes/max", held=True)] * 2)
    defining: Turn = (_wire.definitions_request(twice), EMPTY)
    server = ScriptedServer(
        [defining, sending(1), sending(1, answer=b"")], [releasing(times=2), defining]
    )
    client = Client(server)
    client.define(twice)
    client.exchange({7: 1})
    client.exchange({7: 1})
    server.expect_end()


# Velmar -------------------------------------------------------------------------------------------

REGISTERING: Turn = (
    wire('55 66 77 88 03 00 00 00 01 00 00 00 0A "brakes/max"'),
    framed("03 00 00 00 01 00 00 00 01 00 00 00"),
)


def running(action: int, answer: bytes = framed()) -> Turn:
    return wire(f"55 66 77 88 07 00 00 00 01 00 00 00 {action:02X}"), answer


class VelmarClient:
    def __init__(self, server: ScriptedServer, **options: Any) -> None:
        self.server = server
        self.session = Session(Options(**options))
        self.run(self.session.link.start())

    def run(self, plan: Any) -> Any:
        return self.server.run(self.session.link.call(plan))

    def close(self) -> None:
        self.run(self.session.link.close())

    def act(self, *actions: Action) -> None:
        for action in actions:
            self.run(self.session.run("brakes/max", action))


def test_velmar_ends_on_the_living_connection_as_often_as_it_began() -> None:
    both: Turn = (
        wire("55 66 77 88", "07 00 00 00 01 00 00 00 03 " * 2),
        framed(),
    )
    server = ScriptedServer([REGISTERING, running(2), running(2), running(2), running(3), both])
    client = VelmarClient(server)
    client.act(Action.BEGIN, Action.BEGIN, Action.BEGIN, Action.END)
    client.close()
    server.expect_end()


def test_velmar_counts_no_end_of_what_it_did_not_begin() -> None:
    server = ScriptedServer([REGISTERING, running(3), running(2), running(3)])
    client = VelmarClient(server)
    client.act(Action.END, Action.BEGIN)
    client.close()
    server.expect_end()


def test_velmar_ends_by_name_after_a_loss_and_registers_again() -> None:
    server = ScriptedServer(
        [REGISTERING, running(2), running(1, answer=b"")], [releasing(), REGISTERING]
    )
    client = VelmarClient(server)
    client.act(Action.BEGIN)
    with pytest.raises(ClosedError, match="reconnected, but this was not repeated$"):
        client.act(Action.ONCE)
    client.close()
    server.expect_end()


def test_velmar_ends_by_name_what_it_was_told_to_end_when_the_connection_was_lost() -> None:
    server = ScriptedServer(
        [REGISTERING, running(2), running(3, answer=b"")], [releasing(), REGISTERING]
    )
    client = VelmarClient(server)
    client.act(Action.BEGIN, Action.END)
    server.expect_end()


def test_velmar_says_that_an_end_was_not_repeated_if_it_releases_nothing() -> None:
    server = ScriptedServer([REGISTERING, running(2), running(3, answer=b"")], [REGISTERING])
    client = VelmarClient(server, release_held=False)
    with pytest.raises(ClosedError, match="reconnected, but this was not repeated$"):
        client.act(Action.BEGIN, Action.END)
    server.expect_end()


def test_velmar_keeps_down_what_it_is_told_to() -> None:
    server = ScriptedServer([REGISTERING, running(2)])
    client = VelmarClient(server, release_held=False)
    client.act(Action.BEGIN)
    client.close()
    server.expect_end()


def test_velmar_leaves_a_command_alone_that_a_new_simulator_does_not_have() -> None:
    refused = framed(
        "03 00 00 00 01 00 00 00 02 00 00 00 02 00 00 00"
        " 04 00 00 00 01 00 00 00 02 00 00 00 02 00 00 00"
    )
    server = ScriptedServer(
        [REGISTERING, running(2, answer=b"")], [releasing(answer=refused), REGISTERING]
    )
    client = VelmarClient(server, on_loss=OnLoss.THROW)
    with pytest.raises(ClosedError):
        client.act(Action.BEGIN)
    client.run(client.session.reconnect())
    server.expect_end()
