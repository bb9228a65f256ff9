"""Open Job Description 2023-09, as far as our template uses it: the rules, and what a scheduler makes of it."""

import re

import jsonschema
import yaml


def closed(required, optional=None):
    return {"type": "object", "required": list(required), "properties": {**required, **(optional or {})},
            "additionalProperties": False}


NAME = {"type": "string", "pattern": "^[A-Za-z_][A-Za-z0-9_]{0,63}$"}
TITLE = {"type": "string", "minLength": 1, "maxLength": 128}
TEXT = {"type": "string", "minLength": 1, "maxLength": 2048}
COUNT = {"anyOf": [{"type": "integer", "minimum": 1}, {"type": "string", "pattern": r"^(\d+|\{\{.+\}\})$"}]}
PARAMETER = {"oneOf": [
    closed({"name": NAME, "type": {"const": "PATH"}},
           {"objectType": {"enum": ["FILE", "DIRECTORY"]}, "dataFlow": {"enum": ["NONE", "IN", "OUT", "INOUT"]},
            "description": TEXT, "default": {"type": "string"}}),
    closed({"name": NAME, "type": {"const": "STRING"}},
           {"description": TEXT, "default": {"type": "string"}, "minLength": COUNT, "maxLength": COUNT,
            "allowedValues": {"type": "array", "minItems": 1, "items": {"type": "string"}}}),
    closed({"name": NAME, "type": {"const": "INT"}},
           {"description": TEXT, "default": {"type": "integer"}, "minValue": {"type": "integer"},
            "maxValue": {"type": "integer"},
            "allowedValues": {"type": "array", "minItems": 1, "items": {"type": "integer"}}})]}
CHUNKS = closed({"defaultTaskCount": COUNT, "rangeConstraint": {"enum": ["CONTIGUOUS", "NONCONTIGUOUS"]}},
                {"targetRuntimeSeconds": COUNT})
CANCELATION = {"oneOf": [
    closed({"mode": {"const": "TERMINATE"}}),
    closed({"mode": {"const": "NOTIFY_THEN_TERMINATE"}},
           {"notifyPeriodInSeconds": {"type": "integer", "minimum": 1, "maximum": 600}})]}
ACTION = closed({"command": {"type": "string", "minLength": 1}},
                {"args": {"type": "array", "minItems": 1, "items": {"type": "string"}}, "timeout": COUNT,
                 "cancelation": CANCELATION})
STEP = closed(
    {"name": TITLE, "script": closed({"actions": closed({"onRun": ACTION})})},
    {"hostRequirements": closed({"attributes": {"type": "array", "items": closed(
        {"name": {"type": "string", "pattern": r"^attr(\.[A-Za-z_][A-Za-z0-9_]*)+$"}},
        {"anyOf": {"type": "array", "minItems": 1, "items": {"type": "string"}}})}}),
     "parameterSpace": closed({"taskParameterDefinitions": {"type": "array", "minItems": 1, "maxItems": 16, "items": {
         "oneOf": [closed({"name": NAME, "type": {"const": "INT"}, "range": TEXT}),
                   closed({"name": NAME, "type": {"const": "CHUNK[INT]"}, "range": TEXT, "chunks": CHUNKS})]}}})})
TEMPLATE = closed(
    {"specificationVersion": {"const": "jobtemplate-2023-09"}, "name": TITLE,
     "steps": {"type": "array", "minItems": 1, "items": STEP}},
    {"extensions": {"type": "array", "minItems": 1, "items": {"enum": ["TASK_CHUNKING"]}}, "description": TEXT,
     "parameterDefinitions": {"type": "array", "minItems": 1, "maxItems": 50, "items": PARAMETER}})

REFERENCE = re.compile(r"\{\{\s*(.*?)\s*\}\}")


def read(path):
    """The template; throws when it breaks a rule."""
    template = yaml.safe_load(path.read_text())
    jsonschema.validate(template, TEMPLATE)
    parameters = template.get("parameterDefinitions", [])
    for parameter in parameters:
        if "allowedValues" in parameter and "default" in parameter:
            assert parameter["default"] in parameter["allowedValues"], parameter
    job = ["Param." + name for name in names_once(parameters)]
    names_once(template["steps"])
    for step in template["steps"]:
        space = step.get("parameterSpace", {}).get("taskParameterDefinitions", [])
        task = ["Task.Param." + name for name in names_once(space)]
        check_references(space, job)
        check_references(step["script"], job + task)
        chunked = [p for p in space if p["type"].startswith("CHUNK")]
        assert len(chunked) <= 1, "a step may have one chunked parameter"
        assert not chunked or "TASK_CHUNKING" in template.get("extensions", []), "chunks are an extension"
    return template


def names_once(definitions):
    names = [definition["name"] for definition in definitions]
    assert len(names) == len(set(names)), f"a name twice: {names}"
    return names


def check_references(value, known):
    if isinstance(value, dict):
        value = list(value.values())
    for part in value if isinstance(value, list) else []:
        check_references(part, known)
    for name in REFERENCE.findall(value) if isinstance(value, str) else []:
        assert name in known, f"{{{{{name}}}}} stands for nothing here; there are {known}"


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
