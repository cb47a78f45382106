"""A panel with a lamp and a lever, as small as a panel can be; test_panel.py tests it.

Usage: panel.py [HOST]
"""

import sys

from orvane.velmar import Client

GEAR = "sim/cockpit2/controls/gear_handle_down:int"


class Panel:
    """The lamp is on while the gear is down; the lever moves the gear."""

    def __init__(self, client: Client) -> None:
        self.client = client

    @property
    def lamp(self) -> bool:
        return self.client[GEAR] == 1

    def move_lever(self) -> None:
        self.client.run("sim/flight_controls/landing_gear_toggle")


if __name__ == "__main__":
    with Client(*sys.argv[1:2]) as client:
        panel = Panel(client)
        while input(f"The lamp is {'on' if panel.lamp else 'off'}. Return moves the lever. ") == "":
            panel.move_lever()
