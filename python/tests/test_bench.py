"""scripts/bench measures the package: that it does, not what."""

import json
import os
import subprocess
import sys
from pathlib import Path

from programs import ROOT


def test_both_sides_get_the_same_and_are_measured(tmp_path: Path) -> None:
    out = tmp_path / "figures.json"
    command = [sys.executable, str(ROOT / "bench" / "python" / "bench_python_client.py")]
    command += ["--headless-sim", os.environ["ORVANE_HEADLESS_SIM"]]
    command += ["--plugin", os.environ["ORVANE_PLUGIN"], "--out", str(out)]
    subprocess.run([*command, "--seconds", "0.1", "--repetitions", "1"], check=True)
    figures = json.loads(out.read_text())["benchmarks"]
    names = {f"PythonClient/exchange/{s}/{n}" for s in ("ours", "floor") for n in (10, 100, 1000)}
    assert {figure["name"] for figure in figures} == names
    assert all(figure["cpu_time"] > 0 for figure in figures)
