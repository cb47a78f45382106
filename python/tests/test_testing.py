"""orvane.testing: what a test can do with a simulator, and what it is told when it cannot."""

import os
import socket
import subprocess
import sys
from pathlib import Path

import pytest
from programs import environment

from orvane.testing import ExpectationFailed, Phases, Simulator, SimulatorError
from orvane.velmar import Client

GEAR = "sim/cockpit2/controls/gear_handle_down"


def test_time_stands_still_until_it_is_told_to_pass(simulator: Simulator) -> None:
    simulator.pause()
    before = simulator.get("sim/time/total_running_time_sec")
    assert simulator.get("sim/time/total_running_time_sec") == before
    simulator.step(60)
    after = simulator.get("sim/time/total_running_time_sec")
    assert isinstance(before, float) and isinstance(after, float)
    assert after == pytest.approx(before + 1, abs=0.01)


@pytest.mark.simulator(datarefs={"my/ints": "int[3]", "my/text": "byte[20]"}, commands=["my/go"])
def test_has_datarefs_and_commands_of_the_tests_own(simulator: Simulator) -> None:
    simulator.set("my/ints", [1, 2, 3])
    assert simulator.get("my/ints") == [1, 2, 3]
    simulator.set("my/text", "hello")
    assert simulator.get("my/text") == "hello"
    simulator.set("my/text", ' # "quoted" \\')
    assert simulator.get("my/text") == ' # "quoted" \\'
    simulator.press("my/go")
    simulator.begin("my/go")
    assert simulator.phases("my/go") == Phases(2, 1)
    simulator.end("my/go")
    assert simulator.phases("my/go") == Phases(2, 2)


def test_plays_the_statements_of_a_scenario(simulator: Simulator) -> None:
    simulator.play(
        f"""
        # the gear goes up
        set {GEAR} 0  # at once
        press sim/flight_controls/flaps_down
        expect {GEAR} == 0 for 100ms
        expect sim/cockpit2/controls/flap_ratio == 0.25
        """
    )
    assert simulator.get(GEAR) == 0
    assert simulator.get("sim/cockpit2/controls/flap_ratio") == 0.25


def test_a_scenario_that_expects_something_else_fails_the_test(simulator: Simulator) -> None:
    with pytest.raises(ExpectationFailed, match=f"^expected {GEAR} == 0, got 1$"):
        simulator.play(f"expect {GEAR} == 0\nset {GEAR} 0")
    assert simulator.get(GEAR) == 1
    assert issubclass(ExpectationFailed, AssertionError)


def test_waits_for_a_condition_flying_or_step_by_step(simulator: Simulator) -> None:
    def second(number: int) -> bool:
        passed = simulator.get("sim/time/total_running_time_sec")
        return isinstance(passed, float) and passed >= number / 10

    simulator.wait_until(lambda: second(5))
    simulator.pause()
    simulator.wait_until(lambda: second(10))
    with pytest.raises(AssertionError, match="^not so after 0.1 seconds$"):
        simulator.wait_until(lambda: False, seconds=0.1)


def test_shows_the_lines_of_the_log(simulator: Simulator) -> None:
    assert simulator.log == []
    with socket.create_connection(("127.0.0.1", 48000)) as client:
        client.sendall(bytes.fromhex("11223344 C0FFEEDD E8010000 00000000 74000000 01000000"))
        client.recv(100)
    assert simulator.log[0].endswith(
        "Error@TarnelProtocol::tryParseConfig : numBytes (20) < packetSize(136)"
    )


def test_restarts_in_the_same_folder(simulator: Simulator) -> None:
    simulator.set(GEAR, 0)
    own = simulator.folder / "Resources" / "plugins" / "xplaneorvane_datarefs.cfg"
    own.write_text("kyr/mine float\n")
    simulator.restart()
    assert simulator.get(GEAR) == 1
    with Client(timeout=20) as client:
        assert client.read("kyr/mine:float") == 0  # it flies, as it did before


def test_leaves_nothing_behind() -> None:
    with Simulator() as made:
        folder = made.folder
        assert folder.is_dir()
    assert not folder.exists()


