"""What the program tells of scenes, and makes of them: info, validate, convert, explain, contact-sheet.

    scenes_test.py ROOT PROGRAM...
"""

import json
import sys
import unittest

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
        self.assertIn("4 of 7 lights take part", text)
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
        others = [ROOT / "tests/unit/io/every_key.json", *sorted((ROOT / "tests/golden").glob("*.json"))]
        self.assertGreater(len(others), 4)
        every = ["--frames", "0-8"]
        for scene, options, render in (("moving.json", [], every), ("scene.json", [], []), ("lights.json", [], []),
                                       (STAGE, ["--size", "64x36", "--fps", "12.5"], ["--frames", "0-24x4"]),
                                       (ROOT / "examples/three-beams/three-beams.json", [], ["--frames", "40", "--resolution", "quarter"]),
                                       *((path, [], ["--resolution", "half"]) for path in others)):
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

    def test_convert_refuses(self):
        before = (self.folder / "scene.json").read_text()
        self.expect(2, "that is the scene itself", "convert", "scene.json", "-o", "./scene.json")
        self.expect(2, "only JSON compositions are written", "convert", STAGE, "-o", "stage.gltf")
        self.expect(2, "no output is given", "convert", "scene.json")
        self.write("none.json", "{}")
        self.expect(3, "has no \"layers\"", "convert", "none.json", "-o", "scene.json")
        self.assertEqual((self.folder / "scene.json").read_text(), before)
        self.expect(3, "cannot hold: scene.json:", "convert", STAGE, "-o", "scene.json", "--light-scale", "1e-7")
        self.assertEqual((self.folder / "scene.json").read_text(), before)
        (self.folder / "taken.json").mkdir()
        self.expect(5, "taken.json: cannot write the file", "convert", "scene.json", "-o", "taken.json")

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
        self.assertRegex(text, r'(?s)^Frame 2, pixel 15,10: #\w{6} at .*3 of the 4 lights.*"Front warm".*"Front cold".*"Front thief"')
        self.assertNotIn("Front beam", text)
        self.assertIn("* adds more than full scale", self.expect(
            0, "", "explain", "lights.json", "--pixel", "15,10", "--set", "Name starts with=Back").stdout)
        for pixel, message in (("32,0", "outside of the frame"), ("1", "no pixel"), ("-1,0", "outside"), ("1,2x", "no pixel")):
            self.expect(2, message, "explain", "lights.json", f"--pixel={pixel}")
        self.expect(2, "no pixel is given", "explain", "lights.json")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
