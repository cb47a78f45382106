"""All pages: each of their blocks is run, here or by a test that is named here, or says why not."""

import json
import os
import re
import subprocess
import sys
from pathlib import Path
from typing import Dict, Iterator, List, NamedTuple, Set, Tuple

import pytest
import yaml  # type: ignore[import]
from pages import Block, blocks_of, pages, sources, text_of
from programs import ROOT, environment
from terminal import Terminal

from orvane.testing import Simulator

# The step python of scripts/test says where the programs are.
PROGRAMS = Path(os.environ.get("ORVANE_HEADLESS_SIM", "")).parent
BLOCKS = [block for page in pages() for block in blocks_of(page)]


class OtherTest(NamedTuple):
    """A test elsewhere that reads the blocks of a page."""

    page: str
    language: str
    begins: str
    file: str


OTHER_TESTS = [
    OtherTest("README.md", "cpp", "", "tests/consumer/InstallAndBuild.cmake"),
    OtherTest("docs/client.md", "cpp", "", "tests/consumer/InstallAndBuild.cmake"),
    OtherTest("docs/client.md", "cmake", "", "tests/consumer/InstallAndBuild.cmake"),
    OtherTest("docs/client.md", "text", "127.0.0.1:", "tests/unit/client/VelmarLossTest.cpp"),
    OtherTest("docs/configuration.md", "text", "", "tests/e2e/DocumentedConfigurationTest.cpp"),
    OtherTest("docs/headless.md", "", "", "tests/unit/headless/program/HeadlessPageTest.cpp"),
    OtherTest("docs/orvane.md", "", "tshark ", "tests/e2e/dissector/LookAtACaptureTest.cpp"),
    OtherTest("docs/orvane.md", "", "$ orvane discover", "tests/e2e/tool/DiscoverTest.cpp"),
    OtherTest("docs/orvane.md", "", "$ orvane plugin status", "tests/e2e/tool/PluginTest.cpp"),
    OtherTest("docs/python.md", "python", "", "python/tests/test_page.py"),
    OtherTest("docs/python.md", "sh", "", "python/tests/test_page.py"),
    OtherTest("docs/security.md", "text", "table inet ", "scripts/test-firewall"),
    OtherTest("docs/tarnel.md", "", "client sends ", "tests/e2e/DocumentedExchangeTest.cpp"),
    OtherTest("docs/tarnel.md", "", "description of ", "tests/e2e/DocumentedExchangeTest.cpp"),
    OtherTest("docs/velmar.md", "", "client sends ", "tests/e2e/DocumentedExchangeTest.cpp"),
]


def reads(test: OtherTest, block: Block) -> bool:
    is_of_language = test.language in ("", block.language)
    return test.page == block.page and is_of_language and block.code.startswith(test.begins)


def is_run_elsewhere(block: Block) -> bool:
    """Here or, the same text, on another page."""
    same = [other for other in BLOCKS if other.code == block.code]
    return any(reads(test, other) for test in OTHER_TESTS for other in same)


def kind_of(block: Block) -> str:
    if block.why_not_run:
        return "not run"
    if is_run_elsewhere(block):
        return "elsewhere"
    if block.code.startswith("$ "):
        return "session"
    if re.match(r"(orvane|headless-sim) [^$]*[A-Z]{3}", block.code):
        return "synopsis"
    if block.code.startswith("time,"):
        return "recording"
    if block.page == "docs/architecture.md":
        return "drawing"
    return {"python": "program", "toml": "profile"}.get(block.language, "?")


def each(*kinds: str) -> "pytest.MarkDecorator":
    found = [pytest.param(b, id=b.place) for b in BLOCKS if kind_of(b) in kinds]
    return pytest.mark.parametrize("block", found)


def test_every_block_is_run_or_says_why_not(capsys: pytest.CaptureFixture[str]) -> None:
    unknown = [block.place for block in BLOCKS if kind_of(block) == "?"]
    assert unknown == [], "run them, or put <!-- not run: REASON --> above"
    not_run = [block for block in BLOCKS if block.why_not_run]
    with capsys.disabled():
        print(f"\n{len(BLOCKS)} blocks on {len(pages())} pages; {len(not_run)} are not run:")
        for block in not_run:
            print(f"  {block.place}: {block.why_not_run}")


def test_errors_of_the_client_are_tested_to_the_letter() -> None:
    block = next(b for b in BLOCKS if b.page == "docs/client.md" and b.code.startswith("127.0.0.1"))
    tested = re.sub(r'"\s*"', "", sources("tests/unit/client/VelmarLossTest.cpp"))
    for line in block.code.splitlines():
        assert line.replace("127.0.0.1:48000", "") in tested


