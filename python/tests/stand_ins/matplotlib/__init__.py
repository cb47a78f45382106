"""As much of matplotlib as examples/python/live_plot.py uses, for machines without it.

A picture is a JSON file of the lines' points.
"""


def use(backend: str) -> None:
    assert backend == "Agg"
