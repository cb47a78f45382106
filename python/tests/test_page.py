"""docs/python.md: its blocks are run, and it names all that the package offers."""

import inspect
import os
import re
import shutil
import subprocess
import sys
from pathlib import Path
from types import ModuleType
from typing import Any, Iterator, List, NamedTuple, Optional

import pytest
from programs import ROOT, environment

import orvane
import orvane.tarnel
import orvane.testing
import orvane.velmar
from orvane.testing import Simulator

PAGE = ROOT / "docs" / "python.md"
TEXT = PAGE.read_text()


class Block(NamedTuple):
    language: str
    code: str
    output: Optional[str]
    line: int


def blocks() -> Iterator[Block]:
    """The programs; text that follows one directly is what it prints."""
    found = [
        (match[1], match[2], match.start(), match.end())
        for match in re.finditer(r"^```(\w+)\n(.*?)^```\n", TEXT, re.M | re.S)
    ]
    for index, (language, code, begin, end) in enumerate(found):
        after = found[index + 1] if index + 1 < len(found) else ("", "", 0, 0)
        is_output = after[0] == "text" and not TEXT[end : after[2]].strip()
        if language != "text":
            line = TEXT.count("\n", 0, begin) + 1
            yield Block(language, code, after[1] if is_output else None, line)


BLOCKS = list(blocks())


def run(command: List[Any], folder: Path) -> str:
    env = {**environment(), "PATH": f"{folder / 'env' / 'bin'}:{os.environ['PATH']}"}
    done = subprocess.run(command, cwd=folder, env=env, capture_output=True, text=True, timeout=120)
    assert done.returncode == 0, done.stdout + done.stderr
    return done.stdout


@pytest.mark.parametrize(
    "block",
    [
        pytest.param(block, id=f"line {block.line}")
        for block in BLOCKS
        if block.language == "python"
    ],
)
def test_a_program_does_what_the_page_says(
    block: Block, request: pytest.FixtureRequest, tmp_path: Path
) -> None:
    file = tmp_path / "test_program.py"
    file.write_text(block.code)
    command = [sys.executable, str(file)]
    if "def test_" in block.code:
        command = [*PYTEST, str(file)]
    elif "Simulator(" not in block.code:
        request.getfixturevalue("simulator")
    out = run(command, tmp_path)
    assert block.output is None or out == block.output


PYTEST = [sys.executable, "-m", "pytest", "-p", "orvane.testing.pytest_plugin"]


def test_the_commands_do_what_the_page_says(simulator: Simulator, tmp_path: Path) -> None:
    # In an environment of Debian's packages, with a copy of the repository's folders.
    subprocess.run(
        [sys.executable, "-m", "venv", "--system-site-packages", tmp_path / "env"], check=True
    )
    ignored = shutil.ignore_patterns("dist", "__pycache__")
    shutil.copytree(ROOT / "python", tmp_path / "python", ignore=ignored)
    shutil.copytree(ROOT / "examples", tmp_path / "examples", ignore=ignored)
    ran = 0
    for block in BLOCKS:
        if block.language != "sh":
            continue
        code = block.code
        if code.startswith("pip install ./"):
            # pip would download what builds it.
            code = code.replace("install", "install --no-build-isolation")
        if code.startswith("pytest "):
            # It would find the port taken by the simulator of this test.
            simulator.stop()
            code = code.replace("pytest ", "python3 -m pytest -p no:cacheprovider ")
        out = run(["bash", "-ec", code], tmp_path)
        assert block.output is None or out == block.output
        ran += 1
        if code.startswith("python3 -m pytest"):
            simulator.start()
            simulator.fly()
    assert ran == 4


def names_of(module: ModuleType) -> Iterator[str]:
    for name in module.__all__:
        yield name
        what = getattr(module, name)
        if inspect.isclass(what) and not name.endswith(("Error", "Warning")):
            yield from (each for each in vars(what) if not each.startswith("_"))


@pytest.mark.parametrize(
    "module",
    [
        pytest.param(module, id=module.__name__)
        for module in (orvane, orvane.tarnel, orvane.velmar, orvane.testing)
    ],
)
def test_everything_public_is_on_the_page(module: ModuleType) -> None:
    missing = [name for name in names_of(module) if not re.search(rf"\b{name}\b", TEXT)]
    assert missing == []


def test_there_are_blocks_of_each_kind() -> None:
    languages = [block.language for block in BLOCKS]
    assert languages.count("python") >= 10
    assert set(languages) == {"python", "sh"}
