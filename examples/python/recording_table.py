"""Records a few seconds, and shows a table of the recording. Needs numpy.

Every answer is a row of a numpy array, without copying single values; numpy.load reads the file.

Usage: recording_table.py FILE.npy [HOST [SECONDS]]    records and shows
       recording_table.py FILE.npy --show              shows a recording
"""

import sys
from itertools import islice
from pathlib import Path

import numpy

from orvane.tarnel import Client, Definitions, Output

NAMES = [
    "sim/flightmodel/position/theta",
    "sim/flightmodel/position/phi",
    "sim/flightmodel/position/indicated_airspeed",
    "sim/cockpit2/controls/yoke_pitch_ratio",
]
RATE = 20  # readings per second


def record(host: str, seconds: float) -> numpy.ndarray:
    outputs = [Output(number, of_float=name) for number, name in enumerate(NAMES, 1)]
    with Client(host) as client:
        client.define(Definitions(outputs=outputs))
        rows = [answer.numpy() for answer in islice(client.answers(RATE), round(seconds * RATE))]
    return numpy.stack(rows)[NAMES]


def show(table: numpy.ndarray) -> None:
    print(f"{'':45}{'MIN':>10}{'MEAN':>10}{'MAX':>10}   {len(table)} readings")
    for name in table.dtype.names:
        column = table[name]
        print(f"{name:45}{column.min():10.3f}{column.mean():10.3f}{column.max():10.3f}")


def main(file: str, host: str = "127.0.0.1", seconds: float = 5.0) -> None:
    if host != "--show":
        numpy.save(Path(file), record(host, seconds))
    show(numpy.load(Path(file)))


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    main(*sys.argv[1:3], *map(float, sys.argv[3:4]))
