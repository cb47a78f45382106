"""Reads tests/vectors, as its README describes them."""

from dataclasses import dataclass, field
from pathlib import Path
from typing import List

FOLDER = Path(__file__).resolve().parents[2] / "tests" / "vectors"
_MESSAGES = ("request", "answer")
_MEANINGS = ("input", "output", "item", "value", "packet", "reply")
_OTHERS = ("set", "press", "begin", "end", "aircraft", "reads", "phases", "log")


@dataclass
class Step:
    """A statement; a request and an answer have bytes, and statements that say what they mean."""

    keyword: str
    text: str
    place: str
    meaning: List[List[str]] = field(default_factory=list)
    data: bytearray = field(default_factory=bytearray)

    @property
    def payload(self) -> bytes:
        """Of an answer: without its length."""
        return bytes(self.data[4:])


@dataclass
class Vector:
    name: str
    steps: List[Step] = field(default_factory=list)


def read_vectors() -> List[Vector]:
    vectors: List[Vector] = []
    for path in sorted(FOLDER.glob("*.txt")):
        base = 0
        for number, line in enumerate(path.read_text().splitlines(), 1):
            text = _without_remark(line)
            keyword, _, rest = text.partition(" ")
            if not text:
                continue
            if not keyword:
                base = _add_bytes(vectors[-1].steps[-1].data, base, text.split())
            elif keyword == "vector":
                vectors.append(Vector(rest))
            elif keyword in _MEANINGS:
                vectors[-1].steps[-1].meaning.append(text.split())
            elif keyword in _MESSAGES + _OTHERS:
                vectors[-1].steps.append(Step(keyword, rest, f"{path.name}:{number}"))
                base = 0
            else:
                raise ValueError(f"{path}:{number}: unknown statement {keyword}")
    return vectors


def bytes_of(text: str) -> bytes:
    """Bytes as the vectors have them, of one message."""
    data = bytearray()
    _add_bytes(data, 0, text.split())
    return bytes(data)


def _without_remark(line: str) -> str:
    return "" if line.startswith("#") else line.partition(" #")[0].rstrip()


def _add_bytes(data: bytearray, base: int, words: List[str]) -> int:
    for word in words:
        if word == "[":
            base = len(data)
        elif word == "]":
            base = 0
        elif word.startswith("@"):
            missing = base + int(word[1:]) - len(data)
            assert missing >= 0, f"{word} comes too late"
            data += bytes(missing)
        elif word.startswith('"'):
            data += word[1:-1].encode()
        else:
            data += bytes.fromhex(word)
    return base
