"""The moving parts of scripts/measure-fragmentation: a link that is slow and loses packets, and a
client that finds out what it does to requests and answers.

  fragmentation.py link NAMESPACE NAMESPACE --delay MS --loss PERCENT
  fragmentation.py requests HOST --hz N --tries N SIZE...
  fragmentation.py answers HOST
"""

import argparse
import ctypes
import fcntl
import heapq
import os
import random
import select
import socket
import struct
import sys
import time

PORT = 48000
TARNEL = bytes.fromhex("11223344")
VERSION = TARNEL + bytes.fromhex("B16B00B5")
INPUT_RECORD, OUTPUT_RECORD, HEADER = 488, 116, 24
INT, FLOAT_ARRAY = 1, 4
AIRCRAFT_ENTRY = 12


# --- The link


def open_tunnel(namespace):
    """The end of the namespace's device `orvane`, held by this process wherever it goes next."""
    tun_set_interface, tun_mode, no_packet_information = 0x400454CA, 0x0001, 0x1000
    with open("/run/netns/" + namespace, "rb") as target:
        if ctypes.CDLL(None, use_errno=True).setns(target.fileno(), 0) != 0:
            raise OSError(ctypes.get_errno(), "setns " + namespace)
    tunnel = os.open("/dev/net/tun", os.O_RDWR | os.O_NONBLOCK)
    request = struct.pack("16sH22x", b"orvane", tun_mode | no_packet_information)
    fcntl.ioctl(tunnel, tun_set_interface, request)
    return tunnel


def run_link(arguments):
    """Carries packets between the two namespaces until it is killed. Keeps their order."""
    ends = [open_tunnel(namespace) for namespace in arguments.namespaces]
    other = {ends[0]: ends[1], ends[1]: ends[0]}
    under_way, number = [], 0
    while True:
        wait = max(0.0, under_way[0][0] - time.monotonic()) if under_way else None
        readable, _, _ = select.select(ends, [], [], wait)
        now = time.monotonic()
        for end in readable:
            packet = os.read(end, 65536)
            if random.uniform(0, 100) >= arguments.loss:
                number += 1
                heapq.heappush(
                    under_way, (now + arguments.delay / 1000, number, other[end], packet)
                )
        while under_way and under_way[0][0] <= now:
            _, _, end, packet = heapq.heappop(under_way)
            os.write(end, packet)


# --- The client


class Client:
    def __init__(self, host):
        self.socket = socket.create_connection((host, PORT), timeout=30)
        self.socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)

    def close(self):
        self.socket.close()

    def send(self, request):
        self.socket.sendall(request)

    def take(self, count):
        """That many bytes; fewer when no more come."""
        taken = bytearray()
        while len(taken) < count:
            try:
                part = self.socket.recv(count - len(taken))
            except TimeoutError:
                break
            if not part:
                break
            taken += part
        return bytes(taken)

    def payload(self):
        (length,) = struct.unpack("<I", self.take(4))
        return self.take(length)


def definitions(inputs, output_type, elements):
    record = struct.pack("<I100siii", 1, b"no/such", output_type, 0, elements)
    header = struct.pack("<IIIII", 0xDDEEFFC0, INPUT_RECORD, inputs, OUTPUT_RECORD, 1)
    return TARNEL + header + bytes(INPUT_RECORD * inputs) + record


def arrives_torn(host, size, frame):
    """A client's usual beginning: the handshake, then its definitions, at any point of a frame."""
    client = Client(host)
    client.send(VERSION)
    client.payload()
    time.sleep(random.uniform(0, frame))
    client.send(definitions((size - HEADER - OUTPUT_RECORD) // INPUT_RECORD, INT, 1))
    answer = client.payload()
    client.close()
    whole = 12 + AIRCRAFT_ENTRY
    if len(answer) not in (AIRCRAFT_ENTRY, whole):
        sys.exit(f"an answer of {len(answer)} bytes fits neither kind of request")
    return len(answer) != whole


def run_requests(arguments):
    cells = []
    for size in arguments.sizes:
        torn = sum(
            arrives_torn(arguments.host, size, 1 / arguments.hz) for _ in range(arguments.tries)
        )
        cells.append(f"{100 * torn / arguments.tries:.0f} %")
    print(f"| {arguments.hz} | " + " | ".join(cells) + " |")


def comes_in_part(host, size):
    """Whether an answer of `size` bytes, length included, does not end where it should."""
    client = Client(host)
    client.send(definitions(0, FLOAT_ARRAY, (size - 4 - 8 - AIRCRAFT_ENTRY) // 4))
    client.socket.settimeout(3)
    answer = client.take(size)
    client.close()
    return len(answer) < size or answer[-AIRCRAFT_ENTRY:-4] != struct.pack("<II", 0xFFFF, 4)


def run_answers(arguments):
    """The smallest size, to a hundredth, of which one of three answers came in part."""

    def is_in_part(size):
        return any(comes_in_part(arguments.host, size) for _ in range(3))

    in_part = 16 * 1024
    while not is_in_part(in_part):
        in_part *= 2
    whole = in_part // 2
    while in_part - whole > in_part // 100:
        size = (whole + in_part) // 2 // 4 * 4
        if is_in_part(size):
            in_part = size
        else:
            whole = size
    print(f"{in_part / 1000:.0f} KB")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    commands = parser.add_subparsers(required=True)
    link = commands.add_parser("link")
    link.add_argument("namespaces", nargs=2)
    link.add_argument("--delay", type=float, required=True)
    link.add_argument("--loss", type=float, required=True)
    link.set_defaults(run=run_link)
    requests = commands.add_parser("requests")
    requests.add_argument("host")
    requests.add_argument("--hz", type=int, required=True)
    requests.add_argument("--tries", type=int, required=True)
    requests.add_argument("sizes", type=int, nargs="+")
    requests.set_defaults(run=run_requests)
    answers = commands.add_parser("answers")
    answers.add_argument("host")
    answers.set_defaults(run=run_answers)
    arguments = parser.parse_args()
    arguments.run(arguments)


if __name__ == "__main__":
    main()
