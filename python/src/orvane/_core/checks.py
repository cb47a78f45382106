"""A ValueError before anything is sent that the server would silently misread."""

from numbers import Integral, Real

INT32 = range(-(2**31), 2**31)
UINT32 = range(2**32)
# Half a step above the largest 32-bit float.
_TOO_LARGE = (2.0 - 2.0**-24) * 2.0**127


def check_name(name: str, longest: int) -> None:
    if not name:
        raise ValueError("a name is empty")
    size = len(name.encode())
    if size > longest:
        raise ValueError(f"the name {name} has {size} bytes; at most {longest} are allowed")
    if "\0" in name:
        raise ValueError(f"the name {name[: name.index(chr(0))]} contains a zero byte")


def check_int32(value: object, what: str) -> None:
    if not isinstance(value, Integral) or int(value) not in INT32:
        raise ValueError(f"{what} is {value!r}, which is not a 32-bit int")


def check_float32(value: object, what: str) -> None:
    """Infinities and NaN are floats, too."""
    if not isinstance(value, Real):
        raise ValueError(f"{what} is {value!r}, which is not a number")
    try:
        size = abs(float(value))
    except OverflowError:
        size = _TOO_LARGE
    if _TOO_LARGE <= size != float("inf"):
        raise ValueError(f"{what} is {value!r}, which is too large for a 32-bit float")
