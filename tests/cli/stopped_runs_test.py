"""Runs that do not come to their end: killed, interrupted, out of space, not allowed to write.

    stopped_runs_test.py ROOT PROGRAM...

ZAM_KILLS says how often a run is killed, ZAM_SEED when.
"""

import os
import pathlib
import random
import resource
import signal
import subprocess
import sys
import time
import unittest

from zam_program import PROGRAM, SCENE, ProgramTest, read_png

PART = r"^a\.\d{2}\.(png|exr)\.part\d+$"


class StoppedRuns(ProgramTest):
    def names(self, folder):
        return sorted(p.name for p in (self.folder / folder).iterdir())

    def start(self, *arguments, **options):
        return subprocess.Popen([*PROGRAM, "render", *arguments], cwd=self.folder, stderr=subprocess.PIPE, text=True, **options)

    def frames(self, folder):
        """The bytes of each frame, and the names of parts; there is nothing else."""
        frames, parts = {}, []
        for file in (self.folder / folder).iterdir() if (self.folder / folder).exists() else ():
            if ".part" in file.name:
                self.assertRegex(file.name, PART)
                parts.append(file.name)
            else:
                frames[file.name] = file.read_bytes()
        return frames, parts

    def test_killed_at_any_moment(self):
        kills, seed = int(os.environ.get("ZAM_KILLS", 10)), int(os.environ.get("ZAM_SEED", 1))
        dice = random.Random(seed)
        self.write("long.json", {**SCENE, "size": [192, 108], "duration": 24, "work_area": [0, 23]})
        landed = left = 0
        for ending in ("png", "exr"):
            command = ["long.json", "-o", f"out/a.##.{ending}"]
            began = time.monotonic()
            self.expect(0, "24 frames", "render", *command)
            span = time.monotonic() - began
            whole, parts = self.frames("out")
            self.assertEqual((len(whole), parts), (24, []))
            for file in (self.folder / "out").glob("*.png"):
                read_png(file)
            for kill in range(kills // 2):
                # In turn: files are replaced; the folder is new; what is there is left out.
                if kill % 3 == 1:
                    for name in whole:
                        (self.folder / "out" / name).unlink()
                # What a killed run may leave where files cannot be nameless.
                (self.folder / f"out/a.07.{ending}.part4194399").write_bytes(whole[f"a.07.{ending}"][:100])
                run = self.start(*command, *(["--skip-existing"] if kill % 3 == 2 else []))
                time.sleep(dice.uniform(0, span))
                run.kill()
                run.communicate()
                landed += run.returncode == -signal.SIGKILL
                frames, parts = self.frames("out")
                left += len(parts) - 1
                for name, data in frames.items():
                    self.assertEqual(data, whole[name], f"{name} after kill {kill} with seed {seed}")
                if kill % 3 == 1:
                    self.expect(0, f"{len(frames)} frame" if frames else "24 frames", "render", *command, "--skip-existing")
                    self.assertEqual(self.frames("out")[0], whole)
                for part in self.frames("out")[1]:
                    (self.folder / "out" / part).unlink()
            for name in whole:
                (self.folder / "out" / name).unlink()
        print(f"{kills // 2 * 2} runs killed, {landed} of them before their end; {left} part(s) left")
        self.assertGreater(landed, 0)

    def test_interrupted_runs_leave_whole_frames_and_can_go_on(self):
        self.write("long.json", {**SCENE, "size": [640, 360], "duration": 3000, "work_area": [0, 2999]})
        for end in (signal.SIGINT, signal.SIGTERM):
            out = self.folder / end.name
            run = self.start("long.json", "-o", f"{end.name}/a.####.png")
            while not out.exists() or len(list(out.iterdir())) < 3:
                self.assertIsNone(run.poll(), "ended before it was stopped")
                time.sleep(0.01)
            run.send_signal(end)
            told = run.communicate(timeout=60)[1]
            names = self.names(end.name)
            self.assertLess(len(names), 3000)
            for name in names:
                self.assertRegex(name, r"^a\.\d{4}\.png$", "only frames are left")
                self.assertTrue((out / name).read_bytes().endswith(b"IEND\xaeB`\x82"), "only whole frames are left")
            self.assertEqual(run.returncode, 128 + end)
            self.assertIn(f"zam: interrupted with {len(names)} of 3000 frames written\nzam: hint: ", told)
            last = int(names[-1][2:6])
            run = self.expect(0, f"{len(names)} frames there already", "render", "long.json", "-o",
                              f"{end.name}/a.####.png", "--frames", f"0-{last + 2}", "--skip-existing")
            self.assertEqual(len(self.names(end.name)), last + 3)
            self.assertIn("frame ", run.stderr)

    def test_an_interrupt_ends_within_the_frame(self):
        light = SCENE["layers"][0]
        lights = [{**light, "position": [i * 37 % 2000, i * 91 % 1500, i % 7 * 50 - 200], "cone_angle": 120,
                   "point_of_interest": [1000, 750, 100]} for i in range(1500)]
        self.write("slow.json", {"size": [2000, 1500], "duration": 2, "layers": lights,
                                 "effect": {"controls": {"Spot Lights": {"Reach": 2000}}}})
        # Seconds of the processor, for the machine may be busy; the frame takes many more.
        used = [sum(resource.getrusage(resource.RUSAGE_CHILDREN)[:2])]
        for moments in (0, 10):
            run = self.start("slow.json", "-o", "out/a.#.png", "--threads", "1", "--log", "json")
            self.assertIn('"event":"start"', run.stderr.readline())
            time.sleep(moments * 0.05)
            run.send_signal(signal.SIGINT)
            self.assertIn("interrupted with 0 of 2 frames", run.communicate()[1])
            self.assertEqual(run.returncode, 130)
            self.assertEqual(self.names("out"), [])
            used.append(sum(resource.getrusage(resource.RUSAGE_CHILDREN)[:2]))
        self.assertLess(max(b - a for a, b in zip(used, used[1:])), 5)

    def told_once(self, run, reason, hint):
        """One message and its hint, and the exit code for what cannot be written."""
        self.assertEqual(run.returncode, 5, run.stderr)
        message, way_out = [line for line in run.stderr.splitlines() if line.startswith("zam: ")]
        self.assertRegex(message, f": cannot .*{reason}")
        self.assertIn(f"zam: hint: {hint}", way_out)

    def test_no_more_space(self):
        def limited():
            resource.setrlimit(resource.RLIMIT_FSIZE, (1000, 1000))

        self.write("large.json", {**SCENE, "size": [320, 180], "duration": 40, "work_area": [0, 39]})
        for command in ("render -o out/a.##.png", "render -o out/a.##.exr", "render -o out/a.##.tif --depth 16",
                        "contact-sheet -o out/sheet.png", "convert -o out/scene.json"):
            with self.subTest(command=command):
                name, *rest = command.split()
                self.write("many.json", {**SCENE, "layers": SCENE["layers"] * 40})
                run = subprocess.run([*PROGRAM, name, "many.json" if name == "convert" else "large.json", *rest],
                                     cwd=self.folder, capture_output=True, text=True, preexec_fn=limited)
                self.told_once(run, "File too large", "free some space")
                self.assertEqual(self.names("out"), [])
        with open("/dev/full", "w") as full:
            run = subprocess.run([*PROGRAM, "controls"], stdout=full, stderr=subprocess.PIPE, text=True)
        self.told_once(run, "No space left on device", "free some space")

        # A disk of its own, as large as some of the frames.
        own = ["unshare", "--user", "--map-root-user", "--mount", "sh", "-c"]
        mount = "mount -t tmpfs -o size=200k none disk && "
        (self.folder / "disk").mkdir()
        if subprocess.run([*own, mount + "true"], cwd=self.folder, capture_output=True).returncode:
            self.skipTest("no disk can be mounted here")
        for ending in ("png", "exr"):
            script = mount + f'"$@" render large.json -o disk/a.##.{ending} --depth 16; code=$?; mkdir out; cp disk/* out; exit $code'
            run = subprocess.run([*own, script, "sh", *PROGRAM], cwd=self.folder, capture_output=True, text=True)
            self.told_once(run, "No space left on device", "free some space")
            self.expect(0, "", "render", "large.json", "-o", f"all/a.##.{ending}", "--depth", "16")
            all_frames, (frames, parts) = self.frames("all")[0], self.frames("out")
            self.assertEqual(parts, [])
            self.assertTrue(0 < len(frames) < 40)
            for name, data in frames.items():
                self.assertEqual(data, all_frames[name])
            for file in (self.folder / "out").iterdir():
                file.unlink()

    def test_a_folder_that_must_not_be_written(self):
        shut = self.folder / "shut"
        shut.mkdir()
        shut.chmod(0o555)
        # Root may write there all the same, but for what it can do without.
        less = ["setpriv", "--bounding-set", "-dac_override"] if os.geteuid() == 0 else []
        for command in ("render scene.json -o shut/a.##.png", "render scene.json -o shut/deeper/a.##.exr",
                        "contact-sheet scene.json -o shut/a.png", "convert scene.json -o shut/a.json"):
            with self.subTest(command=command):
                run = subprocess.run([*less, *PROGRAM, *command.split()], cwd=self.folder, capture_output=True, text=True)
                self.told_once(run, "Permission denied", "check the folder's permissions")
                self.assertEqual(self.names("shut"), [])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
