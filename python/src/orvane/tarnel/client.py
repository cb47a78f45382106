"""The clients of Tarnel."""

from typing import AsyncIterator, Callable, Iterator, Optional

from orvane._client import AnyClient, AsyncioClient, BlockingClient
from orvane._core.pace import Pace
from orvane.tarnel._session import Items, Session
from orvane.tarnel._wire import Version
from orvane.tarnel.answer import Answer
from orvane.tarnel.definitions import Definitions


class _WithAircraft(AnyClient[Session]):
    def on_aircraft_changed(self, callback: Optional[Callable[[int], None]]) -> None:
        """Called like the other callbacks, with the new id, when the aircraft has changed.

        0 means that it was unloaded. Not called for the first id.
        """
        self._session.aircraft_changed = callback


class Client(_WithAircraft, BlockingClient[Session]):
    """A connection that declares inputs and outputs once and then exchanges values.

    An answer that does not fit the declarations means that the request reached the server in
    pieces. The client then reconnects, repeats the declarations and asks again; only a second
    failure is raised, as a ProtocolError.
    """

    _session_type = Session

    def version(self) -> Version:
        """Also shows whether the server speaks this protocol at all."""
        return self._run(self._session.version())

    def define(self, definitions: Definitions) -> Answer:
        """Replaces all earlier declarations, also for later connections, even if it raises.

        Held commands that are down are released first. For as long as a connection lives, the
        server keeps the first identifier of a command output: if that changes, or is given to
        another command, the client reconnects first.
        """
        return self._run(self._session.define(definitions))

    def exchange(self, items: Items = ()) -> Answer:
        """Sends values, by action or as pairs, and returns the outputs. Without items it only asks.

        The next answer shows the effect of the items. ValueError, and nothing is sent: an action
        that is not declared, a value that is not a 32-bit int, or no definitions at all.

        With OnLoss.RECONNECT, a call that loses the connection does not send its items again, since
        they may be minutes old when the simulator is back; it returns the answer to the repeated
        definitions.
        """
        return self._run(self._session.exchange(items))

    def answers(self, rate: float, items: Optional[Callable[[], Items]] = None) -> Iterator[Answer]:
        """Exchanges `rate` times a second, endlessly.

        `items` is called before each exchange and returns what to send.
        """
        pace = Pace(rate)
        plan = self._session.next_answer
        return iter(lambda: self._run(plan(pace, items)), None)


class AsyncClient(_WithAircraft, AsyncioClient[Session]):
    """The same for asyncio; see `Client` for what each call does."""

    _session_type = Session

    async def version(self) -> Version:
        return await self._run(self._session.version())

    async def define(self, definitions: Definitions) -> Answer:
        return await self._run(self._session.define(definitions))

    async def exchange(self, items: Items = ()) -> Answer:
        return await self._run(self._session.exchange(items))

    async def answers(
        self, rate: float, items: Optional[Callable[[], Items]] = None
    ) -> AsyncIterator[Answer]:
        pace = Pace(rate)
        while True:
            yield await self._run(self._session.next_answer(pace, items))
