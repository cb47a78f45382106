"""Datarefs and commands by name. For everything but controls.

    from orvane.velmar import Client

    with Client() as client:
        print(client["sim/cockpit2/gauges/indicators/altitude_ft_pilot"])
        client["sim/cockpit2/controls/gear_handle_down:int"] = 0
        client.run("sim/lights/beacon_lights_on")
"""

from orvane.velmar.client import AsyncClient, Client
from orvane.velmar.values import (
    Action,
    CommandReport,
    CommandState,
    Dataref,
    Type,
    Value,
    Writable,
)

__all__ = [
    "Action",
    "AsyncClient",
    "Client",
    "CommandReport",
    "CommandState",
    "Dataref",
    "Type",
    "Value",
    "Writable",
]
