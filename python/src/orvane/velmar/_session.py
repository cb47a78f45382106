"""What a Velmar client does, as plans."""

from collections import Counter
from typing import Any, Dict, List, Mapping, Sequence, Tuple

from orvane._core.frames import UnexpectedAnswer
from orvane._core.link import Link, NotRepeated, Repeat
from orvane._core.pace import Pace
from orvane._core.steps import Limit, Plan
from orvane.errors import ClosedError
from orvane.options import Options
from orvane.velmar import _wire
from orvane.velmar._asking import ask_each, describe, exchange
from orvane.velmar._batches import cut_into_requests
from orvane.velmar._changes import Changes, Presses
from orvane.velmar._open import candidates, find_type, ways_to_write
from orvane.velmar._registrar import ALWAYS, Registrar
from orvane.velmar._release import release_by_name
from orvane.velmar._wire import Packet
from orvane.velmar.values import (
    Action,
    CommandReport,
    CommandState,
    Dataref,
    Value,
    Writable,
)

# A write may be repeated at once, but not when the simulator is back after minutes; an action must
# never be repeated.
_WHEN_TORN = Repeat(when_torn=True)
_NEVER = Repeat()


class Session:
    """The owner of a link. A request is written anew for each attempt, since numbers change."""

    def __init__(self, options: Options) -> None:
        self.link = Link(options, self)
        self.registrar = Registrar(self.link)
        self._names = self.registrar.names
        self._held: "Counter[str]" = Counter()

    # Datarefs ------------------------------------------------------------------------------------

    def read(self, texts: Sequence[str]) -> Plan[List[Value]]:
        names = yield from self.registrar.register_as_needed(texts)
        replies = yield from ask_each(self.link, "reading", ALWAYS, names, names, self._reads)
        return [self._value(name, values) for name, values in zip(names, replies)]

    def _value(self, name: str, values: Sequence[Value]) -> Value:
        if self._names.datarefs[name] is not None:
            return values[0]
        dataref, value = find_type(name, values)
        if dataref is not None:
            self._names.want(name, dataref)
        return value

    def write(self, values: Mapping[str, Writable]) -> Plan[None]:
        names = yield from self.registrar.register_as_needed(list(values))
        writes: List[Tuple[Dataref, Writable]] = []
        for name, value in zip(names, values.values()):
            writes += yield from self._ways_to_write(name, value)
        written = [dataref.name for dataref, _ in writes]
        try:
            yield from ask_each(self.link, "writing", _WHEN_TORN, written, writes, self._writes)
        except NotRepeated:
            raise self._not_repeated(describe("writing", names)) from None

    def _reads(self, name: str) -> "List[Packet[Value]]":
        dataref = self._names.datarefs[name]
        wanted = candidates(name) if dataref is None else [dataref]
        return [_wire.read(self._names.dataref_number(each), each) for each in wanted]

    def _writes(self, each: Tuple[Dataref, Writable]) -> "List[Packet[None]]":
        dataref, value = each
        return [_wire.write(self._names.dataref_number(dataref), dataref, value)]

    def _ways_to_write(self, name: str, value: Writable) -> Plan[List[Tuple[Dataref, Writable]]]:
        dataref = self._names.datarefs[name]
        if dataref is not None:
            return [(dataref, value)]
        ways = ways_to_write(name, value)
        yield from self.registrar.add_ways(name, [way for way, _ in ways])
        return ways

    # Commands ------------------------------------------------------------------------------------

    def run(self, name: str, action: Action) -> Plan[None]:
        """Alone in its request, so that its answer must be empty."""
        if name not in self._names.commands:
            yield from self.registrar.register_commands([name])
        doing = describe("running", [name])
        ends_held = action is Action.END and self._held[name] > 0

        def send() -> Plan[None]:
            # It counts as down from the moment it is sent until it is certainly up.
            if action is Action.BEGIN:
                self._held[name] += 1
            yield from exchange(self.link, doing, [self._run(name, action)])
            if action is Action.END and self._held[name] > 0:
                self._held[name] -= 1

        try:
            yield from self.link.carry_out(doing, _NEVER, send)
        except NotRepeated:
            # Each new connection first ends what was held.
            if not (ends_held and self.link.options.release_held):
                raise self._not_repeated(doing) from None

    def end_if_held(self, name: str) -> Plan[None]:
        if self._held[name] > 0:
            yield from self.run(name, Action.END)

    def poll(self) -> Plan[List[CommandReport]]:
        doing = "polling commands"

        def send() -> Plan[List[CommandReport]]:
            replies = yield from exchange(self.link, doing, [self._poll()])
            return self._reports(replies[0])

        return (yield from self.link.carry_out(doing, ALWAYS, send))

    def poll_presses(self) -> Plan[List[CommandReport]]:
        """Registering a command again in the same request resets its state.

        No press gets lost in between. Commands of other requests are reported with their own.
        """
        names = self._names.commands
        reports: List[CommandReport] = []
        costs = [[self._register(name)] for name in names]
        for batch in cut_into_requests(names, costs, [self._poll()]):
            all_reports = yield from self._poll_batch(batch)
            reports += [report for report in all_reports if report.name in batch]
        return reports

    def _poll_batch(self, batch: List[str]) -> Plan[List[CommandReport]]:
        doing = describe("polling", batch)

        def send() -> Plan[List[CommandReport]]:
            packets: List[Packet[Any]] = [self._poll(), *map(self._register, batch)]
            states, *found = yield from exchange(self.link, doing, packets)
            if not all(found):
                raise UnexpectedAnswer("commands to be found again", "a refusal")
            return self._reports(states)

        return (yield from self.link.carry_out(doing, ALWAYS, send))

    def _run(self, name: str, action: Action) -> "Packet[None]":
        return _wire.run(self._names.command_number(name), action)

    def _poll(self) -> "Packet[List[Tuple[int, CommandState]]]":
        return _wire.poll(len(self._names.commands))

    def _register(self, name: str) -> "Packet[bool]":
        return _wire.register_command(self._names.command_number(name), name)

    def _reports(self, states: List[Tuple[int, CommandState]]) -> List[CommandReport]:
        reports = []
        for number, state in states:
            name = self._names.command_of(number)
            if name is None:
                raise UnexpectedAnswer("a poll of registered commands", f"number {number}")
            reports.append(CommandReport(name, state))
        return reports

    def _not_repeated(self, doing: str) -> ClosedError:
        return ClosedError(
            f"{self.link.place(doing)}the connection was lost;"
            " reconnected, but this was not repeated"
        )

    # What goes on --------------------------------------------------------------------------------

    def next_changes(self, pace: Pace, changes: Changes) -> Plan[Dict[str, Value]]:
        """The next readings with new values."""
        while True:
            yield from self.link.wait_for(pace)
            changed = changes.among((yield from self.read(changes.names)))
            if changed:
                return changed

    def next_presses(self, pace: Pace, presses: Presses) -> Plan[List[CommandReport]]:
        """The next presses, at least one."""
        new = [name for name in presses.names if name not in self._names.commands]
        yield from self.registrar.register_commands(new)
        while True:
            yield from self.link.wait_for(pace)
            pressed = presses.among((yield from self.poll_presses()))
            if pressed:
                return pressed

    # For the link --------------------------------------------------------------------------------

    def reconnect(self) -> Plan[None]:
        yield from self.link.reconnect()

    def declare(self) -> Plan[None]:
        yield from self.registrar.declare()

    def take_held(self) -> "Counter[str]":
        taken = +self._held
        self._held.clear()
        return taken

    def release_here(self, limit: Limit) -> Plan[None]:
        ends = [self._run(name, Action.END) for name in self._held.elements()]
        for batch in cut_into_requests(ends, [[end] for end in ends]):
            request = _wire.request_of(batch)
            yield from self.link.exchange(request, "releasing what is held", 0, limit)
        self._held.clear()

    def release_by_name(self, held: "Counter[str]", limit: Limit) -> Plan[None]:
        yield from release_by_name(self.link, held, limit)
