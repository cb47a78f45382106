"""What users install: a wheel and an sdist, pure, typed, and for Python 3.9 or newer."""

import ast
import re
import subprocess
import sys
import tarfile
import venv
import zipfile
from pathlib import Path
from typing import FrozenSet, Set

import pytest
from programs import ROOT

import orvane
from orvane.testing import Simulator

PACKAGE = ROOT / "python"
SOURCES = sorted((PACKAGE / "src").rglob("*.py"))
# What it needs besides itself: nothing but the standard library, and numpy where a call says so.
OPTIONAL = {"numpy", "pytest"}
STANDARD: FrozenSet[str] = getattr(sys, "stdlib_module_names")


def build(kind: str, source: Path, folder: Path) -> Path:
    # Debian's hatchling asks for a package that Debian does not have, and does not need it here.
    command = [sys.executable, "-m", "build", "--no-isolation", "--skip-dependency-check"]
    command += [f"--{kind}", "--outdir", str(folder), str(source)]
    done = subprocess.run(command, capture_output=True, text=True)
    assert done.returncode == 0, done.stdout + done.stderr
    (made,) = folder.iterdir()
    return made


@pytest.fixture(scope="module")
def wheel(tmp_path_factory: pytest.TempPathFactory) -> Path:
    return build("wheel", PACKAGE, tmp_path_factory.mktemp("wheel"))


def test_the_wheel_is_pure_and_typed(wheel: Path) -> None:
    assert wheel.name == f"orvane-{orvane.__version__}-py3-none-any.whl"
    files = set(zipfile.ZipFile(wheel).namelist())
    assert "orvane/py.typed" in files
    modules = {name for name in files if name.endswith(".py")}
    assert modules == {str(path.relative_to(PACKAGE / "src")) for path in SOURCES}


def test_a_wheel_can_be_built_from_the_sdist(tmp_path: Path, wheel: Path) -> None:
    sdist = build("sdist", PACKAGE, tmp_path / "sdist")
    with tarfile.open(sdist) as archive:
        archive.extractall(tmp_path)
    again = build("wheel", tmp_path / sdist.name.replace(".tar.gz", ""), tmp_path / "again")
    names = sorted(zipfile.ZipFile(again).namelist())
    assert names == sorted(zipfile.ZipFile(wheel).namelist())


def test_the_wheel_is_installed_without_a_network_and_flies(
    tmp_path: Path, wheel: Path, simulator: Simulator
) -> None:
    venv.create(tmp_path / "env", with_pip=True)
    python = tmp_path / "env" / "bin" / "python"
    subprocess.run([python, "-m", "pip", "install", "--no-index", "-q", wheel], check=True)
    got = subprocess.run(
        [python, "-m", "orvane", "get", "sim/cockpit2/controls/gear_handle_down"],
        cwd=tmp_path,
        check=True,
        capture_output=True,
        text=True,
    )
    assert got.stdout == "1\n"


def test_the_version_is_that_of_the_whole() -> None:
    text = (ROOT / "CMakeLists.txt").read_text()
    version = re.search(r"project\(XPlaneOrvane VERSION (\S+)", text)
    assert version is not None and version[1] == orvane.__version__


@pytest.mark.parametrize("path", SOURCES, ids=[str(each.name) for each in SOURCES])
def test_the_syntax_is_that_of_python_3_9(path: Path) -> None:
    # What the standard library of 3.9 has, mypy looks after.
    ast.parse(path.read_text(), feature_version=(3, 9))


def test_newer_syntax_would_be_noticed() -> None:
    with pytest.raises(SyntaxError):
        ast.parse("match x:\n    case 1: pass", feature_version=(3, 9))


def imported_by(path: Path) -> Set[str]:
    modules: Set[str] = set()
    for node in ast.walk(ast.parse(path.read_text())):
        if isinstance(node, ast.Import):
            modules |= {alias.name.split(".")[0] for alias in node.names}
        elif isinstance(node, ast.ImportFrom):
            assert node.level == 0
            modules.add(str(node.module).split(".")[0])
    return modules


def test_it_needs_nothing_but_the_standard_library() -> None:
    for path in SOURCES:
        others = imported_by(path) - STANDARD - {"orvane"}
        assert others <= OPTIONAL, path


def test_the_core_does_no_input_or_output() -> None:
    doers = {"socket", "asyncio", "select", "selectors", "ssl", "threading", "subprocess"}
    for path in SOURCES:
        if "_core" in path.parts or path.name.startswith("_session"):
            assert not imported_by(path) & doers, path


def test_the_protocols_do_not_know_each_other_but_for_the_release() -> None:
    for path in (PACKAGE / "src" / "orvane" / "velmar").glob("*.py"):
        assert "orvane.tarnel" not in path.read_text(), path
    for path in (PACKAGE / "src" / "orvane" / "tarnel").glob("*.py"):
        text = path.read_text().replace("orvane.velmar._release", "")
        assert "orvane.velmar" not in text, path
