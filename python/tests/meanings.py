"""What the statements of tests/vectors mean, in the package's terms."""

from typing import Any, Dict, List

from orvane.tarnel import ConditionDataref, ConditionType, Definitions, Input, Output


def numbers(text: str) -> List[float]:
    return [float(word) if "." in word else int(word) for word in text.split(",")]


def constant(text: str) -> str:
    return text.upper().replace("-", "_")


def condition_of(text: str) -> ConditionDataref:
    name, type, element = text.split(",")
    return ConditionDataref(name, ConditionType[constant(type)], int(element))


def input_of(words: List[str]) -> Input:
    _, action, target, name, *options = words
    arguments: Dict[str, Any] = {f"to_{target.replace('-', '_')}": name}
    for option in options:
        key, _, value = option.partition("=")
        if key == "element":
            arguments["element"] = int(value)
        elif key in ("int-range", "float-range"):
            arguments[f"scaled_by_{key.replace('-', '_')}"] = tuple(numbers(value))
        elif key == "datarefs":
            arguments["scaled_by_datarefs"] = tuple(value.split(","))
        elif key == "dataref-elements":
            minimum, maximum, element = value.split(",")
            arguments["scaled_by_dataref_elements"] = (minimum, maximum, int(element))
        elif key in ("skip-one", "skip-zero"):
            arguments[f"skipped_when_{key[5:]}"] = True
        elif key.startswith("skip-while-"):
            arguments[f"skipped_while_{key[11:]}"] = condition_of(value)
        elif key == "fixed":
            arguments["fixed"] = numbers(value)[0]
        elif key == "held":
            arguments["held"] = True
        else:
            assert key == "repeat-ms"
            arguments["repeated_every"] = int(value) / 1000
    return Input(int(action), **arguments)


def output_of(words: List[str]) -> Output:
    _, id, type, name, *elements = words
    arguments: Dict[str, Any] = {f"of_{type.replace('-', '_')}": name}
    if elements:
        first, count = numbers(elements[0])
        arguments.update(first_element=int(first), count=int(count))
    return Output(int(id), **arguments)


def definitions_of(meaning: List[List[str]]) -> Definitions:
    return Definitions(
        inputs=[input_of(words) for words in meaning if words[0] == "input"],
        outputs=[output_of(words) for words in meaning if words[0] == "output"],
    )


def dataref_value(type: str, text: str) -> Any:
    return numbers(text) if type.endswith("array") else numbers(text)[0]
