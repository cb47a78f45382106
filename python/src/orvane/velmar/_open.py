"""Datarefs without a given type.

The server does not report types, and reading a dataref as a wrong type gives 0. So it is read as
each type, and the first type that gives something else is kept. A write as a wrong type is dropped.
"""

from array import array
from numbers import Real
from typing import Iterable, List, Optional, Sequence, Tuple, cast

from orvane._core.checks import INT32, check_float32
from orvane.velmar.values import Dataref, Type, Value, Writable

# The number of elements of a guessed array; missing ones are 0.
_ELEMENTS_LOOKED_AT = 64


def candidates(name: str) -> List[Dataref]:
    return [
        Dataref(name, Type.FLOAT),
        Dataref(name, Type.INT),
        Dataref(name, Type.FLOAT_ARRAY, _ELEMENTS_LOOKED_AT),
        Dataref(name, Type.INT_ARRAY, _ELEMENTS_LOOKED_AT),
    ]


def find_type(name: str, values: Sequence[Value]) -> Tuple[Optional[Dataref], Value]:
    """The type of a dataref, judging by its values as each candidate, if known, and its value."""
    for candidate, value in zip(candidates(name), values):
        if any(value) if isinstance(value, array) else value != 0:
            return candidate, value
    return None, values[0]


def ways_to_write(name: str, value: Writable) -> List[Tuple[Dataref, Writable]]:
    """How to write a value: as floats and, if all of it is whole, as ints."""
    what = f"the value for {name}"
    if isinstance(value, Real):
        check_float32(value, what)
        number = float(value)
        ways: List[Tuple[Dataref, Writable]] = [(Dataref(name, Type.FLOAT), number)]
        if _is_whole(number):
            ways.append((Dataref(name, Type.INT), int(number)))
        return ways
    for each in cast(Iterable[object], value):
        check_float32(each, what)
    numbers = [float(each) for each in cast(Iterable[float], value)]
    ways = [(Dataref(name, Type.FLOAT_ARRAY, len(numbers)), numbers)]
    if all(map(_is_whole, numbers)):
        ways.append((Dataref(name, Type.INT_ARRAY, len(numbers)), list(map(int, numbers))))
    return ways


def _is_whole(value: float) -> bool:
    return value.is_integer() and int(value) in INT32
