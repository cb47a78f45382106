"""Programs of users, which import the package where it stands."""

import os
from pathlib import Path
from typing import Dict

ROOT = Path(__file__).resolve().parents[2]


def environment() -> Dict[str, str]:
    return {**os.environ, "PYTHONPATH": str(ROOT / "python" / "src")}
