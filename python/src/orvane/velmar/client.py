"""The clients of Velmar."""

from contextlib import asynccontextmanager, contextmanager
from typing import (
    AsyncIterator,
    Awaitable,
    Dict,
    Iterable,
    Iterator,
    List,
    Mapping,
    Optional,
    Tuple,
    Union,
    overload,
)

from orvane._client import AsyncioClient, BlockingClient
from orvane._core.pace import Pace
from orvane.velmar._changes import Changes, Presses
from orvane.velmar._session import Session
from orvane.velmar.values import Action, CommandReport, Dataref, Type, Value, Writable

NameList = Union[List[str], Tuple[str, ...]]
Values = Mapping[str, Writable]


class Client(BlockingClient[Session]):
    """Datarefs and commands by name.

    A name is registered when it is first used. A dataref is named "NAME", with the type that it was
    registered with, or "NAME:TYPE" with int, float, byte, int[N] or float[N]. The server does not
    report types: without one, a dataref is read as float, int, float[64] and int[64], and the first
    type that gives something other than 0 is kept. Name the type if 0 matters.

        client["sim/cockpit2/controls/gear_handle_down:int"] = 0

    An answer of unexpected shape means that the request reached the server in pieces. The client
    then reconnects, registers everything again and asks again; only a second failure is raised, as
    a ProtocolError. `run` raises at the first, since the command may have been run. With
    OnLoss.RECONNECT, writes and actions that lose the connection are not repeated either: they
    raise a ClosedError once the new connection is there; except for an Action.END of what the
    client had begun, which the new connection ends.

    Refused: the simulator does not have some names. All others are registered.
    """

    _session_type = Session

    # Names ---------------------------------------------------------------------------------------

    def register_dataref(self, name: str, type: Type = Type.FLOAT, size: int = 0) -> None:
        """Registers it as this type; arrays with `size` elements, from element 0 on.

        Registering it again with another type or size replaces it. ValueError: an empty name, one
        of more than 255 bytes, an array without a size.
        """
        self.register_datarefs([Dataref(name, type, size)])

    def register_datarefs(self, datarefs: Iterable[Dataref]) -> None:
        self._run(self._session.registrar.register_datarefs(datarefs))

    def register_command(self, name: str) -> None:
        """A command that is registered again starts as not pressed."""
        self.register_commands([name])

    def register_commands(self, names: Iterable[str]) -> None:
        self._run(self._session.registrar.register_commands(names))

    def unregister_dataref(self, name: str) -> None:
        """LookupError: was not registered."""
        self._run(self._session.registrar.unregister_dataref(name))

    def unregister_command(self, name: str) -> None:
        """LookupError: was not registered."""
        self._run(self._session.registrar.unregister_command(name))

    # Datarefs ------------------------------------------------------------------------------------

    def __getitem__(self, name: str) -> Value:
        """The same as `read`."""
        return self.read(name)

    def __setitem__(self, name: str, value: Writable) -> None:
        """The same as `write`."""
        self.write(name, value)

    @overload
    def read(self, names: str) -> Value:
        ...

    @overload
    def read(self, names: NameList) -> List[Value]:
        ...

    def read(self, names: Union[str, NameList]) -> Union[Value, List[Value]]:
        """The value of one dataref, or those of several, in one request if one is enough.

        An int, a float, or an `array.array` of them; of a byte an int from 0 to 255.
        """
        if isinstance(names, str):
            return self._run(self._session.read([names]))[0]
        return self._run(self._session.read(names))

    @overload
    def write(self, names: str, value: Writable) -> None:
        ...

    @overload
    def write(self, names: Values) -> None:
        ...

    def write(self, names: Union[str, Values], value: Optional[Writable] = None) -> None:
        """Writes one value, or several by name.

        ValueError: not of the registered type or size. Without a type a value is written as a float
        and, if it is whole, as an int. Success does not mean that the dataref has changed:
        the simulator silently drops what it cannot write.
        """
        self._run(self._session.write(_values(names, value)))

    def changes(
        self, names: Iterable[str], rate: float, deadband: float = 0.0
    ) -> Iterator[Dict[str, Value]]:
        """Reads datarefs `rate` times a second, endlessly, and yields the values that are new.

        First these are all; later those that differ, in any element, by more than `deadband` from
        what was last yielded.
        """
        pace, changes = Pace(rate), Changes(names, deadband)
        return iter(lambda: self._run(self._session.next_changes(pace, changes)), None)

    # Commands ------------------------------------------------------------------------------------

    def run(self, name: str, action: Action = Action.ONCE) -> None:
        """Runs, begins or ends a command.

        When the client closes, it ends what was begun and not ended.
        """
        self._run(self._session.run(name, action))

    @contextmanager
    def hold(self, name: str) -> Iterator[None]:
        """Holds a command down within a `with` block."""
        self.run(name, Action.BEGIN)
        try:
            yield
        finally:
            self._run(self._session.end_if_held(name))

    def poll(self) -> List[CommandReport]:
        """The commands pressed since they were registered; each call reports them again."""
        return self._run(self._session.poll())

    def poll_presses(self) -> List[CommandReport]:
        """The commands that were pressed since the previous call, several presses of one as one.

        A command that is held is reported as down by each call.
        """
        return self._run(self._session.poll_presses())

    def presses(self, names: Iterable[str], rate: float = 20.0) -> Iterator[CommandReport]:
        """Polls `rate` times a second, endlessly, and yields each press of these commands once.

        Several presses of one command between two polls count as one.
        """
        pace, presses = Pace(rate), Presses(names)
        looks = iter(lambda: self._run(self._session.next_presses(pace, presses)), None)
        return (report for reports in looks for report in reports)


