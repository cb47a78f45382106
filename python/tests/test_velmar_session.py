"""What a Velmar client sends, and what it makes of what comes back."""

import pickle
from array import array
from typing import Any, List

import pytest
from scripted import ScriptedServer, Turn, framed, wire
from test_held import VelmarClient, running

from orvane import ClosedError, ProtocolError, Refused
from orvane._core.pace import Pace
from orvane.velmar import Action, CommandReport, CommandState, Dataref, Type, Writable, _wire
from orvane.velmar._batches import cut_into_requests
from orvane.velmar._changes import Changes, Presses

INT = Dataref("a/int", Type.INT)
FLOATS = Dataref("a/floats", Type.FLOAT_ARRAY, 2)


def ask(packets: str, replies: str) -> Turn:
    return wire("55 66 77 88", packets), framed(replies)


def registering(number: int, dataref: Dataref, is_found: bool = True) -> "tuple[str, str]":
    size = dataref.size if dataref.type.is_array else 0
    packet = (
        f"01 00 00 00 {number:02X} 00 00 00 {dataref.type:02X} 00 00 00 {size:02X} 00 00 00"
        f' {len(dataref.name):02X} "{dataref.name}"'
    )
    status = "01 00 00 00" if is_found else "02 00 00 00 01 00 00 00"
    return packet, f"01 00 00 00 {number:02X} 00 00 00 {status}"


def command(number: int, name: str, is_found: bool = True) -> "tuple[str, str]":
    status = "01 00 00 00" if is_found else "02 00 00 00 02 00 00 00"
    head = f"03 00 00 00 {number:02X} 00 00 00"
    return f'{head} {len(name):02X} "{name}"', f"{head} {status}"


def turn(*parts: "tuple[str, str]") -> Turn:
    return ask(" ".join(packet for packet, _ in parts), " ".join(reply for _, reply in parts))


def reading(number: int, length: int, value: str) -> "tuple[str, str]":
    head = f"05 00 00 00 {number:02X} 00 00 00"
    return head, f"{head} 01 00 00 00 {length:02X} 00 00 00 {value}"


def writing(number: int, length: int, value: str) -> "tuple[str, str]":
    head = f"06 00 00 00 {number:02X} 00 00 00"
    return f"{head} {length:02X} 00 00 00 {value}", f"{head} 01 00 00 00"


def test_registers_reads_and_writes() -> None:
    server = ScriptedServer(
        [
            turn(registering(1, INT), registering(2, FLOATS)),
            turn(reading(2, 8, "00 00 00 3F 00 00 00 C0"), reading(1, 4, "FE FF FF FF")),
            turn(writing(1, 4, "05 00 00 00"), writing(2, 8, "00 00 80 3F 00 00 80 BF")),
        ]
    )
    client = VelmarClient(server)
    session = client.session
    client.run(session.registrar.register_datarefs([INT, FLOATS]))
    client.run(session.registrar.register_datarefs([INT]))  # registered already
    assert client.run(session.read(["a/floats", "a/int"])) == [array("f", [0.5, -2]), -2]
    client.run(session.write({"a/int": 5, "a/floats": [1, -1]}))
    server.expect_end()


def test_refuses_all_unknown_names_at_once_and_keeps_the_others() -> None:
    bad, worse = Dataref("no/int", Type.INT), Dataref("no/float", Type.FLOAT)
    server = ScriptedServer(
        [
            turn(registering(1, bad, False), registering(2, INT), registering(3, worse, False)),
            turn(reading(2, 4, "07 00 00 00")),
            turn(command(1, "no/command", False), command(2, "some/command")),
        ]
    )
    client = VelmarClient(server)
    with pytest.raises(Refused) as refused:
        client.run(client.session.registrar.register_datarefs([bad, INT, worse]))
    assert refused.value.refused_names == ("no/int", "no/float")
    text = "127.0.0.1:48000: registering: the simulator does not have no/int, no/float"
    assert str(refused.value) == text
    copied = pickle.loads(pickle.dumps(refused.value))
    assert (str(copied), copied.refused_names) == (text, ("no/int", "no/float"))
    assert client.run(client.session.read(["a/int"])) == [7]
    with pytest.raises(Refused, match="does not have no/command$"):
        client.run(client.session.registrar.register_commands(["no/command", "some/command"]))


