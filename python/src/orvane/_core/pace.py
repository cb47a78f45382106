"""A steady rate."""

import time


class Pace:
    """Times that are 1 / `rate` seconds apart, the first one now.

    Missed times are skipped, not made up.
    """

    def __init__(self, rate: float) -> None:
        if not rate > 0:
            raise ValueError(f"a rate of {rate} per second is not above 0")
        self._interval = 1.0 / rate
        self.due = time.monotonic()

    def advance(self) -> None:
        """Moves on to the next time."""
        self.due = max(self.due + self._interval, time.monotonic())
