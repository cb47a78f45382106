"""The page of "orvane serve" in a real browser, with the real plugin in a real simulator.

Everything is on loopback; scripts/test runs this in a network of its own. Nothing waits for a fixed
time: each step waits for what it expects, up to a deadline.
"""

import itertools
import os
import re
import signal
import subprocess
import time
from pathlib import Path

import pytest
from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

ROOT = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ.get("ORVANE_BUILD", ROOT / "build" / "dev"))
ARTEFACTS = BUILD / "page"
DEADLINE = 60.0
PITCH = "sim/cockpit2/controls/yoke_pitch_ratio"
SPEED = "sim/flightmodel/position/indicated_airspeed"
BRAKES = "sim/flight_controls/brakes_max"
GEAR = "sim/cockpit2/controls/gear_handle_down"
# Keeps the texts that plots draw from now on.
DRAWN_TEXTS = """
window.drawn = new Set();
const context = CanvasRenderingContext2D.prototype;
const fillText = context.fillText;
context.fillText = function (text, ...place) {
  drawn.add(text);
  fillText.call(this, text, ...place);
};
"""


def wait_for(condition, what):
    end = time.monotonic() + DEADLINE
    while not (result := condition()):
        assert time.monotonic() < end, f"waited for {what}"
        time.sleep(0.02)
    return result


class Simulator:
    """headless-sim with the plugin, in real time, and its console."""

    def __init__(self, folder, *arguments):
        plugin = BUILD / "XPlaneOrvane" / "64" / "lin.xpl"
        self.process = subprocess.Popen(
            [BUILD / "bin" / "headless-sim", plugin, "--console", "--paused", *arguments],
            cwd=folder,
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
            text=True,
        )
        self.ask("aircraft load Page test aircraft")
        self.ask("run")

    def ask(self, statement):
        self.process.stdin.write(statement + "\n")
        self.process.stdin.flush()
        return self.process.stdout.readline()

    def value(self, name):
        return self.ask("get " + name).strip().removeprefix(name + " = ")

    def presses(self, command):
        """How often a command has begun and ended."""
        events = self.ask("events " + command)
        return tuple(int(re.search(rf" {kind}=(\d+)", events)[1]) for kind in ("begin", "end"))

    def stop(self):
        self.process.terminate()
        self.process.wait(DEADLINE)


class Tool:
    """A run of orvane; serve prints the address of its page."""

    def __init__(self, *arguments, cwd=None):
        self.process = subprocess.Popen(
            [BUILD / "bin" / "orvane", *arguments],
            cwd=cwd,
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
            text=True,
        )

    def address(self):
        return self.process.stdout.readline().strip()

    def stop(self):
        self.process.send_signal(signal.SIGTERM)
        self.process.wait(DEADLINE)
        return self.process.returncode


@pytest.fixture(name="folder")
def fixture_folder(tmp_path):
    (tmp_path / "Resources" / "plugins").mkdir(parents=True)
    return tmp_path


@pytest.fixture(name="simulator")
def fixture_simulator(folder):
    simulator = Simulator(folder)
    yield simulator
    simulator.stop()


def new_browser(profile):
    options = webdriver.ChromeOptions()
    options.binary_location = "/usr/bin/chromium"
    for argument in (
        "--headless=new",
        "--no-sandbox",
        "--disable-gpu",
        "--disable-dev-shm-usage",
        "--window-size=1100,900",
        "--disable-background-networking",
        f"--user-data-dir={profile}",
    ):
        options.add_argument(argument)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    return webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)


@pytest.fixture(name="browser", scope="module")
def fixture_browser(tmp_path_factory):
    ARTEFACTS.mkdir(parents=True, exist_ok=True)
    browser = new_browser(tmp_path_factory.mktemp("chromium"))
    yield browser
    browser.quit()


@pytest.fixture(name="serve")
def fixture_serve(folder):
    tools = []

    def start(*arguments):
        tools.append(Tool("serve", *arguments, cwd=folder))
        return tools[-1].address()

    yield start
    for tool in tools:
        assert tool.stop() == 0


@pytest.fixture(name="drive")
def fixture_drive():
    arguments = ("--input", "sine", "--period", "4", "--csv")
    tool = Tool("drive", str(ROOT / "examples" / "profiles" / "yoke.toml"), *arguments)
    yield tool
    tool.process.stdout.close()
    tool.process.terminate()
    tool.process.wait(DEADLINE)


