#!/usr/bin/env python3
"""check_row_targets.py SOURCE BUILD TARGETS CMAKE...: the effect builds with every choice of the row targets that this
processor may have (TARGETS, separated by semicolons), and holds those and no others, each with code of its own.

CMAKE... is the command that configures a build, all but its folders.
"""
import itertools
import pathlib
import re
import subprocess
import sys

import check_target_objects


def configure(source, build, cmake, targets):
    return subprocess.run([*cmake, "-S", source, "-B", build, "-DZAM_ROW_TARGETS=" + ";".join(targets)],
                          capture_output=True, text=True)


def faults_of(source, build, cmake, targets):
    run = configure(source, build, cmake, targets)
    if run.returncode == 0:
        run = subprocess.run([cmake[0], "--build", build, "--target", "Zam", "-j", "2"], capture_output=True, text=True)
    if run.returncode != 0:
        return run.stdout + run.stderr
    listing = subprocess.run(["nm", "-C", build + "/Zam.so"], capture_output=True, text=True, check=True)
    held = set(re.findall(r" [tT] zam::RenderRow_(\w+)\(", listing.stdout))
    if held != {"scalar", *targets}:
        return f"holds {sorted(held)}"
    objects = [str(file) for target in targets for file in pathlib.Path(build).rglob(f"rows_{target}.*o")]
    return check_target_objects.main(objects) and "shares code"


def main(source, build, targets, *cmake):
    targets = [target for target in targets.split(";") if target]
    faults, choices = 0, [c for n in range(len(targets) + 1) for c in itertools.combinations(targets, n)]
    for choice in choices:
        fault = faults_of(source, build, cmake, choice)
        print(f"scalar {' '.join(choice)}: {fault or 'as it should be'}")
        faults += bool(fault)
    run = configure(source, build, cmake, ["avx1024"])
    if run.returncode == 0 or "'avx1024' is no row target" not in run.stderr:
        print("an unknown target is accepted, or its refusal names it not:", run.stderr)
        faults += 1
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
