#!/usr/bin/env python3
"""Weaves what the program knows into docs/manual.md and docs/presets.md, and draws their pictures.

    manual.py ZAM            writes the text and all pictures
    manual.py --text ZAM     the text alone
    manual.py --check ZAM    writes nothing; fails when a text is stale or a picture is missing or left over

Everything between a line <!-- ... --> and the next <!-- end --> is made here from what the comment says:

    <!-- control Spot Lights/Reach; unit px -->       ranges, default, choices and greying, from `zam controls --json`
    <!-- preset stage-beams; scene stage -->          note and picture of presets/stage-beams.json
    <!-- pictures name; scene spot; with A=1; over #c0c0c0
    Reach=200
    Reach=800; Look=Strong
    -->                                               one picture for each line, its settings as the caption

Scenes are in docs/manual. `with` is a setting that holds for all pictures of the row.
"""

import argparse
import json
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
DOCUMENTS = ("docs/manual.md", "docs/presets.md")
PICTURES = ROOT / "docs/images/manual"
BACKDROP = "#0b0e14"
UNITS = {"px": "pixels of the composition", "%": "percent", "no": "none"}
BLOCK = re.compile(r"^(<!-- (control|preset|pictures) (.*?)-->\n)(.*?)^<!-- end -->$", re.MULTILINE | re.DOTALL)


class Fault(Exception):
    pass


class Controls:
    def __init__(self, zam):
        listed = subprocess.run([zam, "controls", "--json"], check=True, capture_output=True, text=True).stdout
        self.entries = {f"{e['group']}/{e['name']}": e for e in json.loads(listed) if "default" in e}

    def find(self, name):
        """A control by its name, with its group where two share the name."""
        found = [path for path in self.entries if name in (path, self.entries[path]["name"])]
        if len(found) != 1:
            raise Fault(f"{len(found)} controls are called \"{name}\"")
        return self.entries[found[0]]

    def check(self, setting):
        name, _, value = setting.partition("=")
        entry = self.find(name)
        if "choices" in entry and value not in entry["choices"]:
            raise Fault(f"\"{name}\" has no choice \"{value}\"")

    def facts(self, entry, unit):
        kind, default, rows = entry["kind"], entry["default"], {}
        if "choices" in entry:
            rows["Choices"] = ", ".join(entry["choices"])
            rows["Default"] = entry["choices"][int(default) - 1]
        elif kind == "check box":
            rows["Values"] = f"on, off (box \"{entry['label']}\")"
            rows["Default"] = "on" if default else "off"
        elif kind == "layer":
            rows["Values"], rows["Default"] = "a layer", "none"
        else:
            (low, high), (_, end) = entry["valid"], entry["slider"]
            rows["Range"] = f"{low:.3g} to {high:g}" + (f", the slider to {end:g}" if end != high else "")
            rows["Default"] = f"{default:g}"
            rows["Unit"] = UNITS[unit]
        rows["Greyed while"] = " or ".join(self.reason(r) for r in entry.get("greyed_by", [])) or "never"
        if kind != "layer":
            rows["Keyframes"] = "no" if entry["flags"] & 2 else "yes"
        return rows

    def reason(self, reason):
        """ "Look is A or B", or what it is not where that is shorter."""
        entry = self.find(reason["control"])
        values = [{True: "on", False: "off"}.get(v, v) for v in reason["values"]]
        rest = [choice for choice in entry.get("choices", []) if choice not in values]
        if 0 < len(rest) < len(values) and len(rest) <= 2:
            return f"{entry['name']} is {'not' if len(rest) == 1 else 'neither'} {' nor '.join(rest)}"
        return f"{entry['name']} is {' or '.join(values)}"


