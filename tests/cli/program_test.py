"""The program `zam` from the outside: exit codes, messages, files.

    program_test.py ROOT PROGRAM...

PROGRAM may be several words: an emulator and its options before the program.
"""

import json
import os
import pty
import re
import subprocess
import sys
import unittest

from zam_program import PROGRAM, ROOT, SCENE, WINDOWS, ProgramTest, brightest, read_png


class Program(ProgramTest):
    def test_help_documents_the_exit_codes(self):
        listed = re.findall(r"(?m)^  ([a-z-]+)  ", self.zam("--help").stdout.split("Subcommands:")[1].split("Exit codes:")[0])
        self.assertIn("render", listed)
        for arguments in (["--help"], *([command, "--help"] for command in listed)):
            run = self.zam(*arguments)
            self.assertEqual(run.returncode, 0)
            if len(arguments) > 1:
                self.assertIn(f"\nExample:\n  zam {arguments[0]} ", run.stdout)
            for code in (*range(6), "128 \\+ N"):
                self.assertRegex(run.stdout, rf"(?m)^ *{code}  \w")

    def test_version_names_the_target_in_use(self):
        for cap, allowed in (("scalar", "scalar"), ("avx2", "scalar|neon|avx2")):
            run = subprocess.run([*PROGRAM, "--version"], capture_output=True, text=True, env={**os.environ, "ZAM_TARGET": cap})
            self.assertEqual(run.returncode, 0)
            self.assertRegex(run.stdout,
                             rf"^zam \d+\.\d+\.\d+\nZam, v\d+\.\d+\.\d+\n.*rows on ({allowed})\. Visualize 3D Lights\n$")

    def test_wrong_usage(self):
        out = ["-o", "out/a.####.png"]
        for message, arguments in [
            ("no command is given", []),
            ("unexpected rendr\nzam: hint: did you mean render?", ["rendr", "scene.json", *out]),
            ("unknown option --frame\nzam: hint: did you mean --frames?", ["render", "scene.json", *out, "--frame=1"]),
            ("unknown option --pixle\n", ["render", "scene.json", *out, "--pixle=1"]),
            ("no scene is given", ["render"]),
            ("no output is given", ["render", "scene.json"]),
            ("unexpected second.json", ["render", "scene.json", "second.json", *out]),
            ("--depth", ["render", "scene.json", *out, "--depth", "12"]),
            ("--frames: the value is empty\nzam: hint: zam render --help", ["render", "scene.json", *out, "--frames", ""]),
            ("for example a.####.png", ["render", "scene.json", "-o", "a.%04d.png"]),
            ("--resolution", ["render", "scene.json", *out, "--resolution", "third"]),
            ("several frames would all get this name\nzam: hint: put # where the frame's number goes, for example a.####.png",
             ["render", "scene.json", "-o", "a.png"]),
            ("built without OpenEXR and TIFF" if WINDOWS else "zam: hint: OpenEXR has 16",
             ["render", "scene.json", "-o", "a.####.exr", "--depth", "8"]),
            ("only PNG, OpenEXR and TIFF files are written", ["render", "scene.json", "-o", "a.####.jpg"]),
            ("--depth 32", ["render", "scene.json", *out, "--depth", "32"]),
            ("only images of 8 bits", ["render", "scene.json", *out, "--depth", "16", "--dither"]),
            ("--over red: this is no colour and no PNG file", ["render", "scene.json", *out, "--over", "red"]),
            ("only OpenEXR files", ["render", "scene.json", *out, "--color", "as-is"]),
            ("for glTF scenes", ["render", "scene.json", *out, "--fps", "25"]),
            *((option, ["render", "scene.gltf", *out, option, value]) for value in ("nan", "inf", "1e-310")
              for option in ("--fps", "--pixels-per-metre", "--light-scale")),
            ("--set 'Lok=Weak': no control is called \"Lok\"\nzam: hint: did you mean \"Look\"?", ["render", "scene.json", *out, "--set", "Lok=Weak"]),
            ("there is no control and value", ["render", "scene.json", *out, "--set", "Gamma"]),
        ]:
            with self.subTest(arguments=arguments):
                self.expect(2, message, *arguments)
        for frames, message in [("12", "only the frames 0-11"), ("5-3", "runs backwards"), (",", "list of frames"),
                                ("1,", "list of frames"), ("0-4x0", "list of frames"), ("0-4y", "list"),
                                ("99999999999", "list of frames"), ("0-2147483647", "only the frames")]:
            with self.subTest(frames=frames):
                self.expect(2, message, "render", "scene.json", *out, "--frames", frames)
        self.assertFalse((self.folder / "out").exists())

    def test_bad_input(self):
        self.expect(3, "none.json: cannot read the file", "render", "none.json", "-o", "a.#.png")
        self.write("bad.json", '{"layers": [\n  {"kind": "light", "cone_angle": 190}]}')
        self.expect(3, "zam: bad.json:2:35: layer 1: cone_angle 190 is outside 0..180 degrees\nzam: hint: angles",
                    "render", "bad.json", "-o", "a.#.png")
        self.write("control.json", '{"layers": [],\n "effect": {"controls": {"Lok": "Weak"}}}')
        self.expect(3, "control.json:2:26: ", "render", "control.json", "-o", "a.png")
        self.write("scene.gltf", '{"asset": {"version": "1.0"}}')
        self.expect(3, "/asset/version: glTF version \"1.0\"", "render", "scene.gltf", "-o", "a.png")

    def test_plugin_faults(self):
        self.write("text.so", "no library")
        for plugin in ("none.so", "text.so", "/proc/self/exe"):
            for command in (["controls"], ["render", "scene.json", "-o", "a.#.png"]):
                self.expect(4, plugin, *command, "--plugin", plugin)

    def test_unwritable_output(self):
        self.write("file", "in the way")
        self.expect(5, "file", "render", "scene.json", "-o", "file/a.#.png")

    def test_light_that_nobody_sees_is_told_of(self):
        for intensity, told in ((0, "no light is in these frames"), (0.01, "the light is faint"), (20, "")):
            scene = json.loads(json.dumps(SCENE))
            scene["layers"][0]["intensity"] = intensity
            self.write("faint.json", scene)
            run = self.expect(0, told, "render", "faint.json", "-o", "out/a.png", "--frames", "0", "--depth", "16")
            self.assertEqual("note" in run.stderr, bool(told), run.stderr)

    def test_frames_become_numbered_files(self):
        names = self.rendered("-o", "out/deep/../l.####.png")
        self.assertEqual(names, ["deep", "l.0003.png", "l.0004.png"])  # the work area
        self.assertEqual(self.rendered("-o", "out/b#.png", "--frames", "1,9-11,10")[:4],
                         ["b1.png", "b10.png", "b11.png", "b9.png"])
        self.assertEqual(self.rendered("-o", "out/a.png", "--frames", "7")[0], "a.png")
        self.rendered("-o", "out/x.##.png", "--frames", "0-11x5")
        self.assertEqual(sorted(p.name for p in (self.folder / "out").glob("x.*")),
                         ["x.00.png", "x.05.png", "x.10.png"])

    def test_depth_and_resolution(self):
        for depth in (8, 16):
            for resolution, size in (("full", (32, 20)), ("half", (16, 10)), ("quarter", (8, 5))):
                self.rendered("-o", "out/a.png", "--frames", "6", "--depth", depth, "--resolution", resolution)
                width, height, bits, samples = read_png(self.folder / "out/a.png")
                self.assertEqual((width, height, bits), (*size, depth))
                full = 255 if depth == 8 else 65535
                self.assertTrue(full / 20 < brightest(samples) < full, "too dark or too bright to tell")
                lit = next(samples[i:i + 3] for i in range(0, len(samples), 4) if samples[i + 3])
                self.assertEqual(lit, [full, round(0.6 * full), 0])

    def test_controls_change_the_picture(self):
        def differ(one, other):
            return max(abs(a - b) for a, b in zip(one, other)) > 5

        plain = self.picture()
        self.assertEqual(plain, self.picture("--set", "Look=Natural", "--threads", "1"))
        self.assertTrue(differ(plain, self.picture("--set", "Look=Strong")))
        self.assertEqual(self.picture("--set", "#25=4"), self.picture("--set", "Look=Weak", "--set", "Look=Strong"))
        off = self.picture("--set", "Spot Light Model=Off")
        self.assertEqual(brightest(off), 0)
        # The cone ends at the wall once the wall is chosen, on the command line as in the scene.
        wall = self.picture("--set", "Reach Comp Layer=on", "--set", "Set Reach Layer=Wall")
        self.assertTrue(differ(wall, plain))
        scene = json.loads(json.dumps(SCENE))
        scene["effect"]["controls"]["Spot Lights"].update({"Reach Comp Layer": True, "Set Reach Layer": "Wall"})
        self.write("wall.json", scene)
        self.assertEqual(wall, self.picture(scene="wall.json"))
        # Layers that the effect passes over are told of.
        scene["layers"].append({"kind": "solid", "name": "Flat", "three_d": False})
        for chosen, carrier, told in (("Flat", None, "layer \"Flat\" is a 2D layer"),
                                      ("Wall", "Wall", "layer \"Wall\" carries the effect")):
            scene["effect"]["controls"]["Spot Lights"]["Set Reach Layer"] = chosen
            scene["effect"].update({"layer": carrier} if carrier else {})
            self.write("flat.json", scene)
            self.expect(0, f"zam: warning: control \"Set Reach Layer\": {told}", "render", "flat.json", "-o", "out/b.#.png")

    def test_preset_comes_between_scene_and_set(self):
        scene = self.picture()
        self.write("look.json", {"note": "n", "controls": {"Look": "Strong", "Spot Lights": {"Reach": 7}}})
        preset = self.picture("--preset", "look.json")
        self.assertNotEqual(preset, scene)
        self.assertEqual(preset, self.picture("--set", "Look=Strong", "--set", "Reach=7"))
        self.assertEqual(scene, self.picture("--set", "Look=Natural", "--set", "Reach=60", "--preset", "look.json"))
        self.write("wall.json", {"controls": {"Reach Comp Layer": True, "Set Reach Layer": "Wall"}})
        self.assertEqual(self.picture("--preset", "wall.json"),
                         self.picture("--set", "Reach Comp Layer=on", "--set", "Set Reach Layer=Wall"))

    def test_own_presets_set_every_look_control(self):
        presets = sorted((ROOT / "presets").glob("*.json"))
        self.assertGreaterEqual(len(presets), 12)
        listed = json.loads(self.expect(0, "", "controls", "--json").stdout)
        of_scenes = {"Reach Comp Layer", "Set Reach Layer", "Reach Both Sides", "Use Lights that are", "Name starts with"}
        looks = {(e["group"], e["name"]) for e in listed if "default" in e and e["name"] not in of_scenes}
        for preset in presets:
            with self.subTest(preset=preset.name):
                self.rendered("-o", "out/a.png", "--frames", "6", "--preset", preset)
                controls = json.loads(preset.read_text())["controls"]
                self.assertEqual(looks, {(group, name) for group in ("Point Lights", "Spot Lights") for name in controls[group]}
                                 | {("General", name) for name in controls if name not in ("Point Lights", "Spot Lights")})

    def test_names_do_not_command_the_terminal(self):
        escape, csi = "\x1b", "\x9b"
        name = escape + "[2J" + csi + "31m"
        control = {"layers": [{"kind": "light", "type": "point"}], "effect": {"controls": {name: 1}}}
        self.write("control.json", control)
        self.write(f"a{name}.json", control)
        for arguments in (["control.json"], [f"a{name}.json"], [f"{name}.json"], ["control.json", "--set", f"{name}=1"],
                          ["control.json", f"--{name}"], ["scene.json", "--frames", "0", "--over", f"{name}.png"]):
            for log in ([], ["--log", "json"]):
                with self.subTest(arguments=arguments, log=log):
                    run = self.zam("render", *arguments, "-o", "out/a.#.png", *log)
                    self.assertIn(run.returncode, (2, 3))
                    for line in run.stderr.split("\n"):
                        self.assertNotRegex(line, r"[\x00-\x1f\x7f-\x9f]")

    def test_bad_presets(self):
        for text, message in [
            ('{"controls":\n {"Lok": "Weak"}}', 'bad.json:2:3: no control is called "Lok"\nzam: hint: did you mean "Look"?'),
            ('{"controls": {"Look": "Loud"}}', 'bad.json:1:15: control "Look": has no choice "Loud"'),
            ('{"control": {}}', 'bad.json:1:2: the preset: "control" is not known here\nzam: hint: did you mean "controls"?'),
            ('{"note": "no more"}', 'bad.json:1:1: the preset has no "controls"'),
            ("[]", "bad.json:1:1: the preset"),
        ]:
            with self.subTest(text=text):
                self.write("bad.json", text)
                self.expect(3, message, "render", "scene.json", "-o", "out/a.#.png", "--preset", "bad.json")
        for name, message in (("none.json", "none.json: cannot read the file"),
                              ("stage-beam", "there is no such preset\nzam: hint: did you mean stage-beams?")):
            if not WINDOWS or name != "stage-beam":  # presets stand beside the program when it is packed
                self.expect(3, message, "render", "scene.json", "-o", "out/a.#.png", "--preset", name)
        self.expect(3, "--preset takes", "validate", ROOT / "presets/stage-beams.json")
        self.assertFalse((self.folder / "out").exists())

    def test_controls_are_listed(self):
        table = self.expect(0, "", "controls").stdout
        self.assertRegex(table, r"(?m)^19 +#20 +Spot Lights/Set Reach Layer ")
        self.assertRegex(table, r"Spot Lights/Reach +fixed slider +0 to 10000 +400")
        entries = json.loads(self.expect(0, "", "controls", "--json").stdout)
        self.assertEqual([e["index"] for e in entries], list(range(1, len(entries) + 1)))
        look = next(e for e in entries if e["name"] == "Look")
        self.assertEqual((look["id"], look["group"], look["choices"][5], look["default"]),
                         (25, "General", "Adjustable Natural", 3))
        greyed = {f"{e['group']}/{e['name']}": {(r["control"], *r["values"]) for r in e["greyed_by"]}
                  for e in entries if "greyed_by" in e}
        self.assertEqual(len(greyed), 16)
        self.assertEqual(greyed["Point Lights/Radius"],
                         {("Point Lights/Point Light Model", "Off", "Natural", "Source")})
        self.assertEqual(greyed["Spot Lights/Set Reach Layer"],
                         {("Spot Lights/Spot Light Model", "Off"), ("Spot Lights/Reach Comp Layer", False)})

    def test_names_are_utf8(self):
        (self.folder / "Bühne").mkdir()
        self.write("Bühne/Szené.json", SCENE)
        self.expect(0, "Bühne/Licht-日-3.png", "render", "Bühne/Szené.json", "-o", "Bühne/Licht-日-#.png")
        self.assertEqual(sorted(p.name for p in (self.folder / "Bühne").iterdir()),
                         ["Licht-日-3.png", "Licht-日-4.png", "Szené.json"])
        self.expect(4, "Žam.so", "controls", "--plugin", "Žam.so")

    def test_gltf_scene(self):
        scene = ROOT / "examples/stage/stage.gltf"
        run = self.expect(0, "hint: --light-scale ", "render", scene, "-o", "out/s.##.png", "--frames", "0,47",
                          "--size", "64x36", "--pixels-per-metre", "50")
        self.assertNotIn("warning", run.stderr)
        first, last = (read_png(self.folder / f"out/s.{n}.png") for n in ("00", "47"))
        self.assertEqual(first[:2], (64, 36))
        self.assertNotEqual(first[3], last[3])
        self.assertGreater(brightest(first[3]), 20)
        # The printed scale gives the same picture again; twice as many candela a darker one.
        scale = re.search(r"hint: --light-scale (\S+) keeps it", run.stderr)[1]
        for given, same in ("auto", True), (scale, True), (str(2 * float(scale)), False):
            self.expect(0, "", "render", scene, "-o", "out/t.png", "--frames", "0", "--size", "64x36",
                        "--pixels-per-metre", "50", "--light-scale", given)
            self.assertEqual(read_png(self.folder / "out/t.png")[3] == first[3], same, given)
        self.expect(2, "this is no light scale", "render", scene, "-o", "a.#.png", "--light-scale", "1cd")
        self.expect(3, "there is no perspective camera \"X\"", "render", scene, "-o", "a.#.png", "--camera", "X")

    def test_progress(self):
        run = self.expect(0, "frame 3 (1 of 2): out/a.3.png\nframe 4 (2 of 2): out/a.4.png\n", "render",
                          "scene.json", "-o", "out/a.#.png")
        self.assertNotIn("\r", run.stderr)
        self.assertEqual(self.expect(0, "", "render", "scene.json", "-o", "out/a.#.png", "-q").stderr, "")
        if WINDOWS:
            return  # its terminals are no files
        try:
            main, terminal = pty.openpty()
        except OSError as error:
            self.skipTest(f"no terminal to show progress on: {error}")
        process = subprocess.Popen([*PROGRAM, "render", "scene.json", "-o", "out/a.#.png"], cwd=self.folder,
                                   stderr=terminal, env={**os.environ, "TERM": "xterm"})
        os.close(terminal)
        shown = b""
        try:
            while piece := os.read(main, 4096):
                shown += piece
        except OSError:  # how a terminal ends
            pass
        os.close(main)
        self.assertEqual(process.wait(), 0)
        self.assertRegex(shown.decode(), re.escape("\r\x1b[K[###############---------------] 1/2  0:0") + r"\d left")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
