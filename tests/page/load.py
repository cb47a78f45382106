"""Two hundred moving numbers in a browser for minutes: what the tool and the page need.

    unshare -n sh -c 'ip link set lo up; exec python3 tests/page/load.py [SECONDS]'

Prints a table of samples; docs/performance.md has one. Not a test: it says what a machine does.
"""

import csv
import math
import os
import sys
import tempfile
import time
from pathlib import Path

from test_page import Page, Simulator, Tool, new_browser, wait_for

NAMES = 200
RATE = 60
LATENESS = """
window.late = [];
let least = Infinity;
const source = new EventSource('events?id=' + '0123456789abcdef');
source.onopen = () => fetch('watch', {method: 'POST', headers: {'Content-Type': 'application/json'},
  body: JSON.stringify({id: '0123456789abcdef', names: ["load/numbers:float[200]"],
  commands: []})});
source.onmessage = (event) => {
  const lag = performance.now() - 1000 * JSON.parse(event.data)[0];
  least = Math.min(least, lag);
  window.late.push(lag - least);
};
"""


def write_flight(path):
    with open(path, "w", encoding="ascii") as file:
        rows = csv.writer(file, lineterminator="\n")
        rows.writerow(["time", f"load/numbers:float[{NAMES}]"])
        for row in range(4 * RATE):
            phase = 2 * math.pi * row / (4 * RATE)
            values = [f"{math.sin(phase + i / 10):.5f}" for i in range(NAMES)]
            rows.writerow([f"{row / RATE:.3f}", ",".join(values)])


def cpu_seconds(pid):
    fields = Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def megabytes(pid):
    return int(Path(f"/proc/{pid}/statm").read_text().split()[1]) * 4096 / 1e6


def sample(browser, pid, begin):
    heap = browser.execute_cdp_cmd("Runtime.getHeapUsage", {})["usedSize"] / 1e6
    late = sorted(browser.execute_script("return window.late.splice(0)"))
    readings = len(late)
    most = late[-1] if late else math.nan
    usual = late[int(readings * 0.99)] if late else math.nan
    seconds = time.monotonic() - begin
    print(
        f"{seconds:7.0f} s  tool {megabytes(pid):6.1f} MB {cpu_seconds(pid):7.2f} s of CPU  "
        f"page {heap:6.1f} MB  "
        f"{readings:6} readings, 99 % within {usual:5.0f} ms, all {most:5.0f} ms",
        flush=True,
    )


def main():
    length = float(sys.argv[1]) if len(sys.argv) > 1 else 600
    folder = Path(tempfile.mkdtemp())
    (folder / "Resources" / "plugins").mkdir(parents=True)
    (folder / "DataRefs.txt").write_text(f"load/numbers\tfloat[{NAMES}]\ty\tunits\tMoving\n")
    write_flight(folder / "flight.csv")
    simulator = Simulator(folder, "--hz", str(2 * RATE), "--datarefs", "DataRefs.txt")
    tool = Tool("serve", f"load/numbers:float[{NAMES}]", cwd=folder)
    mover = Tool("replay", "--loop", "flight.csv", cwd=folder)
    browser = new_browser(folder / "chromium")
    try:
        page = Page(browser, tool.address() + "&plots=one")
        wait_for(lambda: page.value("load/numbers[0]") not in (None, "", "–"), "a value")
        browser.execute_script(LATENESS)
        begin = time.monotonic()
        while time.monotonic() - begin < length:
            time.sleep(min(length, 30))
            sample(browser, tool.process.pid, begin)
    finally:
        browser.quit()
        mover.stop()
        tool.stop()
        simulator.stop()


if __name__ == "__main__":
    main()
