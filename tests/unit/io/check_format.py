"""Holds docs/composition.schema.json against the reader's own tests, every example scene, and docs/scene-format.md.

    check_format.py ROOT

Scenes that are read must be valid, and what the reader refuses must be refused by the schema as well where a schema can
know it. The tables of the document must name the same keys, ranges, words and defaults, and the same keys for each type of
light.
"""

import json
import pathlib
import re
import sys

import jsonschema

ROOT = pathlib.Path(sys.argv[1])
BEYOND = 1e9  # limits as far out as this are left out of the document
IN_WORDS = {"in", "out", "work_area", "$schema", "from"}  # ranges that depend on others are told in words
SCENES = ("examples/*/*.json", "docs/manual/*.json", "tests/unit/io/[!r]*.json", "tests/golden/*.json", "tests/export/*.json")


def load(path):
    return json.loads((ROOT / path).read_text())


def scene_faults(schema):
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    scenes = [path for pattern in SCENES for path in ROOT.glob(pattern)]
    for path in scenes:
        yield from (f"{path}: {error.json_path}: {error.message}" for error in validator.iter_errors(load(path)))
    table = load("tests/unit/io/rejects.json")
    refused = [case for case in table["cases"] if case.get("schema", True)]
    for case in refused:
        text = "\n".join(table["frames"][case["frame"]]).replace("@", case["text"])
        if validator.is_valid(json.loads(text)):
            yield f"the schema takes what the reader refuses ({case['message']}): {text}"
    if len(scenes) < 2 or len(refused) < 20:
        yield f"only {len(scenes)} scenes and {len(refused)} refused ones were found"


class Schema:
    def __init__(self, root):
        self.root = root

    def definition(self, reference):
        return self.root["$defs"][reference.rsplit("/", 1)[-1]]

    def keys(self, *names):
        """Properties of the definitions, with those that they take over from others."""
        found = {}
        for name in names:
            definition = self.definition(name)
            for part in [definition, *definition.get("allOf", [])]:
                if "$ref" in part:
                    found |= self.keys(part["$ref"])
            found |= definition.get("properties", {})
        return found

    def plain(self, node):
        """What a single value must be: behind references, and without its keys and samples."""
        for key in ("else", "items"):
            if key in node and "properties" not in node:
                return self.plain(node[key])
        if "anyOf" in node:
            return self.plain(node["anyOf"][0])
        return self.plain(self.definition(node["$ref"])) if "$ref" in node else node


def tables(text):
    """{heading: [{column: cell}]}"""
    found = {}
    for section in re.split(r"^## ", text, flags=re.M)[1:]:
        heading, body = section.split("\n", 1)
        lines = [[cell.strip() for cell in line.strip("|").split("|")] for line in body.splitlines() if line.startswith("|")]
        if lines and lines[0][0] == "Key":
            found[heading] = [dict(zip(lines[0], row)) for row in lines[2:]]
    return found


def names(cell):
    return re.findall(r"`([a-z_$]+)`", cell)


def row_faults(schema, key, node, row):
    value = schema.plain(node)
    for word in value.get("enum", []):
        if f'"{word}"' not in row["Meaning"]:
            yield f"{key}: \"{word}\" is not in the document"
    limits = [value[each] for each in ("minimum", "maximum") if abs(value.get(each, BEYOND)) < BEYOND and key not in IN_WORDS]
    told = {float(each.replace(",", "")) for each in re.findall(r"(?<![\w.])-?\d[\d,]*(?:\.\d+)?", row.get("Range", ""))}
    if not set(limits) <= told <= {*limits, value.get("maximum"), node.get("maxItems")}:
        yield f"{key}: the schema's range is {limits}, the document's {told}"
    default = row["Default"].strip("`")
    literal = re.fullmatch(r'-?[\d.]+|true|false|".*"|\[[\d, ]+\]', default)
    if literal and json.loads(default) != node.get("default", value.get("default")):
        yield f"{key}: the schema's default is {node.get('default')}, the document's {default}"


def document_faults(schema, sections):
    top, every = schema.root["properties"], schema.keys("anyLayer")
    sources = {
        "The composition": top,
        "Every layer": every,
        "Place and turn": {key: node for key, node in schema.keys("solid", "null", "camera").items() if key not in every},
        "Lights": schema.keys("shining", "shadow", "fading") | schema.definition("spotLight")["properties"]
                  | {"position": schema.keys("pointLight")["position"]},
        "The effect": top["effect"]["properties"],
    }
    if set(sources) != set(sections):
        yield f"sections {sorted(sections)}"
        return
    for heading, properties in sources.items():
        told = {key: row for row in sections[heading] for key in names(row["Key"])}
        for key in sorted(set(told) ^ set(properties)):
            yield f"{heading}: {key} is only in the {'document' if key in told else 'schema'}"
        for key in sorted(set(told) & set(properties)):
            yield from (f"{heading}: {fault}" for fault in row_faults(schema, key, properties[key], told[key]))
    for light in ("spot", "point", "parallel", "ambient"):
        has = schema.keys(light + "Light")
        for row in sections["Lights"]:
            for key in names(row["Key"]):
                if (row[light] == "x") != (key in has):
                    yield f"{light} light: {key} is {'not ' * (key not in has)}in the schema"


SCHEMA = load("docs/composition.schema.json")
faults = [*scene_faults(SCHEMA), *document_faults(Schema(SCHEMA), tables((ROOT / "docs/scene-format.md").read_text()))]
print(*faults or ["scenes, schema and document agree"], sep="\n")
sys.exit(1 if faults else 0)
