"""A fixture `simulator` for pytest.

    def test_gear(simulator):
        simulator.press("sim/flight_controls/landing_gear_up")
        assert simulator.get("sim/cockpit2/controls/gear_handle_down") == 0

It flies. A mark gives it the arguments of `orvane.testing.Simulator`:

    @pytest.mark.simulator(hz=200, datarefs={"my/lamp": "int"})

`--orvane-headless-sim` and `--orvane-plugin` say where the program and the plugin are, as do the
environment variables ORVANE_HEADLESS_SIM and ORVANE_PLUGIN. If the system permits it, a run with
such tests moves into its own network, so that several can run at a time. `--orvane-network=shared`
prevents that, for tests that need another network.
"""

from typing import Any, Dict, Iterator

import pytest

from orvane.testing.console import SimulatorError
from orvane.testing.network import enter_private_network
from orvane.testing.simulator import Simulator


def pytest_addoption(parser: pytest.Parser) -> None:
    group = parser.getgroup("orvane")
    group.addoption("--orvane-headless-sim", help="the headless-sim program", metavar="FILE")
    group.addoption("--orvane-plugin", help="the plugin, lin.xpl", metavar="FILE")
    group.addoption(
        "--orvane-network",
        choices=("private", "shared"),
        default="private",
        help="the network that tests with a simulator run in",
    )


def pytest_configure(config: pytest.Config) -> None:
    config.addinivalue_line("markers", "simulator(**arguments): arguments of the simulator")


def pytest_collection_finish(session: pytest.Session) -> None:
    needs_one = any("simulator" in getattr(item, "fixturenames", ()) for item in session.items)
    if needs_one and session.config.getoption("--orvane-network") == "private":
        # If that is not permitted, a simulator that finds its port taken says so.
        enter_private_network()


@pytest.fixture
def simulator(request: pytest.FixtureRequest) -> Iterator[Simulator]:
    """A simulator that flies, for one test."""
    mark = request.node.get_closest_marker("simulator")
    made = _start(request.config, mark.kwargs if mark is not None else {})
    try:
        made.fly()
        yield made
    finally:
        made.stop()


def _start(config: pytest.Config, arguments: Dict[str, Any]) -> Simulator:
    try:
        made = Simulator(
            config.getoption("--orvane-headless-sim"),
            config.getoption("--orvane-plugin"),
            **arguments,
        )
        made.start()
        return made
    except SimulatorError as error:
        why = str(error)
    pytest.fail(why, pytrace=False)
