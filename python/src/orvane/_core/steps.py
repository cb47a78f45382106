"""The I/O steps that the core asks for.

A plan is a generator. It yields steps, one at a time, and gets the result of each, if any, as
bytes. A failed step is thrown into the plan: as an OSError of the network, as `Late`, as
`Cancelled`, or as whatever interrupts the program. The plan may then yield further steps to clean
up. All times are those of `time.monotonic`, in seconds.
"""

from typing import Generator, NamedTuple, Optional, TypeVar, Union

T = TypeVar("T")


class Late(Exception):
    """The deadline of a step is over."""


class Cancelled(Exception):
    """The client's `cancelled` has returned True."""


class NoSuchHost(OSError):
    """There is no host of this name."""


class Limit(NamedTuple):
    """The deadline of a step, and whether `cancelled` ends it."""

    deadline: float
    is_cancellable: bool = True


class Connect(NamedTuple):
    """Makes a connection. There must be none."""

    host: str
    port: int
    limit: Limit


class Send(NamedTuple):
    """Sends all the bytes, if possible in one call."""

    data: bytes
    limit: Limit


class Receive(NamedTuple):
    """Waits for bytes. No bytes mean the end of the connection."""

    limit: Limit


class Look(NamedTuple):
    """Returns what has arrived unasked: None if nothing, no bytes at the end of the connection."""


class Wait(NamedTuple):
    """Waits until the deadline, which is not an error."""

    limit: Limit


class Close(NamedTuple):
    """Closes the connection, if there is one."""


class Hear(NamedTuple):
    """Waits for a datagram that is sent to this IPv4 group, on any network interface.

    Returns the sender's address, four bytes, and the datagram, or nothing. Datagrams are kept from
    the first of these steps on until `StopHearing`.
    """

    group: str
    port: int
    limit: Limit


class StopHearing(NamedTuple):
    """Drops the datagrams, and receives no more."""


Step = Union[Connect, Send, Receive, Look, Wait, Close, Hear, StopHearing]
Plan = Generator[Step, Optional[bytes], T]
