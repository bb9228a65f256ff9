"""Holds the tables of docs/scene-format.md against docs/composition.schema.json.

    check_format_doc.py ROOT

Both must name the same keys, ranges, words and defaults, and the same keys for each type of light.
"""

import json
import pathlib
import re
import sys

BEYOND = 1e9  # limits as far out as this are left out of the document
IN_WORDS = {"in", "out", "work_area", "$schema", "from"}  # ranges that depend on others are told in words


class Schema:
    def __init__(self, root):
        self.root = root

    def keys(self, *names):
        """Properties of the definitions, with those that they take over from others."""
        found = {}
        for name in names:
            definition = self.root["$defs"][name]
            for part in [definition, *definition.get("allOf", [])]:
                if "$ref" in part:
                    found |= self.keys(part["$ref"].rsplit("/", 1)[1])
            found |= definition.get("properties", {})
        return found

    def plain(self, node):
        """What a single value must be: behind references, and without its keys and samples."""
        for key in ("else", "items"):
            if key in node and "properties" not in node:
                return self.plain(node[key])
        if "anyOf" in node:
            return self.plain(node["anyOf"][0])
        if "$ref" in node:
            return self.plain(self.root["$defs"][node["$ref"].rsplit("/", 1)[1]])
        return node


def tables(text):
    """{heading: [{column: cell}]}"""
    found = {}
    for section in re.split(r"^## ", text, flags=re.M)[1:]:
        heading, body = section.split("\n", 1)
        lines = [[cell.strip() for cell in line.strip("|").split("|")] for line in body.splitlines() if line.startswith("|")]
        loose = re.search(r"\n\n(\|.*)\n(?!\|---)", "\n" + body)
        if loose:
            sys.exit(f"{heading}: a row without its table: {loose[1]}")
        if lines and lines[0][0] == "Key":
            found[heading] = [dict(zip(lines[0], row)) for row in lines[2:]]
    return found


def names(cell):
    return re.findall(r"`([a-z_$]+)`", cell)


def numbers(cell):
    return [float(each.replace(",", "")) for each in re.findall(r"(?<![\w.])-?\d[\d,]*(?:\.\d+)?", cell)]


def check_row(schema, key, node, row):
    value = schema.plain(node)
    for word in value.get("enum", []):
        if f'"{word}"' not in row["Meaning"]:
            yield f"{key}: \"{word}\" is not in the document"
    limits = [value[each] for each in ("minimum", "maximum") if abs(value.get(each, BEYOND)) < BEYOND]
    if key in IN_WORDS:
        limits = []
    told = numbers(row.get("Range", ""))
    if not set(limits) <= set(told) or not set(told) <= {*limits, value.get("maximum"), node.get("maxItems")}:
        yield f"{key}: the schema's range is {limits}, the document's {told}"
    default = row["Default"].strip("`")
    if not re.fullmatch(r'-?[\d.]+|true|false|".*"|\[[\d, ]+\]', default):
        return
    if json.loads(default) != node.get("default", value.get("default")):
        yield f"{key}: the schema's default is {node.get('default')}, the document's {default}"


def failures(schema, sections):
    top = schema.root["properties"]
    sources = {
        "The composition": top,
        "Every layer": schema.keys("anyLayer"),
        "Place and turn": {key: node for kind in ("solid", "null", "camera") for key, node in schema.keys(kind).items()
                           if key not in schema.keys("anyLayer")},
        "Lights": schema.keys("shining", "shadow", "fading") | schema.root["$defs"]["spotLight"]["properties"]
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
            yield from (f"{heading}: {fault}" for fault in check_row(schema, key, properties[key], told[key]))
    for light in ("spot", "point", "parallel", "ambient"):
        has = schema.keys(light + "Light")
        for row in sections["Lights"]:
            for key in names(row["Key"]):
                if (row[light] == "x") != (key in has):
                    yield f"{light} light: {key} is {'not ' * (key not in has)}in the schema"


def main():
    docs = pathlib.Path(sys.argv[1]) / "docs"
    schema = Schema(json.loads((docs / "composition.schema.json").read_text()))
    found = list(failures(schema, tables((docs / "scene-format.md").read_text())))
    print(*found or ["document and schema agree"], sep="\n")
    return 1 if found else 0


sys.exit(main())
