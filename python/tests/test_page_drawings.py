"""The drawings of docs/architecture.md, and the picture of the README."""

import re
from typing import Set, Tuple

from page_kinds import BLOCKS, each
from pages import Block, sources, text_of
from programs import ROOT


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
            names = [root + header for root in roots if (ROOT / root / header).exists()]
            assert names, f"{file}: there is no {header}"
            found.add((folder_of(str(file.relative_to(ROOT))), folder_of(names[0])))
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
