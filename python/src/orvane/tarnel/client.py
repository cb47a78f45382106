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
        """Called like the others: with the id of another aircraft than in the answer before.

        Or with 0 when it was unloaded; not for the first one that is seen.
        """
        self._session.aircraft_changed = callback


class Client(_WithAircraft, BlockingClient[Session]):
    """A connection that declares inputs and outputs once and then exchanges values.

    An answer whose shape does not fit the declarations means that the request reached the server in
    pieces: the client then connects anew, declares everything again and asks once more; only a
    second failure is raised, as a ProtocolError.
    """

    _session_type = Session

    def version(self) -> Version:
        """Also tells whether a server of this protocol is there at all."""
        return self._run(self._session.version())

    def define(self, definitions: Definitions) -> Answer:
        """Replaces all that was declared before, also for later connections, and also if it raises.

        Held commands that are down are released first. The server keeps the first identifier of a
        command output for as long as a connection lives: if one changes here, or becomes another
        command's, the client reconnects first.
        """
        return self._run(self._session.define(definitions))

    def exchange(self, items: Items = ()) -> Answer:
        """Sends values, by action or as pairs, and reports the outputs. Without items it only asks.

        The effect of the items is seen in the next answer. ValueError, and nothing is sent: an
        action that is not declared, a value that is not a 32-bit int, or no definitions at all.

        With OnLoss.RECONNECT, the items of a call that lost the connection on the way are not sent
        again, since they may be minutes old when the simulator is back; the answer is the one to
        the repeated definitions.
        """
        return self._run(self._session.exchange(items))

    def answers(self, rate: float, items: Optional[Callable[[], Items]] = None) -> Iterator[Answer]:
        """An endless row of exchanges, `rate` times a second.

        `items` is called before each of them for what it sends.
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
