"""Tarnel clients against the real plugin, in a simulator whose frames run by themselves."""

import gc
from array import array
from typing import Any, List

import pytest
from styles import Make, tarnel_in_both_styles
from tearing import tear_next_request

from orvane import CancelledError, ClosedError, NotReleasedWarning, OnLoss, TimeoutError
from orvane.tarnel import Client, Definitions, Input, Output, Version
from orvane.testing import Phases, Simulator

pytestmark = pytest.mark.simulator(
    hz=200,
    datarefs={
        "test/int": "int",
        "test/float": "float",
        "test/ints": "int[8]",
        "test/fs": "float[8]",
    },
    commands=["test/once", "test/hold"],
)

INT, FLOAT, INTS, FLOATS, HOLD = range(1, 6)
BUTTON = 6
DEFINITIONS = Definitions(
    inputs=[
        Input(INT, to_int="test/int"),
        Input(FLOAT, to_float="test/float", scaled_by_float_range=(-1, 1)),
        Input(INTS, to_int_element="test/ints", element=3),
        Input(FLOATS, to_float_element="test/fs", element=2, scaled_by_int_range=(0, 10)),
        Input(HOLD, to_command="test/hold", held=True),
    ],
    outputs=[
        Output(INT, of_int="test/int"),
        Output(FLOAT, of_float="test/float"),
        Output(INTS, of_int_array="test/ints", count=2, first_element=2),
        Output(FLOATS, of_float_array="test/fs", count=3, first_element=1),
        Output(BUTTON, of_command="kyr/test_button"),
    ],
)


@tarnel_in_both_styles
def test_drives_inputs_and_reports_outputs(connect: Make, simulator: Simulator) -> None:
    with connect() as client:
        assert client.version() == Version((1, 0, 7, 10), 6)
        assert client.define(DEFINITIONS)[INT] == 0
        client.exchange({INT: -7, FLOAT: 65535, INTS: 8, FLOATS: 0, HOLD: 1})
        simulator.press("kyr/test_button")
        answer = client.exchange({FLOATS: 65535})
        assert dict(answer) == {
            INT: -7,
            FLOAT: 1.0,
            INTS: array("i", [0, 8]),
            FLOATS: array("f", [0, 0, 0]),
            BUTTON: True,
        }
        answer = client.exchange({HOLD: 0})
        assert answer[FLOATS] == array("f", [0, 10, 0])
        assert answer[BUTTON] is False
    assert simulator.phases("test/hold") == Phases(1, 1)


@tarnel_in_both_styles
def test_follows_the_aircraft(connect: Make, simulator: Simulator) -> None:
    ids: List[int] = []
    with connect() as client:
        client.on_aircraft_changed(ids.append)
        first = client.define(DEFINITIONS)
        client.exchange({INT: 5})
        simulator.unload_aircraft()
        without = client.exchange()
        assert not without.is_aircraft_loaded
        assert (without[INT], without[BUTTON]) == (0, False)
        simulator.load_aircraft("Another aircraft")
        answer = client.exchange()
        assert answer[INT] == 5
        assert ids == [0, answer.aircraft_id]
        assert answer.aircraft_id != first.aircraft_id


@tarnel_in_both_styles
def test_comes_back_with_its_definitions(connect: Make, simulator: Simulator) -> None:
    happened: List[str] = []

    def restart(error: Exception) -> None:
        happened.append("lost")
        simulator.restart()

    with connect() as client:
        client.set_callbacks(connected=lambda: happened.append("connected"), disconnected=restart)
        client.define(DEFINITIONS)
        client.exchange({INT: 41})
        simulator.kill()
        # Of the repeated definitions: the item is not sent again.
        assert client.exchange({INT: 42})[INT] == 0
        assert happened == ["lost", "connected"]
        assert client.exchange({INT: 43})[INT] == 0
        simulator.press("kyr/test_button")
        after = client.exchange()
        assert (after[INT], after[BUTTON]) == (43, True)


@tarnel_in_both_styles
def test_raises_if_that_is_wanted(connect: Make, simulator: Simulator) -> None:
    with connect(on_loss=OnLoss.THROW) as client:
        client.define(DEFINITIONS)
        simulator.kill()
        with pytest.raises(ClosedError):
            client.exchange()
        with pytest.raises(ClosedError):
            client.exchange()
        simulator.restart()
        client.reconnect()
        assert client.exchange()[INT] == 0