class Page:
    def __init__(self, browser, address):
        self.browser = browser
        browser.get("about:blank")
        browser.get_log("browser")
        browser.get(address)
        wait_for(lambda: self.state() == "connected", "the connection")

    def state(self):
        return self.find("#state").get_attribute("data-state")

    def find(self, selector):
        return self.browser.find_element(By.CSS_SELECTOR, selector)

    def value(self, name):
        return self.browser.execute_script(
            "return document.querySelector(`tr[data-name='${arguments[0]}'] .value`)?.textContent",
            name,
        )

    def wait_for_value(self, name, value):
        wait_for(lambda: self.value(name) == value, f"{name} to be {value}")

    def control(self, name, kind):
        """The field of this kind that sets it, if there is one."""
        selector = f'tr[data-name="{name}"] input[type={kind}]'
        return next(iter(self.browser.find_elements(By.CSS_SELECTOR, selector)), None)

    def ink(self):
        """A text that changes with what the first plot shows."""
        return self.browser.execute_script(
            "return document.querySelector('.plot canvas')?.toDataURL()"
        )

    def command(self, name, button):
        return self.find(f'li[data-command="{name}"] .{button}')

    def complaints(self):
        """What the browser's console says, such as breaches of the policy of the page."""
        return [entry["message"] for entry in self.browser.get_log("browser")]


def test_shows_the_yoke_that_drive_moves(browser, simulator, serve, drive):
    profile = str(ROOT / "examples" / "profiles" / "yoke.toml")
    page = Page(browser, serve("--profile", profile))
    seen = set()
    wait_for(lambda: seen.add(page.value(PITCH)) or len(seen) > 6, "a moving yoke")
    inks = set()
    wait_for(lambda: inks.add(page.ink()) or len(inks) > 5, "a moving curve")
    rows = browser.find_elements(By.CSS_SELECTOR, "#axes meter")
    assert len(rows) == 2
    actions = ActionChains(browser).move_to_element(page.find(".plot"))
    actions.click_and_hold().move_by_offset(150, 0).release().perform()
    wait_for(lambda: page.find("#pause").text == "Follow", "the zoom")
    ActionChains(browser).double_click(page.find(".plot")).perform()
    wait_for(lambda: page.find("#pause").text == "Pause", "the end of the zoom")
    page.find("#plots").send_keys("one for all")
    browser.refresh()
    wait_for(lambda: page.state() == "connected", "the bookmark")
    assert page.find("#plots").get_attribute("value") == "one"
    assert page.complaints() == []


def test_sets_presses_holds_and_releases(browser, simulator, serve):
    address = serve(PITCH + ":float", "test/none", "--command", BRAKES)
    page = Page(browser, address)
    wait_for(lambda: "test/none" in page.find("#note").text, "the missing name")
    wait_for(lambda: page.control(PITCH, "text"), "the field").send_keys("0.25\n")
    page.wait_for_value(PITCH, "0.25")
    assert simulator.value(PITCH) == "0.25"
    page.command(BRAKES, "press").click()
    wait_for(lambda: simulator.presses(BRAKES) == (1, 1), "the press")
    actions = ActionChains(browser)
    actions.click_and_hold(page.command(BRAKES, "hold")).perform()
    wait_for(lambda: simulator.presses(BRAKES) == (2, 1), "the hold")
    wait_for(lambda: page.command(BRAKES, "down").text == "down", "the bar")
    actions.release().perform()
    wait_for(lambda: simulator.presses(BRAKES) == (2, 2), "the release")
    ActionChains(browser).click_and_hold(page.command(BRAKES, "hold")).perform()
    wait_for(lambda: simulator.presses(BRAKES) == (3, 2), "the second hold")
    browser.get("about:blank")
    wait_for(lambda: simulator.presses(BRAKES) == (3, 3), "the release by closing")


