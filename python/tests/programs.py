"""Programs of users, which import the package where it stands."""

import os
from pathlib import Path
from typing import Dict

ROOT = Path(__file__).resolve().parents[2]
# The step python of scripts/test says where the programs are.
PROGRAMS = Path(os.environ.get("ORVANE_HEADLESS_SIM", "")).parent


def environment() -> Dict[str, str]:
    return {**os.environ, "PYTHONPATH": str(ROOT / "python" / "src")}


def program(name: str) -> str:
    """The path of one that was built."""
    return str(PROGRAMS / name)
