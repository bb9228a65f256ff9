"""What the program tells of scenes, and makes of them: info, validate, convert, explain, contact-sheet.

    scenes_test.py ROOT PROGRAM...
"""

import base64
import json
import os
import struct
import sys
import unittest
import unittest.mock

from zam_program import ROOT, SCENE, ProgramTest, read_png

STAGE = ROOT / "examples/stage/stage.gltf"

# Two glows that share the middle of the picture, one that takes light away there, one elsewhere, and some that are left out.
LIGHTS = {
    "size": [32, 20], "duration": 3,
    "layers": [
        {"kind": "camera", "name": "Late", "in": 2},
        {"kind": "camera", "name": "Off", "video": False},
        {"kind": "light", "type": "point", "name": "Front warm", "position": [14, 10, 0], "intensity": 6, "color": "#ff8000"},
        {"kind": "light", "type": "point", "name": "Front cold", "position": [18, 10, 0], "intensity": 3, "color": "#0080ff"},
        {"kind": "light", "type": "point", "name": "Front thief", "position": [16, 10, 0], "intensity": -1},
        {"kind": "light", "name": "Front beam", "position": [2, 2, 0], "point_of_interest": [2, -9, 0], "cone_angle": 5},
        {"kind": "light", "type": "point", "name": "Back", "position": [16, 10, 0]},
        {"kind": "light", "type": "point", "name": "Front early", "out": 1},
        {"kind": "light", "type": "ambient", "name": "Front sky"},
    ],
    "effect": {"controls": {"Look": "Linear", "Name starts with": "Front"}},
}


