"""Ends commands by name, on a connection where they are not registered."""

from collections import Counter
from typing import Any, List

from orvane._core.link import Link
from orvane._core.steps import Limit, Plan
from orvane.velmar import _wire
from orvane.velmar._batches import cut_into_requests
from orvane.velmar._wire import Packet
from orvane.velmar.values import Action


def release_by_name(link: Link, held: "Counter[str]", limit: Limit) -> Plan[None]:
    """Ends each command as often as it was begun, except those that the simulator does not have.

    Every connection speaks this protocol, whichever its client uses. No number may be in use.
    """
    names = sorted(held)
    packets = [_packets(number, name, held[name]) for number, name in enumerate(names, 1)]
    for batch in cut_into_requests(packets, packets):
        flat = [packet for each in batch for packet in each]
        most = sum(packet.longest_reply for packet in flat)
        payload = yield from link.exchange(_wire.request_of(flat), "releasing", most, limit)
        _wire.read_replies(payload, flat)


def _packets(number: int, name: str, count: int) -> "List[Packet[Any]]":
    ends = [_wire.run(number, Action.END)] * count
    return [
        _wire.register_command(number, name),
        *ends,
        _wire.unregister_command(number),
    ]
