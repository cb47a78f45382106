"""A gauge in the terminal: airspeed, altitude and heading, as they change.

Usage: gauge.py [HOST [SECONDS]]
"""

import sys
import time

from orvane import OnStart
from orvane.velmar import Client

GAUGES = "sim/cockpit2/gauges/indicators"
SPEED = f"{GAUGES}/airspeed_kts_pilot:float"
ALTITUDE = f"{GAUGES}/altitude_ft_pilot:float"
HEADING = f"{GAUGES}/heading_AHARS_deg_mag_pilot:float"


def main(host: str = "127.0.0.1", seconds: float = 10.0) -> None:
    end = time.monotonic() + seconds
    shown = {}
    # Waits if the simulator is not running yet.
    with Client(host, on_start=OnStart.WAIT) as client:
        for changes in client.changes([SPEED, ALTITUDE, HEADING], rate=10, deadband=0.1):
            shown.update(changes)
            line = f"{shown[SPEED]:5.1f} kt  {shown[ALTITUDE]:7.0f} ft  {shown[HEADING]:03.0f} deg"
            # On a terminal each line replaces the previous one.
            print(line, end="\r" if sys.stdout.isatty() else "\n", flush=True)
            if time.monotonic() >= end:
                break
    print()


if __name__ == "__main__":
    main(*sys.argv[1:2], *map(float, sys.argv[2:3]))
