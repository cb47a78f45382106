"""The blocks of the pages: sessions, programs, profiles and recordings."""

import os
import re
import subprocess
import sys
from pathlib import Path
from typing import Iterator, List, NamedTuple

from page_kinds import each
from pages import Block
from programs import PROGRAMS, ROOT, environment, program
from terminal import Terminal

from orvane.testing import Simulator


def form_of(text: str) -> List[str]:
    """Its lines without what differs from run to run: numbers, curves, repeated lines."""
    text = text.replace(" beyond ", " 0 ms ")  # the end of the last bar of a histogram
    text = re.sub(r"\b0x[0-9A-F]+\b|-?\b\d[\d.]*(e-?\d+)?", "N", text)
    text = re.sub(r"[\u2580-\u259f·]+", " ", text)
    lines = [re.sub(r"\s+", " ", line).strip() for line in text.splitlines()]
    return [line for i, line in enumerate(lines) if line and lines[i - 1 : i] != [line]]


class Session(NamedTuple):
    command: str
    output: str


def sessions(block: Block) -> Iterator[Session]:
    for part in re.split(r"^\$ ", block.code, flags=re.M)[1:]:
        command, _, output = re.sub(r" *\\\n *", " ", part).partition("\n")
        yield Session(command, output)


def take_part(command: str, simulator: Simulator, terminal: Terminal) -> None:
    """What somebody does in the simulator while a command of a page runs."""
    brakes = "sim/flight_controls/brakes_max"
    if command.startswith("orvane watch "):
        simulator.set("sim/cockpit2/controls/yoke_pitch_ratio", -0.15)
    if command.startswith("orvane command observe "):
        assert terminal.wait_until(lambda: simulator.ask("handlers").endswith(" 2"), 20)
        simulator.press("sim/autopilot/servos_toggle")
        assert terminal.wait_until(lambda: "pressed" in terminal.text, 20)
        simulator.begin(brakes)
        assert terminal.wait_until(lambda: "down" in terminal.text, 20)
        simulator.end(brakes)


def make_home(home: Path) -> None:
    """The home of somebody who has a simulator, and the repository's examples."""
    simulator = home / "X-Plane 12"
    plugins = simulator / "Resources" / "plugins"
    plugins.mkdir(parents=True)
    (home / "examples").symlink_to(ROOT / "examples")
    (simulator / "X-Plane-x86_64").touch()
    (home / ".x-plane").mkdir()
    (home / ".x-plane" / "x-plane_install_12.txt").write_text(f"{simulator}/\n")
    (plugins / "xplaneorvane_datarefs.cfg").touch()
    (plugins / "DataRefs.txt").write_text(
        "2 1200 Thu Jan  1 00:00:00 2026\n\n"
        "sim/cockpit2/controls/gear_handle_down\tint\ty\tboolean\t"
        "Gear handle position. 0 is up. 1 is down.\n"
    )
    (plugins / "Commands.txt").write_text(
        "sim/flight_controls/brakes_max         Hold the brakes at maximum.\n"
        "sim/flight_controls/brakes_regular     Hold the brakes.\n"
    )


# They go on until they are interrupted.
ENDLESS = ("orvane watch ", "orvane drive ")


def form_at_home(terminal: Terminal, home: Path) -> List[str]:
    return form_of(terminal.text.replace(str(home), "/home/me"))


@each("session")
def test_a_session_looks_as_on_the_page(block: Block, simulator: Simulator, tmp_path: Path) -> None:
    make_home(tmp_path)
    env = {**environment(), "HOME": str(tmp_path), "PATH": f"{PROGRAMS}:{os.environ['PATH']}"}
    for command, output in sessions(block):
        if "headless-sim" in command:
            simulator.stop()  # which has the port
        expected = form_of(output)
        terminal = Terminal(["bash", "-c", command], tmp_path, env, columns=240)
        take_part(command, simulator, terminal)
        if command.startswith(ENDLESS):
            terminal.wait_until(lambda: form_at_home(terminal, tmp_path) == expected, 20)
            shown = form_at_home(terminal, tmp_path)
            assert terminal.close() == 0, terminal.text
        else:
            assert terminal.wait(20) == 0, terminal.text
            shown = form_at_home(terminal, tmp_path)
            terminal.close()
        assert shown == expected, terminal.text


@each("profile")
def test_a_profile_is_valid(block: Block, tmp_path: Path) -> None:
    (tmp_path / "profile.toml").write_text(block.code)
    subprocess.run([program("orvane"), "drive", "--check", tmp_path / "profile.toml"], check=True)


@each("recording")
def test_a_recording_is_valid(block: Block, simulator: Simulator) -> None:
    kind = "csv" if block.code.startswith("time,") else "fdr"
    file = simulator.folder / f"flight.{kind}"
    file.write_text(block.code)
    subprocess.run([program("orvane"), "replay", str(file)], check=True)


@each("program")
def test_a_program_runs(block: Block, simulator: Simulator, tmp_path: Path) -> None:
    (tmp_path / "program.py").write_text(block.code)
    command = [sys.executable, str(tmp_path / "program.py")]
    done = subprocess.run(command, env=environment(), capture_output=True, text=True, timeout=60)
    assert (done.returncode, done.stderr) == (0, "")
    assert done.stdout
    assert block.output is None or form_of(done.stdout) == form_of(block.output)
