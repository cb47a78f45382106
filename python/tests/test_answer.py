"""Answers as Python's values, and as numpy's."""

import pickle
from array import array

import numpy
import pytest
from scripted import wire

from orvane._core.frames import UnexpectedAnswer
from orvane.tarnel import Answer, Output
from orvane.tarnel._layout import Layouts

OUTPUTS = [
    Output(1, of_int="a/int"),
    Output(2, of_command="kyr/button"),
    Output(3, of_float_array="a/floats", count=2),
    Output(4, of_float="a/same"),
    Output(5, of_int="a/same"),
]
WITH = wire(
    "01 00 00 00 04 00 00 00 FE FF FF FF",
    "02 00 00 00 01 00 00 00 01",
    "03 00 00 00 08 00 00 00 00 00 00 3F 00 00 00 C0",
    "04 00 00 00 04 00 00 00 00 00 C0 3F",
    "05 00 00 00 04 00 00 00 07 00 00 00",
    "FF FF 00 00 04 00 00 00 B1 2E 85 B9",
)
WITHOUT = wire(
    "01 00 00 00 04 00 00 00 00 00 00 00",
    "02 00 00 00 02 00 00 00 01 00 00 00 00",
    "03 00 00 00 08 00 00 00 00 00 00 00 00 00 00 00",
    "04 00 00 00 04 00 00 00 00 00 00 00",
    "05 00 00 00 04 00 00 00 00 00 00 00",
    "FF FF 00 00 04 00 00 00 00 00 00 00",
)


def answer(payload: bytes) -> Answer:
    return Answer(payload, Layouts(OUTPUTS).of(payload))


def test_is_a_mapping_of_pythons_values() -> None:
    got = answer(WITH)
    assert dict(got) == {1: -2, 2: True, 3: array("f", [0.5, -2]), 4: 1.5, 5: 7}
    assert [type(value) for value in got.values()] == [int, bool, array, float, int]
    assert (got.aircraft_id, got.is_aircraft_loaded) == (0xB9852EB1, True)
    with pytest.raises(KeyError):
        got[6]
    assert got.numbers() == (-2, 1, 1.5, 7)
    assert repr(got).endswith("4: 1.5, 5: 7}, aircraft_id=0xB9852EB1)")


def test_without_an_aircraft_everything_is_zero() -> None:
    got = answer(WITHOUT)
    assert dict(got) == {1: 0, 2: False, 3: array("f", [0, 0]), 4: 0.0, 5: 0}
    assert not got.is_aircraft_loaded


@pytest.mark.parametrize("payload", [WITH, WITHOUT])
def test_is_one_structured_value_of_numpys_that_copies_nothing(payload: bytes) -> None:
    got = answer(payload)
    view = got.numpy()
    assert view.shape == ()
    names = ("aircraft_id", "a/int", "kyr/button", "a/floats", "a/same#4", "a/same#5")
    assert view.dtype.names == names
    assert view["aircraft_id"] == got.aircraft_id
    assert [view[name].item() for name in ("a/int", "kyr/button", "a/same#4")] == [
        got[1],
        got[2],
        got[4],
    ]
    assert view["a/floats"].tolist() == list(got[3])  # type: ignore[arg-type]
    assert numpy.shares_memory(view, numpy.frombuffer(payload, "u1"))
    assert not view.flags.owndata


def test_a_command_is_up_or_down() -> None:
    state = WITH.index(bytes.fromhex("02 00 00 00 01 00 00 00 01")) + 8
    with pytest.raises(UnexpectedAnswer, match="expected a command's state of 0 or 1, got 3$"):
        answer(WITH[:state] + b"\3" + WITH[state + 1 :])


def test_can_be_sent_to_another_process() -> None:
    copied = pickle.loads(pickle.dumps(answer(WITH)))
    assert copied == answer(WITH)
    assert copied.aircraft_id == answer(WITH).aircraft_id


def test_rows_of_answers_make_a_table() -> None:
    table = numpy.stack([answer(WITH).numpy(), answer(WITH).numpy()])
    assert table["a/int"].tolist() == [-2, -2]
