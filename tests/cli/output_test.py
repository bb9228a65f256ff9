"""The files that `zam render` leaves: formats, what they tell, backgrounds, logs.

    output_test.py ROOT PROGRAM...
"""

import json
import re
import sys
import unittest

from zam_program import SCENE, ProgramTest, read_png


class Output(ProgramTest):
    def render(self, name, *arguments, scene="scene.json"):
        """The bytes of frame 6 in a file of that name."""
        self.expect(0, "", "render", scene, "-o", name, "--frames", "6", *arguments)
        return (self.folder / name).read_bytes()

    def texts(self, *arguments, scene="scene.json"):
        found = {}
        self.render("texts.png", *arguments, scene=scene)
        read_png(self.folder / "texts.png", found)
        return found

    def test_same_bytes_on_every_run(self):
        for name, arguments, magic in (("a.png", ["--depth", "16"], b"\x89PNG"), ("a.PNG", ["--dither"], b"\x89PNG"),
                                       ("a.exr", [], b"v/1\x01"), ("a.exr", ["--depth", "32"], b"v/1\x01"),
                                       ("a.tif", ["--depth", "16"], b"II*\0"), ("a.tiff", [], b"II*\0")):
            with self.subTest(name=name, arguments=arguments):
                first = self.render(name, *arguments)
                self.assertTrue(first.startswith(magic))
                self.assertEqual(first, self.render(name, *arguments, "--threads", "3"))
        self.assertNotEqual(self.render("a.exr"), self.render("a.exr", "--color", "as-is"))

    def test_files_tell_what_they_show(self):
        texts = self.texts()
        self.assertRegex(texts["Software"], r"^zam \d+\.\d+\.\d+$")
        self.assertEqual((texts["Frame"], texts["Time"]), ("6", "0.25 s"))
        digest = texts["Scene Digest"]
        self.assertRegex(digest, "^[0-9a-f]{32}$")
        self.assertIn(digest.encode(), self.render("a.tif"))
        # The digest names the light: what changes the light changes it, other ways to say the same do not.
        self.write("copy.json", SCENE)
        self.assertEqual(digest, self.texts("--over", "#102030", scene="copy.json")["Scene Digest"])
        strong = self.texts("--set", "Look=Strong")["Scene Digest"]
        self.assertEqual(strong, self.texts("--set", "Look=Weak", "--set", "#25=4")["Scene Digest"])
        self.write("other.json", json.dumps(SCENE).replace("0.6", "0.7"))
        others = [self.texts(scene="other.json"), self.texts("--resolution", "half"), self.texts("--depth", "16")]
        self.write("preset.json", {"controls": {"Look": "Adjustable Linear"}})
        others.append(self.texts("--preset", "preset.json"))
        self.assertEqual(len({digest, strong, *(t["Scene Digest"] for t in others)}), 6)

    def test_dither_writes_8_bits_from_16(self):
        fine, plain, dithered = self.picture("--depth", "16"), self.picture(), self.picture("--dither")
        self.assertNotEqual(plain, dithered)
        self.assertLess(max(abs(sample * 255 / 65535 - b) for sample, b in zip(fine, dithered)), 1)

    def test_over_plates(self):
        # The light at another frame, over a colour, serves as an opaque plate.
        for depth, full, delta in (("8", 255, 0.02), ("16", 65535, 0.001)):
            light = self.picture("--depth", depth)
            self.expect(0, "", "render", "scene.json", "-o", "plate.006.png", "--frames", "11", "--depth", depth, "--over",
                        "#336699")
            plate = read_png(self.folder / "plate.006.png")[3]
            for part, shown in zip(plate, (0x33, 0x66, 0x99, 255)):
                self.assertAlmostEqual(part / full, shown / 255, delta=5e-5)  # in a dark corner
            got = self.picture("--depth", depth, "--over", "plate.###.png")
            for i, part in enumerate(got):
                alpha = light[i // 4 * 4 + 3] / full
                mixed = light[i] * alpha + plate[i] * (1 - alpha) if i % 4 != 3 else full
                self.assertAlmostEqual(part / full, mixed / full, delta=delta)

    def test_plates_that_do_not_fit(self):
        self.expect(0, "", "render", "scene.json", "-o", "plate.####.png")  # frames 3 and 4
        for message, arguments in (
                ("plate.0005.png: cannot read the picture: No such file", ["--frames", "3-5", "--over", "plate.####.png"]),
                ("plate.0003.png: the plate has 32 x 20 pixels, the frame 16 x 10",
                 ["--resolution", "half", "--over", "plate.####.png"]),
                ("scene.png: this is no PNG file", ["--over", "scene.png"])):
            (self.folder / "scene.png").write_text("no picture")
            self.expect(3, message, "render", "scene.json", "-o", "out/a.####.png", *arguments)
            self.assertFalse((self.folder / "out").exists(), "told before anything is rendered")
        before = (self.folder / "plate.0003.png").read_bytes()
        for command in (["render", "-o", "plate.####.png"], ["contact-sheet", "-o", "./plate.0003.png", "--frames", "3"]):
            self.expect(2, "plate.0003.png: that is the plate itself", *command, "scene.json", "--over", "plate.####.png")
        self.assertEqual(before, (self.folder / "plate.0003.png").read_bytes())

    def test_pixels_that_are_not_square(self):
        self.write("wide.json", {**SCENE, "pixel_aspect": 2})
        self.assertIn(b"pHYs" + bytes((0, 0, 0, 1, 0, 0, 0, 2, 0)), self.render("a.png", scene="wide.json"))
        self.assertNotIn(b"pHYs", self.render("a.png"))

    def test_existing_frames_are_skipped(self):
        (self.folder / "a.4.png").write_text("kept")
        run = self.expect(0, "1 frame in 0:0", "render", "scene.json", "-o", "a.#.png", "--skip-existing")
        self.assertIn("; 1 frame there already", run.stderr)
        self.assertEqual((self.folder / "a.4.png").read_text(), "kept")
        read_png(self.folder / "a.3.png")
        (self.folder / "a.3.png").write_bytes(b"")  # as good as missing
        self.expect(0, "; 1 frame there already", "render", "scene.json", "-o", "a.#.png", "--skip-existing")
        self.expect(0, "0 frames in 0:00; 2 frames there already", "render", "scene.json", "-o", "a.#.png", "--skip-existing")
        self.expect(0, "", "render", "scene.json", "-o", "a.#.png")
        read_png(self.folder / "a.4.png")

    def test_a_failed_file_ends_the_run(self):
        (self.folder / "out/a.05.png").mkdir(parents=True)
        self.expect(5, "out/a.05.png: cannot write the file", "render", "scene.json", "-o", "out/a.##.png", "--frames", "0-11")
        files = [p for p in (self.folder / "out").iterdir() if p.is_file()]
        self.assertGreater(len(files), 4)
        for file in files:
            read_png(file)

    def test_log_for_machines(self):
        def events(code, *arguments):
            run = self.zam("render", *arguments, "--log", "json")
            self.assertEqual(run.returncode, code)
            return [json.loads(line) for line in run.stderr.splitlines()]

        self.assertEqual([e["event"] for e in events(0, "scene.json", "-o", "a.#.png", "-q")], ["start", "end"])
        start, *frames, end = events(0, "scene.json", "-o", "a.#.png")
        self.assertEqual((start["event"], start["frames"], start["scene"]), ("start", 2, "scene.json"))
        self.assertEqual([(e["event"], e["frame"], e["file"], e["done"], e["total"]) for e in frames],
                         [("frame", 3, "a.3.png", 1, 2), ("frame", 4, "a.4.png", 2, 2)])
        self.assertEqual((end["event"], end["frames"], end["skipped"]), ("end", 2, 0))
        self.assertEqual(set(end["stages"]), {"read_scene", "load_plugin", "render", "wait", "lay_over", "encode", "write"})
        error, = events(2, "--bogus")
        self.assertEqual((error["event"], error["message"]), ("error", "unknown option --bogus"))
        error, = events(3, "none.json", "-o", "a.#.png")
        self.assertEqual((error["event"], error["exit_code"]), ("error", 3))
        self.assertRegex(error["message"], "^none.json: ")
        self.assertTrue(error["hint"] and not re.search("hint:|\n", error["message"]))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
