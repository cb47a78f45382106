"""Arrays on the wire: little-endian 32-bit ints and floats."""

import sys
from array import array
from typing import Any, Iterable


def array_from(code: str, data: bytes) -> "array[Any]":
    """An array of "i" or "f"."""
    return _swapped(array(code, data))


def bytes_of(code: str, values: Iterable[Any]) -> bytes:
    """ValueError: a value does not fit."""
    try:
        return _swapped(array(code, values)).tobytes()
    except (OverflowError, TypeError) as error:
        raise ValueError(
            f"not an array of 32-bit {'ints' if code == 'i' else 'floats'}: {error}"
        ) from None


def _swapped(values: "array[Any]") -> "array[Any]":
    if sys.byteorder == "big":
        values.byteswap()
    return values
