"""What is true of all messages: encoding and decoding, each by another hand than the package's."""

import struct
from array import array
from typing import Any, List, Tuple

import pytest
from hypothesis import given, settings
from hypothesis import strategies as st

from orvane._core.frames import FrameReader, UnexpectedAnswer
from orvane.tarnel import Answer, Definitions, Input, Output, OutputType, _wire
from orvane.tarnel._layout import Layouts
from orvane.velmar import Dataref, Type
from orvane.velmar import _wire as velmar_wire

int32 = st.integers(-(2**31), 2**31 - 1)
float32 = st.floats(width=32, allow_nan=False)
names = st.text(st.characters(min_codepoint=33, max_codepoint=0x2FF), min_size=1, max_size=40)

CODES = {
    OutputType.INT: "i",
    OutputType.FLOAT: "f",
    OutputType.INT_ARRAY: "i",
    OutputType.FLOAT_ARRAY: "f",
    OutputType.COMMAND: "?",
}


@st.composite
def outputs_and_values(draw: Any) -> Tuple[List[Output], List[Any]]:
    ids = draw(st.lists(st.integers(0, 2**32 - 1).filter(lambda id: id != 0xFFFF), unique=True))
    outputs, values = [], []
    for id in ids:
        type = draw(st.sampled_from(list(OutputType)))
        count = draw(st.integers(1, 5)) if "ARRAY" in type.name else 1
        name = f"kyr/{id}" if type is OutputType.COMMAND else draw(names)
        outputs.append(Output(id, **{f"of_{type.name.lower()}": name}, count=count))
        element = {"i": int32, "f": float32, "?": st.booleans()}[CODES[type]]
        values.append([draw(element) for _ in range(count)])
    return outputs, values


def stream(outputs: List[Output], values: List[Any], aircraft: int) -> bytes:
    """As the plugin writes it."""
    payload = b""
    for output, value in zip(outputs, values):
        code = CODES[output.type]
        payload += struct.pack("<I", output.id)
        if output.type is OutputType.COMMAND and not aircraft:
            payload += struct.pack("<I", output.id)
        data = struct.pack(f"<{len(value)}{code}", *value)
        payload += struct.pack("<I", len(data)) + data
    return payload + struct.pack("<3I", 0xFFFF, 4, aircraft)


@given(outputs_and_values(), st.integers(0, 2**32 - 1))
def test_any_answer_is_read_as_it_was_written(
    declared: Tuple[List[Output], List[Any]], aircraft: int
) -> None:
    outputs, values = declared
    payload = stream(outputs, values, aircraft)
    answer = Answer(payload, Layouts(outputs).of(payload))
    assert answer.aircraft_id == aircraft
    for output, value in zip(outputs, values):
        expected = array(CODES[output.type], value) if output.is_array else value[0]
        assert answer[output.id] == expected


@given(outputs_and_values(), st.data())
def test_no_answer_of_another_shape_is_accepted(
    declared: Tuple[List[Output], List[Any]], data: Any
) -> None:
    outputs, values = declared
    payload = bytearray(stream(outputs, values, 1))
    # Whatever byte is changed: it is noticed, or part of a value.
    index = data.draw(st.integers(0, len(payload) - 1))
    payload[index] ^= data.draw(st.integers(1, 255))
    layouts = Layouts(outputs)
    is_value, offset = False, 0
    for output in outputs:
        is_value = is_value or offset + 8 <= index < offset + 8 + output.value_size
        if output.type is OutputType.COMMAND and index == offset + 8:
            is_value = payload[index] <= 1
        offset += 8 + output.value_size
    if is_value or index >= len(payload) - 4:
        layouts.of(bytes(payload))
    else:
        with pytest.raises(UnexpectedAnswer):
            layouts.of(bytes(payload))


@given(outputs_and_values(), st.integers(-20, 20).filter(bool))
def test_no_answer_of_another_length_is_accepted(
    declared: Tuple[List[Output], List[Any]], more: int
) -> None:
    outputs, values = declared
    layouts = Layouts(outputs)
    payload = stream(outputs, values, 1)
    other = payload[:more] if more < 0 else payload + bytes(more)
    if len(other) == layouts.longest:
        return  # that of no aircraft
    with pytest.raises(UnexpectedAnswer):
        layouts.of(other)


@given(st.lists(st.tuples(int32, int32)))
def test_items_arrive_as_they_were_sent(items: List[Tuple[int, int]]) -> None:
    request = _wire.data_request(items)
    head = struct.unpack("<4I", request[:16])
    assert head == (0x44332211, 0xEFBEADDE, 8, len(items))
    assert list(struct.iter_unpack("<2i", request[16:])) == items


@given(names, int32, st.integers(0, 2**31 - 1), float32, float32)
def test_input_records_have_their_fields_where_the_page_says(
    name: str, action: int, element: int, minimum: float, maximum: float
) -> None:
    input = Input(
        action,
        to_float_element=name,
        element=element,
        scaled_by_float_range=(minimum, maximum),
    )
    record = _wire.definitions_request(Definitions(inputs=[input]))[24:]
    assert len(record) == 488
    assert struct.unpack_from("<i", record, 0) == (action,)
    assert struct.unpack_from("<i", record, 12) == (element,)
    assert struct.unpack_from("<2f", record, 56) == (minimum, maximum)
    assert record[280:380].rstrip(b"\0").decode() == name


@given(st.binary(max_size=2000), st.lists(st.integers(1, 700)))
def test_an_answer_may_come_in_any_pieces(payload: bytes, sizes: List[int]) -> None:
    frame = struct.pack("<I", len(payload)) + payload
    reader = FrameReader(most=2000)
    got = None
    for size in [*sizes, len(frame)]:
        piece, frame = frame[:size], frame[size:]
        if piece:
            assert got is None
            got = reader.feed(piece)
    assert got == payload


@given(st.sampled_from(list(Type)), st.integers(1, 2**32 - 1), st.data())
@settings(max_examples=200)
def test_values_are_read_as_they_are_written(type: Type, number: int, data: Any) -> None:
    size = data.draw(st.integers(1, 20)) if type.is_array else 0
    element = float32 if "FLOAT" in type.name else st.integers(0, 255)
    element = int32 if type in (Type.INT, Type.INT_ARRAY) else element
    value = [data.draw(element) for _ in range(size)] if size else data.draw(element)
    dataref = Dataref("a", type, size)
    packet = velmar_wire.write(number, dataref, value)
    assert struct.unpack("<2I", packet.data[:8]) == (6, number)
    reply = struct.pack("<3I", 5, number, 1) + packet.data[8:]
    got = velmar_wire.read_replies(reply, [velmar_wire.read(number, dataref)])[0]
    assert (list(got) if isinstance(got, array) else got) == value
