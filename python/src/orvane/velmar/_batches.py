"""Long lists, split into requests that arrive whole."""

from typing import Any, List, Sequence, TypeVar

from orvane.velmar._wire import IDENTIFICATION, Packet

T = TypeVar("T")

# A request that does not arrive whole can end the simulator. Up to this size it is one packet on
# nearly every network, with room for the headers of TCP and a tunnel.
LARGEST_REQUEST = 1_400
# An answer that the server's system does not take in one call arrives damaged. Up to this size it
# takes everything, even on a new connection and a slow network.
LARGEST_ANSWER = 64 * 1024 - 1
_FRAME_SIZE = 4


def cut_into_requests(
    jobs: Sequence[T], costs: Sequence["List[Packet[Any]]"], before: "Sequence[Packet[Any]]" = ()
) -> List[List[T]]:
    """Splits `jobs`, in order, into requests within both limits.

    `costs` has the packets of each, and `before` those that each request begins with. A job that
    exceeds a limit by itself gets its own request.
    """
    base_request = len(IDENTIFICATION) + sum(len(packet.data) for packet in before)
    base_answer = _FRAME_SIZE + sum(packet.longest_reply for packet in before)
    batches: List[List[T]] = []
    request = answer = 0
    for job, packets in zip(jobs, costs):
        more_request = sum(len(packet.data) for packet in packets)
        more_answer = sum(packet.longest_reply for packet in packets)
        fits = request + more_request <= LARGEST_REQUEST and answer + more_answer <= LARGEST_ANSWER
        if not batches or not fits:
            batches.append([])
            request, answer = base_request, base_answer
        batches[-1].append(job)
        request += more_request
        answer += more_answer
    return batches
