"""What a Tarnel client knows: the definitions, and what the server remembers."""

from collections import Counter
from typing import Callable, Dict, Iterable, List, Mapping, Optional, Tuple, Union

from orvane._core.link import Link, NotRepeated, Repeat
from orvane._core.pace import Pace
from orvane._core.steps import Limit, Plan
from orvane.options import Options
from orvane.tarnel import _wire
from orvane.tarnel._held import HeldInputs
from orvane.tarnel._layout import Layouts
from orvane.tarnel.answer import Answer
from orvane.tarnel.definitions import Definitions
from orvane.tarnel.outputs import OutputType
from orvane.velmar._release import release_by_name

Items = Union[Mapping[int, int], Iterable[Tuple[int, int]]]

_ALWAYS = Repeat(when_torn=True, when_lost=True)
# Items that arrived in pieces were not executed; after a lost connection they may be minutes old.
_WHEN_TORN = Repeat(when_torn=True)
# As many as the server's buffer holds after the head of the message.
_MOST_ITEMS = 30_000_000


class Session:
    """The owner of a link. Its operations are plans."""

    def __init__(self, options: Options) -> None:
        self.link = Link(options, self)
        self.aircraft_changed: Optional[Callable[[int], None]] = None
        self._definitions: Optional[Definitions] = None
        self._layouts = Layouts(())
        self._held = HeldInputs()
        # Whether the server has the definitions, and its last answer to them.
        self._is_defined = False
        self._declared: Optional[Answer] = None
        # All commands ever observed on this connection, by their first identifier.
        self._observed: Dict[str, int] = {}
        self._aircraft: Optional[int] = None

    # Operations ----------------------------------------------------------------------------------

    def version(self) -> Plan[_wire.Version]:
        doing = "asking for the version"

        def ask() -> Plan[_wire.Version]:
            payload = yield from self.link.exchange(
                _wire.version_request(), doing, _wire.VERSION_ANSWER_SIZE
            )
            return _wire.read_version(payload)

        return (yield from self.link.carry_out(doing, _ALWAYS, ask))

    def define(self, definitions: Definitions) -> Plan[Answer]:
        yield from self.link.release_before()
        must_renew = self.link.is_connected and self._clashes(definitions)
        self._definitions = definitions
        self._layouts = Layouts(definitions.outputs)
        self._is_defined = False
        if must_renew:
            yield from self.link.renew()
        doing = "defining"

        def send() -> Plan[None]:
            # A new connection has already sent the definitions.
            if not self._is_defined:
                yield from self._send_definitions(doing)

        yield from self.link.carry_out(doing, _ALWAYS, send)
        return self._noted(self._declared)

    def exchange(self, items: Items) -> Plan[Answer]:
        pairs = list(items.items() if isinstance(items, Mapping) else items)
        self._check(pairs)
        request = _wire.data_request(pairs)
        doing = "exchanging values"

        def send() -> Plan[Answer]:
            self._held.sending(pairs)
            payload = yield from self.link.exchange(request, doing, self._layouts.longest)
            answer = Answer(payload, self._layouts.of(payload))
            self._held.sent(pairs)
            return answer

        try:
            answer: Optional[Answer] = yield from self.link.carry_out(doing, _WHEN_TORN, send)
        except NotRepeated:
            answer = self._declared
        return self._noted(answer)

    def next_answer(self, pace: Pace, items: Optional[Callable[[], Items]]) -> Plan[Answer]:
        yield from self.link.wait_for(pace)
        return (yield from self.exchange(items() if items is not None else ()))

    def reconnect(self) -> Plan[None]:
        yield from self.link.reconnect()
        if self._declared is not None:
            self._noted(self._declared)

    # For the link --------------------------------------------------------------------------------

    def declare(self) -> Plan[None]:
        self._observed.clear()
        if self._definitions is not None:
            yield from self._send_definitions("repeating the definitions")

    def take_held(self) -> "Counter[str]":
        return self._held.take()

    def release_here(self, limit: Limit) -> Plan[None]:
        doing = "releasing what is held"
        items = self._held.releasing_items()
        if items:
            request = _wire.data_request(items)
            payload = yield from self.link.exchange(request, doing, self._layouts.longest, limit)
            self._layouts.of(payload)
            self._held.sent(items)
        yield from self.release_by_name(self._held.other_held(), limit)
        self._held.take()

    def release_by_name(self, held: "Counter[str]", limit: Limit) -> Plan[None]:
        yield from release_by_name(self.link, held, limit)

    # Details -------------------------------------------------------------------------------------

    def _send_definitions(self, doing: str) -> Plan[None]:
        assert self._definitions is not None
        for output in self._definitions.outputs:
            if output.type is OutputType.COMMAND:
                self._observed.setdefault(output.name, output.id)
        self._held = HeldInputs(self._definitions.inputs)
        request = _wire.definitions_request(self._definitions)
        payload = yield from self.link.exchange(request, doing, self._layouts.longest)
        self._declared = Answer(payload, self._layouts.of(payload))
        self._is_defined = True

    def _clashes(self, wanted: Definitions) -> bool:
        """Whether the server would report a command under an earlier identifier.

        Or an earlier command under an identifier that now belongs to another.
        """
        former_names = {id: name for name, id in self._observed.items()}
        return any(
            self._observed.get(output.name, output.id) != output.id
            or former_names.get(output.id, output.name) != output.name
            for output in wanted.outputs
            if output.type is OutputType.COMMAND
        )

    def _check(self, pairs: List[Tuple[int, int]]) -> None:
        if self._definitions is None:
            raise ValueError("values cannot be exchanged before anything is defined")
        if len(pairs) > _MOST_ITEMS:
            raise ValueError(f"{len(pairs)} items are more than the server can hold")
        for action, _ in pairs:
            if action not in self._definitions.actions:
                raise ValueError(f"the action {action} is not declared")

    def _noted(self, answer: Optional[Answer]) -> Answer:
        assert answer is not None
        id = answer.aircraft_id
        has_changed = self._aircraft is not None and self._aircraft != id
        self._aircraft = id
        if has_changed and self.aircraft_changed is not None:
            self.aircraft_changed(id)
        return answer
