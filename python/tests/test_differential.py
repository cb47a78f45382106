"""The same random session with the C++ client and with this one: the simulator sees the same.

The C++ client plays in `session_player`, which the environment variable ORVANE_SESSION_PLAYER
names.
"""

import os
import random
import subprocess
from array import array
from typing import Any, Dict, List, Protocol

import pytest
from meanings import constant, dataref_value, definitions_of

from orvane import Refused, tarnel, velmar
from orvane.testing import Simulator
from orvane.velmar import Action, CommandReport, Type

DATAREFS = {
    "test/int": "int",
    "test/float": "float",
    "test/ints": "int[8]",
    "test/floats": "float[8]",
    "test/minimum": "float",
    "test/maximum": "float",
}
COMMANDS = ["test/once", "test/hold"]
STATEMENTS = 60

pytestmark = pytest.mark.simulator(hz=1000, datarefs=DATAREFS, commands=COMMANDS)


class Session:
    """Makes up statements. Nothing is held when definitions go, so nobody has to release it."""

    def __init__(self, seed: int) -> None:
        self._random = random.Random(seed)
        self._actions: List[int] = []
        self._held: List[int] = []
        self._datarefs: Dict[str, str] = {}

    def statements(self) -> List[str]:
        makers = [self._define] + [self._exchange] * 4 + [self._register, self._read, self._write]
        made = [self._define()]
        for command in COMMANDS:
            made.append(f"register-command {command}")
        while len(made) < STATEMENTS:
            made.append(self._random.choice([*makers, self._run, self._look])())
        return [*"\n".join(made).split("\n"), self._release(), "run test/hold end"]

    def _define(self) -> str:
        release = self._release() + "\n" if self._held else ""
        self._actions = self._random.sample(range(1, 2000), self._random.randint(1, 6))
        self._held = []
        inputs = [self._input(self._random.choice(self._actions)) for _ in range(8)]
        self._actions = sorted({int(each.split()[1]) for each in inputs})
        outputs = [self._output(id) for id in range(1, self._random.randint(2, 6))]
        return release + "; ".join(["define", *inputs, *outputs])

    def _input(self, action: int) -> str:
        target, name = self._random.choice(
            [
                ("int", "test/int"),
                ("float", "test/float"),
                ("int-element", "test/ints"),
                ("float-element", "test/floats"),
                ("command", "test/once"),
                ("command", "test/hold"),
                ("int", "no/such/dataref"),
            ]
        )
        words = [f"input {action} {target} {name}"]
        if target.endswith("element"):
            words.append(f"element={self._random.randrange(10)}")
        if target.startswith("float"):
            words.append(self._scaling())
        if name == "test/hold":
            self._held.append(action)
            words.append("held")
        elif target == "command" and self._random.random() < 0.5:
            words.append("repeat-ms=3600000")
        else:
            words.append(self._condition())
            words.append(self._fixed(target))
        return " ".join(word for word in words if word)

    def _scaling(self) -> str:
        low, high = sorted(self._random.sample(range(-1000, 1000), 2))
        element = self._random.randrange(8)
        return self._random.choice(
            [
                "",
                f"int-range={low},{high}",
                f"float-range={low / 8},{high / 8}",
                "datarefs=test/minimum,test/maximum",
                f"dataref-elements=test/floats,test/floats,{element}",
            ]
        )

    def _condition(self) -> str:
        dataref = self._random.choice(
            ["test/int,int,0", "test/float,float,0", "test/floats,float-element,2"]
        )
        kinds = ["", "", "", "skip-one", "skip-zero"]
        whiles = [f"skip-while-positive={dataref}", f"skip-while-zero={dataref}"]
        return self._random.choice(kinds + whiles)

    def _fixed(self, target: str) -> str:
        if self._random.random() < 0.8:
            return ""
        fixed = {"int-element": "1", "command": self._random.choice(["0", "1"])}
        return f"fixed={fixed.get(target) or self._random.randint(-9, 9)}"

    def _output(self, id: int) -> str:
        first, count = self._random.randrange(8), self._random.randint(1, 8)
        return f"output {id} " + self._random.choice(
            [
                "int test/int",
                "float test/float",
                f"int-array test/ints {first},{count}",
                f"float-array test/floats {first},{count}",
                f"command kyr/button{id}",
                f"float-array kyr/floats{id} 0,{count}",
                "int no/such/dataref",
            ]
        )

    def _exchange(self) -> str:
        values = [0, 1, 2, 65535, self._random.randint(-(2**31), 2**31 - 1)]
        items = [
            f"item {self._random.choice(self._actions)} {self._random.choice(values)}"
            for _ in range(self._random.randrange(5))
        ]
        return "; ".join(["exchange", *items])

    def _release(self) -> str:
        return "; ".join(["exchange", *(f"item {action} 0" for action in sorted(set(self._held)))])

    def _register(self) -> str:
        name = self._random.choice([*DATAREFS, "no/such/dataref"])
        kind = DATAREFS.get(name, "int").replace("[8]", "-array")
        if self._random.random() < 0.3:
            kind = self._random.choice(["int", "float", "byte", "int-array", "float-array"])
        size = self._random.randint(1, 8) if kind.endswith("array") else 0
        if name in DATAREFS:
            self._datarefs[name] = f"{kind} {size}"
        return f"register-dataref {kind} {size} {name}"

    def _read(self) -> str:
        if not self._datarefs:
            return self._register()
        return f"read {self._random.choice(sorted(self._datarefs))}"

    def _write(self) -> str:
        if not self._datarefs:
            return self._register()
        name, type = self._random.choice(sorted(self._datarefs.items()))
        kind, size = type.split()
        values = [self._value(kind) for _ in range(max(1, int(size)))]
        return f"write {name} {kind} {','.join(values)}"

    def _value(self, kind: str) -> str:
        if kind.startswith("float"):
            return repr(self._random.randint(-1000, 1000) / 8)
        return str(self._random.randint(0, 255) if kind == "byte" else self._random.randint(-9, 9))

    def _run(self) -> str:
        name = self._random.choice(COMMANDS)
        actions = ["once"] if name == "test/once" else ["once", "begin", "end"]
        return f"run {name} {self._random.choice(actions)}"

    def _look(self) -> str:
        return self._random.choice(["poll", "presses"])


