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


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
