"""A client of XPlaneOrvane, the plugin that lets programs read and control the simulator.

`orvane.tarnel` declares inputs and outputs once and then exchanges values; it is for controls.
`orvane.velmar` reads and writes datarefs and runs commands by name; it is for everything else. Both
have a `Client`, whose calls block, and an `AsyncClient` for asyncio.
"""

from orvane.discovery import (
    LISTEN_TIME,
    HeardSimulator,
    SimulatorRole,
    discover,
    discover_async,
)
from orvane.errors import (
    CancelledError,
    ClosedError,
    ConnectError,
    Error,
    NotReleasedWarning,
    ProtocolError,
    Refused,
    TimeoutError,
)
from orvane.options import ANY_HOST, Backoff, OnLoss, OnStart

__version__ = "7.0.1"

__all__ = [
    "ANY_HOST",
    "Backoff",
    "CancelledError",
    "ClosedError",
    "ConnectError",
    "Error",
    "HeardSimulator",
    "LISTEN_TIME",
    "NotReleasedWarning",
    "OnLoss",
    "OnStart",
    "ProtocolError",
    "Refused",
    "SimulatorRole",
    "TimeoutError",
    "discover",
    "discover_async",
]
