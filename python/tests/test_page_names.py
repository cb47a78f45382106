"""What the pages name is there: programs and their options, files, links, steps of scripts/test."""

import json
import re
import subprocess
from pathlib import Path
from typing import Dict, List, Tuple

import pytest
import yaml  # type: ignore[import]
from page_kinds import BLOCKS, each
from pages import Block, pages, prose_of, sources, text_of
from programs import ROOT, program

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
        assert not name.startswith("scripts/") or (ROOT / name).exists(), line
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
    check_options(re.findall(r"`([^`\n]+)`", prose_of(page)))


def anchors_of(page: str) -> List[str]:
    headings = re.findall(r"^#+ (.+)$", prose_of(page), re.M)
    return [re.sub(r"[^\w -]", "", heading).lower().replace(" ", "-") for heading in headings]


@pytest.mark.parametrize("page", pages())
def test_links_lead_somewhere(page: str) -> None:
    for link in re.findall(r"\]\(([^)\s]+)\)", prose_of(page)):
        if "://" in link:
            continue
        path, _, anchor = link.partition("#")
        target = (ROOT / page).parent / path if path else ROOT / page
        assert target.exists(), link
        if anchor:
            assert anchor in anchors_of(str(target.resolve().relative_to(ROOT))), link


@each("synopsis")
def test_a_synopsis_has_only_what_there_is(block: Block) -> None:
    check_options(re.sub(r"\n +", " ", block.code).splitlines())


def test_the_readme_names_the_packages_of_this_version() -> None:
    version = re.search(r"^project\(XPlaneOrvane VERSION ([\d.]+)", sources("CMakeLists.txt"), re.M)
    named = re.findall(r"[Oo]rvane[-_](\d[\d.]*\d)", text_of("README.md"))
    assert version and named and set(named) == {version[1]}


@pytest.mark.parametrize("file", sorted(ROOT.glob(".github/workflows/*.yml")), ids=str)
def test_a_workflow_calls_what_is_here(file: Path) -> None:
    jobs = yaml.safe_load(file.read_text())["jobs"]
    ran = [step["run"] for job in jobs.values() for step in job["steps"] if "run" in step]
    ours = [line for line in ran if "apt-get" not in line]
    assert ours and all(line.startswith("./scripts/") for line in ours)
    check_options(ours)
    if file.name == "test.yml":
        on_the_page = re.findall(r"^\| `(\w+)` \|.*\| [\d–]+ \|$", text_of("docs/testing.md"), re.M)
        listed = " ".join(jobs["steps"]["strategy"]["matrix"]["steps"]).split()
        usual = re.search(
            r"^readonly (?:all|default)_steps=\(([^)]*)\)", sources("scripts/test"), re.M
        )
        assert usual and sorted(listed) == sorted(on_the_page) == sorted(usual[1].split())
