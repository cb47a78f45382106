"""Trims while the yoke is held: the pilot pulls, and the trim follows until the yoke is released.

The trim command is held down like a button. The client releases it at Ctrl-C, and when the
simulator restarts.

Usage: force_trim.py [HOST]
"""

import sys

from orvane import OnStart
from orvane.tarnel import Client, Definitions, Input, Output

YOKE = "sim/cockpit2/controls/yoke_pitch_ratio"
TRIM = "sim/cockpit2/controls/elevator_trim"
COMMANDS = "sim/flight_controls/pitch_trim"
UP, DOWN = 1, 2
POSITION, TRIMMED = 1, 2
SLACK = 0.1  # of the yoke, within which nothing is trimmed


def main(host: str = "127.0.0.1") -> None:
    with Client(host, on_start=OnStart.WAIT) as client:
        client.set_callbacks(connected=lambda: print("the simulator is back", flush=True))
        client.define(
            Definitions(
                inputs=[
                    Input(UP, to_command=f"{COMMANDS}_up", held=True),
                    Input(DOWN, to_command=f"{COMMANDS}_down", held=True),
                ],
                outputs=[Output(POSITION, of_float=YOKE), Output(TRIMMED, of_float=TRIM)],
            )
        )
        buttons = {UP: 0, DOWN: 0}
        for answer in client.answers(20, lambda: buttons):
            yoke = answer[POSITION]
            wanted = {UP: int(yoke > SLACK), DOWN: int(yoke < -SLACK)}
            if wanted != buttons:
                buttons = wanted
                held = "up" if buttons[UP] else "down" if buttons[DOWN] else "nothing"
                print(f"yoke {yoke:+.2f}, trim {answer[TRIMMED]:+.2f}: {held} held", flush=True)


if __name__ == "__main__":
    try:
        main(*sys.argv[1:2])
    except KeyboardInterrupt:
        print("released")
