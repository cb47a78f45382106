"""What a client declares."""

from dataclasses import dataclass, field
from typing import FrozenSet, Sequence, Set

from orvane.tarnel.inputs import Input
from orvane.tarnel.outputs import Output, OutputType

# The server's buffers have 0x0FFFFFFF bytes; it ends the simulator's process when one is full.
_LARGEST_MESSAGE = 0x0FFFFFFB

_FRAME_SIZE = 4  # the length before an answer
_HEADER_SIZE = 24  # of a request without records
INPUT_SIZE = 488
OUTPUT_SIZE = 116
_AIRCRAFT_SIZE = 12


@dataclass(frozen=True)
class Definitions:
    """All that a client declares at once.

    The order is kept: inputs of one action are applied in it, and outputs reported in it.
    ValueError: two outputs have the same identifier, a command has two identifiers, or a message
    becomes longer than the server can hold (256 MiB).
    """

    inputs: Sequence[Input] = ()
    outputs: Sequence[Output] = ()

    actions: FrozenSet[int] = field(init=False, repr=False, compare=False)

    def __post_init__(self) -> None:
        object.__setattr__(self, "inputs", tuple(self.inputs))
        object.__setattr__(self, "outputs", tuple(self.outputs))
        object.__setattr__(self, "actions", frozenset(each.action for each in self.inputs))
        self._check_outputs()
        if self.request_size > _LARGEST_MESSAGE:
            raise ValueError("there are more inputs and outputs than the server can hold")
        if self.answer_size > _LARGEST_MESSAGE:
            raise ValueError("the answers become longer than the server can send")

    def declares(self, action: int) -> bool:
        return action in self.actions

    @property
    def request_size(self) -> int:
        """Bytes of the request, framing included.

        On a network keep it within one packet, 1400 bytes, or at least below 10 KB.
        """
        return _HEADER_SIZE + len(self.inputs) * INPUT_SIZE + len(self.outputs) * OUTPUT_SIZE

    @property
    def answer_size(self) -> int:
        """Bytes of an answer with an aircraft loaded, framing included.

        On a network keep it below 64 KB.
        """
        return _FRAME_SIZE + _AIRCRAFT_SIZE + sum(8 + each.value_size for each in self.outputs)

    def _check_outputs(self) -> None:
        ids: Set[int] = set()
        commands: Set[str] = set()
        for output in self.outputs:
            if output.id in ids:
                raise ValueError(f"two outputs have the identifier {output.id}")
            ids.add(output.id)
            if output.type is OutputType.COMMAND:
                if output.name in commands:
                    raise ValueError(f"the command {output.name} is reported twice")
                commands.add(output.name)
