#!/usr/bin/env python3
"""The examples for farms: a real Slurm array, tasks of which are killed and requeued, and the job template.

    farm_test.py PROGRAM
"""

import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile
import time
import unittest

import job_template
from one_machine_slurm import Failed, OneMachineSlurm, wait_for

ROOT = pathlib.Path(__file__).resolve().parents[2]
SCENE = ROOT / "examples/three-beams/three-beams.json"
SCRIPT = ROOT / "examples/farm/zam-array.sbatch"
LAST, PER_TASK = 71, 28  # the last task is shorter


def say(what):
    print(f"    {what}", flush=True)


def frame_range(task):
    return range(task * PER_TASK, min((task + 1) * PER_TASK, LAST + 1))


def runs_zam(process):
    try:
        return os.readlink(f"/proc/{process}/exe") == str(ZAM)
    except OSError:
        return False  # it is gone


def numbered(folder):
    """The files under final names, by frame."""
    return {int(path.name[6:10]): path for path in folder.glob("light.????.png")}


class Farm(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        say(f"{LAST + 1} frames by one run of zam")
        subprocess.run([ZAM, "render", SCENE, "-o", FOLDER / "single/light.####.png", "--depth", "16", "-q"], check=True)
        cls.single = {frame: path.read_bytes() for frame, path in numbered(FOLDER / "single").items()}
        assert sorted(cls.single) == list(range(LAST + 1)), "one run leaves all frames"

    def setUp(self):
        print(self._testMethodName.replace("_", " ").replace("test", "test:"), flush=True)

    def expect_whole(self, files):
        for frame, path in files.items():
            self.assertTrue(path.read_bytes() == self.single[frame], f"frame {frame} differs from the single run's")

    def expect_all(self, folder):
        files = numbered(folder)
        self.assertEqual(sorted(files), sorted(self.single))
        self.expect_whole(files)

    def submit(self, *arguments):
        """The array's number; the script is called by hand and submits itself."""
        said = SLURM.run(str(SCRIPT), *map(str, arguments))
        say(said)
        return said.split()[-1]

    def freeze(self, name, task, folder):
        """The task's zam, stopped in the middle of a file, with some of its frames written."""
        def zam_process():
            self.assertNotIn(SLURM.task(name)["JobState"], ("COMPLETED", "FAILED"), SLURM.task_log(name))
            return [process for process in SLURM.processes(name) if runs_zam(process)]

        def stopped():
            return pathlib.Path(f"/proc/{process}/stat").read_text().rpartition(")")[2].split()[0] == "T"

        def in_the_act():
            os.kill(process, signal.SIGSTOP)
            wait_for("zam to stop", stopped, 0.001)
            links = (os.readlink(link) for link in pathlib.Path(f"/proc/{process}/fd").iterdir())
            done = len(set(numbered(folder)) & set(frame_range(task)))
            if done > 2 and any(link.startswith(f"{folder}/") for link in links):
                return done
            os.kill(process, signal.SIGCONT)
            time.sleep(0.002)
            return None

        (process,) = wait_for(f"task {name} to run", zam_process, 0.01)
        command = pathlib.Path(f"/proc/{process}/cmdline").read_text().split("\0")
        self.assertEqual(command[command.index("--threads") + 1], "4", "the processors that Slurm grants")
        try:
            done = wait_for(f"task {name} to write", in_the_act, 0)
        except (ProcessLookupError, FileNotFoundError):
            self.fail(f"task {name} ended before it was stopped as it writes:\n{SLURM.task_log(name)}")
        self.assertLess(done, len(frame_range(task)))
        say(f"task {name}: zam, process {process}, stopped as it writes a file, with {done} frames there")
        return process

    def test_killed_and_requeued_tasks_go_on(self):
        folder = FOLDER / "an array"  # a blank: the script has to quote
        array = self.submit(SCENE, folder / "light.####.png", 0, LAST, PER_TASK, "--depth", "16")
        tasks = [f"{array}_{index}" for index in range(3)]

        os.kill(self.freeze(tasks[0], 0, folder), signal.SIGKILL)
        say(f"task {tasks[0]}: killed")
        self.assertEqual(SLURM.wait_for_state(tasks[0], "FAILED")["ExitCode"], "0:9")
        whole = {frame: path for frame, path in numbered(folder).items() if frame in frame_range(0)}
        self.expect_whole(whole)
        before = {path: path.stat() for path in whole.values()}
        say(f"task {tasks[0]}: it left {len(whole)} files, all whole")
        SLURM.run("scontrol", "requeue", tasks[0])

        self.freeze(tasks[1], 1, folder)
        SLURM.run("scontrol", "requeue", tasks[1])
        say(f"task {tasks[1]}: requeued as it ran")
        for task in tasks[:2]:
            SLURM.start_now(task)
        for task in tasks:
            state = SLURM.wait_for_state(task, "COMPLETED", "FAILED")
            log = SLURM.task_log(task)
            self.assertEqual((state["JobState"], state["ExitCode"]), ("COMPLETED", "0:0"), log)
            say(f"task {task}: {log.splitlines()[-1]}")
        self.assertRegex(SLURM.task_log(tasks[0]), rf"; {len(whole)} frames? there already")
        self.assertRegex(SLURM.task_log(tasks[1]), r"(?s)zam: interrupted with \d+ of 28 .*there already")
        self.expect_all(folder)
        for path, then in before.items():
            now = path.stat()
            self.assertEqual((now.st_ino, now.st_mtime_ns), (then.st_ino, then.st_mtime_ns), f"{path} was written anew")
        say(f"{len(self.single)} frames are those of the single run, byte for byte")

    def test_exit_codes_come_through(self):
        array = self.submit("nowhere.json", FOLDER / "none/####.png", 0, 0, 1)
        self.assertEqual(SLURM.wait_for_state(f"{array}_0", "COMPLETED", "FAILED")["ExitCode"], "3:0")
        say("a scene that is missing: 3, as zam says")
        for numbers, message in (("5 4 1", "behind"), ("0 9 0", "is 0"), ("0 09 1", "'09'"), ("0 9", "usage")):
            run = subprocess.run([SCRIPT, SCENE, "x.####.png", *numbers.split()], env=SLURM.environment,
                                 capture_output=True, text=True)
            self.assertEqual((run.returncode, run.stdout), (2, ""), "nothing is submitted")
            self.assertIn(message, run.stderr)

    def test_job_template(self):
        template = job_template.read(ROOT / "examples/farm/zam.openjd.yaml")
        folder = FOLDER / "a template"
        given = {"Scene": SCENE, "OutputFolder": folder, "FileName": "light.####.png", "Frames": f"0-{LAST}",
                 "FramesPerTask": PER_TASK}
        path = f"{ZAM.parent}:{os.environ['PATH']}"
        for command in job_template.commands(template, given):
            say(" ".join(command))
            run = subprocess.run(command, env={**os.environ, "PATH": path}, capture_output=True, text=True)
            self.assertEqual(run.returncode, 0, run.stderr)
        self.expect_all(folder)


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    ZAM = pathlib.Path(sys.argv.pop()).resolve()
    os.environ["ZAM"] = str(ZAM)
    for name in [name for name in os.environ if re.match("SLURM_|SBATCH_", name)]:
        del os.environ[name]  # of a Slurm that the machine may belong to
    for number in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, signal.default_int_handler)  # so that Slurm is put away
    start = time.monotonic()
    try:
        with tempfile.TemporaryDirectory(prefix="zam-frames-") as name, OneMachineSlurm() as SLURM:
            FOLDER = pathlib.Path(name)
            say(f"Slurm runs in {SLURM.folder}")
            runner = unittest.TextTestRunner(sys.stdout, verbosity=0)
            passed = unittest.main(testRunner=runner, exit=False).result.wasSuccessful()
            if not passed:
                SLURM.show_logs()
    except Failed as failure:
        sys.exit(f"farm_test.py: {failure}")
    say(f"{time.monotonic() - start:.0f} s in all")
    sys.exit(0 if passed else 1)