def test_finds_a_type_in_which_the_value_is_not_zero() -> None:
    four = [
        Dataref("a/b", Type.FLOAT),
        Dataref("a/b", Type.INT),
        Dataref("a/b", Type.FLOAT_ARRAY, 64),
        Dataref("a/b", Type.INT_ARRAY, 64),
    ]
    as_numbers = [reading(number, 4, "00 00 00 00") for number in (1, 2)]
    arrays = [f"05 00 00 00 {number:02X} 00 00 00" for number in (3, 4)]
    zeros = [(read, f"{read} 01 00 00 00 00 01 00 00 {'00 ' * 256}") for read in arrays]
    server = ScriptedServer(
        [
            turn(*(registering(number, each) for number, each in enumerate(four, 1))),
            turn(*as_numbers, *zeros),
            turn(as_numbers[0], reading(2, 4, "07 00 00 00"), *zeros),
            turn(reading(2, 4, "08 00 00 00")),
        ]
    )
    client = VelmarClient(server)
    assert client.run(client.session.read(["a/b"])) == [0]
    assert client.run(client.session.read(["a/b"])) == [7]
    assert client.run(client.session.read(["a/b"])) == [8]  # an int from now on
    server.expect_end()


def test_writes_a_dataref_without_a_type_in_each_way() -> None:
    server = ScriptedServer(
        [
            turn(
                registering(1, Dataref("a/b", Type.FLOAT)),
                registering(2, Dataref("a/b", Type.INT)),
                registering(3, Dataref("a/b", Type.FLOAT_ARRAY, 64)),
                registering(4, Dataref("a/b", Type.INT_ARRAY, 64)),
            ),
            turn(writing(1, 4, "00 00 40 40"), writing(2, 4, "03 00 00 00")),
            turn(writing(1, 4, "00 00 00 3F")),
            turn(registering(5, Dataref("a/b", Type.FLOAT_ARRAY, 1))),
            turn(writing(5, 4, "00 00 00 3F")),
        ]
    )
    client = VelmarClient(server)
    values: List[Writable] = [3, 0.5, [0.5]]
    for value in values:
        client.run(client.session.write({"a/b": value}))
    server.expect_end()


def test_takes_the_type_from_the_name() -> None:
    server = ScriptedServer(
        [
            turn(registering(1, INT), registering(2, FLOATS)),
            turn(reading(1, 4, "07 00 00 00"), reading(2, 8, "00 " * 8)),
        ]
    )
    client = VelmarClient(server)
    values = client.run(client.session.read(["a/int:int", "a/floats:float[2]"]))
    assert values == [7, array("f", [0, 0])]


@pytest.mark.parametrize("text", ["a:double", "a:int[]", "a:byte[3]", "a:", ":int", "", "a:int[0]"])
def test_knows_no_other_types(text: str) -> None:
    client = VelmarClient(ScriptedServer([]))
    with pytest.raises(ValueError):
        client.run(client.session.read([text]))


@pytest.mark.parametrize(
    "dataref, value",
    [
        (INT, 1.5),
        (INT, "1"),
        (INT, 2**31),
        (INT, [1]),
        (Dataref("a", Type.FLOAT), "x"),
        (Dataref("a", Type.FLOAT), 1e39),
        (Dataref("a", Type.BYTE), 256),
        (FLOATS, [1.0]),
        (FLOATS, 1.0),
        (FLOATS, [1.0, "x"]),
    ],
)
def test_writes_nothing_that_is_not_of_the_type(dataref: Dataref, value: Any) -> None:
    server = ScriptedServer([turn(registering(1, dataref))])
    client = VelmarClient(server)
    client.run(client.session.registrar.register_datarefs([dataref]))
    with pytest.raises(ValueError):
        client.run(client.session.write({dataref.name: value}))
    server.expect_end()


@pytest.mark.parametrize("value", ["12", ["1"], 10**400], ids=["text", "texts", "huge"])
def test_writes_nothing_without_a_type_that_is_not_a_number(value: Any) -> None:
    four = [Dataref("a/b", Type(type), size) for type, size in ((2, 0), (1, 0), (5, 64), (4, 64))]
    server = ScriptedServer(
        [turn(*(registering(number, each) for number, each in enumerate(four, 1)))]
    )
    client = VelmarClient(server)
    with pytest.raises(ValueError, match="^the value for a/b is "):
        client.run(client.session.write({"a/b": value}))
    server.expect_end()


