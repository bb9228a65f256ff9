"""What the tests of the program share: running it in a folder of its own, and reading what it wrote."""

import json
import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib

# The program may be several words: an emulator, and the program.
ROOT, PROGRAM = pathlib.Path(sys.argv[1]).resolve(), sys.argv[2:]
WINDOWS = PROGRAM[-1].endswith(".exe")  # there it writes PNG files only

SCENE = {
    "size": [32, 20], "duration": 12, "work_area": [3, 4],
    "layers": [
        {"kind": "light", "position": [4, 10, 20], "point_of_interest": [28, 10, 15], "cone_angle": 40, "color": [1, 0.6, 0],
         "intensity": {"keys": [[0, 2], [11, 20]]}},
        {"kind": "solid", "name": "Wall", "size": [20, 20], "position": [16, 10, 0], "rotation_y": 60},
    ],
    "effect": {"controls": {"Spot Lights": {"Start Distance": 1, "Reach": 60}}},
}


def read_png(path, texts=None):
    """Width, height, bits, and the samples, four for a pixel; only what the program writes is understood.
    Its remarks go into the dictionary `texts`."""
    data = path.read_bytes()
    assert data[:8] == b"\x89PNG\r\n\x1a\n"
    at, body, header = 8, b"", None
    while at < len(data):
        length, kind = struct.unpack(">I4s", data[at:at + 8])
        chunk = data[at + 8:at + 8 + length]
        if kind == b"IHDR":
            header = struct.unpack(">IIBB", chunk[:10])
        if kind == b"IDAT":
            body += chunk
        if kind == b"tEXt" and texts is not None:
            key, text = chunk.split(b"\0")
            texts[key.decode()] = text.decode()
        at += 12 + length
    width, height, bits, color = header
    assert color == 6, "RGBA"
    raw = zlib.decompress(body)
    pixel, row = bits // 2, width * bits // 2
    assert len(raw) == height * (1 + row)
    above, samples = bytearray(pixel + row), []
    for y in range(height):
        kind, coded = raw[y * (1 + row)], raw[y * (1 + row) + 1:(y + 1) * (1 + row)]
        line = bytearray(pixel + row)
        for i, code in enumerate(coded, pixel):
            left, up, corner = line[i - pixel], above[i], above[i - pixel]
            nearest = min((left, up, corner), key=lambda c: abs(left + up - corner - c))
            line[i] = (code + (0, left, up, (left + up) // 2, nearest)[kind]) & 255
        above = line
        samples += line[pixel:] if bits == 8 else struct.unpack(f">{width * 4}H", line[pixel:])
    return width, height, bits, samples


def brightest(samples):
    """The largest alpha, which is the light's strength: the colour is straight."""
    return max(samples[3::4])


class ProgramTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.write("scene.json", SCENE)

    def write(self, name, scene):
        (self.folder / name).write_text(scene if isinstance(scene, str) else json.dumps(scene))

    def zam(self, *arguments):
        return subprocess.run([*PROGRAM, *map(str, arguments)], cwd=self.folder, capture_output=True, text=True)

    def expect(self, code, message, *arguments):
        run = self.zam(*arguments)
        self.assertEqual(run.returncode, code, f"{arguments}: {run.stderr}")
        self.assertIn(message, run.stderr)
        if code:
            self.assertRegex(run.stderr, r"(?m)^zam: .")
            self.assertEqual(run.stdout, "")
        return run

    def rendered(self, *arguments, scene="scene.json"):
        """The names that a render leaves in out/."""
        self.expect(0, "", "render", scene, *arguments)
        return sorted(p.name for p in (self.folder / "out").iterdir())

    def picture(self, *arguments, scene="scene.json"):
        """The samples of frame 6."""
        self.expect(0, "", "render", scene, "-o", "picture.png", "--frames", "6", *arguments)
        return read_png(self.folder / "picture.png")[3]
