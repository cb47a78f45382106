"""The examples, run as their users run them."""

import importlib.util
import json
import signal
import subprocess
import sys
import warnings
from pathlib import Path
from typing import Dict, List, Optional

import pytest
from programs import ROOT, environment

from orvane.testing import Phases, Simulator

EXAMPLES = ROOT / "examples" / "python"
STAND_INS = Path(__file__).parent / "stand_ins"
CONTROLS = "sim/cockpit2/controls"

pytestmark = pytest.mark.simulator(hz=200)


def run(name: str, *arguments: str, env: Optional[Dict[str, str]] = None) -> List[str]:
    done = subprocess.run(
        [sys.executable, str(EXAMPLES / name), *arguments],
        env=env or environment(),
        capture_output=True,
        text=True,
        timeout=60,
    )
    assert (done.returncode, done.stderr) == (0, "")
    return done.stdout.splitlines()


def start(name: str, *arguments: str) -> "subprocess.Popen[str]":
    return subprocess.Popen(
        [sys.executable, "-u", str(EXAMPLES / name), *arguments],
        env=environment(),
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
        text=True,
    )


def test_the_sine_moves_the_yoke(simulator: Simulator) -> None:
    lines = run("yoke_sine.py", "127.0.0.1", "0.5")
    # Half a second into a period of four: sin(45 degrees), more if the machine was late.
    yoke = simulator.get(f"{CONTROLS}/yoke_pitch_ratio")
    assert isinstance(yoke, float) and 0.5 < yoke <= 1
    assert "yoke +0." in lines[-1]


def test_the_gauge_shows_the_instruments(simulator: Simulator) -> None:
    simulator.set("sim/time/paused", 1)
    simulator.set("sim/cockpit2/gauges/indicators/airspeed_kts_pilot", 123.5)
    simulator.set("sim/cockpit2/gauges/indicators/altitude_ft_pilot", 4321)
    assert run("gauge.py", "127.0.0.1", "0")[0].startswith("123.5 kt     4321 ft  ")


def test_the_trim_is_held_and_released_by_ctrl_c(simulator: Simulator) -> None:
    up = "sim/flight_controls/pitch_trim_up"
    simulator.set(f"{CONTROLS}/yoke_pitch_ratio", 0.5)
    with start("force_trim.py") as process:
        assert process.stdout is not None and process.stderr is not None
        assert process.stdout.readline() == "yoke +0.50, trim +0.00: up held\n"
        simulator.wait_until(lambda: simulator.phases(up) == Phases(1, 0))
        process.send_signal(signal.SIGINT)
        assert process.stdout.readline() == "released\n"
        assert process.wait(60) == 0
        assert process.stderr.read() == ""
    assert simulator.phases(up) == Phases(1, 1)
    trim = simulator.get(f"{CONTROLS}/elevator_trim")
    assert isinstance(trim, float) and trim > 0


def test_the_trim_comes_back_with_the_simulator(simulator: Simulator) -> None:
    simulator.set(f"{CONTROLS}/yoke_pitch_ratio", -0.5)
    with start("force_trim.py") as process:
        assert process.stdout is not None
        assert process.stdout.readline().endswith("down held\n")
        simulator.kill()
        simulator.restart()
        assert process.stdout.readline() == "the simulator is back\n"
        process.send_signal(signal.SIGINT)
        assert process.wait(60) == 0


def test_two_clients_work_at_a_time(simulator: Simulator) -> None:
    with start("two_clients.py", "127.0.0.1", "2") as process:
        assert process.stdout is not None
        lines = iter(process.stdout.readline, "")
        while next(lines) != "listening\n":
            pass
        simulator.press("sim/flight_controls/flaps_down")
        rest = list(lines)
        assert process.wait(60) == 0
    assert "sim/flight_controls/flaps_down was pressed\n" in rest
    assert any(line.startswith("yoke ") for line in rest)
    assert rest[-1] == "done\n"


def test_the_recording_becomes_a_table(simulator: Simulator, tmp_path: Path) -> None:
    simulator.set("sim/time/paused", 1)
    simulator.set("sim/flightmodel/position/theta", 2.5)
    file = str(tmp_path / "flight.npy")
    lines = run("recording_table.py", file, "127.0.0.1", "0.5")
    assert lines[0].endswith("10 readings")
    assert lines[1].split() == ["sim/flightmodel/position/theta", "2.500", "2.500", "2.500"]
    assert run("recording_table.py", file, "--show") == lines


def test_the_plot_becomes_a_picture(simulator: Simulator, tmp_path: Path) -> None:
    simulator.set(f"{CONTROLS}/yoke_pitch_ratio", 0.5)
    env = environment()
    has_matplotlib = importlib.util.find_spec("matplotlib") is not None
    if not has_matplotlib:
        warnings.warn("matplotlib is not installed: a stand-in plots")
        env["PYTHONPATH"] += f":{STAND_INS}"
    picture = tmp_path / "plot.png"
    lines = run("live_plot.py", "127.0.0.1", str(picture), "0.5", env=env)
    assert lines == [f"{picture}: 10 points"]
    if has_matplotlib:
        assert picture.read_bytes().startswith(b"\x89PNG")
    else:
        yokes, forces = json.loads(picture.read_text())
        assert [y for _, y in yokes] == [0.5] * 10
        assert all(force < 0 for _, force in forces)


def test_the_panels_test_passes() -> None:
    done = subprocess.run(
        [sys.executable, "-m", "pytest", "-q", "-p", "orvane.testing.pytest_plugin"]
        + ["-p", "no:cacheprovider", "--orvane-network=shared", str(EXAMPLES / "test_panel.py")],
        env=environment(),
        capture_output=True,
        text=True,
        timeout=60,
    )
    assert done.returncode == 0, done.stdout
    assert "1 passed" in done.stdout
