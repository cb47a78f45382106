"""A private network for this process, since the plugin's port is fixed."""

import ctypes
import errno
import sys
import socket
import struct

from orvane.testing.console import SimulatorError

PORT = 48000

_CLONE_NEWUSER = 0x10000000
_CLONE_NEWNET = 0x40000000
_SIOCSIFFLAGS = 0x8914
_IFF_UP_AND_RUNNING = 0x1 | 0x40
# The name of an interface and flags, in a structure of 40 bytes.
_INTERFACE_REQUEST = struct.Struct("16sH22x")


def enter_private_network() -> bool:
    """Moves the calling thread, and whatever it starts, into a new network namespace.

    It has only a loopback device: nothing outside is reachable, not even other simulators on this
    machine. Returns False and changes nothing if the system does not permit it.
    """
    if sys.platform != "linux":
        return False
    libc = ctypes.CDLL(None, use_errno=True)
    for flags in (_CLONE_NEWNET, _CLONE_NEWUSER | _CLONE_NEWNET):
        if libc.unshare(flags) == 0:
            _bring_loopback_up()
            return True
    return False


def require_free_port() -> None:
    """SimulatorError: another program has the plugin's port."""
    with socket.socket(socket.AF_INET, socket.SOCK_STREAM) as probe:
        # A connection that has just ended does not count.
        probe.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        try:
            probe.bind(("", PORT))
        except OSError as error:
            if error.errno != errno.EADDRINUSE:
                raise
            raise SimulatorError(
                f"TCP port {PORT} is taken by another program, often a second simulator:"
                f" `ss -tlnp 'sport = :{PORT}'` shows which"
            ) from None


def _bring_loopback_up() -> None:
    import fcntl  # which not all systems have

    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as control:
        request = _INTERFACE_REQUEST.pack(b"lo", _IFF_UP_AND_RUNNING)
        fcntl.ioctl(control, _SIOCSIFFLAGS, request)
