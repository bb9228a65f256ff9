"""zam check: every broken plug-in fails the check that it was made for, and no file does the program harm.

    check_test.py PLUGIN BROKEN_PLUGINS PROGRAM...

PROGRAM may be several words: an emulator, and the program.
"""

import json
import pathlib
import random
import shutil
import subprocess
import sys
import tempfile
import unittest

PLUGIN, BROKEN, PROGRAM = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3:]
WINDOWS = PROGRAM[-1].endswith(".exe")  # where libraries hold their property resource, and the broken ones have none

# The checks that a plug-in fails, all of them.
FAILS = {
    "sound": [],
    "crashes": ["survives"],
    "ends_process": ["survives"],
    "endless_message": ["commands", "messages"],
    "hangs": ["survives"],
    "keeps_data": ["given-back"],
    "keeps_streams": ["given-back"],
    "keeps_suite": ["given-back", "valid-calls"],
    "leaves_row": ["pixels"],
    "never_the_same": ["repeats", "threads"],
    "no_entry": ["entry", "loads"],
    "odd_controls": ["control-names", "control-ids", "control-ranges", "valid-calls"],
    "refuses_instance": ["commands"],
    "row_throws": ["commands", "exceptions"],
    "stale_layer": ["valid-calls"],
    "thread_dependent": ["threads"],
    "throws_exception": ["exceptions"],
    "throws_int": ["exceptions"],
    "unbalanced_lock": ["given-back", "valid-calls"],
    "wants_suite": [],
    "writes_past_block": ["inside-blocks"],
    "writes_past_row": ["inside-rows"],
    "wrong_num_params": ["control-count"],
}


def check(file, *options):
    done = subprocess.run([*PROGRAM, "check", "--json", *options, str(file)], capture_output=True, text=True,
                          timeout=300)
    assert done.returncode in (0, 4), (file, done.returncode, done.stderr)
    result = json.loads(done.stdout)
    assert result["sound"] == (done.returncode == 0)
    return {each["name"]: each for each in result["checks"]}


def failed(checks):
    return [name for name, each in checks.items()
            if each["result"] == "failed" and not (WINDOWS and name == "property-list")]


class CheckTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def test_the_effect_passes_all(self):
        checks = check(PLUGIN)
        for name, each in checks.items():
            self.assertEqual(each["result"], "not checked" if name == "bundle" else "passed", each)

    def test_each_fault_is_told_by_name(self):
        self.assertEqual({file.stem for file in BROKEN.glob("*.so")} - {"text"}, set(FAILS))
        for name, wanted in FAILS.items():
            with self.subTest(name):
                checks = check(BROKEN / f"{name}.so", "--limit", "2" if name == "hangs" else "60")
                self.assertEqual(failed(checks), wanted, [checks[each] for each in wanted])
                for each in checks.values():
                    self.assertTrue(each["result"] == "passed" or each["details"], each)

    def test_a_fault_comes_with_its_place(self):
        details = {name: check(BROKEN / f"{name}.so", "--limit", "1")["survives"]["details"][0]
                   for name in ("crashes", "hangs")}
        self.assertIn("in PF_Cmd_RENDER", details["crashes"])
        self.assertEqual(details["hangs"], "still busy after 1 s in PF_Cmd_GLOBAL_SETUP")
        self.assertIn("A Suite of Dreams", check(BROKEN / "wants_suite.so")["commands"]["details"][0])

    @unittest.skipIf(WINDOWS, "no property resource stands beside a library there")
    def test_words_of_another_effect_differ(self):
        shutil.copy(BROKEN / "sound.so", self.folder / "sound.so")
        shutil.copy(PLUGIN.with_suffix(".rsrc"), self.folder / "sound.rsrc")
        checks = check(self.folder / "sound.so")
        self.assertEqual(failed(checks), ["same-words"])
        self.assertIn("version: 0x00088E00 in the property resource, 0x00000000 reported",
                      checks["same-words"]["details"])

    def test_files_that_are_no_plug_ins(self):
        (self.folder / "text.so").write_text("not a library\n")
        (self.folder / "empty.aex").write_bytes(b"")
        (self.folder / "Folder.plugin").mkdir()
        for file, wanted in ((self.folder / "nowhere.so", "file"), (self.folder / "text.so", "library"),
                             (self.folder / "empty.aex", "library"), (self.folder / "Folder.plugin", "bundle"),
                             (pathlib.Path("/dev/null"), "file")):
            if WINDOWS and file.name == "null":
                continue
            self.assertEqual(failed(check(file)), [wanted], file)

    def test_names_are_in_utf8(self):
        self.assertEqual(failed(check(shutil.copy(BROKEN / "sound.so", self.folder / "süß ö.so"))), [])

    def test_damaged_libraries(self):
        whole = (BROKEN / "sound.so").read_bytes()
        file = self.folder / "damaged.so"
        for size in (3, 20, 63, 64, 4000, len(whole) - 1, len(whole) - 2000):
            file.write_bytes(whole[:size])
            check(file)
        dice = random.Random(5)
        for _ in range(5 if WINDOWS else 20):
            damaged = bytearray(whole)
            for _ in range(10):
                damaged[dice.randrange(64 if dice.random() < 0.5 else 1024)] = dice.randrange(256)
            file.write_bytes(damaged)
            check(file, "--limit", "5")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
