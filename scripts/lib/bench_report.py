"""Makes a Markdown report and plots of what scripts/bench has measured.

Reads FOLDER/json/*.json, in the format of Google Benchmark, whose benchmarks are named
SUBJECT/VARIANT/ours/N and SUBJECT/VARIANT/floor/N. Writes FOLDER/results.md and FOLDER/plots/*.svg,
and prints the former. A missed goal is not a failure; a figure without its floor is.
"""

import argparse
import json
import math
import pathlib
import re
import statistics
import subprocess
import sys

# What a figure may be, at most: as a ratio to its floor, or as own time, which is what remains when
# the floor is taken away. Of the figures that match, those with this N have the goal.
RATIO_GOALS = [
    (r"OutputStream/float", 1000, 2.0),
    (r"OutputStream/int_array", 1000, 1.5),
    (r"DataMessage/.*", 1000, 2.0),
    (r"Velmar/.*", 1000, 2.5),
    (r"RingBuffer/(read|write)_(float|u?int32)", 1000, 3.0),
    (r"Tick/exchange", 1000, 1.3),
    (r"Tick/idle", 0, 1.1),
    (r"PythonClient/exchange", 1000, 3.0),
]
# Of the whole time: 5 % of a core at 60 exchanges a second.
TIME_GOALS_NS = [(r"PythonClient/exchange", 1000, 0.05 * 1e9 / 60)]
OWN_TIME_GOALS_NS = [(r"Definitions/inputs_and_outputs", 1000, 5e6)]

# Of these, the time of one value says more than that of all N.
PER_VALUE = re.compile(r"(OutputStream|DataMessage|Velmar|RingBuffer)/.*(?<!_block)")

# Linear growth, as measured: with N, more memory is touched, which the floor suffers from, too.
EXPONENT_TOLERANCE = 0.1
# The exponent is that of the upper decades, where what does not grow weighs little.
DECADES_FITTED = 2

NAME = re.compile(r"(?P<figure>.+)/(?P<side>ours|floor)/(?P<n>\d+)(?P<options>/.*)?")
NANOSECONDS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}


class ReportError(Exception):
    """Why no report can be made, in one line."""


class Point:
    """One figure at one N: the nanoseconds of both sides."""

    def __init__(self, name, n):
        self.name = name
        self.n = n
        self.samples = {"ours": [], "floor": []}

    def time(self, side):
        """The median of the repetitions.

        Between two runs on a busy machine, ratios of medians differed by 2 % as a rule and by 20 %
        at worst; those of minima by as much as a rule, but by 32 % at worst: the one quietest
        moment is not one that both sides have had.
        """
        if not self.samples[side]:
            raise ReportError(f"{self.name} at {self.n} was not measured for both sides")
        return statistics.median(self.samples[side])

    @property
    def ratio(self):
        return self.time("ours") / self.time("floor")

    @property
    def own_time(self):
        return self.time("ours") - self.time("floor")

    @property
    def per_value(self):
        return PER_VALUE.fullmatch(self.name) is not None

    def shown(self, nanoseconds):
        """A time of this point as text: of one value, or of all."""
        return duration(nanoseconds / self.n if self.per_value else nanoseconds)


def duration(nanoseconds):
    for unit in ("s", "ms", "us"):
        if abs(nanoseconds) >= NANOSECONDS[unit]:
            return f"{nanoseconds / NANOSECONDS[unit]:.3g} {unit.replace('us', 'µs')}"
    return f"{nanoseconds:.3g} ns"


def read_points(folder):
    """The points of all files, by figure and N, and how and where they were measured."""
    points = {}
    context = {}
    for path in sorted(folder.glob("json/*.json")):
        text = path.read_text()
        # A program none of whose benchmarks were asked for leaves an empty file.
        if not text.strip():
            continue
        try:
            content = json.loads(text)
        except ValueError as error:
            raise ReportError(f"{path}: {error}") from error
        context = content.get("context", context)
        for entry in content.get("benchmarks", []):
            add_sample(points, entry, path)
    if not points:
        raise ReportError("nothing was measured; does the filter match?")
    return dict(sorted(points.items())), context