def test_registers_everything_again_on_a_new_connection() -> None:
    known = [turn(registering(1, INT)), turn(command(1, "some/command"))]
    again = turn(registering(1, INT), command(1, "some/command"))
    asked = wire("55 66 77 88 05 00 00 00 01 00 00 00")
    server = ScriptedServer([*known, (asked, b"")], [again, turn(reading(1, 4, "07 00 00 00"))])
    client = VelmarClient(server)
    client.run(client.session.registrar.register_datarefs([INT]))
    client.run(client.session.registrar.register_commands(["some/command"]))
    assert client.run(client.session.read(["a/int"])) == [7]
    server.expect_end()


def test_takes_no_answer_with_something_after_it() -> None:
    packet, reply = registering(1, INT)
    odd = ask(packet, f"{reply} 00 00 00 00")
    client = VelmarClient(ScriptedServer([odd], [odd]))
    with pytest.raises(ProtocolError, match="expected an answer of 12 bytes, got 16$"):
        client.run(client.session.registrar.register_datarefs([INT]))


def test_says_which_names_are_gone_when_it_reconnects() -> None:
    server = ScriptedServer([turn(registering(1, INT))], [turn(registering(1, INT, False))])
    client = VelmarClient(server)
    client.run(client.session.registrar.register_datarefs([INT]))
    with pytest.raises(Refused, match="registering again: the simulator does not have a/int$"):
        client.run(client.session.reconnect())
    assert not client.session.link.is_connected


def test_does_not_repeat_a_write_that_lost_the_connection() -> None:
    write = wire("55 66 77 88 06 00 00 00 01 00 00 00 04 00 00 00 05 00 00 00")
    server = ScriptedServer([turn(registering(1, INT)), (write, b"")], [turn(registering(1, INT))])
    client = VelmarClient(server)
    client.run(client.session.registrar.register_datarefs([INT]))
    with pytest.raises(ClosedError, match="writing a/int: the connection was lost; reconnected"):
        client.run(client.session.write({"a/int": 5}))
    assert client.session.link.is_connected


def test_does_not_repeat_an_action_whose_answer_is_odd() -> None:
    server = ScriptedServer([turn(command(1, "brakes/max")), running(1, framed("00"))])
    client = VelmarClient(server)
    with pytest.raises(ProtocolError, match="expected an answer of at most 0 bytes, got 1 byte$"):
        client.act(Action.ONCE)


def test_a_type_may_be_a_plain_number() -> None:
    number: Any = 5
    assert Dataref("a", number, 3).value_size == 12
    with pytest.raises(ValueError, match="^6 is not a valid Type$"):
        Dataref("a", number + 1)


def test_cuts_long_lists_into_requests_that_arrive_whole() -> None:
    datarefs = [Dataref(f"sim/{'x' * 90}/{index:03}", Type.INT) for index in range(30)]
    numbered = list(enumerate(datarefs, 1))
    turns = [
        turn(*(registering(number, dataref) for number, dataref in numbered[begin : begin + 12]))
        for begin in (0, 12, 24)
    ]
    assert [len(request) for request, _ in turns] == [1384, 1384, 694]
    server = ScriptedServer(turns)
    client = VelmarClient(server)
    client.run(client.session.registrar.register_datarefs(datarefs))
    server.expect_end()


def test_cuts_reading_so_that_answers_arrive_undamaged() -> None:
    sizes = [10, 16_000, 20_000, 400, 10]
    costs = [[_wire.read(1, Dataref("a", Type.FLOAT_ARRAY, size))] for size in sizes]
    assert cut_into_requests(sizes, costs) == [[10, 16_000], [20_000], [400, 10]]


def test_polls_and_begins_afresh() -> None:
    first, second = command(1, "some/first"), command(2, "some/second")
    poll = ("08 00 00 00", "01 00 00 00 02 00 00 00 01")
    pressed = ("08 00 00 00", "01 00 00 00 01 00 00 00 02")
    server = ScriptedServer([turn(first, second), turn(poll), turn(pressed, first, second)])
    client = VelmarClient(server)
    client.run(client.session.registrar.register_commands(["some/first", "some/second"]))
    is_down = CommandReport("some/second", CommandState.DOWN)
    assert client.run(client.session.poll()) == [is_down]
    was_pressed = CommandReport("some/first", CommandState.PRESSED)
    assert client.run(client.session.poll_presses()) == [was_pressed]
    server.expect_end()


def test_reports_a_press_once_however_many_requests_it_takes() -> None:
    names = [f"some/{'x' * 95}/{index:02}" for index in range(13)]
    commands = [command(number, name) for number, name in enumerate(names, 1)]
    pressed = ("08 00 00 00", "01 00 00 00 01 00 00 00 02")
    registering = [turn(*commands[:12]), turn(*commands[12:])]
    server = ScriptedServer(
        [*registering, turn(pressed, *commands[:12]), turn(pressed, *commands[12:])]
    )
    client = VelmarClient(server)
    client.run(client.session.registrar.register_commands(names))
    reports = [CommandReport(names[0], CommandState.PRESSED)]
    assert client.run(client.session.poll_presses()) == reports
    server.expect_end()