@pytest.mark.parametrize("test", [t for t in OTHER_TESTS if any(reads(t, b) for b in BLOCKS)])
def test_the_other_tests_read_their_pages(test: OtherTest) -> None:
    # By the name of the page, or by that of a definition in CMake: TARNEL_PAGE. A test of the tool
    # has the words of the command.
    name = Path(test.page).stem
    definition = {"orvane": "TOOL"}.get(name, name.upper()) + "_PAGE"
    text = (ROOT / test.file).read_text()
    words = [f'"{word}"' for word in test.begins.split()[2:]]
    is_command = test.begins.startswith("$ ") and all(word in text for word in words)
    is_checked_below = "VelmarLoss" in test.file
    assert f"{name}.md" in text or definition in text or is_command or is_checked_below


@pytest.mark.parametrize("page", ["docs/tarnel.md", "docs/velmar.md"])
def test_every_exchange_is_replayed(page: str) -> None:
    replayed = (ROOT / "tests/e2e/DocumentedExchangeTest.cpp").read_text()
    headings = {b.heading for b in BLOCKS if b.page == page and kind_of(b) == "elsewhere"}
    assert [heading for heading in headings if f'"{heading}"' not in replayed] == []


# What is run here ------------------------------------------------------------------------------


def form_of(text: str) -> List[str]:
    """Its lines without what differs from run to run: numbers, curves, repeated lines."""
    text = text.replace(" beyond ", " 0 ms ")  # the end of the last bar of a histogram
    text = re.sub(r"\b0x[0-9A-F]+\b|-?\b\d[\d.]*(e-?\d+)?", "N", text)
    text = re.sub(r"[\u2580-\u259f·]+", " ", text)
    lines = [re.sub(r"\s+", " ", line).strip() for line in text.splitlines()]
    return [line for i, line in enumerate(lines) if line and lines[i - 1 : i] != [line]]


class Session(NamedTuple):
    command: str
    output: str


def sessions(block: Block) -> Iterator[Session]:
    for part in re.split(r"^\$ ", block.code, flags=re.M)[1:]:
        command, _, output = re.sub(r" *\\\n *", " ", part).partition("\n")
        yield Session(command, output)


def take_part(command: str, simulator: Simulator, terminal: Terminal) -> None:
    """What somebody does in the simulator while a command of a page runs."""
    brakes = "sim/flight_controls/brakes_max"
    if command.startswith("orvane watch "):
        simulator.set("sim/cockpit2/controls/yoke_pitch_ratio", -0.15)
    if command.startswith("orvane command observe "):
        assert terminal.wait_until(lambda: simulator.ask("handlers").endswith(" 2"), 20)
        simulator.press("sim/autopilot/servos_toggle")
        assert terminal.wait_until(lambda: "pressed" in terminal.text, 20)
        simulator.begin(brakes)
        assert terminal.wait_until(lambda: "down" in terminal.text, 20)
        simulator.end(brakes)


def make_home(home: Path) -> None:
    """The home of somebody who has a simulator, and the repository's examples."""
    simulator = home / "X-Plane 12"
    plugins = simulator / "Resources" / "plugins"
    plugins.mkdir(parents=True)
    (home / "examples").symlink_to(ROOT / "examples")
    (simulator / "X-Plane-x86_64").touch()
    (home / ".x-plane").mkdir()
    (home / ".x-plane" / "x-plane_install_12.txt").write_text(f"{simulator}/\n")
    (plugins / "xplaneorvane_datarefs.cfg").touch()
    (plugins / "DataRefs.txt").write_text(
        "2 1200 Thu Jan  1 00:00:00 2026\n\n"
        "sim/cockpit2/controls/gear_handle_down\tint\ty\tboolean\t"
        "Gear handle position. 0 is up. 1 is down.\n"
    )
    (plugins / "Commands.txt").write_text(
        "sim/flight_controls/brakes_max         Hold the brakes at maximum.\n"
        "sim/flight_controls/brakes_regular     Hold the brakes.\n"
    )


# They go on until they are interrupted.
ENDLESS = ("orvane watch ", "orvane drive ")


def program(name: str) -> str:
    return str(PROGRAMS / Path(name).name)


def form_at_home(terminal: Terminal, home: Path) -> List[str]:
    return form_of(terminal.text.replace(str(home), "/home/me"))


