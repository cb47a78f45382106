"""A small command-line tool: `python -m orvane get|set|watch NAME...`."""

import argparse
import os
import struct
import sys
import time
from array import array
from typing import Dict, List, NoReturn, Optional, Sequence

import orvane
from orvane.velmar import Client, Value, Writable

# The same as those of the command-line tool orvane, which does all this and more.
EXIT_USAGE = 1
EXIT_CONNECTION = 2
EXIT_REFUSED = 3
EXIT_TIMEOUT = 4

_EPILOG = """\
NAME is a dataref, or NAME:TYPE with int, float, byte, int[N] or float[N].

  python -m orvane get sim/cockpit2/gauges/indicators/altitude_ft_pilot
  python -m orvane set sim/cockpit2/controls/gear_handle_down:int=0
  python -m orvane watch --rate 5 sim/cockpit2/controls/yoke_pitch_ratio
"""


class _Parser(argparse.ArgumentParser):
    def error(self, message: str) -> NoReturn:
        _complain(f"{message} (see --help)")
        sys.exit(EXIT_USAGE)


def main(arguments: Optional[Sequence[str]] = None) -> int:
    """Returns the exit status."""
    parsed = _parse(arguments)
    if sys.stdout is None:
        return _complain("standard output is closed")
    try:
        with Client(parsed.host, parsed.port, timeout=parsed.timeout) as client:
            parsed.carry_out(client, parsed)
            sys.stdout.flush()
        return 0
    except KeyboardInterrupt:
        return 0
    except BrokenPipeError:
        # The reader has gone; drop what Python would still write at exit.
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
        return 0
    except orvane.Refused as error:
        return _complain(error, EXIT_REFUSED)
    except orvane.TimeoutError as error:
        return _complain(error, EXIT_TIMEOUT)
    except orvane.Error as error:
        return _complain(error, EXIT_CONNECTION)
    except (ValueError, OSError) as error:
        return _complain(error, EXIT_USAGE)


def _parse(arguments: Optional[Sequence[str]]) -> argparse.Namespace:
    parser = _Parser(
        prog="python -m orvane",
        description="Reads, writes and watches datarefs of the simulator.",
        epilog=_EPILOG,
        formatter_class=argparse.RawDescriptionHelpFormatter,
    )
    parser.add_argument("--version", action="version", version=orvane.__version__)
    parser.add_argument(
        "--host", default="127.0.0.1", help="where the simulator runs, or auto; 127.0.0.1"
    )
    parser.add_argument("--port", type=int, default=48000, help="48000")
    parser.add_argument("--timeout", type=float, default=2.0, help="seconds for each answer; 2")
    verbs = parser.add_subparsers(metavar="get|set|watch", required=True)
    get = verbs.add_parser("get", help="print values")
    get.add_argument("names", nargs="+", metavar="NAME")
    get.set_defaults(carry_out=_get)
    put = verbs.add_parser("set", help="write values; commas make an array")
    put.add_argument("assignments", nargs="+", metavar="NAME=VALUE")
    put.set_defaults(carry_out=_set)
    watch = verbs.add_parser("watch", help="print values as they change, until Ctrl-C")
    watch.add_argument("--rate", type=float, default=20.0, help="readings per second; 20")
    watch.add_argument("names", nargs="+", metavar="NAME")
    watch.set_defaults(carry_out=_watch)
    return parser.parse_args(arguments)


def _get(client: Client, arguments: argparse.Namespace) -> None:
    values = client.read(arguments.names)
    for name, value in zip(arguments.names, values):
        text = _text(value)
        print(text if len(values) == 1 else f"{name}={text}")


def _set(client: Client, arguments: argparse.Namespace) -> None:
    values: Dict[str, Writable] = {}
    for assignment in arguments.assignments:
        name, sign, text = assignment.partition("=")
        if not sign:
            raise ValueError(f"{assignment}: a value is missing, as in NAME=1")
        numbers = [_number(word) for word in text.split(",")]
        values[name] = numbers if "[" in name or len(numbers) > 1 else numbers[0]
    client.write(values)


def _watch(client: Client, arguments: argparse.Namespace) -> None:
    begin = time.monotonic()
    for changes in client.changes(arguments.names, arguments.rate):
        words = [f"{name}={_text(value)}" for name, value in changes.items()]
        print(f"{time.monotonic() - begin:.3f}", *words, flush=True)


def _number(word: str) -> float:
    try:
        return int(word)
    except ValueError:
        pass
    try:
        return float(word)
    except ValueError:
        raise ValueError(f'"{word}" is not a number') from None


def _text(value: Value) -> str:
    if isinstance(value, array):
        return ",".join(_number_text(each) for each in _without_last_zeros(value))
    return _number_text(value)


def _without_last_zeros(values: Sequence[float]) -> List[float]:
    kept = list(values)
    while len(kept) > 1 and kept[-1] == 0:
        kept.pop()
    return kept


def _number_text(value: float) -> str:
    """With the fewest digits that parse back to the same 32-bit float."""
    if isinstance(value, int):
        return str(value)
    bits = struct.pack("f", value)
    texts = (f"{value:.{digits}g}" for digits in range(6, 10))
    return next((text for text in texts if struct.pack("f", float(text)) == bits), repr(value))


def _complain(what: object, status: int = EXIT_USAGE) -> int:
    print(f"orvane: {what}", file=sys.stderr)
    return status


if __name__ == "__main__":
    sys.exit(main())