class AsyncClient(AsyncioClient[Session]):
    """The same for asyncio; see `Client` for what each call does."""

    _session_type = Session

    async def register_dataref(self, name: str, type: Type = Type.FLOAT, size: int = 0) -> None:
        await self.register_datarefs([Dataref(name, type, size)])

    async def register_datarefs(self, datarefs: Iterable[Dataref]) -> None:
        await self._run(self._session.registrar.register_datarefs(datarefs))

    async def register_command(self, name: str) -> None:
        await self.register_commands([name])

    async def register_commands(self, names: Iterable[str]) -> None:
        await self._run(self._session.registrar.register_commands(names))

    async def unregister_dataref(self, name: str) -> None:
        await self._run(self._session.registrar.unregister_dataref(name))

    async def unregister_command(self, name: str) -> None:
        await self._run(self._session.registrar.unregister_command(name))

    def __getitem__(self, name: str) -> Awaitable[Value]:
        """`await client[name]`; a value is written with `write`."""
        return self.read(name)

    @overload
    async def read(self, names: str) -> Value:
        ...

    @overload
    async def read(self, names: NameList) -> List[Value]:
        ...

    async def read(self, names: Union[str, NameList]) -> Union[Value, List[Value]]:
        if isinstance(names, str):
            return (await self._run(self._session.read([names])))[0]
        return await self._run(self._session.read(names))

    @overload
    async def write(self, names: str, value: Writable) -> None:
        ...

    @overload
    async def write(self, names: Values) -> None:
        ...

    async def write(self, names: Union[str, Values], value: Optional[Writable] = None) -> None:
        await self._run(self._session.write(_values(names, value)))

    async def changes(
        self, names: Iterable[str], rate: float, deadband: float = 0.0
    ) -> AsyncIterator[Dict[str, Value]]:
        pace, changes = Pace(rate), Changes(names, deadband)
        while True:
            yield await self._run(self._session.next_changes(pace, changes))

    async def run(self, name: str, action: Action = Action.ONCE) -> None:
        await self._run(self._session.run(name, action))

    @asynccontextmanager
    async def hold(self, name: str) -> AsyncIterator[None]:
        await self.run(name, Action.BEGIN)
        try:
            yield
        finally:
            await self._run(self._session.end_if_held(name))

    async def poll(self) -> List[CommandReport]:
        return await self._run(self._session.poll())

    async def poll_presses(self) -> List[CommandReport]:
        return await self._run(self._session.poll_presses())

    async def presses(
        self, names: Iterable[str], rate: float = 20.0
    ) -> AsyncIterator[CommandReport]:
        pace, presses = Pace(rate), Presses(names)
        while True:
            for report in await self._run(self._session.next_presses(pace, presses)):
                yield report


def _values(names: Union[str, Values], value: Optional[Writable]) -> Values:
    if not isinstance(names, str):
        return names
    if value is None:
        raise ValueError(f"there is no value for {names}")
    return {names: value}