class Book:
    def __init__(self, zam):
        self.zam, self.controls = zam, Controls(zam)
        self.drawings = {}   # file name: arguments of zam render
        self.entries, self.presets = [], []

    def weave(self, text):
        def made(match):
            head, kind, told, old = match.groups()
            if "<!--" in old:
                raise Fault(f"there is no <!-- end --> after {head}")
            return f"{head}{getattr(self, kind)(told.strip())}\n<!-- end -->"
        return BLOCK.sub(made, text)

    def options(self, line):
        """The word before the first semicolon, and "name value" pairs after it."""
        name, *rest = [part.strip() for part in line.split(";")]
        return name, [tuple(part.split(" ", 1)) for part in rest]

    def control(self, head):
        path, options = self.options(head)
        entry = self.controls.find(path)
        self.entries.append(path)
        rows = self.controls.facts(entry, dict(options).get("unit", "no"))
        return table(list(rows), rows.values())

    def draw(self, name, scene, settings=(), preset=None, scale="half", over=BACKDROP):
        """Notes a picture to be drawn; how the text shows it."""
        for setting in settings:
            self.controls.check(setting)
        self.drawings[f"{name}.png"] = [
            f"docs/manual/{scene}.json", "--resolution", scale, "--over", over,
            *(["--preset", preset] if preset else []), *(word for s in settings for word in ("--set", s))]
        alt = ", ".join(map(shown, settings)) or name
        return f"![{alt}](images/manual/{name}.png)"

    def preset(self, head):
        name, options = self.options(head)
        self.presets.append(name)
        scene, file = dict(options)["scene"], f"presets/{name}.json"
        picture = self.draw(f"preset-{name}", scene, preset=file, scale="quarter")
        note = json.loads((ROOT / file).read_text())["note"]
        return f"{picture}\n\n{note}\n\n[{name}.json](../{file}), here on [{scene}](manual/{scene}.json)."

    def pictures(self, body):
        head, *lines = body.split("\n")
        name, options = self.options(head)
        scene, over = dict(options)["scene"], dict(options).get("over", BACKDROP)
        shared = [value for key, value in options if key == "with"]
        captions, images = [], []
        for number, line in enumerate(lines, 1):
            own = [] if line == "as it is" else [part.strip() for part in line.split(";")]
            captions.append(", ".join(map(shown, own)) or line)
            images.append(self.draw(f"{name}-{number}", scene, shared + own, over=over))
        told = [f"Scene [{scene}](manual/{scene}.json)", *map(shown, shared)]
        if over != BACKDROP:
            told.append(f"over {over}")
        return f"{table(captions, images)}\n\n{', '.join(told)}."

    def check_complete(self):
        if self.entries != list(self.controls.entries):
            raise Fault("the manual's entries are not the controls in their order: "
                        + ", ".join(sorted(set(self.controls.entries) ^ set(self.entries))))
        files = sorted(p.stem for p in (ROOT / "presets").glob("*.json"))
        if sorted(self.presets) != files:
            raise Fault(f"docs/presets.md shows {sorted(self.presets)}, and there are {files}")

    def render(self):
        PICTURES.mkdir(parents=True, exist_ok=True)
        for file, arguments in self.drawings.items():
            subprocess.run([self.zam, "render", *arguments, "-q", "-o", str(PICTURES / file)], check=True, cwd=ROOT)
        for path in PICTURES.glob("*.png"):
            if path.name not in self.drawings:
                path.unlink()


def table(head, row):
    return "\n".join(f"| {' | '.join(cells)} |" for cells in (head, ["---"] * len(head), row))


def shown(setting):
    name, _, value = setting.partition("=")
    return f"{name.split('/')[-1]} {value}"


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--check", action="store_true")
    parser.add_argument("--text", action="store_true")
    parser.add_argument("zam", type=pathlib.Path)
    arguments = parser.parse_args()
    book = Book(str(arguments.zam.resolve()))
    stale = []
    for name in DOCUMENTS:
        path = ROOT / name
        text = path.read_text()
        woven = book.weave(text)
        if woven == text:
            continue
        stale.append(name)
        if not arguments.check:
            path.write_text(woven)
    book.check_complete()
    if arguments.check:
        drawn = {p.name for p in PICTURES.glob("*.png")}
        faults = [f"{name} is stale" for name in stale]
        faults += [f"picture {name} is missing or left over" for name in sorted(drawn ^ set(book.drawings))]
        if faults:
            raise Fault("\n".join(faults) + "\nmake manual writes them anew")
    elif not arguments.text:
        book.render()


if __name__ == "__main__":
    try:
        main()
    except Fault as fault:
        sys.exit(f"manual.py: {fault}")
