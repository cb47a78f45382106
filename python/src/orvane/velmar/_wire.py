"""The packets of the protocol and the replies to them; docs/velmar.md has the layouts."""

import struct
from dataclasses import dataclass
from typing import Any, Callable, Generic, List, Tuple, TypeVar

from orvane._core.arrays import array_from, bytes_of
from orvane._core.checks import check_float32, check_int32
from orvane._core.frames import ByteReader, UnexpectedAnswer
from orvane.velmar.values import Action, CommandState, Dataref, Type, Value, Writable

T = TypeVar("T")

IDENTIFICATION = struct.pack("<I", 0x88776655)

_REGISTER_DATAREF = 1
_UNREGISTER_DATAREF = 2
_REGISTER_COMMAND = 3
_UNREGISTER_COMMAND = 4
_READ = 5
_WRITE = 6
_RUN = 7
_POLL = 8

_SUCCESS = 1
_FAILURE = 2
# What a failure is about.
_DATAREF = 1
_COMMAND = 2

_WORD = 4
# Of a reply without a value.
_LONGEST_REPLY = 16
# The server ends its process if fewer bytes than the number, the length and eight characters follow
# the type of a command's registration. It skips zeros.
_SHORTEST_SAFE_NAME = 8
_PADDING = bytes(8)


@dataclass(frozen=True)
class Packet(Generic[T]):
    """A packet, the largest size of its reply, and how to read that.

    `read` raises UnexpectedAnswer for anything else.
    """

    data: bytes
    longest_reply: int
    read: Callable[[ByteReader], T]


def register_dataref(number: int, dataref: Dataref) -> Packet[bool]:
    """Replied: whether the simulator has it."""
    size = dataref.size if dataref.type.is_array else 0
    data = _words(_REGISTER_DATAREF, number, dataref.type, size) + _name(dataref.name)
    return Packet(data, _LONGEST_REPLY, _status_reader(_REGISTER_DATAREF, number, _DATAREF))


def unregister_dataref(number: int) -> Packet[bool]:
    data = _words(_UNREGISTER_DATAREF, number)
    return Packet(data, _LONGEST_REPLY, _status_reader(_UNREGISTER_DATAREF, number, _DATAREF))


def register_command(number: int, name: str) -> Packet[bool]:
    """Replied: whether the simulator has it."""
    data = _words(_REGISTER_COMMAND, number) + _name(name)
    if len(name.encode()) < _SHORTEST_SAFE_NAME:
        data += _PADDING
    return Packet(data, _LONGEST_REPLY, _status_reader(_REGISTER_COMMAND, number, _COMMAND))


def unregister_command(number: int) -> Packet[bool]:
    """Replied: whether there was one."""
    data = _words(_UNREGISTER_COMMAND, number)
    return Packet(data, _LONGEST_REPLY, _status_reader(_UNREGISTER_COMMAND, number, _COMMAND))


def read(number: int, dataref: Dataref) -> Packet[Value]:
    """Replied: the value."""

    def read_reply(reader: ByteReader) -> Value:
        _expect_success(reader, _READ, number)
        reader.expect_uint32(dataref.value_size, "a value of length")
        return _decode(dataref, reader.take(dataref.value_size))

    return Packet(_words(_READ, number), 4 * _WORD + dataref.value_size, read_reply)


def write(number: int, dataref: Dataref, value: Writable) -> Packet[None]:
    """ValueError: the dataref cannot take the value."""
    data = _words(_WRITE, number, dataref.value_size) + _encode(dataref, value)

    def read_reply(reader: ByteReader) -> None:
        _expect_success(reader, _WRITE, number)

    return Packet(data, _LONGEST_REPLY, read_reply)


def run(number: int, action: Action) -> Packet[None]:
    return Packet(_words(_RUN, number) + bytes([action]), 0, lambda reader: None)


def poll(commands: int) -> Packet[List[Tuple[int, CommandState]]]:
    """Polls this many commands. Replied: the numbers of those that were pressed."""

    def read_reply(reader: ByteReader) -> List[Tuple[int, CommandState]]:
        count = reader.read_uint32()
        return [(reader.read_uint32(), _state(reader.read_uint8())) for _ in range(count)]

    return Packet(_words(_POLL), _WORD + commands * (_WORD + 1), read_reply)


def request_of(packets: "List[Packet[Any]]") -> bytes:
    """A whole request, with the identification."""
    return IDENTIFICATION + b"".join(packet.data for packet in packets)


def read_replies(payload: bytes, packets: "List[Packet[T]]") -> List[T]:
    """The replies to the packets. UnexpectedAnswer."""
    reader = ByteReader(payload)
    replies = [packet.read(reader) for packet in packets]
    reader.expect_end()
    return replies


def _words(*numbers: int) -> bytes:
    return struct.pack(f"<{len(numbers)}I", *numbers)


def _name(name: str) -> bytes:
    encoded = name.encode()
    return bytes([len(encoded)]) + encoded


def _expect_head(reader: ByteReader, type: int, number: int) -> None:
    reader.expect_uint32(type, "a reply of type")
    reader.expect_uint32(number, "the reply to number")


def _expect_success(reader: ByteReader, type: int, number: int) -> None:
    _expect_head(reader, type, number)
    reader.expect_uint32(_SUCCESS, "the status")


def _status_reader(type: int, number: int, kind: int) -> Callable[[ByteReader], bool]:
    def read_reply(reader: ByteReader) -> bool:
        _expect_head(reader, type, number)
        status = reader.read_uint32()
        if status == _SUCCESS:
            return True
        if status != _FAILURE:
            raise UnexpectedAnswer("a status of 1 or 2", str(status))
        reader.expect_uint32(kind, "a failure of kind")
        return False

    return read_reply


def _state(byte: int) -> CommandState:
    try:
        return CommandState(byte)
    except ValueError:
        raise UnexpectedAnswer("a command's state of 0 to 2", str(byte)) from None


def _decode(dataref: Dataref, data: bytes) -> Value:
    code = _code(dataref.type)
    if dataref.type.is_array:
        return array_from(code, data)
    value: Value = struct.unpack(f"<{code}", data)[0]
    return value


def _code(type: Type) -> str:
    """The code of its numbers in `struct` and `array`."""
    if type is Type.BYTE:
        return "B"
    return "i" if type in (Type.INT, Type.INT_ARRAY) else "f"


def _encode(dataref: Dataref, value: Writable) -> bytes:
    code = _code(dataref.type)
    what = f"the value for {dataref.name}"
    if not dataref.type.is_array:
        _check_number(dataref.type, value, what)
        return struct.pack(f"<{code}", value)
    if isinstance(value, (int, float)) or len(value) != dataref.size:
        raise ValueError(f"{what} is not {dataref.size} numbers")
    for each in value:
        _check_number(dataref.type, each, what)
    return bytes_of(code, value)


def _check_number(type: Type, value: object, what: str) -> None:
    if type in (Type.FLOAT, Type.FLOAT_ARRAY):
        check_float32(value, what)
    else:
        check_int32(value, what)
        if type is Type.BYTE and value not in range(256):
            raise ValueError(f"{what} is {value!r}, which is not a byte")
