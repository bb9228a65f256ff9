"""What a scheduler makes of our job template: the command of every task."""

import re

import yaml

REFERENCE = re.compile(r"\{\{\s*(.*?)\s*\}\}")


def read(path):
    return yaml.safe_load(path.read_text())


def commands(template, given):
    """The command of every task of the one step: its frames are a contiguous range, as "FIRST-LAST"."""
    values = {"Param." + p["name"]: given.get(p["name"], p.get("default")) for p in template["parameterDefinitions"]}
    (step,) = template["steps"]
    (frames,) = step["parameterSpace"]["taskParameterDefinitions"]
    action = step["script"]["actions"]["onRun"]

    def filled(text):
        return REFERENCE.sub(lambda match: str(values[match[1]]), str(text))

    first, last = map(int, filled(frames["range"]).split("-"))
    count = int(filled(frames["chunks"]["defaultTaskCount"]))
    for start in range(first, last + 1, count):
        values["Task.Param." + frames["name"]] = f"{start}-{min(start + count - 1, last)}"
        yield [filled(word) for word in (action["command"], *action["args"])]