@each("session")
def test_a_session_looks_as_on_the_page(block: Block, simulator: Simulator, tmp_path: Path) -> None:
    make_home(tmp_path)
    env = {**environment(), "HOME": str(tmp_path), "PATH": f"{PROGRAMS}:{os.environ['PATH']}"}
    for command, output in sessions(block):
        if "headless-sim" in command:
            simulator.stop()  # which has the port
        expected = form_of(output)
        terminal = Terminal(["bash", "-c", command], tmp_path, env, columns=240)
        take_part(command, simulator, terminal)
        if command.startswith(ENDLESS):
            terminal.wait_until(lambda: form_at_home(terminal, tmp_path) == expected, 20)
            shown = form_at_home(terminal, tmp_path)
            assert terminal.close() == 0, terminal.text
        else:
            assert terminal.wait(20) == 0, terminal.text
            shown = form_at_home(terminal, tmp_path)
            terminal.close()
        assert shown == expected, terminal.text


@each("synopsis")
def test_a_synopsis_has_only_what_there_is(block: Block) -> None:
    check_options(re.sub(r"\n +", " ", block.code).splitlines())


@each("profile")
def test_a_profile_is_valid(block: Block, tmp_path: Path) -> None:
    (tmp_path / "profile.toml").write_text(block.code)
    subprocess.run([program("orvane"), "drive", "--check", tmp_path / "profile.toml"], check=True)


@each("recording")
def test_a_recording_is_valid(block: Block, simulator: Simulator) -> None:
    (simulator.folder / "flight.csv").write_text(block.code)
    command = [program("orvane"), "replay", str(simulator.folder / "flight.csv")]
    subprocess.run(command, check=True)


@each("program")
def test_a_program_runs(block: Block, simulator: Simulator, tmp_path: Path) -> None:
    (tmp_path / "program.py").write_text(block.code)
    command = [sys.executable, str(tmp_path / "program.py")]
    done = subprocess.run(command, env=environment(), capture_output=True, text=True, timeout=60)
    assert (done.returncode, done.stderr) == (0, "")
    assert done.stdout
    assert block.output is None or form_of(done.stdout) == form_of(block.output)


# What is not run has at least the names of things that are there ----------------------------------

HELPS: Dict[Tuple[str, ...], str] = {}


def help_of(*words: str) -> str:
    if words not in HELPS:
        path = ROOT / words[0] if words[0].startswith("scripts/") else program(words[0])
        command = [str(path), *words[1:], "--help"]
        HELPS[words] = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    return HELPS[words]


COMMAND = re.compile(r"^(?:\./)?(?:[\w/]*bin/)?(orvane|headless-sim|scripts/[\w-]+)((?: [^|;&]*)?)")


def check_options(lines: List[str]) -> None:
    """Programs of ours are there, and have the options that are named."""
    for line in lines:
        match = COMMAND.match(line)
        if not match or line.startswith("scripts/lib"):
            continue
        name, rest = match[1], re.sub(r"#.*", "", match[2])
        words: Tuple[str, ...] = (name,)
        if name == "orvane":
            top = help_of("orvane")
            for word in rest.split()[:2]:
                if re.match(r"[a-z]+$", word) and re.search(rf"^  {word} ", help_of(*words), re.M):
                    words = (*words, word)
            known = top + help_of(*words)
        else:
            known = help_of(name) + " --help" if "-" in rest else ""
        for option in re.findall(r"(?<![\w-])-{1,2}[a-zA-Z][\w-]*", rest):
            assert re.search(rf"(?<![\w-]){option}(?![\w-])", known), f"{line}: {option}"


@pytest.mark.parametrize(
    "block",
    [pytest.param(b, id=b.place) for b in BLOCKS if b.why_not_run and b.language == "sh"],
)
def test_what_is_not_run_is_there(block: Block) -> None:
    code = re.sub(r" *\\\n *", " ", block.code)
    check_options([part.strip() for part in re.split(r"\n|&&", code)])
    presets = json.loads((ROOT / "CMakePresets.json").read_text())["configurePresets"]
    for preset in re.findall(r"--preset (\w+)", code):
        assert preset in [each["name"] for each in presets]


@pytest.mark.parametrize("page", [page for page in pages() if page != "CHANGELOG.md"])
def test_commands_in_the_text_are_there(page: str) -> None:
    text = re.sub(r"^ *```.*?^ *```$", "", text_of(page), flags=re.M | re.S)
    check_options(re.findall(r"`([^`\n]+)`", text))


def anchors_of(page: str) -> List[str]:
    text = re.sub(r"^ *```.*?^ *```$", "", text_of(page), flags=re.M | re.S)
    headings = re.findall(r"^#+ (.+)$", text, re.M)
    return [re.sub(r"[^\w -]", "", heading).lower().replace(" ", "-") for heading in headings]


