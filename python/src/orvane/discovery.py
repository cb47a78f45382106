"""Which simulators are heard on the network."""

from typing import Callable, List, Optional

from orvane._core.discovery import LISTEN_TIME, HeardSimulator, SimulatorRole, list_heard
from orvane._shells.aio import AsyncioShell
from orvane._shells.blocking import BlockingShell
from orvane.options import Options

__all__ = ["LISTEN_TIME", "HeardSimulator", "SimulatorRole", "discover", "discover_async"]


def discover(
    port: int = 48000,
    *,
    listen_time: float = LISTEN_TIME,
    timeout: float = 2.0,
    cancelled: Optional[Callable[[], bool]] = None,
) -> List[HeardSimulator]:
    """Listens for `listen_time` seconds, and returns the simulators that were heard.

    Simulators send a beacon once a second, as UDP multicast to 239.255.1.1, port 49707. Each
    address is listed once, at most 64; anybody on the network can send a beacon. Then looks whether
    a server answers on `port` of each, which takes up to `timeout` seconds for a computer that does
    not. ConnectError: this computer cannot listen. CancelledError: `cancelled` returned True.
    """
    options = Options(port=port, timeout=timeout)
    return BlockingShell(cancelled).run(list_heard(options, listen_time))


async def discover_async(
    port: int = 48000,
    *,
    listen_time: float = LISTEN_TIME,
    timeout: float = 2.0,
    cancelled: Optional[Callable[[], bool]] = None,
) -> List[HeardSimulator]:
    """`discover` for asyncio."""
    options = Options(port=port, timeout=timeout)
    return await AsyncioShell(cancelled).run(list_heard(options, listen_time))
