"""The process of the headless simulator and its console: a statement a line, a reply a line."""

import os
import selectors
import subprocess
import time
from pathlib import Path
from typing import IO, Optional, Sequence

# Seconds. Only a very busy machine takes that long.
_TIMEOUT = 60.0


class SimulatorError(Exception):
    """The simulator could not be started, refused a statement, or has ended."""


class ExpectationFailed(SimulatorError, AssertionError):
    """An `expect` or another statement that checks something found it otherwise."""


class Console:
    """A running `headless-sim --console --paused`, in its folder."""

    def __init__(self, command: Sequence[str], folder: Path) -> None:
        """SimulatorError: it does not start. Its messages are in its output."""
        self._output = folder / "headless-sim.txt"
        self._unread = b""
        with self._output.open("wb") as output:
            try:
                self._process = subprocess.Popen(
                    [*command, "--console", "--paused"],
                    cwd=folder,
                    stdin=subprocess.PIPE,
                    stdout=subprocess.PIPE,
                    stderr=output,
                )
            except OSError as error:
                raise SimulatorError(f"{command[0]}: {error.strerror}") from None
        try:
            self.ask("frames")
        except BaseException:
            self.kill()
            raise

    @property
    def has_ended(self) -> bool:
        return self._process.poll() is not None

    def ask(self, line: str) -> str:
        """One statement and its reply.

        ExpectationFailed: it is one that checks, and it is not so.
        SimulatorError: it is refused, or the simulator has ended.
        """
        assert self._process.stdin is not None
        try:
            self._process.stdin.write(line.encode() + b"\n")
            self._process.stdin.flush()
        except OSError:
            raise self._ended() from None
        reply = self._read_line()
        if reply.startswith("error: expected "):
            raise ExpectationFailed(reply[7:])
        if reply.startswith("error: "):
            raise SimulatorError(f"{line}: {reply[7:]}")
        return reply

    def quit(self) -> None:
        """Ends the simulator as its user would."""
        if not self.has_ended:
            assert self._process.stdin is not None
            try:
                self._process.stdin.write(b"quit\n")
                self._process.stdin.flush()
                self._process.wait(_TIMEOUT)
            except (OSError, subprocess.TimeoutExpired):
                pass
        self.kill()

    def kill(self) -> None:
        """Ends it at once, if it has not ended yet."""
        self._process.kill()
        self._process.wait()
        for pipe in (self._process.stdin, self._process.stdout):
            _close(pipe)

    def _read_line(self) -> str:
        deadline = time.monotonic() + _TIMEOUT
        while b"\n" not in self._unread:
            self._read_more(deadline)
        line, _, self._unread = self._unread.partition(b"\n")
        return line.decode(errors="replace")

    def _read_more(self, deadline: float) -> None:
        assert self._process.stdout is not None
        with selectors.DefaultSelector() as selector:
            selector.register(self._process.stdout, selectors.EVENT_READ)
            if not selector.select(deadline - time.monotonic()):
                raise SimulatorError(f"the simulator has not answered for {_TIMEOUT:g} seconds")
        more = os.read(self._process.stdout.fileno(), 65536)
        if not more:
            raise self._ended()
        self._unread += more

    def _ended(self) -> SimulatorError:
        self._process.wait(_TIMEOUT)
        said = self._output.read_text(errors="replace").strip() or "nothing"
        return SimulatorError(
            f"the simulator has ended with status {self._process.returncode} and said: {said}"
        )


def _close(pipe: Optional[IO[bytes]]) -> None:
    if pipe is not None:
        try:
            pipe.close()
        except OSError:  # drops what was not written yet
            pass
