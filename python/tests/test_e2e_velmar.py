"""Velmar clients against the real plugin, in a simulator whose frames run by themselves."""

import asyncio
import subprocess
import sys
from array import array
from itertools import islice
from typing import List

import pytest
from programs import environment
from styles import Make, velmar_in_both_styles
from tearing import tear_next_request

from orvane import ClosedError, Refused
from orvane.testing import Phases, Simulator
from orvane.velmar import Action, AsyncClient, CommandReport, CommandState, Dataref, Type

pytestmark = pytest.mark.simulator(
    hz=200,
    datarefs={
        "test/int": "int",
        "test/float": "float",
        "test/ints": "int[8]",
        "test/fs": "float[8]",
        "test/many": "float[60000]",
    },
    commands=["test/once", "test/hold"],
)


@velmar_in_both_styles
def test_reads_and_writes_each_type(connect: Make, simulator: Simulator) -> None:
    values = {
        "test/int": -5,
        "test/float": 1.5,
        "test/ints": [1, 2, 3],
        "test/fs": [0.5, -0.5],
    }
    with connect() as client:
        client.register_datarefs(
            [
                Dataref("test/int", Type.INT),
                Dataref("test/float"),
                Dataref("test/ints", Type.INT_ARRAY, 3),
                Dataref("test/fs", Type.FLOAT_ARRAY, 2),
            ]
        )
        client.write(values)
        assert client.read(list(values)) == [
            -5,
            1.5,
            array("i", [1, 2, 3]),
            array("f", [0.5, -0.5]),
        ]
        assert simulator.get("test/ints") == [1, 2, 3, 0, 0, 0, 0, 0]
        client.register_dataref("test/int", Type.BYTE)
        client.write("test/int", 200)
        assert client.read("test/int") == 200
        client.unregister_dataref("test/int")


@velmar_in_both_styles
def test_finds_types_by_itself(connect: Make, simulator: Simulator) -> None:
    simulator.set("test/int", 7)
    simulator.set("test/float", 0.5)
    simulator.set("test/ints", [0, 3, 0, 0, 0, 0, 0, 0])
    with connect() as client:
        assert client["test/int"] == 7
        assert client["test/float"] == 0.5
        assert client["test/ints"] == array("i", [0, 3] + 62 * [0])
        # Where it is 0, a write tries each way.
        client.write("test/fs", [0.5, 1])
        assert simulator.get("test/fs") == [0.5, 1, 0, 0, 0, 0, 0, 0]
        simulator.set("test/int", 0)
        client.write({"test/int": 9, "test/float": 2})
        assert [simulator.get(name) for name in ("test/int", "test/float")] == [9, 2]


def test_subscripts_read_and_write(simulator: Simulator) -> None:
    from orvane.velmar import Client

    with Client(timeout=20, release_within=20) as client:
        client["test/int:int"] = 3
        client["test/fs:float[2]"] = (0.5, 0.25)
        assert client["test/int"] == 3
        assert client["test/fs"] == array("f", [0.5, 0.25])


@velmar_in_both_styles
def test_says_all_that_the_simulator_does_not_have(connect: Make, simulator: Simulator) -> None:
    with connect() as client:
        with pytest.raises(Refused) as refused:
            client.read(["no/such/dataref", "test/int", "nor/this"])
        assert refused.value.refused_names == ("no/such/dataref", "nor/this")
        # Shorter than the server can bear without padding.
        with pytest.raises(Refused, match="does not have no$"):
            client.run("no")
        assert client.read("test/int:int") == 0


@velmar_in_both_styles
def test_runs_and_follows_commands(connect: Make, simulator: Simulator) -> None:
    with connect() as client:
        client.register_commands(["test/once", "test/hold"])
        assert client.poll() == []
        client.run("test/once")
        client.run("test/hold", Action.BEGIN)
        pressed = CommandReport("test/once", CommandState.PRESSED)
        down = CommandReport("test/hold", CommandState.DOWN)
        assert client.poll_presses() == [pressed, down]
        client.run("test/hold", Action.END)
        client.poll_presses()
        assert client.poll_presses() == []
        simulator.press("test/once")
        assert client.poll_presses() == [pressed]
        client.unregister_command("test/once")
    assert simulator.phases("test/once") == Phases(2, 2)


@velmar_in_both_styles
def test_presses_go_on_endlessly(connect: Make, simulator: Simulator) -> None:
    with connect() as client:
        client.register_commands(["test/once", "test/hold"])
        simulator.press("test/once")
        simulator.begin("test/hold")
        presses = client.presses(["test/hold", "test/once"], rate=100)
        assert sorted(report.name for report in islice(presses, 2)) == ["test/hold", "test/once"]
        simulator.press("test/once")
        assert next(presses).name == "test/once"


