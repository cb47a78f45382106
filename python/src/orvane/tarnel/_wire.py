"""The requests of the protocol, whole; docs/tarnel.md has the layouts."""

import struct
from dataclasses import dataclass
from typing import Iterable, Tuple

from orvane._core.frames import ByteReader
from orvane.tarnel.definitions import INPUT_SIZE, OUTPUT_SIZE, Definitions
from orvane.tarnel.inputs import ConditionType, Input, is_float, range_names, repeat_ms
from orvane.tarnel.outputs import Output

_IDENTIFICATION = 0x44332211
_VERSION = 0xB5006BB1
_DEFINITIONS = 0xDDEEFFC0
_DATA = 0xEFBEADDE
_ITEM_SIZE = 8

_MESSAGE = struct.Struct("<2I")
_COUNTS = struct.Struct("<6I")
_INPUT = struct.Struct("<13i3f4i100s100s100s100s2i")
_OUTPUT = struct.Struct("<I100s3i")
_DATA_HEADER = struct.Struct("<4I")

VERSION_ANSWER_SIZE = 12


@dataclass(frozen=True)
class Version:
    """Of the server's protocol: 1.0.7.10 and 6 for the servers known today."""

    parts: Tuple[int, int, int, int]
    revision: int


def version_request() -> bytes:
    return _MESSAGE.pack(_IDENTIFICATION, _VERSION)


def read_version(payload: bytes) -> Version:
    reader = ByteReader(payload)
    reader.expect_uint32(_VERSION, "the message")
    first, second, third, fourth = reader.take(4)
    version = Version((first, second, third, fourth), reader.read_uint32())
    reader.expect_end()
    return version


def definitions_request(definitions: Definitions) -> bytes:
    head = _COUNTS.pack(
        _IDENTIFICATION,
        _DEFINITIONS,
        INPUT_SIZE,
        len(definitions.inputs),
        OUTPUT_SIZE,
        len(definitions.outputs),
    )
    return b"".join(
        [
            head,
            *(_input_record(input) for input in definitions.inputs),
            *(_output_record(output) for output in definitions.outputs),
        ]
    )


def data_request(items: Iterable[Tuple[int, int]]) -> bytes:
    """ValueError: a value is not a 32-bit int."""
    words = [word for item in items for word in item]
    count = len(words) // 2
    head = _DATA_HEADER.pack(_IDENTIFICATION, _DATA, _ITEM_SIZE, count)
    try:
        return head + struct.pack(f"<{len(words)}i", *words)
    except struct.error:
        raise ValueError("a value that is sent is not a 32-bit int") from None


def _input_record(input: Input) -> bytes:
    int_minimum, int_maximum = input.scaled_by_int_range or (0, 0)
    float_minimum, float_maximum = input.scaled_by_float_range or (0.0, 0.0)
    range_minimum, range_maximum = range_names(input) or ("", "")
    scaling, range_type, range_element = _scaling(input)
    condition, name, type, element = _condition(input)
    fixed = 0 if input.fixed is None else input.fixed
    return _INPUT.pack(
        input.action,
        0,
        0,
        input.element,
        0 if is_float(input) else int(fixed),
        repeat_ms(input),
        int_minimum,
        int_maximum,
        input.type,
        scaling,
        range_type,
        range_element,
        condition,
        fixed if is_float(input) else 0.0,
        float_minimum,
        float_maximum,
        input.fixed is not None,
        input.held,
        0,
        0,
        range_minimum.encode(),
        range_maximum.encode(),
        input.target.encode(),
        name.encode(),
        type,
        element,
    )


def _scaling(input: Input) -> Tuple[int, int, int]:
    """The mode, and the type and the element of the range datarefs."""
    if input.scaled_by_int_range is not None:
        return 1, 0, 0
    if input.scaled_by_float_range is not None:
        return 2, 0, 0
    if input.scaled_by_datarefs is not None:
        return 3, ConditionType.FLOAT, 0
    if input.scaled_by_dataref_elements is not None:
        return 3, ConditionType.FLOAT_ELEMENT, input.scaled_by_dataref_elements[2]
    return 0, 0, 0


def _condition(input: Input) -> Tuple[int, str, int, int]:
    """The code, and the name, the type and the element of the condition dataref."""
    if input.skipped_when_one:
        return 1, "", 0, 0
    if input.skipped_when_zero:
        return 2, "", 0, 0
    for code, dataref in ((3, input.skipped_while_positive), (4, input.skipped_while_zero)):
        if dataref is not None:
            return code, dataref.name, dataref.type, dataref.element
    return 0, "", 0, 0


def _output_record(output: Output) -> bytes:
    return _OUTPUT.pack(
        output.id, output.name.encode(), output.type, output.first_element, output.count
    )
