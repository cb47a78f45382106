"""Packets and their replies, in as few requests as the limits allow."""

from typing import Callable, List, Sequence, TypeVar

from orvane._core.link import Link, Repeat
from orvane._core.steps import Plan
from orvane.velmar import _wire
from orvane.velmar._batches import cut_into_requests
from orvane.velmar._wire import Packet

K = TypeVar("K")
T = TypeVar("T")


def exchange(link: Link, doing: str, packets: "List[Packet[T]]") -> Plan[List[T]]:
    """One request on the current connection."""
    most = sum(packet.longest_reply for packet in packets)
    payload = yield from link.exchange(_wire.request_of(packets), doing, most)
    return _wire.read_replies(payload, packets)


def ask(
    link: Link, doing: str, repeat: Repeat, make: "Callable[[], List[Packet[T]]]"
) -> Plan[List[T]]:
    """One request, for which `make` makes the packets anew on each connection."""
    return (yield from link.carry_out(doing, repeat, lambda: exchange(link, doing, make())))


def ask_each(
    link: Link,
    verb: str,
    repeat: Repeat,
    names: Sequence[str],
    items: Sequence[K],
    make: "Callable[[K], List[Packet[T]]]",
) -> Plan[List[List[T]]]:
    """Sends the packets of all items, and returns the replies to each. Errors mention the names."""
    replies: List[List[T]] = []
    costs = [make(item) for item in items]
    for batch in cut_into_requests(range(len(items)), costs):
        doing = describe(verb, [names[index] for index in batch])
        flat = yield from ask(link, doing, repeat, lambda: _flat(items, batch, make))
        for index in batch:
            count = len(costs[index])
            replies.append(flat[:count])
            flat = flat[count:]
    return replies


def describe(verb: str, names: Sequence[str]) -> str:
    """ "registering a" or "registering a and 3 more"."""
    more = f" and {len(names) - 1} more" if len(names) > 1 else ""
    return f"{verb} {names[0]}{more}"


def _flat(
    items: Sequence[K], batch: Sequence[int], make: "Callable[[K], List[Packet[T]]]"
) -> "List[Packet[T]]":
    return [packet for index in batch for packet in make(items[index])]