def test_reports_no_command_that_was_not_registered() -> None:
    poll = turn(("08 00 00 00", "01 00 00 00 09 00 00 00 01"))
    again = turn(command(1, "some/command"))
    server = ScriptedServer([again, poll], [again, poll])
    client = VelmarClient(server)
    client.run(client.session.registrar.register_commands(["some/command"]))
    with pytest.raises(ProtocolError, match="a poll of registered commands, got number 9$"):
        client.run(client.session.poll())


def test_names_that_are_not_registered_cannot_be_unregistered() -> None:
    client = VelmarClient(ScriptedServer([]))
    with pytest.raises(LookupError, match="^the dataref a/int is not registered$"):
        client.run(client.session.registrar.unregister_dataref("a/int"))
    with pytest.raises(LookupError, match="^the command a/run is not registered$"):
        client.run(client.session.registrar.unregister_command("a/run"))


def test_unregisters() -> None:
    server = ScriptedServer(
        [
            turn(registering(1, INT)),
            ask("02 00 00 00 01 00 00 00", "02 00 00 00 01 00 00 00 01 00 00 00"),
            turn(command(1, "some/command")),
            ask("04 00 00 00 01 00 00 00", "04 00 00 00 01 00 00 00 01 00 00 00"),
        ],
        [],
    )
    client = VelmarClient(server)
    client.run(client.session.registrar.register_datarefs([INT]))
    client.run(client.session.registrar.unregister_dataref("a/int"))
    client.run(client.session.registrar.register_commands(["some/command"]))
    client.run(client.session.registrar.unregister_command("some/command"))
    client.run(client.session.reconnect())  # with nothing to register again
    server.expect_end()


def test_yields_what_changes_beyond_the_deadband() -> None:
    readings = ["00 00 00 00", "01 00 00 00", "02 00 00 00"]
    server = ScriptedServer(
        [turn(registering(1, INT)), *(turn(reading(1, 4, value)) for value in readings)]
    )
    client = VelmarClient(server)
    changes, pace = Changes(["a/int:int"], deadband=1), Pace(50)
    assert client.run(client.session.next_changes(pace, changes)) == {"a/int:int": 0}
    assert client.run(client.session.next_changes(pace, changes)) == {"a/int:int": 2}
    server.expect_end()


def test_a_deadband_is_measured_from_the_last_value_reported() -> None:
    changes = Changes(["a"], deadband=1.0)
    reported = [changes.among([value]) for value in (0.0, 0.9, 1.0, 1.1, 1.2, 0.0, float("nan"))]
    assert reported[:6] == [{"a": 0.0}, {}, {}, {"a": 1.1}, {}, {"a": 0.0}]
    assert list(reported[6]) == ["a"]
    assert changes.among([float("nan")]) == {}
    assert changes.among([1.0]) == {"a": 1.0}


def test_accepts_one_name_without_a_list() -> None:
    assert Changes("a/int", 0).names == ["a/int"]
    assert Presses("a/command").names == ["a/command"]


def test_an_array_changes_with_an_element() -> None:
    changes = Changes(["a"], deadband=0.0)
    arrays = [array("f", values) for values in ([0, 1], [0, 1], [0, 2], [0, 2, 0])]
    assert [bool(changes.among([value])) for value in arrays] == [True, False, True, True]


def test_tells_each_press_once() -> None:
    presses = Presses(["a", "b"])
    down, pressed = CommandState.DOWN, CommandState.PRESSED

    def told(*reports: "tuple[str, CommandState]") -> List[str]:
        return [report.name for report in presses.among([CommandReport(*each) for each in reports])]

    assert told(("a", down), ("other", pressed)) == ["a"]
    assert told(("a", down), ("b", pressed)) == ["b"]
    assert told(("a", pressed)) == []  # released
    assert told(("a", pressed)) == ["a"]
    assert told() == []


@pytest.mark.parametrize("rate", [0, -1, float("nan")])
def test_a_rate_is_above_zero(rate: float) -> None:
    with pytest.raises(ValueError):
        Pace(rate)


def test_a_deadband_is_not_negative() -> None:
    with pytest.raises(ValueError):
        Changes(["a"], -1)
