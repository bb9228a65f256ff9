"""Holds docs/composition.schema.json against the reader's own tests and every example scene.

    check_schema.py ROOT

Scenes that are read must be valid, and what the reader refuses must be refused by the schema as well where a
schema can know it.
"""

import json
import pathlib
import sys

import jsonschema


def main():
    root = pathlib.Path(sys.argv[1])
    schema = json.loads((root / "docs/composition.schema.json").read_text())
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    failures = []

    folders = ("examples/*/*.json", "docs/manual/*.json", "tests/unit/io/*.json", "tests/golden/*.json",
               "tests/export/*.json")
    scenes = [p for folder in folders for p in sorted(root.glob(folder))
              if p.name != "rejects.json"]
    for path in scenes:
        for error in validator.iter_errors(json.loads(path.read_text())):
            failures.append(f"{path}: {error.json_path}: {error.message}")

    table = json.loads((root / "tests/unit/io/rejects.json").read_text())
    refused = 0
    for case in table["cases"]:
        if not case.get("schema", True):
            continue
        text = "\n".join(table["frames"][case["frame"]]).replace("@", case["text"])
        refused += 1
        if validator.is_valid(json.loads(text)):
            failures.append(f"the schema takes what the reader refuses ({case['message']}): {text}")

    if len(scenes) < 2 or refused < 20:
        failures.append(f"only {len(scenes)} scenes and {refused} refused ones were found")
    print(*failures or [f"{len(scenes)} scenes valid, {refused} refused"], sep="\n")
    return 1 if failures else 0


sys.exit(main())
