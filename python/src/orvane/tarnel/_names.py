"""Checks of names and elements for a record."""

from typing import Mapping, Optional, Tuple, TypeVar

from orvane._core import checks

K = TypeVar("K")

# Plus a zero byte.
_LONGEST_NAME = 99


def check_name(name: str) -> None:
    checks.check_name(name, _LONGEST_NAME)


def check_element(element: int, name: str) -> None:
    checks.check_int32(element, f"an element of {name}")
    if element < 0:
        raise ValueError(f"{name} has no element {element}")


def only_name(names: Mapping[K, Optional[str]], whose: str) -> Tuple[K, str]:
    """The only name that was given, and its kind."""
    given = [(kind, name) for kind, name in names.items() if name is not None]
    if len(given) != 1:
        raise ValueError(f"{whose} has {len(given)} names, not one")
    kind, name = given[0]
    check_name(name)
    return kind, name
