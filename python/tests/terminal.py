"""A program at a terminal of its own."""

import fcntl
import os
import select
import signal
import struct
import subprocess
import termios
import time
from pathlib import Path
from typing import Callable, Mapping, Sequence

import pyte  # type: ignore[import]


class Terminal:
    """What a program has drawn, as rows of text. Closing it ends the program as Ctrl-C would."""

    def __init__(
        self,
        command: Sequence[str],
        folder: Path,
        environment: Mapping[str, str],
        columns: int = 110,
        rows: int = 60,
    ) -> None:
        self.screen = pyte.Screen(columns, rows)
        self._stream = pyte.ByteStream(self.screen)
        self._own_side, their_side = os.openpty()
        fcntl.ioctl(their_side, termios.TIOCSWINSZ, struct.pack("HHHH", rows, columns, 0, 0))
        self._program = subprocess.Popen(
            command,
            cwd=folder,
            env={**environment, "TERM": "xterm", "LC_ALL": "C.UTF-8"},
            stdin=their_side,
            stdout=their_side,
            stderr=their_side,
            start_new_session=True,
        )
        os.close(their_side)
        self._is_at_end = False

    @property
    def text(self) -> str:
        return "\n".join(row.rstrip() for row in self.screen.display).rstrip() + "\n"

    def wait_until(self, condition: Callable[[], bool], seconds: float) -> bool:
        """Draws what comes until the condition is true. False if it is not in that time, or when
        the program has ended."""
        deadline = time.monotonic() + seconds
        while not condition():
            left = deadline - time.monotonic()
            if left <= 0 or self._is_at_end:
                return False
            if select.select([self._own_side], [], [], min(left, 0.05))[0]:
                self._draw()
        return True

    def wait(self, seconds: float) -> int:
        """Draws all that comes and returns the program's exit status."""
        self.wait_until(lambda: self._is_at_end, seconds)
        return self._program.wait(timeout=max(seconds, 1))

    def close(self) -> int:
        if self._program.poll() is None:
            self._program.send_signal(signal.SIGINT)
        status = self.wait(10)
        os.close(self._own_side)
        return status

    def _draw(self) -> None:
        try:
            output = os.read(self._own_side, 65536)
        except OSError:  # how Linux reports that the other side is closed
            output = b""
        self._is_at_end = not output
        self._stream.feed(output)
