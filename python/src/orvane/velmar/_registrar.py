"""Registers names, and registers them again on each new connection."""

from typing import Any, Callable, Iterable, List, Sequence

from orvane._core.link import Link, Repeat
from orvane._core.steps import Plan
from orvane.errors import Refused
from orvane.velmar import _wire
from orvane.velmar._asking import ask, ask_each, describe, exchange
from orvane.velmar._batches import cut_into_requests
from orvane.velmar._open import candidates
from orvane.velmar._registry import Registry
from orvane.velmar._wire import Packet
from orvane.velmar.values import Dataref, check_command, parse_dataref

# Registering twice does no harm, nor does unregistering.
ALWAYS = Repeat(when_torn=True, when_lost=True)

_REGISTERING = "registering"


class Registrar:
    """Plans that register the names of a link's owner."""

    def __init__(self, link: Link) -> None:
        self._link = link
        self.names = Registry()

    def register_datarefs(self, datarefs: Iterable[Dataref]) -> Plan[None]:
        """Refused: those that the simulator does not have; the others are registered."""
        new = [each for each in datarefs if self.names.datarefs.get(each.name) != each]
        found = yield from self._register(new, self._register_dataref)
        for dataref in new:
            if dataref.name in found:
                self.names.want(dataref.name, dataref)
        self._refuse_missing(_REGISTERING, [each.name for each in new], found)

    def register_commands(self, names: Iterable[str]) -> Plan[None]:
        """The same."""
        # Under a second number, a command would be reported under the first.
        new = list(dict.fromkeys(names))
        for name in new:
            check_command(name)
        found = yield from self._register(new, self._register_command)
        for name in new:
            if name in found and name not in self.names.commands:
                self.names.commands.append(name)
        self._refuse_missing(_REGISTERING, new, found)

    def register_as_needed(self, texts: Sequence[str]) -> Plan[List[str]]:
        """Registers each new "NAME" or "NAME:TYPE". Returns the names."""
        parsed = [parse_dataref(text) for text in texts]
        yield from self.register_datarefs(dataref for _, dataref in parsed if dataref is not None)
        names = [name for name, _ in parsed]
        new = [name for name in dict.fromkeys(names) if name not in self.names.datarefs]
        variants = [variant for name in new for variant in candidates(name)]
        found = yield from self._register(variants, self._register_dataref)
        for name in new:
            if name in found:
                self.names.want(name, None)
        self._refuse_missing(_REGISTERING, new, found)
        return names

    def add_ways(self, name: str, ways: Sequence[Dataref]) -> Plan[None]:
        """Further ways to access a dataref of unknown type."""
        new = self.names.add_ways(name, ways)
        found = yield from self._register(new, self._register_dataref)
        self._refuse_missing(_REGISTERING, [each.name for each in new], found)

    def unregister_dataref(self, name: str) -> Plan[None]:
        """LookupError: was not registered."""
        if name not in self.names.datarefs:
            raise LookupError(f"the dataref {name} is not registered")
        number = self.names.dataref_number
        variants = self.names.variants(name)
        yield from self._unregister(
            name, lambda: [_wire.unregister_dataref(number(each)) for each in variants]
        )
        self.names.forget_dataref(name)

    def unregister_command(self, name: str) -> Plan[None]:
        """LookupError: was not registered."""
        if name not in self.names.commands:
            raise LookupError(f"the command {name} is not registered")
        number = self.names.command_number
        yield from self._unregister(name, lambda: [_wire.unregister_command(number(name))])
        self.names.commands.remove(name)

    def declare(self) -> Plan[None]:
        """On a new connection. Refused: names are gone."""
        self.names.forget_numbers()
        datarefs = [each for name in self.names.datarefs for each in self.names.variants(name)]
        commands = self.names.commands
        make = [self._register_dataref(each) for each in datarefs]
        make += [self._register_command(name) for name in commands]
        names = [each.name for each in datarefs] + commands
        missing: List[str] = []
        costs = [[packet] for packet in make]
        for batch in cut_into_requests(range(len(make)), costs):
            doing = describe("registering again", [names[index] for index in batch])
            found = yield from exchange(self._link, doing, [make[index] for index in batch])
            missing += [names[index] for index, is_found in zip(batch, found) if not is_found]
        present = set(names) - set(missing)
        self._refuse_missing("registering again", list(dict.fromkeys(names)), present)

    def _register(
        self, items: Sequence[Any], make: "Callable[[Any], Packet[bool]]"
    ) -> "Plan[set[str]]":
        """Returns the names of those that were found."""
        names = [item.name if isinstance(item, Dataref) else item for item in items]
        replies = yield from ask_each(
            self._link, _REGISTERING, ALWAYS, names, items, lambda item: [make(item)]
        )
        return {name for name, (is_found,) in zip(names, replies) if is_found}

    def _register_dataref(self, dataref: Dataref) -> "Packet[bool]":
        return _wire.register_dataref(self.names.dataref_number(dataref), dataref)

    def _register_command(self, name: str) -> "Packet[bool]":
        return _wire.register_command(self.names.command_number(name), name)

    def _unregister(self, name: str, make: "Callable[[], List[Packet[bool]]]") -> Plan[None]:
        # Without a connection the server has forgotten all names anyway.
        if self._link.is_connected:
            yield from ask(self._link, describe("unregistering", [name]), ALWAYS, make)

    def _refuse_missing(self, doing: str, names: Sequence[str], found: "set[str]") -> None:
        missing = [name for name in names if name not in found]
        if missing:
            text = f"{self._link.place(doing)}the simulator does not have {', '.join(missing)}"
            raise Refused(text, missing)
