"""A test of the panel, with a simulator that `orvane.testing` starts: see docs/python.md."""

from panel import Panel

from orvane.velmar import Client


def test_the_lamp_follows_the_gear(simulator):
    with Client() as client:
        panel = Panel(client)
        assert panel.lamp
        panel.move_lever()
        assert simulator.get("sim/cockpit2/controls/gear_handle_down") == 0
        assert not panel.lamp
        simulator.press("sim/flight_controls/landing_gear_down")
        assert panel.lamp
