"""What an exchange costs a Python program: with the package, and barely.

Both exchange with the real plugin in the headless simulator, 60 times a second: 16 inputs, and N
float outputs. The floor packs the same items, sends, receives and unpacks the same values, and
looks at nothing else. CPU time of the exchanges alone is measured, in user and system mode.

Writes figures in the format of Google Benchmark, for scripts/lib/bench_report.py.
"""

import argparse
import json
import os
import pathlib
import random
import re
import socket
import struct
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "python" / "src"))

from orvane.tarnel import Client, Definitions, Input, Output  # noqa: E402
from orvane.tarnel._wire import definitions_request  # noqa: E402
from orvane.testing import Simulator, enter_private_network  # noqa: E402

FIGURE = "PythonClient/exchange"
PACE = 60.0  # exchanges per second
FRAMES_PER_SECOND = 4 * PACE
INPUTS = 16
OUTPUTS = (10, 100, 1000)


def outputs_of(count):
    return [Output(id, of_float=f"bench/output_{id}") for id in range(1, count + 1)]


def definitions(count):
    inputs = [Input(action, to_float=f"bench/input_{action}") for action in range(1, INPUTS + 1)]
    return Definitions(inputs=inputs, outputs=outputs_of(count))


class Ours:
    def __init__(self, count):
        self._client = Client(timeout=20)
        self._client.define(definitions(count))

    def exchange(self, items):
        return self._client.exchange(items).numbers()

    def close(self):
        self._client.close()


class Floor:
    def __init__(self, count):
        self._socket = socket.create_connection(("127.0.0.1", 48000))
        self._socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self._request = struct.Struct(f"<4I{2 * INPUTS}i")
        # The length before the answer, each value after 8 bytes, and the aircraft.
        self._answer = struct.Struct("<4x" + count * "8xf" + "12x")
        self._socket.sendall(definitions_request(definitions(count)))
        self._receive()

    def exchange(self, items):
        words = [word for item in items.items() for word in item]
        self._socket.sendall(self._request.pack(0x44332211, 0xEFBEADDE, 8, INPUTS, *words))
        return self._answer.unpack(self._receive())

    def _receive(self):
        received = self._socket.recv(65536)
        while len(received) < self._answer.size:
            received += self._socket.recv(65536)
        return received

    def close(self):
        self._socket.close()


def measure(side, exchanges):
    """Nanoseconds of CPU time per exchange."""
    spent = 0
    due = time.monotonic()
    for number in range(exchanges):
        items = {action: number * action for action in range(1, INPUTS + 1)}
        before = time.process_time_ns()
        side.exchange(items)
        spent += time.process_time_ns() - before
        due += 1 / PACE
        time.sleep(max(0.0, due - time.monotonic()))
    return spent / exchanges


def require_same_values(sides, count):
    values = [side.exchange({action: 0 for action in range(1, INPUTS + 1)}) for side in sides]
    if values[0] != values[1] or values[0][0] != 0.25 or len(values[0]) != count:
        sys.exit("bench_python_client: the two sides get different values")


def entries_of(count, seconds, repetitions):
    sides = {"ours": Ours(count), "floor": Floor(count)}
    require_same_values(list(sides.values()), count)
    turns = list(sides) * repetitions
    random.shuffle(turns)
    for name in turns:
        nanoseconds = measure(sides[name], max(1, round(seconds * PACE)))
        yield {
            "name": f"{FIGURE}/{name}/{count}",
            "run_type": "iteration",
            "cpu_time": nanoseconds,
            "real_time": nanoseconds,
            "time_unit": "ns",
        }
    for side in sides.values():
        side.close()


def is_wanted(count, pattern):
    return any(re.search(pattern, f"{FIGURE}/{side}/{count}") for side in ("ours", "floor"))


def context():
    """As Google Benchmark describes where it measures."""
    megahertz = re.findall(r"^cpu MHz\s*: (\d+)", pathlib.Path("/proc/cpuinfo").read_text(), re.M)
    return {
        "date": time.strftime("%Y-%m-%d"),
        "num_cpus": os.cpu_count(),
        "mhz_per_cpu": int(megahertz[0]) if megahertz else None,
        "load_avg": os.getloadavg(),
    }


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--headless-sim", required=True)
    parser.add_argument("--plugin", required=True)
    parser.add_argument("--out", type=pathlib.Path, required=True)
    parser.add_argument("--seconds", type=float, default=1.0, help="of each measurement; 1")
    parser.add_argument("--repetitions", type=int, default=5, help="of each measurement; 5")
    parser.add_argument("--filter", default="", help="only figures whose names match")
    arguments = parser.parse_args()
    counts = [count for count in OUTPUTS if is_wanted(count, arguments.filter)]
    entries = []
    if counts:
        enter_private_network()
        names = [output.of_float for output in outputs_of(max(OUTPUTS))]
        datarefs = dict.fromkeys(names, "float")
        datarefs.update({f"bench/input_{action}": "float" for action in range(1, INPUTS + 1)})
        with Simulator(
            arguments.headless_sim, arguments.plugin, hz=FRAMES_PER_SECOND, datarefs=datarefs
        ) as simulator:
            for name in names:
                simulator.set(name, 0.25)
            simulator.fly()
            for count in counts:
                entries += entries_of(count, arguments.seconds, arguments.repetitions)
    arguments.out.write_text(json.dumps({"context": context(), "benchmarks": entries}))


if __name__ == "__main__":
    main()
