"""How a client connects, waits and gives up."""

import enum
from dataclasses import dataclass, field
from typing import Callable, List, Optional

from orvane.errors import Error


ANY_HOST = "auto"
"""Instead of a host: the simulator that is heard on the network."""


class OnLoss(enum.Enum):
    """What a call does when the connection is lost."""

    THROW = "throw"
    """Raises, as does every later call until `reconnect` has made a new connection."""

    RECONNECT = "reconnect"
    """Reconnects by itself, as `reconnect` does, and repeats the declarations.

    A late answer still raises a TimeoutError; the next call then reconnects.
    """


class OnStart(enum.Enum):
    """What a new client does if it cannot connect."""

    THROW = "throw"
    """Raises a ConnectError or a TimeoutError at once."""

    WAIT = "wait"
    """Tries again, as `reconnect` does."""


@dataclass(frozen=True)
class Backoff:
    """How long to wait between two tries, in seconds.

    `first_delay`, then twice as long each time, up to `longest_delay`. After `within` it gives up
    with a ConnectError.
    """

    first_delay: float = 0.25
    longest_delay: float = 5.0
    within: float = 60.0


@dataclass(frozen=True)
class Options:
    """The arguments of every client. ValueError for a port or a timeout that cannot be."""

    host: str = "127.0.0.1"
    port: int = 48000
    timeout: float = 2.0
    on_loss: OnLoss = OnLoss.RECONNECT
    on_start: OnStart = OnStart.THROW
    backoff: Backoff = field(default_factory=Backoff)
    cancelled: Optional[Callable[[], bool]] = None
    release_held: bool = True
    release_within: float = 0.5

    def __post_init__(self) -> None:
        # The system takes a larger port modulo 65536.
        if self.port not in range(1, 65536):
            raise ValueError(f"a port of {self.port} is not between 1 and 65535")
        if not self.timeout > 0:
            raise ValueError(f"a timeout of {self.timeout} seconds is not above 0")


@dataclass
class Callbacks:
    """What a client calls during its own calls. A callback may not call its client."""

    connected: Optional[Callable[[], None]] = None
    disconnected: Optional[Callable[[Error], None]] = None
    not_released: Optional[Callable[[List[str], Error], None]] = None
