"""A simulator as a test sees it."""

import os
import shutil
import tempfile
import time
from dataclasses import dataclass
from pathlib import Path
from typing import Callable, Iterable, List, Mapping, Optional, Sequence, TypeVar, Union

from orvane.testing.console import Console, SimulatorError
from orvane.testing.network import require_free_port

S = TypeVar("S", bound="Simulator")

Reading = Union[float, List[float], str]

_HEADLESS_SIM = "ORVANE_HEADLESS_SIM"
_PLUGIN = "ORVANE_PLUGIN"


@dataclass(frozen=True)
class Phases:
    """How often a command was begun and ended since the simulator started."""

    begun: int
    ended: int


class Simulator:
    """A `headless-sim` with the plugin in it, in a new folder that is deleted at the end.

    It stands still until it is told to `fly` or `step`. A client waits for its answers, so a test
    whose client is in the same thread lets it fly.
    """

    def __init__(
        self,
        headless_sim: Union[str, "os.PathLike[str]", None] = None,
        plugin: Union[str, "os.PathLike[str]", None] = None,
        *,
        hz: float = 60.0,
        datarefs: Optional[Mapping[str, str]] = None,
        commands: Iterable[str] = (),
        arguments: Sequence[str] = (),
    ) -> None:
        """Does not start it yet.

        headless_sim, plugin: the program and the lin.xpl; by default from the environment variables
            ORVANE_HEADLESS_SIM and ORVANE_PLUGIN, else the `headless-sim` in the PATH.
        hz: frames per second while it flies.
        datarefs: further datarefs, by name: "int", "float", "int[8]" ...; all are 0 and writable.
        commands: further commands.
        arguments: further arguments of headless-sim.
        """
        self._headless_sim = _find(headless_sim, _HEADLESS_SIM, "headless-sim")
        self._plugin = _find(plugin, _PLUGIN, "lin.xpl")
        self._hz = hz
        self._datarefs = dict(datarefs or {})
        self._commands = list(commands)
        self._arguments = list(arguments)
        self._console: Optional[Console] = None
        self._is_flying = False
        self.folder = Path()

    # Its life ------------------------------------------------------------------------------------

    def start(self) -> None:
        """SimulatorError: it does not start, or the plugin's port is taken."""
        self.folder = Path(tempfile.mkdtemp(prefix="orvane-"))
        try:
            self._fill_folder()
            self._launch()
        except BaseException:
            self._delete_folder()
            raise

    def stop(self) -> None:
        """Ends it normally, and deletes its folder."""
        if self._console is not None:
            self._console.quit()
            self._console = None
        self._delete_folder()

    def restart(self) -> None:
        """Ends and starts it in the same folder. It flies if it did before."""
        was_flying = self._is_flying
        self._running.quit()
        self._launch()
        if was_flying:
            self.fly()

    def kill(self) -> None:
        """Ends it as a crash would. `restart` starts it again."""
        self._running.kill()

    def __enter__(self: S) -> S:
        self.start()
        return self

    def __exit__(self, *error: object) -> None:
        self.stop()

    # Time ----------------------------------------------------------------------------------------

    def fly(self) -> None:
        """Frames run by themselves."""
        self.ask("run")
        self._is_flying = True

    def pause(self) -> None:
        """No frames run, and no client is answered."""
        self.ask("pause")
        self._is_flying = False

    def step(self, frames: int = 1) -> None:
        """Runs this many frames while it stands still."""
        self.ask(f"step {frames}")

    def wait_until(self, condition: Callable[[], bool], seconds: float = 10.0) -> None:
        """Lets frames pass until the condition is true. AssertionError: not within that time."""
        deadline = time.monotonic() + seconds
        while not condition():
            if time.monotonic() > deadline:
                raise AssertionError(f"not so after {seconds:g} seconds")
            if self._is_flying:
                time.sleep(1 / self._hz)
            else:
                self.step()

    # State ---------------------------------------------------------------------------------------

    def get(self, dataref: str) -> Reading:
        """A number, a list of numbers, or text."""
        text = self.ask(f"get {dataref}").partition(" = ")[2]
        try:
            numbers = [float(word) for word in text.split(",")]
        except ValueError:
            return text
        return numbers if len(numbers) > 1 else numbers[0]

    def set(self, dataref: str, value: Union[float, Sequence[float], str]) -> None:
        """Sets it as the simulator itself would, even where plugins may not."""
        if isinstance(value, (int, float)):
            text = _text(value)
        else:
            text = _quoted(value) if isinstance(value, str) else ",".join(map(_text, value))
        self.ask(f"set {dataref} {text}")

    def press(self, command: str) -> None:
        self.ask(f"press {command}")

    def begin(self, command: str) -> None:
        self.ask(f"begin {command}")

    def end(self, command: str) -> None:
        self.ask(f"end {command}")

    def phases(self, command: str) -> Phases:
        words = self.ask(f"events {command}").split()
        counts = {key: int(count) for key, _, count in (word.partition("=") for word in words[1:])}
        return Phases(counts["begin"], counts["end"])

    def load_aircraft(self, description: str) -> None:
        self.ask(f"aircraft load {_quoted(description)}")

    def unload_aircraft(self) -> None:
        self.ask("aircraft unload")

    @property
    def log(self) -> List[str]:
        """Its log lines so far."""
        return (self.folder / "Log.txt").read_text(errors="replace").splitlines()

    def play(self, statements: str) -> None:
        """Carries out the statements of a scenario, one per line. `#` begins a comment.

        ExpectationFailed: something is not as the scenario expects it, which ends it.
        SimulatorError: a statement is refused, or the simulator has ended.
        """
        for line in statements.splitlines():
            if line.strip():
                self.ask(line.strip())

    def ask(self, statement: str) -> str:
        """Sends one statement to the simulator's console, and returns its reply.

        ExpectationFailed: it is one that checks, and it is not so.
        SimulatorError: it is refused, or the simulator has ended.
        """
        return self._running.ask(statement)

    @property
    def _running(self) -> Console:
        if self._console is None:
            raise SimulatorError("the simulator is not started")
        return self._console

    def _fill_folder(self) -> None:
        (self.folder / "Resources" / "plugins").mkdir(parents=True)
        rows = [f"{name}\t{type}\ty\t\t" for name, type in self._datarefs.items()]
        (self.folder / "DataRefs.txt").write_text("\n".join(rows) + "\n")
        (self.folder / "Commands.txt").write_text("".join(f"{n}\t\n" for n in self._commands))

    def _delete_folder(self) -> None:
        # Without one of its own, it is the folder that the tests run in.
        if self.folder != Path():
            shutil.rmtree(self.folder, ignore_errors=True)

    def _launch(self) -> None:
        require_free_port()
        command = [self._headless_sim, self._plugin, "--hz", str(self._hz)]
        command += ["--datarefs", "DataRefs.txt", "--commands", "Commands.txt", *self._arguments]
        self._console = Console(command, self.folder)
        self._is_flying = False


def _find(given: Union[str, "os.PathLike[str]", None], variable: str, what: str) -> str:
    path = os.fspath(given) if given is not None else os.environ.get(variable, "")
    if not path and variable == _HEADLESS_SIM:
        path = shutil.which(what) or ""
    if not path:
        raise SimulatorError(f"there is no {what}: give its path, or set {variable}")
    if not os.path.isfile(path):
        raise SimulatorError(f"{path}: there is no such file")
    return os.path.abspath(path)


def _quoted(text: str) -> str:
    escaped = text.replace("\\", "\\\\").replace('"', '\\"')
    return f'"{escaped}"'


def _text(number: float) -> str:
    return str(int(number)) if float(number).is_integer() else repr(float(number))