@velmar_in_both_styles
def test_changes_go_on_endlessly(connect: Make, simulator: Simulator) -> None:
    with connect() as client:
        changes = client.changes(["test/int:int", "test/float:float"], rate=100, deadband=0.5)
        assert next(changes) == {"test/int:int": 0, "test/float:float": 0.0}
        simulator.set("test/float", 0.25)
        simulator.set("test/int", 4)
        assert next(changes) == {"test/int:int": 4}


@velmar_in_both_styles
def test_reads_a_long_list_in_several_requests(connect: Make, simulator: Simulator) -> None:
    simulator.set("test/float", 0.25)
    with connect() as client:
        names = ["test/many:float[60000]", "test/float:float"] * 3
        values = client.read(names)
        assert [len(values[index]) for index in (0, 2, 4)] == [60000] * 3
        assert values[5] == 0.25


@velmar_in_both_styles
def test_comes_back_with_its_names(connect: Make, simulator: Simulator) -> None:
    with connect() as client:
        client.set_callbacks(disconnected=lambda error: simulator.restart())
        client.register_command("test/once")
        client.write("test/float:float", 0.75)
        simulator.kill()
        assert client.read("test/float") == 0.0
        client.write("test/int:int", 3)
        client.run("test/once")
        assert len(client.poll()) == 1
        simulator.kill()
        with pytest.raises(ClosedError, match="this was not repeated"):
            client.write("test/int", 9)
        assert client.read("test/int") == 0


@velmar_in_both_styles
def test_a_torn_request_is_asked_again(
    connect: Make, simulator: Simulator, monkeypatch: pytest.MonkeyPatch
) -> None:
    reasons: List[str] = []
    with connect() as client:
        client.set_callbacks(disconnected=lambda error: reasons.append(str(error)))
        # 16 bytes of the registration, which wait in the plugin.
        tear_next_request(monkeypatch, after=20)
        assert client.read("test/int:int") == 0
        assert len(reasons) == 1


# What is held -------------------------------------------------------------------------------------


@velmar_in_both_styles
def test_holds_within_a_block(connect: Make, simulator: Simulator) -> None:
    with connect() as client:
        with client.hold("test/hold"):
            assert simulator.phases("test/hold") == Phases(1, 0)
        assert simulator.phases("test/hold") == Phases(1, 1)


@velmar_in_both_styles
def test_releases_as_often_as_it_began(connect: Make, simulator: Simulator) -> None:
    with connect() as client:
        client.run("test/hold", Action.BEGIN)
        client.run("test/hold", Action.BEGIN)
    assert simulator.phases("test/hold") == Phases(2, 2)


@velmar_in_both_styles
def test_a_reconnection_releases(connect: Make, simulator: Simulator) -> None:
    with connect() as client:
        with client.hold("test/hold"):
            client.reconnect()
            assert simulator.phases("test/hold") == Phases(1, 1)
    assert simulator.phases("test/hold") == Phases(1, 1)


def test_a_cancelled_task_releases(simulator: Simulator) -> None:
    async def main() -> None:
        async with AsyncClient(timeout=30, release_within=20) as client:
            await client.run("test/hold", Action.BEGIN)
            simulator.pause()
            task = asyncio.ensure_future(client.poll())
            await asyncio.sleep(0)  # it waits for its answer, which does not come
            task.cancel()
            simulator.fly()
            with pytest.raises(asyncio.CancelledError):
                await task
            assert simulator.phases("test/hold") == Phases(1, 1)
            assert not client.is_connected

    asyncio.run(main())


FORKING = """
import os, sys
from orvane.velmar import *
client = Client(timeout=20, release_within=20)
client.run("test/hold", Action.BEGIN)
child = os.fork()
if child == 0:
    sys.exit()
os.waitpid(child, 0)
client.run("test/once")
"""


def test_a_forked_process_leaves_the_connection_to_its_parent(simulator: Simulator) -> None:
    subprocess.run([sys.executable, "-c", FORKING], check=True, timeout=60, env=environment())
    assert simulator.phases("test/hold") == Phases(1, 1)


BLOCKING = """
from orvane.velmar import *
client = Client(timeout=20, release_within=20)
client.run("test/hold", Action.BEGIN)
"""
ASYNCIO = """
import asyncio
from orvane.velmar import *
client = AsyncClient(timeout=20, release_within=20)
asyncio.run(client.run("test/hold", Action.BEGIN))
"""


@pytest.mark.parametrize("program", [BLOCKING, ASYNCIO], ids=["blocking", "asyncio"])
def test_a_program_that_just_ends_releases(simulator: Simulator, program: str) -> None:
    subprocess.run([sys.executable, "-c", program], check=True, timeout=60, env=environment())
    assert simulator.phases("test/hold") == Phases(1, 1)