def test_adds_and_drops_names_and_keeps_them_in_the_address(browser, simulator, serve):
    page = Page(browser, serve())
    page.find("#add-name input").send_keys(SPEED + ":double\n")
    wait_for(lambda: "no doubles" in page.find("#note").text, "the refusal")
    page.find("#add-name input").send_keys(SPEED + ":float@kt\n")
    wait_for(lambda: page.value(SPEED) not in (None, "", "–"), "the value")
    assert SPEED.replace("/", "%2F") in browser.current_url
    page.find(f'tr[data-name="{SPEED}"] button[aria-label^=Drop]').click()
    wait_for(lambda: page.value(SPEED) is None, "the row to go")
    assert SPEED.replace("/", "%2F") not in browser.current_url


def test_slides_and_switches(browser, simulator, serve):
    page = Page(browser, serve(PITCH + ":float", GEAR + ":int"))
    wait_for(lambda: page.control(PITCH, "text"), "the field").send_keys("-1..1\n")
    slider = wait_for(lambda: page.control(PITCH, "range"), "the slider")
    assert "range=" in browser.current_url
    slider.send_keys(Keys.HOME)
    wait_for(lambda: simulator.value(PITCH) == "-1", "the left end")
    slider.send_keys(Keys.END)
    wait_for(lambda: simulator.value(PITCH) == "1", "the right end")
    simulator.ask(f"set {GEAR} 1")
    switch = page.control(GEAR, "checkbox")
    wait_for(switch.is_selected, "the switch to be on")
    switch.send_keys(Keys.SPACE)
    wait_for(lambda: simulator.value(GEAR) == "0", "the gear to be up")
    wait_for(lambda: page.value(GEAR) == "0", "the value")
    switch.send_keys(Keys.SPACE)
    wait_for(lambda: simulator.value(GEAR) == "1", "the gear to be down")


def test_keeps_what_is_visible(browser, simulator, serve, folder):
    browser.execute_cdp_cmd(
        "Browser.setDownloadBehavior", {"behavior": "allow", "downloadPath": str(folder)}
    )
    simulator.ask(f"set {PITCH} 0.25")
    page = Page(browser, serve(PITCH + ":float"))
    page.wait_for_value(PITCH, "0.25")
    simulator.ask(f"set {PITCH} 0.5")
    page.wait_for_value(PITCH, "0.5")
    page.find("#csv").click()
    table = folder / "orvane.csv"
    wait_for(lambda: table.exists() and table.stat().st_size > 0, "the CSV")
    header, *rows = table.read_text().splitlines()
    assert header == f"time,{PITCH}"
    values = [row.split(",")[1] for row in rows]
    assert "0.25" in values and values[-1] == "0.5"
    page.find("#png").click()
    picture = folder / "orvane.png"
    wait_for(lambda: picture.exists() and picture.stat().st_size > 0, "the PNG")
    assert picture.read_bytes().startswith(b"\x89PNG\r\n")
    assert page.complaints() == []


def test_is_used_with_the_keyboard_alone(browser, simulator, serve):
    page = Page(browser, serve(PITCH + ":float", "--command", BRAKES))
    wait_for(lambda: page.value(PITCH) not in (None, "", "–"), "a value")
    body = page.find("body")
    for key, button in (
        (Keys.SPACE, "Follow"),
        (Keys.SPACE, "Pause"),
        (Keys.ARROW_LEFT, "Follow"),
        (Keys.ESCAPE, "Pause"),
        (Keys.ARROW_RIGHT, "Follow"),
        ("0", "Pause"),
        ("+", "Follow"),
    ):
        body.send_keys(key)
        assert page.find("#pause").text == button
    wait_for(lambda: "the visible 15 s" in page.find("#moment").text, "half the stretch")
    body.send_keys("-")
    wait_for(lambda: "the visible 30 s" in page.find("#moment").text, "the whole stretch")
    browser.execute_script("arguments[0].focus()", page.command(BRAKES, "hold"))
    ActionChains(browser).key_down(Keys.SPACE).perform()
    wait_for(lambda: simulator.presses(BRAKES) == (1, 0), "the hold")
    ActionChains(browser).key_up(Keys.SPACE).perform()
    wait_for(lambda: simulator.presses(BRAKES) == (1, 1), "the release")


