"""Every request that the clients can send has the bytes of tests/vectors.

And every answer is read as what it means, or as unexpected.
"""

from typing import Any, Dict, List, Union

import pytest
from meanings import constant, dataref_value, definitions_of, numbers
from vectors import Step, Vector, read_vectors

from orvane._core.frames import ByteReader, UnexpectedAnswer
from orvane.tarnel import Answer, Definitions, OutputType, Version
from orvane.tarnel import _wire as tarnel_wire
from orvane.tarnel._layout import Layouts
from orvane.velmar import Action, CommandState, Dataref, Type
from orvane.velmar import _wire as velmar_wire
from orvane.velmar._wire import Packet

VECTORS = read_vectors()


# Tarnel -------------------------------------------------------------------------------------------


def output_value(type: OutputType, text: str) -> Any:
    if type in (OutputType.INT_ARRAY, OutputType.FLOAT_ARRAY):
        return numbers(text)
    return text == "1" if type is OutputType.COMMAND else numbers(text)[0]


def expect_outputs(answer: Answer, definitions: Definitions, step: Step) -> None:
    aircraft = step.text.split()[1]
    assert answer.aircraft_id == (0 if aircraft == "none" else int(aircraft, 16))
    assert list(answer) == [int(words[1]) for words in step.meaning]
    for output, words in zip(definitions.outputs, step.meaning):
        value = answer[output.id]
        expected = output_value(output.type, words[2])
        assert (list(value) if output.is_array else value) == expected  # type: ignore[arg-type]
        assert isinstance(value, bool) == (output.type is OutputType.COMMAND)


# Velmar -------------------------------------------------------------------------------------------


def packet_of(words: List[str], datarefs: Dict[int, Dataref]) -> "Packet[Any]":
    type = words[1]
    if type == "poll":
        return velmar_wire.poll(commands=2)
    number = int(words[2])
    if type == "register-dataref":
        size = int(words[4])
        datarefs[number] = Dataref(words[5], Type[constant(words[3])], size)
        return velmar_wire.register_dataref(number, datarefs[number])
    if type == "register-command":
        return velmar_wire.register_command(number, words[3])
    if type == "unregister-dataref":
        return velmar_wire.unregister_dataref(number)
    if type == "unregister-command":
        return velmar_wire.unregister_command(number)
    if type == "run":
        return velmar_wire.run(number, Action[constant(words[3])])
    if type == "read":
        return velmar_wire.read(number, datarefs.get(number, Dataref("unknown", Type.INT)))
    assert type == "write"
    dataref = datarefs.get(number, Dataref("unknown", Type.INT))
    return velmar_wire.write(number, dataref, dataref_value(words[3], words[4]))


def expect_reply(reader: ByteReader, packet: "Packet[Any]", words: List[str]) -> None:
    if words[1] == "poll":
        entries = [entry.split("=") for entry in words[2:]]
        expected: Any = [(int(number), CommandState[constant(state)]) for number, state in entries]
    elif words[1] == "read" and words[3] == "refused":
        # No client reads a number that it has not registered.
        with pytest.raises(UnexpectedAnswer):
            packet.read(reader)
        reader.take(4)  # what the failure is of
        return
    elif words[1] == "read":
        expected = dataref_value(words[3], words[4])
        size = len(expected) if words[3].endswith("array") else 0
        packet = velmar_wire.read(int(words[2]), Dataref("any", Type[constant(words[3])], size))
    else:
        expected = None if words[1] == "write" else words[3] == "ok"
    got = packet.read(reader)
    assert (list(got) if isinstance(expected, list) else got) == expected


# Both ---------------------------------------------------------------------------------------------


class Conversation:
    """A vector, as the client's half of it."""

    def __init__(self) -> None:
        self.asked = ""
        self.definitions = Definitions()
        self.datarefs: Dict[int, Dataref] = {}
        self.packets: "List[Packet[Any]]" = []

    def request(self, step: Step) -> None:
        kind, _, how = step.text.partition(" ")
        if kind == "raw":
            return
        self.asked = kind
        encoded = self.encode(kind, step.meaning)
        if how == "torn":
            assert encoded.startswith(bytes(step.data)) and len(encoded) > len(step.data)
        else:
            assert encoded.hex(" ") == step.data.hex(" ")

    def encode(self, kind: str, meaning: List[List[str]]) -> bytes:
        if kind == "version":
            return tarnel_wire.version_request()
        if kind == "define":
            self.definitions = definitions_of(meaning)
            return tarnel_wire.definitions_request(self.definitions)
        if kind == "exchange":
            return tarnel_wire.data_request((int(words[1]), int(words[2])) for words in meaning)
        assert kind == "packets"
        self.packets = [packet_of(words, self.datarefs) for words in meaning]
        return velmar_wire.request_of(self.packets)

    def answer(self, step: Step) -> None:
        kind = step.text.split()[0]
        if kind == "unexpected":
            with pytest.raises(UnexpectedAnswer):
                self.decode(step.payload)
        elif kind == "replies":
            self.expect_replies(step)
        elif kind == "version":
            assert self.decode(step.payload) == Version((1, 0, 7, 10), 6)
        elif kind == "outputs":
            answer = self.decode(step.payload)
            assert isinstance(answer, Answer)
            expect_outputs(answer, self.definitions, step)

    def decode(self, payload: bytes) -> Union[Version, Answer, List[Any]]:
        if self.asked == "version":
            return tarnel_wire.read_version(payload)
        if self.asked == "packets":
            return velmar_wire.read_replies(payload, self.packets)
        return Answer(payload, Layouts(self.definitions.outputs).of(payload))

    def expect_replies(self, step: Step) -> None:
        reader = ByteReader(step.payload)
        replied = [packet for packet in self.packets if packet.longest_reply > 0]
        assert len(replied) == len(step.meaning)
        for packet, words in zip(replied, step.meaning):
            expect_reply(reader, packet, words)
        reader.expect_end()


@pytest.mark.parametrize("vector", VECTORS, ids=[vector.name for vector in VECTORS])
def test_is_what_the_clients_send_and_read(vector: Vector) -> None:
    conversation = Conversation()
    for step in vector.steps:
        if step.keyword == "request":
            conversation.request(step)
        elif step.keyword == "answer":
            conversation.answer(step)


def test_there_are_vectors_of_each_kind() -> None:
    kinds = {step.text.split()[0] for vector in VECTORS for step in vector.steps}
    assert {"version", "define", "exchange", "packets", "raw", "outputs", "replies"} <= kinds
    assert len(VECTORS) > 90