@pytest.mark.parametrize("page", pages())
def test_links_lead_somewhere(page: str) -> None:
    text = re.sub(r"^ *```.*?^ *```$", "", text_of(page), flags=re.M | re.S)
    for link in re.findall(r"\]\(([^)\s]+)\)", text):
        if "://" in link:
            continue
        path, _, anchor = link.partition("#")
        target = (ROOT / page).parent / path if path else ROOT / page
        assert target.exists(), link
        if anchor:
            assert anchor in anchors_of(str(target.resolve().relative_to(ROOT))), link


# Drawings and the picture -------------------------------------------------------------------------


def test_the_picture_has_the_rows_of_the_demo() -> None:
    block = next(b for b in BLOCKS if b.code.startswith("$ orvane drive examples/profiles/demo"))
    names = re.findall(r'<text[^>]* x="14.0"[^>]*>([^<]+)</text>', text_of("docs/picture.svg"))
    drawn = [re.sub(r"\s.*", "", line) for line in block.code.splitlines()[1:]]
    assert names[1:] == drawn


@each("drawing")
def test_a_drawing_names_what_there_is(block: Block) -> None:
    code = sources("src/**/*.h", "src/**/*.cpp")
    names = re.findall(r"\b[A-Z][a-z]+[A-Z]\w+\b", block.code)
    assert [name for name in names if not re.search(rf"\b{name}\b", code)] == []


def test_the_folders_are_there() -> None:
    tree = next(b.code for b in BLOCKS if b.page == "docs/architecture.md" and "sdk/ " in b.code)
    top = ""
    listed = []
    for indent, folder in re.findall(r"^( *)([a-z_]+)/  ", tree, re.M):
        top = top if indent else folder
        listed.append(f"{top}/{folder}" if indent else folder)
    assert [folder for folder in listed if not (ROOT / folder).is_dir()] == []
    there = [path.parent for path in ROOT.glob("src/*/CMakeLists.txt")]
    assert [str(f) for f in there if str(f.relative_to(ROOT)) not in listed] == []


def folder_of(file: str) -> str:
    """The folder that it belongs to in the drawing of the house."""
    top, second = file.split("/")[:2]
    return second if top in ("src", "headless") else top


def includes() -> Set[Tuple[str, str]]:
    """Pairs of folders of which the first includes a header of the second."""
    found = set()
    for file in [*ROOT.glob("src/*/**/*.*"), *ROOT.glob("headless/*/**/*.*")]:
        for header in re.findall(r'^#include "(.+)"$', file.read_text(), re.M):
            roots = ("", "src/", "sdk/", "headless/library/include/")
            name = next(root + header for root in roots if (ROOT / root / header).exists())
            found.add((folder_of(str(file.relative_to(ROOT))), folder_of(name)))
    return found


def arrows(drawing: str) -> Set[Tuple[str, str]]:
    """Pairs of boxes; the box of several folders by its name."""
    lines = [re.sub(r'\[".*?"\]', "", line).split("-->") for line in drawing.splitlines()]
    return {(a.strip(), b.strip()) for line in lines for a, b in zip(line, line[1:])}


def test_the_house_is_as_drawn() -> None:
    drawing = next(b.code for b in BLOCKS if b.page == "docs/architecture.md" and "graph" in b.code)
    boxes = {
        folder: box
        for box, folders in re.findall(r'(\w+)\["(.*?)"\]', drawing)
        for folder in folders.split(", ")
    }
    used = {(boxes.get(a, a), boxes.get(b, b)) for a, b in includes()}
    reachable = drawn = arrows(drawing)
    for _ in drawn:
        reachable = reachable | {(a, d) for a, b in reachable for c, d in drawn if b == c}
    assert {(a, b) for a, b in used if a != b} - reachable == set()
    assert {(a, b) for a, b in drawn if a != "tool"} - used == set()


# The workflows -----------------------------------------------------------------------------------


@pytest.mark.parametrize("file", sorted(ROOT.glob(".github/workflows/*.yml")), ids=str)
def test_a_workflow_calls_what_is_here(file: Path) -> None:
    jobs = yaml.safe_load(file.read_text())["jobs"]
    ran = [step["run"] for job in jobs.values() for step in job["steps"] if "run" in step]
    ours = [line for line in ran if "apt-get" not in line]
    assert ours and all(line.startswith("./scripts/") for line in ours)
    check_options(ours)
    if file.name == "test.yml":
        on_the_page = re.findall(r"^\| `(\w+)` \|.*\| \d+ \|$", text_of("docs/testing.md"), re.M)
        listed = " ".join(jobs["steps"]["strategy"]["matrix"]["steps"]).split()
        usual = re.search(
            r"^readonly (?:all|default)_steps=\((.*)\)", sources("scripts/test"), re.M
        )
        assert usual and sorted(listed) == sorted(on_the_page) == sorted(usual[1].split())
