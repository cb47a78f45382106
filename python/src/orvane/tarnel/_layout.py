"""Where the values are in the answers to some definitions."""

import struct
from collections import Counter
from dataclasses import dataclass
from typing import TYPE_CHECKING, Any, Dict, List, Optional, Sequence, Tuple

from orvane._core.frames import ByteReader, UnexpectedAnswer
from orvane.tarnel.outputs import AIRCRAFT_ID, Output, OutputType

if TYPE_CHECKING:
    from numpy import dtype

_CODES = {
    OutputType.INT: "i",
    OutputType.FLOAT: "f",
    OutputType.INT_ARRAY: "i",
    OutputType.FLOAT_ARRAY: "f",
    OutputType.COMMAND: "B",
}
_DTYPES = {"i": "<i4", "f": "<f4", "B": "?"}
_WORD_SIZE = 4


@dataclass(frozen=True)
class Place:
    """A value in an answer: a number by its index among the numbers, an array by its bytes."""

    offset: int
    end: int
    index: int
    code: str
    is_array: bool


class Layout:
    """One shape of an answer: with an aircraft, or without, when commands have longer entries.

    Everything but the values is known beforehand, and is compared at once, as one number.
    """

    def __init__(self, outputs: Sequence[Output], has_aircraft: bool) -> None:
        self.places: Dict[int, Place] = {}
        self._outputs = outputs
        self._has_aircraft = has_aircraft
        self._structure: "Optional[dtype[Any]]" = None
        known = bytearray()
        mask = bytearray()
        formats: List[str] = []
        numbers = 0
        for output in outputs:
            head = _words(*self._ids(output), output.value_size)
            size = output.value_size
            end = len(known) + len(head) + size
            code = _CODES[output.type]
            self.places[output.id] = Place(end - size, end, numbers, code, output.is_array)
            numbers += not output.is_array
            known += head + bytes(size)
            # The state of a command is 0 or 1.
            is_command = output.type is OutputType.COMMAND
            mask += b"\xff" * len(head) + (b"\xfe" if is_command else bytes(size))
            formats.append(f"{len(head)}x{size}x" if output.is_array else f"{len(head)}x{code}")
        head = _words(AIRCRAFT_ID, _WORD_SIZE)
        known += head + bytes(_WORD_SIZE)
        mask += b"\xff" * len(head) + bytes(_WORD_SIZE)
        formats.append(f"{len(head)}xI")
        self.struct = struct.Struct("<" + "".join(formats))
        self._known = int.from_bytes(known, "little")
        self._mask = int.from_bytes(mask, "little")

    def __reduce__(self) -> "Tuple[type[Layout], Tuple[Sequence[Output], bool]]":
        return Layout, (self._outputs, self._has_aircraft)

    @property
    def size(self) -> int:
        return self.struct.size

    def check(self, payload: bytes) -> None:
        """UnexpectedAnswer: a payload of this size has other identifiers or lengths."""
        if int.from_bytes(payload, "little") & self._mask != self._known:
            self._explain(payload)

    def structure(self) -> "dtype[Any]":
        """The structure for numpy. Needs numpy."""
        if self._structure is None:
            self._structure = self._make_structure()
        return self._structure

    def _ids(self, output: Output) -> List[int]:
        is_doubled = output.type is OutputType.COMMAND and not self._has_aircraft
        return [output.id, output.id] if is_doubled else [output.id]

    def _explain(self, payload: bytes) -> None:
        reader = ByteReader(payload)
        for output in self._outputs:
            for id in self._ids(output):
                reader.expect_uint32(id, "the entry of output")
            reader.expect_uint32(output.value_size, "a value of length")
            value = reader.take(output.value_size)
            if output.type is OutputType.COMMAND and value[0] > 1:
                raise UnexpectedAnswer("a command's state of 0 or 1", str(value[0]))
        reader.expect_uint32(AIRCRAFT_ID, "the entry of the aircraft,")
        reader.expect_uint32(_WORD_SIZE, "an aircraft's id of length")

    def _make_structure(self) -> "dtype[Any]":
        import numpy

        counts = Counter(output.name for output in self._outputs)
        names = ["aircraft_id"]
        formats: List[Any] = ["<u4"]
        offsets = [self.size - _WORD_SIZE]
        for output in self._outputs:
            place = self.places[output.id]
            names.append(output.name if counts[output.name] == 1 else f"{output.name}#{output.id}")
            kind = _DTYPES[place.code]
            formats.append((kind, (output.count,)) if output.is_array else kind)
            offsets.append(place.offset)
        return numpy.dtype(
            {"names": names, "formats": formats, "offsets": offsets, "itemsize": self.size}
        )


class Layouts:
    """Both shapes; the size of an answer shows which one it has."""

    def __init__(self, outputs: Sequence[Output]) -> None:
        self._with = Layout(outputs, has_aircraft=True)
        self._without = Layout(outputs, has_aircraft=False)

    @property
    def longest(self) -> int:
        return self._without.size

    def of(self, payload: bytes) -> Layout:
        """The shape of this answer. UnexpectedAnswer: it has neither."""
        layout = self._with if len(payload) == self._with.size else self._without
        if len(payload) != layout.size:
            raise UnexpectedAnswer(f"an answer of {self._sizes()} bytes", str(len(payload)))
        layout.check(payload)
        return layout

    def _sizes(self) -> str:
        if self._with.size == self._without.size:
            return str(self._with.size)
        return f"{self._with.size} or, without an aircraft, {self._without.size}"


def _words(*numbers: int) -> bytes:
    return struct.pack(f"<{len(numbers)}I", *numbers)
