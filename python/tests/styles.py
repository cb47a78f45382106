"""The same calls in both styles, so that a test is written once."""

import asyncio
import inspect
from contextlib import contextmanager
from functools import partial
from typing import Any, Callable, Iterator, Type

import pytest

from orvane import tarnel, velmar


class Driven:
    """A client for asyncio whose calls block: each is run on a loop of its own."""

    def __init__(self, client_type: Type[Any], *args: Any, **options: Any) -> None:
        self._client = client_type(*args, **options)
        self._loop = asyncio.new_event_loop()
        try:
            self._run(self._client.connect())
        except BaseException:
            self._loop.close()
            raise

    def _run(self, awaited: Any) -> Any:
        return self._loop.run_until_complete(awaited)

    def __getattr__(self, name: str) -> Any:
        attribute = getattr(self._client, name)
        if not callable(attribute):
            return attribute

        def call(*args: Any, **arguments: Any) -> Any:
            result = attribute(*args, **arguments)
            if inspect.isasyncgen(result):
                return self._items(result)
            if hasattr(result, "__aenter__"):
                return self._block(result)
            return self._run(result) if inspect.isawaitable(result) else result

        return call

    def __getitem__(self, name: str) -> Any:
        return self._run(self._client[name])

    def _items(self, items: Any) -> Iterator[Any]:
        while True:
            yield self._run(items.__anext__())

    @contextmanager
    def _block(self, manager: Any) -> Iterator[Any]:
        self._run(manager.__aenter__())
        try:
            yield
        finally:
            self._run(manager.__aexit__(None, None, None))

    def __enter__(self) -> "Driven":
        return self

    def __exit__(self, *error: object) -> None:
        self._run(self._client.close())
        self._loop.close()


Make = Callable[..., Any]


def _in_both_styles(client: Type[Any], async_client: Type[Any]) -> "pytest.MarkDecorator":
    """With the patience that a loaded machine needs; a test may set other times."""
    patience = {"timeout": 20, "release_within": 20}
    styles = [partial(client, **patience), partial(Driven, async_client, **patience)]
    return pytest.mark.parametrize("connect", styles, ids=["blocking", "asyncio"])


tarnel_in_both_styles = _in_both_styles(tarnel.Client, tarnel.AsyncClient)
velmar_in_both_styles = _in_both_styles(velmar.Client, velmar.AsyncClient)
