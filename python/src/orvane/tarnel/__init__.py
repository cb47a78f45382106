"""Inputs and outputs that are declared once, and then exchanged all at once. For controls.

    from orvane.tarnel import Client, Definitions, Input, Output

    with Client() as client:
        client.define(
            Definitions(
                inputs=[Input(1, to_float="sim/cockpit2/controls/yoke_pitch_ratio")],
                outputs=[Output(1, of_float="sim/cockpit2/controls/yoke_pitch_ratio")],
            )
        )
        answer = client.exchange({1: 65535})
"""

from orvane.tarnel._wire import Version
from orvane.tarnel.answer import Answer, OutputValue
from orvane.tarnel.client import AsyncClient, Client
from orvane.tarnel.definitions import Definitions
from orvane.tarnel.inputs import ConditionDataref, ConditionType, Input, TargetType
from orvane.tarnel.outputs import Output, OutputType

__all__ = [
    "Answer",
    "AsyncClient",
    "Client",
    "ConditionDataref",
    "ConditionType",
    "Definitions",
    "Input",
    "Output",
    "OutputType",
    "OutputValue",
    "TargetType",
    "Version",
]
