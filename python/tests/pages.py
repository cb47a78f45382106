"""The pages of the repository and their blocks."""

import re
import textwrap
from pathlib import Path
from typing import Iterator, List, NamedTuple, Optional

from programs import ROOT


class Block(NamedTuple):
    page: str
    heading: str
    line: int
    language: str
    code: str
    # What a comment above it says: <!-- not run: REASON -->
    why_not_run: Optional[str]
    # Of a program: the text that follows it directly, which it prints.
    output: Optional[str] = None

    @property
    def place(self) -> str:
        return f"{self.page}:{self.line}"


FENCED = re.compile(
    r"^(?: *<!-- not run: (?P<why>[^\n]+) -->\n)?"
    r"(?P<indent> *)```(?P<language>\w*)\n(?P<code>.*?)^(?P=indent)```$",
    re.M | re.S,
)
HEADING = re.compile(r"^#+ (.+)$", re.M)
PROGRAMS = ("python", "sh")


def pages() -> List[str]:
    """All that a reader finds, from the repository's root."""
    files = [*ROOT.glob("*.md"), *ROOT.glob("docs/*.md"), ROOT / "python" / "README.md"]
    return sorted(str(file.relative_to(ROOT)) for file in files)


def text_of(page: str) -> str:
    return (ROOT / page).read_text()


def prose_of(page: str) -> str:
    """Its text without the blocks."""
    return FENCED.sub("", text_of(page))


def blocks_of(page: str) -> Iterator[Block]:
    """Its blocks; a text that is the output of the program above it is not one by itself."""
    text = text_of(page)
    matches = list(FENCED.finditer(text))
    outputs = {
        index
        for index in range(1, len(matches))
        if matches[index]["language"] == "text"
        and matches[index - 1]["language"] in PROGRAMS
        and not text[matches[index - 1].end() : matches[index].start()].strip()
    }
    for index, match in enumerate(matches):
        if index in outputs:
            continue
        headings = HEADING.findall(FENCED.sub("", text[: match.start()])) or [""]
        output = matches[index + 1]["code"] if index + 1 in outputs else None
        code = textwrap.dedent(match["code"])
        line = text.count("\n", 0, match.start("language")) + 1
        yield Block(page, headings[-1], line, match["language"], code, match["why"], output)


def sources(*patterns: str) -> str:
    """The text of all files of the repository that match."""
    files: List[Path] = [file for pattern in patterns for file in sorted(ROOT.glob(pattern))]
    return "\n".join(file.read_text() for file in files if file.is_file())
