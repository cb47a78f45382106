"""The Python half of a long flight: plays one round for each line of standard input.

Answers each with "ok", or with what went wrong, in one line. Two clients stay and come back by
themselves; another one comes and goes in each round.

Usage: soak_client.py FOLDER-OF-THE-PACKAGE
"""

import sys

sys.path.insert(0, sys.argv[1])

from orvane import Backoff  # noqa: E402
from orvane import tarnel, velmar  # noqa: E402

HEADING = "sim/cockpit2/controls/yoke_heading_ratio"
FLAPS_UP = "sim/flight_controls/flaps_up"
OPTIONS = {"timeout": 60.0, "release_within": 60.0, "backoff": Backoff(0.001, 0.02, 60.0)}


class Clients:
    def __init__(self):
        self._controls = tarnel.Client(**OPTIONS)
        self._controls.define(
            tarnel.Definitions(
                inputs=[tarnel.Input(1, to_float=HEADING)],
                outputs=[tarnel.Output(1, of_float=HEADING)],
            )
        )
        self._panel = velmar.Client(**OPTIONS)

    def play(self):
        # The first call comes back after a restart.
        self._controls.exchange()
        self._controls.exchange({1: 65535})
        moved = self._controls.exchange({1: 0})[1]
        if moved != 1.0:
            raise ValueError(f"the axis is at {moved}, not 1")
        self._panel.poll()
        self._panel.run(FLAPS_UP)
        with velmar.Client(**OPTIONS) as visitor:
            visitor["sim/cockpit2/controls/flap_ratio:float"]


def main():
    clients = None
    for _ in sys.stdin:
        try:
            clients = clients or Clients()
            clients.play()
            print("ok", flush=True)
        except Exception as error:
            print(f"{type(error).__name__}: {error}", flush=True)


main()
