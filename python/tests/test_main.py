"""`python -m orvane`, as its users run it."""

import signal
import subprocess
import sys
from typing import List, Tuple

from programs import environment

from orvane.testing import Simulator

YOKE = "sim/cockpit2/controls/yoke_pitch_ratio"
GEAR = "sim/cockpit2/controls/gear_handle_down"
TRIM = "sim/cockpit2/controls/elevator_trim"


def run(*arguments: str) -> Tuple[int, str, str]:
    done = subprocess.run(
        [sys.executable, "-m", "orvane", *arguments],
        env=environment(),
        capture_output=True,
        text=True,
        timeout=60,
    )
    return done.returncode, done.stdout, done.stderr


def test_gets_and_sets(simulator: Simulator) -> None:
    simulator.set(TRIM, 0.1)
    assert run("get", TRIM) == (0, "0.1\n", "")
    assert run("set", f"{TRIM}=-0.25", f"{GEAR}=0", "sim/flightmodel/position/q:float[2]=1,2") == (
        0,
        "",
        "",
    )
    assert simulator.get(GEAR) == 0
    out = f"{TRIM}=-0.25\n{GEAR}:int=0\nsim/flightmodel/position/q=1,2\n"
    assert run("get", TRIM, f"{GEAR}:int", "sim/flightmodel/position/q") == (0, out, "")


def test_watches_until_it_is_interrupted(simulator: Simulator) -> None:
    command = [sys.executable, "-m", "orvane", "watch", "--rate", "50", TRIM]
    with subprocess.Popen(
        command, env=environment(), stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True
    ) as process:
        assert process.stdout is not None and process.stderr is not None
        assert process.stdout.readline().endswith(f" {TRIM}=0\n")
        simulator.set(TRIM, 0.5)
        assert process.stdout.readline().endswith(f" {TRIM}=0.5\n")
        process.send_signal(signal.SIGINT)
        assert process.wait(60) == 0
        assert process.stderr.read() == ""


BAD_INPUT: List[Tuple[List[str], int, str]] = [
    ([], 1, "the following arguments are required: get|set|watch (see --help)"),
    (["get"], 1, "the following arguments are required: NAME (see --help)"),
    (["--port", "x", "get", "a"], 1, "argument --port: invalid int value: 'x' (see --help)"),
    (["get", "no/such/dataref"], 3, "the simulator does not have no/such/dataref"),
    (["get", "a:double"], 1, "a:double: the type is not int, float, byte, int[N] or float[N]"),
    (["set", GEAR], 1, f"{GEAR}: a value is missing, as in NAME=1"),
    (["set", f"{GEAR}=x"], 1, '"x" is not a number'),
    (["watch", "--rate", "0", GEAR], 1, "a rate of 0.0 per second is not above 0"),
    (["set", f"{GEAR}={10**400}"], 1, "0, which is too large for a 32-bit float"),
    (["--port", "70000", "get", GEAR], 1, "a port of 70000 is not between 1 and 65535"),
    (["--timeout", "nan", "get", GEAR], 1, "a timeout of nan seconds is not above 0"),
    (["--port", "1", "get", GEAR], 2, "127.0.0.1:1: connecting: Connection refused"),
    (["--host", "no.such.invalid", "get", GEAR], 2, "no.such.invalid:48000: connecting: "),
]


def test_bad_input_gets_one_line(simulator: Simulator) -> None:
    for arguments, status, text in BAD_INPUT:
        got, out, complaint = run(*arguments)
        assert (got, out) == (status, ""), arguments
        assert complaint.startswith("orvane: ") and text in complaint
        assert complaint.count("\n") == 1


def test_says_that_a_simulator_that_stands_still_does_not_answer(simulator: Simulator) -> None:
    simulator.pause()
    status, _, complaint = run("--timeout", "0.1", "get", GEAR)
    assert status == 4
    assert "no answer within 100 ms (is the simulator paused or loading?)" in complaint


def test_a_reader_may_go_away(simulator: Simulator) -> None:
    pipe = f"{sys.executable} -m orvane watch sim/time/total_running_time_sec | head -n 2"
    done = subprocess.run(
        ["bash", "-o", "pipefail", "-c", pipe],
        env=environment(),
        capture_output=True,
        text=True,
        timeout=60,
    )
    assert (done.returncode, done.stderr) == (0, "")


def test_a_closed_standard_output_is_an_error(simulator: Simulator) -> None:
    done = subprocess.run(
        ["bash", "-c", f"{sys.executable} -m orvane get {GEAR} >&-"],
        env=environment(),
        capture_output=True,
        text=True,
        timeout=60,
    )
    assert (done.returncode, done.stderr) == (1, "orvane: standard output is closed\n")


def test_help_ends_with_examples() -> None:
    status, out, _ = run("--help")
    assert status == 0
    assert out.rstrip().endswith("watch --rate 5 sim/cockpit2/controls/yoke_pitch_ratio")