class Player(Protocol):
    def play(self, line: str) -> str:
        ...

    def close(self) -> None:
        ...


class CppPlayer:
    def __init__(self) -> None:
        program = os.environ.get("ORVANE_SESSION_PLAYER", "")
        assert os.path.isfile(program), "ORVANE_SESSION_PLAYER does not name the session_player"
        self._process = subprocess.Popen(
            [program], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1
        )

    def play(self, line: str) -> str:
        assert self._process.stdin is not None and self._process.stdout is not None
        self._process.stdin.write(line + "\n")
        return self._process.stdout.readline().rstrip("\n")

    def close(self) -> None:
        self._process.communicate(timeout=60)


class PythonPlayer:
    def __init__(self) -> None:
        self._tarnel = tarnel.Client()
        self._velmar = velmar.Client()

    def play(self, line: str) -> str:
        first, *others = [statement.split() for statement in line.split(";")]
        try:
            return self._play(first, others)
        except Refused:
            return "refused"
        except (ValueError, LookupError):
            return "invalid"

    def close(self) -> None:
        self._tarnel.close()
        self._velmar.close()

    def _play(self, words: List[str], meaning: List[List[str]]) -> str:
        verb, *rest = words
        if verb == "define":
            return text_of_answer(self._tarnel.define(definitions_of(meaning)))
        if verb == "exchange":
            items = [(int(words[1]), int(words[2])) for words in meaning]
            return text_of_answer(self._tarnel.exchange(items))
        if verb == "read":
            return text_of(self._velmar.read(rest[0]))
        if verb == "poll":
            return text_of_reports(self._velmar.poll())
        if verb == "presses":
            return text_of_reports(self._velmar.poll_presses())
        if verb == "register-dataref":
            self._velmar.register_dataref(rest[2], Type[constant(rest[0])], int(rest[1]))
        elif verb == "register-command":
            self._velmar.register_command(rest[0])
        elif verb == "write":
            self._velmar.write(rest[0], dataref_value(rest[1], rest[2]))
        else:
            assert verb == "run"
            self._velmar.run(rest[0], Action[rest[1].upper()])
        return "done"


def text_of(value: Any) -> str:
    if isinstance(value, array):
        return ",".join(map(text_of, value))
    return f"{value:.9g}" if isinstance(value, float) else str(int(value))


def text_of_answer(answer: tarnel.Answer) -> str:
    values = "".join(f" {id}={text_of(value)}" for id, value in answer.items())
    return f"aircraft {answer.aircraft_id}{values}"


def text_of_reports(reports: List[CommandReport]) -> str:
    states = sorted((report.name, report.state.value) for report in reports)
    return "commands" + "".join(f" {name}={state}" for name, state in states)


def transcript(simulator: Simulator, player: Player, statements: List[str]) -> List[str]:
    """Each statement, what the client made of it, and what the simulator had then."""
    simulator.set("test/maximum", 10)
    lines = []
    for statement in statements:
        said = player.play(statement)
        state = [str(simulator.get(name)) for name in DATAREFS]
        state += [str(simulator.phases(name)) for name in COMMANDS]
        lines.append(f"{statement}\n    -> {said}\n    {' '.join(state)}")
    player.close()
    return lines


@pytest.mark.parametrize("seed", range(4))
def test_both_clients_do_the_same(seed: int, simulator: Simulator) -> None:
    statements = Session(seed).statements()
    ours = transcript(simulator, PythonPlayer(), statements)
    simulator.restart()
    theirs = transcript(simulator, CppPlayer(), statements)
    assert ours == theirs