def add_sample(points, entry, path):
    if entry.get("error_occurred"):
        raise ReportError(f"{entry['name']}: {entry.get('error_message', 'failed')}")
    if entry.get("run_type") == "aggregate":
        return
    match = NAME.fullmatch(entry.get("run_name", entry["name"]))
    if match is None:
        raise ReportError(f"{path}: {entry['name']} is not figure/side/N")
    key = (match["figure"], int(match["n"]))
    point = points.setdefault(key, Point(*key))
    # CPU time, which other programs on the machine disturb least, unless the benchmark has a clock
    # of its own.
    own_clock = re.search("manual_time|real_time", match["options"] or "")
    time = entry["real_time" if own_clock else "cpu_time"]
    point.samples[match["side"]].append(time * NANOSECONDS[entry.get("time_unit", "ns")])


def goal_of(point):
    """The goals as text, and whether all are met; two empty texts for a figure without one."""
    goals = [
        *((f"≤ {limit:g}", point.ratio <= limit) for limit in limits_of(RATIO_GOALS, point)),
        *(
            (f"own < {duration(limit)}", point.own_time < limit)
            for limit in limits_of(OWN_TIME_GOALS_NS, point)
        ),
        *(
            (f"< {duration(limit)}", point.time("ours") < limit)
            for limit in limits_of(TIME_GOALS_NS, point)
        ),
    ]
    if not goals:
        return "", ""
    return ", ".join(text for text, _ in goals), all(met for _, met in goals)


def limits_of(goals, point):
    """That of the first goal which this point has."""
    limits = [
        limit
        for pattern, n, limit in goals
        if point.n == n and re.fullmatch(pattern, point.name)
    ]
    return limits[:1]


def results_table(points):
    lines = [
        "| figure | N | ours | floor | ratio | own time | goal | met |",
        "|---|--:|--:|--:|--:|--:|---|---|",
    ]
    for point in points.values():
        goal, met = goal_of(point)
        if goal:
            met = "yes" if met else "**no**"
        lines.append(
            f"| {point.name} | {point.n:,} | {point.shown(point.time('ours'))}"
            f" | {point.shown(point.time('floor'))} | {point.ratio:.2f}"
            f" | {point.shown(point.own_time)} | {goal} | {met} |"
        )
    return lines


def definitions_list(points):
    """What a pilot would see as a hitch, since definitions are handled in one frame."""
    largest = {name: figure[-1] for name, figure in figures_of(points).items()}
    figures = [point for point in points.values() if point.name.startswith("Definitions/")]
    lines = [
        f"- {point.name}, {point.n:,}: {point.shown(point.time('ours'))} in one frame,"
        f" {100 / point.ratio:.0f} % of it the floor's"
        for point in figures
        if point.n == 1000 or point is largest[point.name]
    ]
    return [*lines, ""] if lines else []


def figures_of(points):
    """Lists of points, those of one figure in order of their N, by the figure's name."""
    figures = {}
    for point in points.values():
        figures.setdefault(point.name, []).append(point)
    return figures


def growing_figures(points):
    """Those whose growth is known, over one decade at least, without a point where N is 0."""
    figures = figures_of({key: point for key, point in points.items() if point.n > 0})
    return {
        name: figure for name, figure in figures.items() if figure[-1].n >= 10 * figure[0].n
    }


def fitted_exponent(figure, side):
    """The slope of the time over N, both as logarithms, by least squares over the upper decades."""
    largest = figure[-1].n
    fitted = [point for point in figure if point.n * 10**DECADES_FITTED >= largest]
    x = [math.log(point.n) for point in fitted]
    y = [math.log(point.time(side)) for point in fitted]
    return statistics.linear_regression(x, y).slope


def growth_table(figures):
    lines = [
        "| figure | N | exponent | floor's exponent | at most linear |",
        "|---|--:|--:|--:|---|",
    ]
    for name, figure in figures.items():
        ours, floor = (fitted_exponent(figure, side) for side in ("ours", "floor"))
        linear = ours <= max(1.0, floor) + EXPONENT_TOLERANCE
        lines.append(
            f"| {name} | {figure[0].n:,} to {figure[-1].n:,} | {ours:.2f} | {floor:.2f}"
            f" | {'yes' if linear else '**no**'} |"
        )
    return lines