class Scenes(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("lights.json", LIGHTS)

    def told(self, *arguments):
        return json.loads(self.expect(0, "", *arguments, "--json").stdout)

    def pictures(self, scene, *arguments):
        """The samples of each frame, in 16 bits."""
        for old in self.folder.glob("picture.*.png"):
            old.unlink()
        self.expect(0, "", "render", scene, "-o", "picture.####.png", "--depth", "16", *arguments)
        return [read_png(path)[3] for path in sorted(self.folder.glob("picture.*.png"))]

    def test_info(self):
        text = self.expect(0, "", "info", "lights.json", "--frame", "2").stdout
        self.assertIn('camera "Late" at [16, 10, -44.44], zoom 44.44: it is looked through', text)
        self.assertIn('camera "Off" at [16, 10, -44.44], zoom 44.44: it is switched off', text)
        self.assertIn("\n\nAt frame 2:\n", text)
        self.assertIn("\n4 of 7 lights take part\n", text)
        self.assertRegex(text, r'(?m)^"Front warm"  +point  +\[14, 10, 0\]  +6 %  +yes$')
        self.assertIn("no: its name does not start with Front\n", text)
        self.assertIn("no: it is there from frame 0 to 1 only\n", text)
        self.assertIn("no: the effect shows no ambient lights\n", text)
        told = self.told("info", "lights.json", "--set", "Name starts with=Anything")
        self.assertEqual([(light["name"], light["takes_part"]) for light in told["lights"]],
                         [(layer["name"], layer["name"] != "Front sky") for layer in LIGHTS["layers"][2:]])
        self.assertEqual(([camera["active"] for camera in told["cameras"]], told["frame"]), ([False, False], 0))
        self.assertIn("seen by the default view", self.expect(0, "", "info", "lights.json").stdout)
        # Lights that come to be with the effect are among them.
        told = self.told("info", "scene.json", "--set", "Set Reach Layer=Wall")
        self.assertEqual([light["name"] for light in told["lights"]], ["Zam Reach [Wall]", "Spot light 1"])
        for frame in "12", "-1", "x":
            self.expect(2, "the scene has the frames 0-11", "info", "scene.json", f"--frame={frame}")

    def test_info_of_places_beyond_all_bounds(self):
        rigs = [{"kind": "null", "id": i, "parent": i + 1, "scale": [1e9] * 3} for i in range(1, 60)]
        light = {"kind": "light", "type": "point", "parent": 1, "position": [1, 2, 3]}
        self.write("far.json", {"layers": [light, *rigs, {"kind": "null", "id": 60}]})
        text = self.expect(0, "", "info", "far.json").stdout
        self.assertRegex(text, r"(?m)^\"Point light 1\"  point  beyond all bounds  100 %      no: its place is beyond all "
                               r"bounds: check the scales of its parents$")
        self.assertIsNone(self.told("info", "far.json")["lights"][0]["position"])
        self.expect(0, "no light is in these frames", "render", "far.json", "-o", "far.png")

    def test_validate(self):
        self.write("bad.json", '{"layers": [\n  {"kind": "light", "cone_angle": 190}]}')
        self.write("control.json", '{"layers": [],\n "effect": {"controls": {"Lok": "Weak"}}}')
        run = self.expect(0, "", "validate", "scene.json", STAGE)
        self.assertEqual(run.stdout, f"scene.json: ok\n{STAGE}: ok\n")
        run = self.zam("validate", "bad.json", "scene.json", "control.json", "none.json")
        self.assertEqual((run.returncode, run.stdout), (3, "scene.json: ok\n"))
        self.assertRegex(run.stderr, r"(?s)zam: bad.json:2:35: .*zam: control.json:2:26: .*did you mean \"Look\"\?\n"
                                     r"zam: none.json: cannot read")
        self.expect(2, "no scene is given", "validate")

    def test_targets_draw_the_same_codes(self):
        drawn = []
        for cap in "scalar", "avx2", "avx512":
            with unittest.mock.patch.dict(os.environ, ZAM_TARGET=cap):
                for scene in (ROOT / "tests/golden").glob("*.json"):
                    self.expect(0, "", "render", scene, "-o", f"{cap}/{scene.stem}.##.png", "--depth", "16")
            drawn.append({path.name: read_png(path) for path in (self.folder / cap).iterdir()})
        self.assertGreater(len(drawn[0]), 19)
        self.assertEqual([[name for name in drawn[0] if wide[name] != drawn[0][name]] for wide in drawn[1:]], [[], []])

    def test_convert_keeps_every_frame(self):
        moving = {
            "size": [32, 20], "frame_rate": 23.976, "pixel_aspect": [10, 11], "duration": 9, "work_area": [0, 8],
            "layers": [
                {"kind": "solid", "name": "Twin", "id": 7, "position": [16, 10, 5], "size": [9, 8]},
                {"kind": "null", "name": "Twin", "id": 3, "scale": [50, 80, 100],
                 "position": {"keys": [[0, [4, 4, 0], "ease"], [3.5, [9, 2, 0], {"ease_in": [7.3, 41], "ease_out": "hold"}],
                                       [6, [1, 8, 2], {"ease_out": [-3, 70]}], [8, [16, 10, 0]]]}},
                {"kind": "light", "name": "A", "parent": 3, "orientation": [0, 70, 0], "in": 1.5, "stretch": 70,
                 "intensity": {"keys": [[0, 9, "ease"], [4, 3, {"ease_in": [1.1, 20], "ease_out": [3.7, 66.6]}], [8, 12]]},
                 "color": {"samples": [[1, 0.5, 0.1], "#204060", [0, 1, 0.3]], "from": 2.25}},
                {"kind": "light", "name": "B", "intensity": 7, "world_matrix": {"keys": [
                    [0, [0, 0, 1, 0, 1, 0, -1, 0, 0.1, 30, 10, 0]], [8, [0, 0, 2, 0, 1, 0, -1, 0.2, 0, 20, 5, 3], "hold"]]}},
                {"kind": "light", "type": "point", "name": "C", "solo": True, "video": False},
            ],
            "effect": {"controls": {"#13": 3, "Spot Lights": {"Reach": {"keys": [[0, 9, "ease"], [8, 60, "ease"]]}},
                                    "Spot Lights/Start Distance": 0.1, "Look": {"keys": [[0, "Linear"], [4, "Strong"]]},
                                    "Use Lights that are": "On or Off", "Set Reach Layer": 7}},
        }
        self.write("moving.json", moving)
        golden = sorted((ROOT / "tests/golden").glob("*.json"))
        self.assertGreater(len(golden), 3)
        every = ["--frames", "0-8"]
        for scene, options, render in (("moving.json", [], every), ("scene.json", [], []), ("lights.json", [], []),
                                       (STAGE, ["--size", "64x36", "--fps", "12.5"], ["--frames", "0-24x4"]),
                                       (ROOT / "examples/three-beams/three-beams.json", [], ["--frames", "40", "--resolution", "quarter"]),
                                       (ROOT / "tests/unit/io/every_key.json", [], ["--frames", "3-17x7", "--resolution", "quarter"]),
                                       *((path, [], ["--resolution", "half"]) for path in golden)):
            with self.subTest(scene=scene):
                self.expect(0, "", "convert", scene, "-o", "copy/one.json", *options)
                self.assertEqual(self.pictures(scene, *options, *render), self.pictures("copy/one.json", *render))
                self.expect(0, "", "convert", "copy/one.json", "-o", "two.json")
                self.assertEqual((self.folder / "copy/one.json").read_text(), (self.folder / "two.json").read_text())
        self.expect(0, "", "convert", "moving.json", "-o", "one.json")
        one = json.loads((self.folder / "one.json").read_text())
        self.assertEqual(one["layers"][1]["position"]["keys"][0][:2], [0, [4, 4, 0]], "keys stay keys")
        self.assertEqual(one["layers"][2]["color"]["from"], 2.25, "samples stay samples")
        self.assertNotIn("layer", one["effect"], "the effect's own layer is made again")

    def test_convert_takes_controls_along(self):
        look = ["--preset", ROOT / "presets/stage-beams.json", "--set", "Look=Linear", "--set", "Reach=70"]
        self.expect(0, "", "convert", "scene.json", "-o", "look.json", *look)
        self.assertEqual(self.pictures("scene.json", *look), self.pictures("look.json"))
        self.expect(2, "did you mean \"Look\"?", "convert", "scene.json", "-o", "b.json", "--set", "Lok=Weak")

    def test_convert_refuses(self):
        before = (self.folder / "scene.json").read_text()
        self.expect(2, "that is the scene itself", "convert", "scene.json", "-o", "./scene.json")
        self.expect(2, "only JSON compositions are written", "convert", STAGE, "-o", "stage.gltf")
        self.expect(2, "no output is given", "convert", "scene.json")
        self.write("none.json", "{}")
        self.expect(3, "has no \"layers\"", "convert", "none.json", "-o", "scene.json")
        self.assertEqual((self.folder / "scene.json").read_text(), before)
        (self.folder / "taken.json").mkdir()
        self.expect(5, "taken.json: cannot write the file", "convert", "scene.json", "-o", "taken.json")

    def test_convert_counts_before_it_writes(self):
        # Five spot lights below a node that turns for ten minutes; a place and an orientation for each frame.
        numbers = base64.b64encode(struct.pack("<16f", 0, 600, 0, 0, 0, 1, 0, 1, 0, 0, 1, 1, 1, 9, 9, 9)).decode()
        views = [{"buffer": 0, "byteOffset": at, "byteLength": size} for at, size in ((0, 8), (8, 32), (40, 24))]
        light = {"extensions": {"KHR_lights_punctual": {"light": 0}}}
        self.write("long.gltf", {
            "asset": {"version": "2.0"}, "nodes": [{"children": [1, 2, 3, 4, 5]}, *[light] * 5],
            "extensions": {"KHR_lights_punctual": {"lights": [{"type": "spot", "spot": {}}]}},
            "animations": [{"samplers": [{"input": 0, "output": 1}, {"input": 0, "output": 2}],
                            "channels": [{"sampler": 0, "target": {"node": 0, "path": "rotation"}},
                                         {"sampler": 1, "target": {"node": 0, "path": "translation"}}]}],
            "accessors": [{"bufferView": i, "componentType": 5126, "count": 2, "type": kind}
                          for i, kind in enumerate(("SCALAR", "VEC4", "VEC3"))],
            "bufferViews": views,
            "buffers": [{"byteLength": 64, "uri": "data:application/octet-stream;base64," + numbers}]})
        run = self.expect(3, "more than 2 million values", "convert", "long.gltf", "-o", "long.json", "--fps", "120")
        self.assertRegex(run.stderr, r"(?m)^zam: long.gltf: as a JSON composition .*\nzam: hint: ask for fewer frames per second")
        self.assertFalse((self.folder / "long.json").exists())
        self.expect(0, "", "convert", "long.gltf", "-o", "long.json", "--fps", "2")

    def test_explain(self):
        def alphas(x, y, *hidden, look="Linear"):
            scene = json.loads(json.dumps(LIGHTS))
            scene["effect"]["controls"]["Look"] = look
            for layer in scene["layers"]:
                if layer["name"] in hidden:
                    layer["intensity"] = 0
            self.write("alone.json", scene)
            return self.pictures("alone.json", "--frames", "2")[0][4 * (y * 32 + x):][:4]

        shining = [layer["name"] for layer in LIGHTS["layers"][2:6]]
        for look in "Linear", "Natural":
            told = self.told("explain", "lights.json", "--pixel", "15,10", "--frame", "2", "--set", f"Look={look}")
            self.assertEqual([light["name"] for light in told["lights"]], shining)
            seen = alphas(15, 10, look=look)
            for part, sample in zip([*told["color"], told["alpha"]], seen):
                self.assertAlmostEqual(part, sample / 65535, delta=1e-4)
            for light in told["lights"]:
                others = set(shining) - {light["name"]}
                *color, alpha = alphas(15, 10, *others, look=look)
                self.assertAlmostEqual(light["alpha"], alpha / 65535, delta=1e-4)
                for part, sample in zip(light["color"], color):
                    self.assertAlmostEqual(part, sample / 65535, delta=1e-4)
            # In the look Linear they are the sum.
            self.assertAlmostEqual(sum(light["light"] for light in told["lights"]), alphas(15, 10)[3] / 65535, delta=3e-4)
            warm, cold, thief, beam = (light["share"] for light in told["lights"])
            self.assertAlmostEqual(warm + cold, 1)
            self.assertTrue(warm > cold > -thief > 0 == beam)
        text = self.expect(0, "", "explain", "lights.json", "--pixel", "15,10", "--frame", "2").stdout
        self.assertRegex(text, r'(?s)^Frame 2, pixel 15,10: #\w{6} at .*\n3 of the 4 lights that take part are seen here\n.*"Front warm".*"Front cold".*"Front thief"')
        self.assertNotIn("Front beam", text)
        self.assertIn("* adds more than full scale", self.expect(
            0, "", "explain", "lights.json", "--pixel", "15,10", "--set", "Name starts with=Back").stdout)
        for pixel, message in (("32,0", "outside of the frame"), ("1", "no pixel"), ("-1,0", "outside"), ("1,2x", "no pixel")):
            self.expect(2, message, "explain", "lights.json", f"--pixel={pixel}")
        self.expect(2, "no pixel is given", "explain", "lights.json")

    def test_contact_sheet(self):
        self.expect(0, "", "render", "scene.json", "-o", "big.##.png", "--frames", "2-11x3", "--over", "#101018")
        run = self.expect(0, "sheet.png: 4 frames, 2 to a row, each 16 x 10", "contact-sheet", "scene.json", "-o", "out/sheet.png",
                          "--frames", "2-11x3", "--width", "16")
        self.assertEqual(run.stdout, "")
        width, height, _, samples = read_png(self.folder / "out/sheet.png")
        self.assertEqual((width, height), (8 + 2 * 24, 8 + 2 * (10 + 4 + 10 + 8)))

        def at(picture, row, x, y):
            return picture[4 * (y * row + x):][:4]

        for place, number in enumerate((2, 5, 8, 11)):
            big = read_png(self.folder / f"big.{number:02}.png")[3]
            left, top = 8 + place % 2 * 24, 8 + place // 2 * 32
            for y in range(10):
                for x in range(16):
                    four = [at(big, 32, 2 * x + i, 2 * y + j) for i in (0, 1) for j in (0, 1)]
                    for part, mean in zip(at(samples, width, left + x, top + y), (sum(c) / 4 for c in zip(*four))):
                        self.assertAlmostEqual(part, mean, delta=0.51)
            inked = {(x // 2, y // 2) for y in range(10) for x in range(16) if at(samples, width, left + x, top + 14 + y)[0] == 200}
            self.assertEqual(len(inked), {2: 11, 5: 11, 8: 13, 11: 16}[number], "the frame's number stands below it")
        # Sizes that are no whole part keep the picture's mean; the pixels' shape is made up for.
        self.write("wide.json", {**SCENE, "pixel_aspect": 2})
        for scene, size in (("scene.json", (13, 8)), ("wide.json", (13, 4)), ("scene.json", (70, 44))):
            self.expect(0, f"each {size[0]} x {size[1]}", "contact-sheet", scene, "-o", "one.png", "--frames", "8", "--width", size[0])
            sheet = read_png(self.folder / "one.png")
            self.expect(0, "", "render", scene, "-o", "big.png", "--frames", "8", "--over", "#101018")
            big = read_png(self.folder / "big.png")[3]
            small = [part for y in range(size[1]) for part in sheet[3][4 * ((8 + y) * sheet[0] + 8):][:4 * size[0]]]
            for part in range(4):
                self.assertAlmostEqual(sum(small[part::4]) / len(small), sum(big[part::4]) / len(big), delta=0.15)
        self.expect(0, "2 frames, 1 to a row", "contact-sheet", "scene.json", "-o", "one.png", "--columns", "1")
        self.write("long.json", {**SCENE, "duration": 100, "work_area": [10, 90]})
        self.expect(0, "24 frames, 5 to a row", "contact-sheet", "long.json", "-o", "one.png", "--width", "4", "--over", "big.png")
        self.expect(2, "million pixels", "contact-sheet", "long.json", "-o", "two.png", "--width", "30000")
        self.expect(2, "sheets are PNG files", "contact-sheet", "long.json", "-o", "two.exr")
        self.expect(3, "none.png", "contact-sheet", "long.json", "-o", "two.png", "--over", "none.png")
        self.assertFalse((self.folder / "two.png").exists())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
