"""What the core asks of whoever does its input and output.

A plan is a generator. It yields steps, one at a time, and gets the result of each: bytes for those
that have some. A step that fails is thrown into the plan: as an OSError of the network, as `Late`,
as `Cancelled`, or as whatever interrupts the program. The plan may then yield further steps, to
clean up. All times are those of `time.monotonic`, in seconds.
"""

from typing import Generator, NamedTuple, Optional, TypeVar, Union

T = TypeVar("T")


class Late(Exception):
    """The deadline of a step is over."""


class Cancelled(Exception):
    """The client's `cancelled` has said so."""


class NoSuchHost(OSError):
    """There is no host of this name."""


class Limit(NamedTuple):
    """Until when a step may take, and whether `cancelled` ends it."""

    deadline: float
    is_cancellable: bool = True


class Connect(NamedTuple):
    """Makes a connection; there is none."""

    host: str
    port: int
    limit: Limit


class Send(NamedTuple):
    """Sends all the bytes, in one call as far as the system takes them."""

    data: bytes
    limit: Limit


class Receive(NamedTuple):
    """Waits for bytes. No bytes mean the end of the connection."""

    limit: Limit


class Look(NamedTuple):
    """What has arrived without being asked for: None if nothing has, no bytes if the end has."""


class Wait(NamedTuple):
    """Waits until the deadline, which is not a failure."""

    limit: Limit


class Close(NamedTuple):
    """Closes the connection, if there is one."""


Step = Union[Connect, Send, Receive, Look, Wait, Close]
Plan = Generator[Step, Optional[bytes], T]
