"""What the server reports."""

from array import array
from typing import TYPE_CHECKING, Any, Iterator, Mapping, Optional, Tuple, Union

from orvane._core.arrays import array_from
from orvane.tarnel._layout import Layout

if TYPE_CHECKING:
    from numpy import ndarray

OutputValue = Union[int, float, bool, "array[int]", "array[float]"]


class Answer(Mapping[int, OutputValue]):
    """The values of all declared outputs by identifier, in the order of their declaration.

    They are from before the answered request was carried out. An int is an `int`, a
    float a `float`, a command a `bool`, an array an `array.array`. While no aircraft is loaded all
    of them are zero.
    """

    __slots__ = ("_layout", "_numbers", "_payload")

    def __init__(self, payload: bytes, layout: Layout) -> None:
        self._payload = payload
        self._layout = layout
        self._numbers: Optional[Tuple[Any, ...]] = None

    @property
    def aircraft_id(self) -> int:
        """A hash of the aircraft's description, or 0 while none is loaded."""
        return int.from_bytes(self._payload[-4:], "little")

    @property
    def is_aircraft_loaded(self) -> bool:
        return self.aircraft_id != 0

    def __getitem__(self, id: int) -> OutputValue:
        """KeyError: no output has this identifier."""
        place = self._layout.places[id]
        if place.is_array:
            return array_from(place.code, self._payload[place.offset : place.end])
        number: Union[int, float] = self._all_numbers()[place.index]
        return bool(number) if place.code == "B" else number

    def __iter__(self) -> Iterator[int]:
        return iter(self._layout.places)

    def __len__(self) -> int:
        return len(self._layout.places)

    def __repr__(self) -> str:
        return f"Answer({dict(self)!r}, aircraft_id=0x{self.aircraft_id:08X})"

    def numbers(self) -> Tuple[Any, ...]:
        """The values of all outputs but arrays, in order, at once: commands are 0 and 1."""
        return self._all_numbers()[:-1]

    def numpy(self) -> "ndarray[Any, Any]":
        """The answer as one structured value, without copying; needs numpy.

        Its fields have the names of the outputs, and "aircraft_id". Where several outputs have the
        same name, "#" and the identifier are appended to each.
        """
        import numpy

        return numpy.frombuffer(self._payload, self._layout.structure()).reshape(())

    def _all_numbers(self) -> Tuple[Any, ...]:
        if self._numbers is None:
            self._numbers = self._layout.struct.unpack(self._payload)
        return self._numbers
