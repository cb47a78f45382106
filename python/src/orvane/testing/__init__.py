"""A headless simulator with the plugin in it, for tests of programs that use the plugin.

    from orvane.testing import Simulator

    with Simulator(plugin="build/release/XPlaneOrvane/64/lin.xpl") as simulator:
        simulator.fly()
        ...  # let the program connect to 127.0.0.1:48000
        assert simulator.get("sim/cockpit2/controls/gear_handle_down") == 0

For pytest there is a fixture `simulator`, see `orvane.testing.pytest_plugin`. Linux only, like
`headless-sim`.
"""

from orvane.testing.console import ExpectationFailed, SimulatorError
from orvane.testing.network import enter_private_network
from orvane.testing.simulator import Phases, Simulator

__all__ = ["ExpectationFailed", "Phases", "Simulator", "SimulatorError", "enter_private_network"]