def test_marks_another_aircraft(browser, simulator, serve):
    page = Page(browser, serve(SPEED + ":float"))
    wait_for(lambda: page.value(SPEED) not in (None, "", "–"), "a value")
    browser.execute_script(DRAWN_TEXTS)
    # It may take a moment until the first aircraft is known.
    numbers = itertools.count()
    wait_for(
        lambda: simulator.ask(f"aircraft load Aircraft {next(numbers)}")
        and browser.execute_script(
            "return [...drawn].some((text) => text.startsWith('aircraft '))"
        ),
        "the mark",
    )


def test_offers_names_while_one_types(browser, simulator, folder, serve):
    (folder / "names.txt").write_text(
        "test/none\tint\ty\tunit\tNothing\n" f"{SPEED}\tfloat\tn\tkias\tAir speed indicated\n"
    )
    (folder / "Commands.txt").write_text(f"{BRAKES}    Hold brakes maximum\n")
    page = Page(browser, serve("--datarefs", "names.txt", "--commands", "Commands.txt"))
    offers = (
        "return [...document.querySelector(arguments[0]).list.options]"
        ".map((each) => `${each.value} ${each.text}`)"
    )
    for form, typed, offered in (
        ("#add-name", "airspeed", SPEED + ":float Air speed indicated"),
        ("#add-command", "MAXIMUM", BRAKES + " Hold brakes maximum"),
    ):
        page.find(form + " input").send_keys(typed)
        wait_for(lambda: browser.execute_script(offers, form + " input") == [offered], "offers")
    assert page.complaints() == []


def test_shows_a_gap_while_the_simulator_is_away(browser, folder, serve):
    simulator = Simulator(folder)
    page = Page(browser, serve(SPEED + ":float"))
    wait_for(lambda: page.value(SPEED) not in (None, "", "–"), "a value")
    simulator.stop()
    wait_for(lambda: page.state() == "lost", "the loss")
    wait_for(lambda: page.value(SPEED) == "–", "no value")
    browser.save_screenshot(str(ARTEFACTS / "lost.png"))
    simulator = Simulator(folder)
    wait_for(lambda: page.state() == "connected", "the return")
    wait_for(lambda: page.value(SPEED) not in (None, "", "–"), "the value after it")
    browser.save_screenshot(str(ARTEFACTS / "gap.png"))
    simulator.stop()


def test_replays_a_recording(browser, folder, serve):
    rows = "".join(f"{i / 20:.3f},{i / 10}\n" for i in range(41))
    (folder / "flight.csv").write_text("time,test/a:float\n" + rows)
    page = Page(browser, serve("--replay", "flight.csv"))
    page.wait_for_value("test/a", "4")
    wait_for(lambda: "over" in page.find("#state").text, "the end")


def test_is_drawn_for_laptops_tablets_and_telephones(browser, simulator, serve, drive):
    profile = str(ROOT / "examples" / "profiles" / "yoke.toml")
    page = Page(browser, serve("--profile", profile) + "&span=10&plots=one")
    wait_for(lambda: page.value(PITCH) not in (None, "", "–"), "a value")
    hold = page.command(BRAKES, "hold")
    ActionChains(browser).click_and_hold(hold).perform()
    age = "return performance.now()"
    wait_for(lambda: browser.execute_script(age) > 5000, "a bar")
    ActionChains(browser).release().perform()
    browser.execute_script("document.activeElement.blur(); scrollTo(0, 0)")
    wait_for(lambda: browser.execute_script(age) > 8000, "a curve")
    for name, width, height, scheme in (
        ("page", 1000, 1220, "light"),
        ("dark", 1000, 1180, "dark"),
        ("tablet", 700, 1000, "dark"),
        ("narrow", 360, 1600, "light"),
    ):
        browser.execute_cdp_cmd(
            "Emulation.setDeviceMetricsOverride",
            {"width": width, "height": height, "deviceScaleFactor": 1, "mobile": width < 500},
        )
        browser.execute_cdp_cmd(
            "Emulation.setEmulatedMedia",
            {"features": [{"name": "prefers-color-scheme", "value": scheme}]},
        )
        ink = page.ink()
        wait_for(lambda: page.ink() != ink, "the plot to be drawn anew")
        wide = "return document.documentElement.scrollWidth - innerWidth"
        assert browser.execute_script(wide) <= 0, f"{name} is wider than its window"
        browser.save_screenshot(str(ARTEFACTS / f"{name}.png"))
        assert page.find("#pause").text == "Pause", "it follows"
    assert page.complaints() == []
