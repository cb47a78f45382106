"""What a declaration may be, and what is refused before it is sent."""

from typing import Any, Dict

import pytest

from orvane.tarnel import ConditionDataref, ConditionType, Definitions, Input, Output

LONG = "x" * 99


@pytest.mark.parametrize(
    "arguments, text",
    [
        ({}, "the input of action 1 has 0 names, not one"),
        ({"to_int": "a", "to_float": "b"}, "the input of action 1 has 2 names, not one"),
        ({"to_int": ""}, "a name is empty"),
        ({"to_int": LONG + "x"}, f"the name {LONG}x has 100 bytes; at most 99 are allowed"),
        ({"to_int": "é" * 50}, f"the name {'é' * 50} has 100 bytes; at most 99 are allowed"),
        ({"to_int": "a\0b"}, "the name a contains a zero byte"),
        ({"to_int": "a", "element": 1}, "the input of a is not an array and has no elements"),
        ({"to_int_element": "a", "element": -1}, "a has no element -1"),
        (
            {"to_int": "a", "scaled_by_float_range": (0, 1)},
            "the input of a is not a float and cannot be scaled",
        ),
        (
            {"to_float": "a", "scaled_by_float_range": (0, 1), "scaled_by_int_range": (0, 1)},
            "the input of a has more than one scaling",
        ),
        (
            {"to_float": "a", "scaled_by_int_range": (-(2**31), 2**31 - 1)},
            "the input of a has a range wider than 32 bits",
        ),
        ({"to_float": "a", "scaled_by_datarefs": ("b", "")}, "a name is empty"),
        (
            {"to_float": "a", "scaled_by_dataref_elements": ("b", "c", -1)},
            "b has no element -1",
        ),
        (
            {"to_int": "a", "skipped_when_one": True, "skipped_when_zero": True},
            "the input of a has more than one condition",
        ),
        (
            {"to_int": "a", "fixed": 0.5},
            "the fixed value of a is 0.5, which is not a 32-bit int",
        ),
        (
            {"to_int_element": "a", "fixed": 2},
            "the input of a is an element of an int array and can be fixed to 1 only",
        ),
        (
            {"to_float": "a", "fixed": 1e39},
            "the fixed value of a is 1e+39, which is too large for a 32-bit float",
        ),
        ({"to_int": "a", "held": True}, "the input of a is not a command and cannot be held"),
        (
            {"to_float": "a", "repeated_every": 1.0},
            "the input of a is not a command and cannot be repeated",
        ),
        (
            {"to_command": "a", "held": True, "repeated_every": 1.0},
            "the input of a is held and cannot have a repeat interval",
        ),
        (
            {"to_command": "a", "repeated_every": 0.0001},
            "the input of a cannot have a repeat interval of 0.0001 seconds",
        ),
        (
            {"to_command": "a", "repeated_every": float("inf")},
            "the input of a cannot have a repeat interval of inf seconds",
        ),
        (
            {"to_command": "a", "repeated_every": 2147483.6479},
            "the input of a cannot have a repeat interval of 2147483.6479 seconds",
        ),
        pytest.param(
            {"to_float": "a", "fixed": 10**400},
            f"the fixed value of a is {10**400}, which is too large for a 32-bit float",
            id="huge",
        ),
    ],
)
def test_inputs_that_are_refused(arguments: Dict[str, Any], text: str) -> None:
    with pytest.raises(ValueError) as refused:
        Input(1, **arguments)
    assert str(refused.value) == text


@pytest.mark.parametrize("action", [2**31, 1.0, "1"])
def test_actions_are_32_bit_ints(action: Any) -> None:
    with pytest.raises(ValueError, match="the action of an input is .*, which is not a 32-bit int"):
        Input(action, to_int="a")


@pytest.mark.parametrize(
    "id, arguments, text",
    [
        (1, {}, "the output 1 has 0 names, not one"),
        (1, {"of_int": LONG + "x"}, f"the name {LONG}x has 100 bytes; at most 99 are allowed"),
        (65535, {"of_int": "a"}, "the output a has the aircraft's number, 65535"),
        (-1, {"of_int": "a"}, "the output a has the identifier -1"),
        (2**32, {"of_int": "a"}, "the output a has the identifier 4294967296"),
        (1, {"of_int": "a", "count": 2}, "the output a is not an array and has no elements"),
        (1, {"of_int_array": "a", "count": 0}, "the output a has 0 elements; at least 1 is needed"),
        (1, {"of_int_array": "a", "first_element": -1}, "a has no element -1"),
        (
            1,
            {"of_command": "sim/a"},
            "the command sim/a cannot be observed: only those under kyr/ can",
        ),
    ],
)
def test_outputs_that_are_refused(id: int, arguments: Dict[str, Any], text: str) -> None:
    with pytest.raises(ValueError) as refused:
        Output(id, **arguments)
    assert str(refused.value) == text


def test_what_a_connection_cannot_have_both() -> None:
    with pytest.raises(ValueError, match="^two outputs have the identifier 1$"):
        Definitions(outputs=[Output(1, of_int="a"), Output(1, of_float="b")])
    with pytest.raises(ValueError, match="^the command kyr/a is reported twice$"):
        Definitions(outputs=[Output(1, of_command="kyr/a"), Output(2, of_command="kyr/a")])


def test_answers_fit_into_the_servers_buffer() -> None:
    large = [Output(id, of_int_array="a", count=33_000_000) for id in (1, 2)]
    with pytest.raises(ValueError, match="^the answers become longer than the server can send$"):
        Definitions(outputs=[*large, Output(3, of_int_array="a", count=2_000_000)])


def test_knows_its_sizes() -> None:
    definitions = Definitions(
        inputs=[Input(1, to_int="a")],
        outputs=[Output(1, of_float_array="a", count=3), Output(2, of_command="kyr/b")],
    )
    assert definitions.request_size == 24 + 488 + 2 * 116
    assert definitions.answer_size == 4 + (8 + 12) + (8 + 1) + 12
    assert definitions.declares(1) and not definitions.declares(2)


def test_conditions_are_checked() -> None:
    with pytest.raises(ValueError, match="^a has no element -1$"):
        ConditionDataref("a", ConditionType.INT_ELEMENT, -1)
    wrong: Any = 5
    with pytest.raises(ValueError, match="^5 is not a valid ConditionType$"):
        ConditionDataref("a", wrong)


def test_definitions_are_values() -> None:
    made = [Definitions(inputs=[Input(1, to_int="a")]) for _ in range(2)]
    assert made[0] == made[1]
    assert hash(made[0]) == hash(made[1])
    assert repr(Input(1, to_int="a")).startswith("Input(action=1, to_int='a', ")
