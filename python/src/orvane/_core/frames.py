"""Answers on the wire: a length, and that many bytes."""

import struct
from typing import List, Optional

_WORD = struct.Struct("<I")
_HEADER_SIZE = 4


class UnexpectedAnswer(Exception):
    """An answer that does not fit its request."""

    def __init__(self, expected: str, got: str) -> None:
        super().__init__(f"expected {expected}, got {got}")


def count_of_bytes(count: int) -> str:
    """ "1 byte" or "5 bytes"."""
    return f"{count} byte{'' if count == 1 else 's'}"


class FrameReader:
    """Assembles one answer from bytes as they arrive."""

    def __init__(self, most: int) -> None:
        self._most = most
        # Nearly always a single one, which is then not copied.
        self._pieces: List[bytes] = []
        self._count = 0
        self._size: Optional[int] = None

    def feed(self, data: bytes) -> Optional[bytes]:
        """The payload of the answer, once it is complete.

        UnexpectedAnswer: it is too long, or something follows it.
        """
        self._pieces.append(data)
        self._count += len(data)
        if self._size is None:
            if self._count < _HEADER_SIZE:
                return None
            self._size = _HEADER_SIZE + self._read_length()
        if self._count > self._size:
            raise UnexpectedAnswer("no bytes after the answer", "some")
        if self._count < self._size:
            return None
        return b"".join(self._pieces)[_HEADER_SIZE:]

    @property
    def expected(self) -> str:
        """What it waits for."""
        if self._size is None:
            return "the length of an answer"
        return f"an answer of {count_of_bytes(self._size - _HEADER_SIZE)}"

    @property
    def has_begun(self) -> bool:
        return self._count > 0

    @property
    def got(self) -> str:
        """How much of that has arrived."""
        return count_of_bytes(self._count - (_HEADER_SIZE if self._size is not None else 0))

    def _read_length(self) -> int:
        length: int = _WORD.unpack_from(b"".join(self._pieces))[0]
        if length > self._most:
            raise UnexpectedAnswer(
                f"an answer of at most {count_of_bytes(self._most)}", count_of_bytes(length)
            )
        return length


class ByteReader:
    """Takes values from an answer, little-endian. Reading past its end is an UnexpectedAnswer."""

    def __init__(self, data: bytes) -> None:
        self._bytes = data
        self._position = 0

    def take(self, count: int) -> bytes:
        end = self._position + count
        if end > len(self._bytes):
            raise UnexpectedAnswer(f"an answer of at least {end} bytes", str(len(self._bytes)))
        taken = self._bytes[self._position : end]
        self._position = end
        return taken

    def read_uint8(self) -> int:
        return self.take(1)[0]

    def read_uint32(self) -> int:
        value: int = _WORD.unpack(self.take(4))[0]
        return value

    def expect_uint32(self, value: int, what: str) -> None:
        """Reads a uint32 that must have this value."""
        position = self._position
        got = self.read_uint32()
        if got != value:
            size = len(self._bytes)
            raise UnexpectedAnswer(
                f"{what} {value} at byte {position} of an answer of {size}", str(got)
            )

    def expect_end(self) -> None:
        if self._position != len(self._bytes):
            raise UnexpectedAnswer(f"an answer of {self._position} bytes", str(len(self._bytes)))