def report(points, context):
    goals = [met for _, met in map(goal_of, points.values()) if met != ""]
    repetitions = max(len(point.samples["ours"]) for point in points.values())
    load = ", ".join(f"{value:.1f}" for value in context.get("load_avg", []))
    lines = [
        "# Benchmarks",
        "",
        f"Measured on {context.get('date', 'an unknown day')[:10]} with"
        f" {context.get('num_cpus', '?')} processors of {context.get('mhz_per_cpu', '?')} MHz"
        f" under a load of {load or 'unknown'}. Medians of {repetitions} repetitions. Times are"
        " those of one value; of blocks, definitions and ticks those of all N. Own time is what the"
        " plugin takes beyond its floor.",
        "",
        f"{sum(goals)} of {len(goals)} goals are met.",
        "",
        *results_table(points),
        "",
        *definitions_list(points),
        "## Growth",
        "",
        "How the time of all N grows with N, as the exponent of a power, fitted over the upper"
        f" {DECADES_FITTED} decades. At most linear is one that exceeds neither 1 nor that of the"
        f" floor by more than {EXPONENT_TOLERANCE:g}.",
        "",
        *growth_table(growing_figures(points)),
    ]
    return "\n".join(lines) + "\n"


def subjects_of(figures):
    """The figures by their subject, the first part of their name."""
    subjects = {}
    for name, figure in figures.items():
        subjects.setdefault(name.split("/")[0], {})[name] = figure
    return subjects


def plot(path, title, ylabel, logscale, curves):
    """`curves`: name, gnuplot's style, and the points (x, y)."""
    commands = [
        "set terminal svg size 1100,600 dynamic background 'white' font 'sans-serif,13'",
        f"set output '{path}'",
        f"set title '{title}' noenhanced",
        "set key outside right top noenhanced",
        "set xlabel 'N'",
        f"set ylabel '{ylabel}'",
        f"set logscale {logscale}",
        "set grid",
    ]
    for i, (_, _, values) in enumerate(curves):
        commands += [f"$curve{i} << END", *(f"{x} {y}" for x, y in values), "END"]
    commands.append(
        "plot "
        + ", ".join(
            f"$curve{i} with linespoints {style} title '{name}'"
            for i, (name, style, _) in enumerate(curves)
        )
    )
    done = subprocess.run(["gnuplot"], input="\n".join(commands), text=True, capture_output=True)
    if done.returncode != 0:
        raise ReportError(f"gnuplot: {done.stderr.strip().splitlines()[-1]}")


def plot_subject(folder, subject, figures):
    ratios = []
    times = []
    for color, (name, figure) in enumerate(figures.items(), start=1):
        variant = name.split("/", 1)[-1]
        ratios.append((variant, f"linecolor {color}", [(p.n, p.ratio) for p in figure]))
        for side, dashes in (("ours", 1), ("floor", 2)):
            label = f"{variant} {side}, N^{fitted_exponent(figure, side):.2f}"
            values = [(p.n, p.time(side) / p.n) for p in figure]
            times.append((label, f"linecolor {color} dashtype {dashes}", values))
    plot(folder / f"{subject}-ratio.svg", subject, "ratio to the floor", "x", ratios)
    plot(folder / f"{subject}-time.svg", subject, "nanoseconds per value", "xy", times)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("folder", type=pathlib.Path)
    folder = parser.parse_args().folder
    try:
        points, context = read_points(folder)
        text = report(points, context)
        (folder / "results.md").write_text(text)
        plots = folder / "plots"
        plots.mkdir(exist_ok=True)
        for subject, figures in subjects_of(growing_figures(points)).items():
            plot_subject(plots, subject, figures)
    except (ReportError, OSError) as error:
        sys.exit(f"bench_report.py: {error}")
    print(f"\n{text}\nThe same is in {folder}/results.md, with plots in {plots}.")


if __name__ == "__main__":
    main()
