"""All pages: each of their blocks is run, by a test that is here or elsewhere, or says why not."""

import re
from pathlib import Path

import pytest
from page_kinds import BLOCKS, OTHER_TESTS, OtherTest, kind_of, reads
from pages import pages, sources
from programs import ROOT


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
