"""A client of XPlaneOrvane, the plugin that lets programs read and control the simulator.

`orvane.tarnel` declares inputs and outputs once and then exchanges values; it is for controls.
`orvane.velmar` reads and writes datarefs and runs commands by name; it is for everything else. Both
have a `Client`, whose calls block, and an `AsyncClient` for asyncio.
"""

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
from orvane.options import Backoff, OnLoss, OnStart

__version__ = "7.0.1"

__all__ = [
    "Backoff",
    "CancelledError",
    "ClosedError",
    "ConnectError",
    "Error",
    "NotReleasedWarning",
    "OnLoss",
    "OnStart",
    "ProtocolError",
    "Refused",
    "TimeoutError",
]