@tarnel_in_both_styles
def test_raises_when_no_frames_run_and_goes_on_when_they_do(
    connect: Make, simulator: Simulator
) -> None:
    with connect(timeout=1) as client:
        client.define(DEFINITIONS)
        simulator.pause()
        with pytest.raises(TimeoutError, match="is the simulator paused or loading"):
            client.exchange({INT: 1})
        simulator.fly()
        client.exchange({INT: 6})
        assert client.exchange()[INT] == 6


@tarnel_in_both_styles
def test_a_torn_request_is_asked_again(
    connect: Make, simulator: Simulator, monkeypatch: pytest.MonkeyPatch
) -> None:
    reasons: List[str] = []
    with connect() as client:
        client.set_callbacks(disconnected=lambda error: reasons.append(str(error)))
        tear_next_request(monkeypatch, after=500)
        client.define(DEFINITIONS)
        assert len(reasons) == 1 and "got 12" in reasons[0]
        client.exchange({INT: 3})
        assert client.exchange()[INT] == 3
    assert any("tryParseConfig : numBytes (496) < packetSize" in line for line in simulator.log)


@tarnel_in_both_styles
def test_reports_a_command_under_its_new_identifier(connect: Make, simulator: Simulator) -> None:
    with connect() as client:
        client.define(DEFINITIONS)
        client.define(Definitions(outputs=[Output(77, of_command="kyr/test_button")]))
        simulator.press("kyr/test_button")
        assert client.exchange()[77] is True


@tarnel_in_both_styles
def test_answers_come_at_a_rate(connect: Make, simulator: Simulator) -> None:
    values = iter(range(100))
    with connect() as client:
        client.define(DEFINITIONS)
        answers = client.answers(rate=100, items=lambda: {INT: next(values)})
        assert [next(answers)[INT] for _ in range(4)] == [0, 0, 1, 2]


# What is held -------------------------------------------------------------------------------------


@tarnel_in_both_styles
def test_a_new_definition_releases(connect: Make, simulator: Simulator) -> None:
    with connect() as client:
        client.define(DEFINITIONS)
        client.exchange({HOLD: 1})
        client.define(Definitions())
        assert simulator.phases("test/hold") == Phases(1, 1)


@tarnel_in_both_styles
def test_a_cancelled_call_releases(connect: Make, simulator: Simulator) -> None:
    is_over = False
    with connect(cancelled=lambda: is_over) as client:
        client.define(DEFINITIONS)
        client.exchange({HOLD: 1})
        is_over = True
        with pytest.raises(CancelledError, match="was cancelled"):
            client.exchange({HOLD: 1})
        assert simulator.phases("test/hold") == Phases(1, 1)


@tarnel_in_both_styles
def test_a_reconnection_releases(connect: Make, simulator: Simulator) -> None:
    with connect() as client:
        client.define(DEFINITIONS)
        client.exchange({HOLD: 1})
        client.reconnect()
        assert simulator.phases("test/hold") == Phases(1, 1)
        client.exchange({HOLD: 1})
        assert simulator.phases("test/hold") == Phases(2, 1)
    assert simulator.phases("test/hold") == Phases(2, 2)


@tarnel_in_both_styles
def test_it_warns_if_nobody_is_there_to_release(connect: Make, simulator: Simulator) -> None:
    with pytest.warns(NotReleasedWarning, match="still held: test/hold"):
        with connect(release_within=0.1) as client:
            client.define(DEFINITIONS)
            client.exchange({HOLD: 1})
            simulator.pause()


@tarnel_in_both_styles
def test_it_stays_held_if_that_is_wanted(connect: Make, simulator: Simulator) -> None:
    with connect(release_held=False) as client:
        client.define(DEFINITIONS)
        client.exchange({HOLD: 1})
    assert simulator.phases("test/hold") == Phases(1, 0)


def test_a_client_that_is_forgotten_releases(simulator: Simulator) -> None:
    client: Any = Client(timeout=20, release_within=20)
    client.define(DEFINITIONS)
    client.exchange({HOLD: 1})
    del client
    gc.collect()
    assert simulator.phases("test/hold") == Phases(1, 1)
