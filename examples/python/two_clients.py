"""asyncio with two clients: one moves the yoke fifty times a second, the other follows commands.

Usage: two_clients.py [HOST [SECONDS]]
"""

import asyncio
import math
import sys

from orvane import tarnel, velmar

YOKE = "sim/cockpit2/controls/yoke_roll_ratio"
COMMANDS = ["sim/flight_controls/landing_gear_toggle", "sim/flight_controls/flaps_down"]
AXIS = POSITION = 1


async def wiggle(host: str) -> None:
    async with tarnel.AsyncClient(host) as client:
        await client.define(
            tarnel.Definitions(
                inputs=[tarnel.Input(AXIS, to_float=YOKE, scaled_by_float_range=(-1, 1))],
                outputs=[tarnel.Output(POSITION, of_float=YOKE)],
            )
        )
        step = 0
        async for answer in client.answers(rate=50):
            step += 1
            answer = await client.exchange({AXIS: round(32767.5 * (1 + math.sin(step / 25)))})
            if step % 25 == 0:
                print(f"yoke {answer[POSITION]:+.3f}", flush=True)


async def listen(host: str) -> None:
    async with velmar.AsyncClient(host) as client:
        await client.register_commands(COMMANDS)
        print("listening", flush=True)
        async for press in client.presses(COMMANDS):
            print(f"{press.name} was pressed", flush=True)


async def main(host: str = "127.0.0.1", seconds: float = 10.0) -> None:
    try:
        await asyncio.wait_for(asyncio.gather(wiggle(host), listen(host)), seconds)
    except asyncio.TimeoutError:
        print("done")


if __name__ == "__main__":
    asyncio.run(main(*sys.argv[1:2], *map(float, sys.argv[2:3])))
