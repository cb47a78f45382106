"""A rate that is kept."""

import time


class Pace:
    """Times that are 1 / `rate` seconds apart, the first one now.

    A time that is missed is left out, so that nothing is caught up with.
    """

    def __init__(self, rate: float) -> None:
        if not rate > 0:
            raise ValueError(f"a rate of {rate} per second is not above 0")
        self._interval = 1.0 / rate
        self.due = time.monotonic()

    def advance(self) -> None:
        """The time that was due is over."""
        self.due = max(self.due + self._interval, time.monotonic())
