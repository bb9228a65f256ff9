"""The program for another system renders the very frames that the one for this machine does.

    same_frames_test.py ROOT NATIVE PROGRAM...
"""

import pathlib
import subprocess
import sys
import tempfile

from zam_program import read_png

ROOT, NATIVE, PROGRAM = pathlib.Path(sys.argv[1]).resolve(), sys.argv[2:3], sys.argv[3:]


def pictures(program, scene, arguments):
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([*program, "render", str(ROOT / "examples" / scene), "-o", "a.##.png", "-q", *arguments.split()],
                       cwd=folder, check=True)
        return {file.name: read_png(file) for file in pathlib.Path(folder).glob("*.png")}


faults = 0
for case in (("three-beams/three-beams.json", "--frames 0,30,60 --resolution quarter"),
             ("three-beams/three-beams.json", "--frames 45 --resolution quarter --depth 16"),
             ("stage/stage.gltf", "--frames 10,38 --resolution half --depth 16")):
    wanted, got = pictures(NATIVE, *case), pictures(PROGRAM, *case)
    same, lit = wanted == got, all(max(picture[3]) > 0 for picture in wanted.values())
    print(*case, sorted(wanted), "the same" if same else "NOT THE SAME", "" if lit else "DARK")
    faults += not (same and wanted and lit)
sys.exit(faults > 0)
