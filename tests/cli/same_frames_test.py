"""The program for another system renders the very frames that the one for this machine does.

    same_frames_test.py ROOT NATIVE PROGRAM...
"""

import subprocess
import sys
import tempfile
from pathlib import Path

from zam_program import read_png

ROOT, NATIVE, PROGRAM = Path(sys.argv[1]).resolve(), sys.argv[2:3], sys.argv[3:]

CASES = [
    ("three-beams/three-beams.json", ["--frames", "0,30,60", "--resolution", "quarter"]),
    ("three-beams/three-beams.json", ["--frames", "45", "--resolution", "quarter", "--depth", "16"]),
    ("stage/stage.gltf", ["--frames", "10,38", "--resolution", "half", "--depth", "16"]),
]


def pictures(program, folder, case):
    scene, arguments = case
    run = subprocess.run([*program, "render", str(ROOT / "examples" / scene), "-o", "a.##.png", "-q", *arguments],
                         cwd=folder, capture_output=True, text=True)
    assert run.returncode == 0, run.stderr
    return {file.name: read_png(file) for file in sorted(Path(folder).glob("*.png"))}


def main():
    faults = 0
    for case in CASES:
        with tempfile.TemporaryDirectory() as one, tempfile.TemporaryDirectory() as other:
            wanted, got = pictures(NATIVE, one, case), pictures(PROGRAM, other, case)
        faults += wanted.keys() != got.keys()
        for name in wanted.keys() & got.keys():
            differences = [abs(a - b) for a, b in zip(wanted[name][3], got[name][3]) if a != b]
            print(f"{case[0]} {name}: {len(wanted[name][3])} codes, {len(differences)} differ, "
                  f"by {max(differences, default=0)} at most, {max(wanted[name][3])} the brightest")
            faults += wanted[name] != got[name] or max(wanted[name][3]) == 0
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
