"""A rate that is kept."""

import time

from orvane._core.steps import Cancelled, Limit, Plan, Wait
from orvane.errors import CancelledError


class Pace:
    """Times that are 1 / `rate` seconds apart, the first one now.

    A time that is missed is left out, so that nothing is caught up with.
    """

    def __init__(self, rate: float) -> None:
        if not rate > 0:
            raise ValueError(f"a rate of {rate} per second is not above 0")
        self._interval = 1.0 / rate
        self._next = time.monotonic()

    def wait(self) -> Plan[None]:
        """Waits for the next time. CancelledError."""
        try:
            yield Wait(Limit(self._next))
        except Cancelled:
            raise CancelledError("waiting for the next reading: was cancelled") from None
        self._next = max(self._next + self._interval, time.monotonic())
