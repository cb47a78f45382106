"""A socket that receives what is sent to a group of computers."""

import socket
import struct
import sys

# Longer than any beacon.
LONGEST_DATAGRAM = 2048


def open_group(group: str, port: int) -> socket.socket:
    """Non-blocking, on all network interfaces. OSError: none of them receives multicast."""
    made = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    try:
        # A simulator and other programs on this computer listen on the same port.
        made.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        made.bind(("" if sys.platform == "win32" else group, port))
        joined = [_join(made, group, index) for index, _ in socket.if_nameindex()]
        if not any(joined):
            raise OSError("no network interface receives multicast")
        made.setblocking(False)
        return made
    except BaseException:
        made.close()
        raise


def _join(made: socket.socket, group: str, interface: int) -> bool:
    if sys.platform == "win32":
        request = struct.pack("!4sI", socket.inet_aton(group), interface)
    else:
        request = struct.pack("@4s4si", socket.inet_aton(group), bytes(4), interface)
    try:
        made.setsockopt(socket.IPPROTO_IP, socket.IP_ADD_MEMBERSHIP, request)
    except OSError:
        return False
    return True
