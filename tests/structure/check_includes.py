#!/usr/bin/env python3
"""Every #include of the project goes along an arrow of the architecture, and names its file from the root."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]

# A folder and the folders that its files may include (besides itself and the standard library).
ALLOWED = {
    "hostapi": [],
    "effect/render/kernels": [],
    "effect/params": ["hostapi"],
    "effect/scene": ["hostapi"],
    "effect/render": ["hostapi", "effect/params", "effect/scene", "effect/render/kernels"],
    "effect/entry": ["hostapi", "effect/params", "effect/scene", "effect/render"],
    "effect/resource": ["hostapi", "effect/entry"],
    "host": ["hostapi"],
    "io": ["hostapi", "host"],
    "cli": ["hostapi", "host", "io"],
    "tests": ["hostapi", "effect", "effect/params", "effect/scene", "effect/render", "effect/render/kernels",
              "effect/entry", "host", "io", "cli"],
    "bench": ["hostapi", "effect/params", "effect/scene", "effect/render", "effect/render/kernels", "host", "io",
              "tests"],
}
# Folders that know no library but the language's own.
NO_LIBRARIES = ("hostapi", "effect")


def module_of(path):
    """The longest listed folder that the path lies in."""
    text = path.as_posix()
    matches = [folder for folder in ALLOWED if text.startswith(folder + "/")]
    return max(matches, key=len) if matches else None


def faults_in(path):
    relative = path.relative_to(ROOT)
    module = module_of(relative)
    for number, line in enumerate(path.read_text().splitlines(), 1):
        match = re.match(r'\s*#\s*include\s+(["<])([^">]+)[">]', line)
        if not match:
            continue
        quoted, target = match.group(1) == '"', match.group(2)
        where = f"{relative}:{number}: "
        if not quoted:
            if module.startswith(NO_LIBRARIES) and "/" in target:
                yield where + f"<{target}> is no part of the standard library"
            continue
        if not (ROOT / target).is_file():
            yield where + f'"{target}" is not a path from the repository root'
            continue
        wanted = module_of(pathlib.PurePosixPath(target))
        if wanted != module and wanted not in ALLOWED[module]:
            yield where + f"{module} may not use {wanted}"


def main():
    files = [p for folder in {f.split("/")[0] for f in ALLOWED} for p in sorted((ROOT / folder).rglob("*"))
             if p.suffix in (".h", ".c", ".cpp", ".inc")]
    faults = [fault for path in files for fault in faults_in(path)]
    print("\n".join(faults) or f"{len(files)} files include as they should")
    return 1 if faults or len(files) < 50 else 0


if __name__ == "__main__":
    sys.exit(main())
