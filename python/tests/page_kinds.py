"""Which test runs a block of a page."""

import re
from typing import NamedTuple

import pytest
from pages import Block, blocks_of, pages

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
    if block.code.startswith(("time,", "A\n4")):
        return "recording"
    if block.page == "docs/architecture.md":
        return "drawing"
    return {"python": "program", "toml": "profile"}.get(block.language, "?")


def each(*kinds: str) -> "pytest.MarkDecorator":
    found = [pytest.param(b, id=b.place) for b in BLOCKS if kind_of(b) in kinds]
    return pytest.mark.parametrize("block", found)
