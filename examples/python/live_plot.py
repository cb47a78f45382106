"""Plots an axis and the resulting force live. Needs matplotlib.

Without a display it plots for a while and saves a picture.

Usage: live_plot.py [HOST [PICTURE.png [SECONDS]]]
"""

import os
import sys
import time
from collections import deque

import matplotlib

from orvane.tarnel import Client, Definitions, Output

YOKE, SPEED = 1, 2
RATE = 20  # points per second
WINDOW = 10.0  # seconds that are shown
CRUISE_KNOTS = 110.0
NEWTONS_AT_CRUISE = 120.0

OUTPUTS = [
    Output(YOKE, of_float="sim/cockpit2/controls/yoke_pitch_ratio"),
    Output(SPEED, of_float="sim/cockpit2/gauges/indicators/airspeed_kts_pilot"),
]


def newtons(yoke: float, knots: float) -> float:
    """The air pushes the elevator back with the square of its speed."""
    return -yoke * (knots / CRUISE_KNOTS) ** 2 * NEWTONS_AT_CRUISE


def main(host: str = "127.0.0.1", picture: str = "", seconds: float = 10.0) -> None:
    has_display = bool(os.environ.get("DISPLAY") or sys.platform in ("win32", "darwin"))
    if picture or not has_display:
        matplotlib.use("Agg")
    from matplotlib import pyplot
    from matplotlib.animation import FuncAnimation

    figure, (above, below) = pyplot.subplots(2, sharex=True)
    above.set(ylabel="yoke", ylim=(-1, 1))
    below.set(xlabel="seconds", ylabel="force, N", ylim=(-150, 150))
    (yoke_line,) = above.plot([], [])
    (force_line,) = below.plot([], [])
    points = deque(maxlen=round(WINDOW * RATE))

    with Client(host) as client:
        client.define(Definitions(outputs=OUTPUTS))
        answers = client.answers(RATE)
        begin = time.monotonic()

        def update(frame: int):
            answer = next(answers)
            passed = time.monotonic() - begin
            points.append((passed, answer[YOKE], newtons(answer[YOKE], answer[SPEED])))
            times, yokes, forces = zip(*points)
            yoke_line.set_data(times, yokes)
            force_line.set_data(times, forces)
            above.set_xlim(times[0], times[0] + WINDOW)
            return yoke_line, force_line

        if picture or not has_display:
            for frame in range(round(seconds * RATE)):
                update(frame)
            picture = picture or "live_plot.png"
            figure.savefig(picture)
            print(f"{picture}: {len(points)} points")
        else:
            # The plot sets the rate: each of its frames waits for an answer.
            # Kept alive as long as the figure.
            figure.animation = FuncAnimation(figure, update, interval=1, cache_frame_data=False)
            pyplot.show()


if __name__ == "__main__":
    main(*sys.argv[1:3], *map(float, sys.argv[3:4]))
