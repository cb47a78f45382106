"""Moves the yoke back and forth: an axis of a device, played by a sine.

Usage: yoke_sine.py [HOST [SECONDS]]
"""

import math
import sys
import time

from orvane.tarnel import Client, Definitions, Input, Output

YOKE = "sim/cockpit2/controls/yoke_pitch_ratio"
AXIS = POSITION = 1
PERIOD = 4.0  # seconds


def raw_axis(seconds: float) -> int:
    """What a device would deliver: 0 to 65535."""
    return round(32767.5 + 32767.5 * math.sin(2 * math.pi * seconds / PERIOD))


def main(host: str = "127.0.0.1", seconds: float = 10.0) -> None:
    with Client(host) as client:
        client.define(
            Definitions(
                inputs=[Input(AXIS, to_float=YOKE, scaled_by_float_range=(-1, 1))],
                outputs=[Output(POSITION, of_float=YOKE)],
            )
        )
        begin = time.monotonic()
        for answer in client.answers(50, lambda: {AXIS: raw_axis(time.monotonic() - begin)}):
            passed = time.monotonic() - begin
            print(f"{passed:6.2f} s  yoke {answer[POSITION]:+.3f}")
            if passed >= seconds:
                break


if __name__ == "__main__":
    main(*sys.argv[1:2], *map(float, sys.argv[2:3]))