def test_stops_nothing_and_deletes_nothing_if_it_was_not_started(
    tmp_path: Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.chdir(tmp_path)
    (tmp_path / "mine.txt").write_text("mine")
    Simulator(plugin=__file__).stop()
    assert (tmp_path / "mine.txt").exists()


def test_leaves_nothing_behind_if_it_does_not_start(
    tmp_path: Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.setattr("tempfile.tempdir", str(tmp_path))
    with pytest.raises(SimulatorError, match="^the simulator has ended with status 1 and said: "):
        Simulator(plugin=__file__).start()
    assert list(tmp_path.iterdir()) == []


def test_says_what_it_refuses(simulator: Simulator) -> None:
    with pytest.raises(SimulatorError, match="^get no/such: no such dataref: no/such$"):
        simulator.get("no/such")
    with pytest.raises(SimulatorError, match="^set .*: .* value of this dataref$"):
        simulator.set(GEAR, "up")


def test_says_how_it_ended(simulator: Simulator) -> None:
    with pytest.raises(SimulatorError, match="^the simulator has ended with status 5 and said: "):
        with socket.create_connection(("127.0.0.1", 48000)) as client:
            # A packet that ends the process.
            client.sendall(bytes.fromhex("55667788 05000000"))
            simulator.wait_until(lambda: simulator.ask("frames") == "")
    assert "Error@RingBuffer::ReadUInt32" in simulator.log[-1]


def test_says_that_the_port_is_taken(simulator: Simulator) -> None:
    with pytest.raises(SimulatorError, match="^TCP port 48000 is taken by another program, often "):
        Simulator().start()


@pytest.mark.parametrize(
    "arguments, text",
    [
        (("/no/such/sim", None), "^/no/such/sim: there is no such file$"),
        ((None, "/no/such/lin.xpl"), "^/no/such/lin.xpl: there is no such file$"),
    ],
)
def test_says_what_it_does_not_find(arguments: "tuple[str, str]", text: str) -> None:
    with pytest.raises(SimulatorError, match=text):
        Simulator(*arguments)


def test_says_what_it_needs(monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.delenv("ORVANE_PLUGIN")
    with pytest.raises(SimulatorError, match="^there is no lin.xpl: give its path, or set ORVANE_"):
        Simulator()
    with pytest.raises(SimulatorError, match="^the simulator is not started$"):
        Simulator(plugin=__file__).get(GEAR)


def test_says_that_a_file_is_not_a_plugin(tmp_path: Path) -> None:
    file = tmp_path / "lin.xpl"
    file.write_text("nonsense")
    with pytest.raises(SimulatorError, match="^the simulator has ended with status 1 and said: "):
        Simulator(plugin=file).start()


def test_a_test_without_a_simulator_fails_and_is_not_skipped(tmp_path: Path) -> None:
    (tmp_path / "test_it.py").write_text("def test_it(simulator):\n    pass\n")
    env = {key: text for key, text in environment().items() if not key.startswith("ORVANE_")}
    done = subprocess.run(
        [
            sys.executable,
            "-m",
            "pytest",
            "-p",
            "orvane.testing.pytest_plugin",
            "-p",
            "no:cacheprovider",
        ]
        + ["--orvane-plugin", os.devnull, str(tmp_path)],
        env={**env, "PATH": "/usr/bin:/bin"},
        cwd=tmp_path,
        capture_output=True,
        text=True,
    )
    assert done.returncode == 1
    assert "there is no headless-sim: give its path, or set ORVANE_HEADLESS_SIM" in done.stdout


def test_two_runs_fly_at_a_time_where_that_is_permitted(simulator: Simulator) -> None:
    program = (
        "from orvane.testing import *\n"
        "is_private = enter_private_network()\n"
        "try:\n"
        "    with Simulator() as simulator: print(is_private, simulator.ask('frames'))\n"
        "except SimulatorError as error: print(is_private, 'is taken' in str(error))"
    )
    done = subprocess.run(
        [sys.executable, "-c", program], env=environment(), capture_output=True, text=True
    )
    assert done.stdout in ("True frames 0\n", "False True\n"), done.stderr
