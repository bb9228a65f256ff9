#!/usr/bin/env python3
"""Does a test notice? Makes each slip of slips.toml, alone, in a copy of the sources, and runs the tests on it.

    mutate.py [-j JOBS] [--all] [NAME...]    all slips, or those whose names contain a NAME
    mutate.py --check                        only: does the table still fit the sources?

A slip is killed when a test fails, crashes or does not come to an end. The copy, its build and the output of the tests
that killed are in build/mutation. Exit code 1 when a slip survives or does not build, 2 when there is nothing to try: the
table is stale, or the tests fail without a slip.
"""
import argparse
import collections
import concurrent.futures
import json
import os
import pathlib
import platform
import re
import shutil
import signal
import subprocess
import sys
import threading
import time
import tomllib

ROOT = pathlib.Path(__file__).resolve().parents[2]
TABLE = pathlib.Path(__file__).with_name("slips.toml")
SCRATCH = ROOT / "build" / "mutation"
TREE, BUILD, OUTPUT = SCRATCH / "tree", SCRATCH / "build", SCRATCH / "output"

# What is built: the plug-in, the program, and the tests of what the table changes. Of these first what is built soonest
# and notices most after a slip in a folder: tests that load the plug-in need no compiling when it changes.
TARGETS = ["Zam", "zam_cli", "effect_tests", "host_tests", "io_tests", "cli_tests", "contract_tests"]
NEAREST = {"effect": ["Zam", "contract_tests"], "host": ["host_tests"], "io": ["io_tests"]}
# Tests of the sources' order and of hostile files know nothing of formulas, and those of processes that are stopped or
# hang depend on how busy the machine is.
LEFT_OUT = re.compile(r"^(structure|fuzz)\.|^cli\.(check|output)$|_NOT_BUILT")
# Quick to build, and quick enough to run: one row target besides the scalar one.
FLAGS = ["-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release", "-DCMAKE_CXX_FLAGS_RELEASE=-O1", "-DCMAKE_C_FLAGS_RELEASE=-O1",
         f"-DZAM_ROW_TARGETS={'neon' if platform.machine() in ('aarch64', 'arm64') else 'avx2'}"]


def stale_rows(slips):
    """What is wrong with the table, a sentence each."""
    for name, count in collections.Counter(slip["name"] for slip in slips).items():
        if count > 1:
            yield f"{name}: {count} slips have this name"
    for slip in slips:
        path, name = ROOT / slip["file"], slip["name"]
        found = path.read_text().count(slip["old"]) if path.is_file() else 0
        if found != 1:
            yield f"{name}: its old text is in {slip['file']} {found} times, not once"
        if slip["old"] == slip["new"] or not slip["wrong"].endswith("."):
            yield f"{name}: it changes nothing, or does not say what would go wrong in a sentence"


def copy_sources():
    """Makes TREE what the work tree is, and touches only files that differ."""
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT, check=True,
                            capture_output=True).stdout.decode()
    wanted = {name for name in listed.split("\0") if name and (ROOT / name).is_file()}
    for old in [path for path in TREE.rglob("*") if path.is_file()]:
        if old.relative_to(TREE).as_posix() not in wanted:
            old.unlink()
    for name in wanted:
        to, data = TREE / name, (ROOT / name).read_bytes()
        if not to.is_file() or to.read_bytes() != data:
            to.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(ROOT / name, to)


def build(targets, jobs):
    """None, or what the compiler said."""
    done = subprocess.run(["cmake", "--build", BUILD, "-j", str(jobs), "--target", *targets], stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, errors="replace")
    return done.stdout if done.returncode else None


class Test:
    def __init__(self, described):
        properties = {p["name"]: p["value"] for p in described["properties"]}
        self.name, self.command = described["name"], described["command"]
        self.folder = properties.get("WORKING_DIRECTORY", BUILD)
        self.environment = dict(pair.split("=", 1) for pair in properties.get("ENVIRONMENT", []))
        self.seconds, self.limit = 0.0, 300.0

    def run(self, stop=None):
        """(None, output) when it passes or was stopped, else what became of it: "fails" or "hangs"."""
        log = OUTPUT / "running" / re.sub(r"\W", "_", self.name)
        begin, fate = time.monotonic(), None
        with open(log, "wb") as to:
            process = subprocess.Popen(self.command, cwd=self.folder, env={**os.environ, **self.environment}, stdout=to,
                                       stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL, start_new_session=True)
            while process.poll() is None and not (stop and stop.is_set()) and fate is None:
                time.sleep(0.002)
                if time.monotonic() - begin > self.limit:
                    fate = "hangs"
            if process.poll() is None:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()
            elif process.returncode:
                fate = "fails"
        self.seconds = time.monotonic() - begin
        return fate, log.read_text(errors="replace")


def find_tests():
    listed = subprocess.run(["ctest", "--test-dir", BUILD, "--show-only=json-v1"], check=True, capture_output=True)
    return [Test(t) for t in json.loads(listed.stdout)["tests"] if not LEFT_OUT.match(t["name"]) and "command" in t]


def run_tests(tests, jobs, to_the_end):
    """The tests that do not pass, in the order in which they say so: (test, fate, output)."""
    stop, failed = threading.Event(), []

    def one(test):
        if stop.is_set():
            return
        fate, output = test.run(stop)
        if fate == "fails":  # once more: an accident of a busy machine is no verdict
            fate, output = test.run(stop)
        if fate and not stop.is_set():
            if not to_the_end:
                stop.set()
            failed.append((test, fate, output))

    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        list(pool.map(one, tests))
    return failed


def prepare(jobs):
    """The tests, the quickest first, all of which pass."""
    (OUTPUT / "running").mkdir(parents=True, exist_ok=True)
    copy_sources()
    if shutil.which("ccache"):
        os.environ.update(CMAKE_CXX_COMPILER_LAUNCHER="ccache", CMAKE_C_COMPILER_LAUNCHER="ccache",
                          CCACHE_BASEDIR=str(TREE), CCACHE_NOHASHDIR="1")
    configured = subprocess.run(["cmake", "-S", TREE, "-B", BUILD, *FLAGS], stdout=subprocess.PIPE,
                                stderr=subprocess.STDOUT, text=True)
    said = configured.stdout if configured.returncode else build(TARGETS, jobs)
    if said:
        print(said)
        sys.exit(2)
    tests = find_tests()
    failed = run_tests(tests, jobs, True)
    for test, fate, output in failed:
        print(f"{test.name} {fate} without a slip:\n{output}")
    if failed or not tests:
        sys.exit(2)
    for test in tests:
        test.limit = 20.0 + 10.0 * test.seconds
    return sorted(tests, key=lambda test: test.seconds)


def stages_for(slip, tests, to_the_end):
    """What to build and which tests to run then, until one fails."""
    if to_the_end:
        return [(TARGETS, tests)]
    targets = NEAREST[slip["file"].partition("/")[0]]
    near = [test for test in tests if pathlib.Path(test.command[0]).name in targets]
    return [(targets, near), (TARGETS, [test for test in tests if test not in near])]


def try_slip(slip, tests, jobs, to_the_end):
    """(what became of it, the tests that noticed)"""
    path = TREE / slip["file"]
    text = path.read_text()
    path.write_text(text.replace(slip["old"], slip["new"]))
    try:
        failed = []
        for targets, some in stages_for(slip, tests, to_the_end):
            if said := build(targets, jobs):
                print(said)
                return "DOES NOT BUILD", []
            failed = run_tests(some, jobs, to_the_end)
            if failed:
                break
    finally:
        path.write_text(text)
    (OUTPUT / f"{slip['name']}.txt").write_text("".join(f"{t.name} {fate}\n{out}\n" for t, fate, out in failed))
    return ("killed" if failed else "SURVIVED"), [t.name + (" (hangs)" if fate == "hangs" else "") for t, fate, _ in failed]


def summary(slips, results):
    """How often each test was the one, and what was not killed."""
    killers = collections.Counter(test for _, by in results.values() for test in by)
    print("\nkills  test", *(f"{count:5}  {test}" for test, count in killers.most_common()), sep="\n")
    left = [slip for slip in slips if results[slip["name"]][0] != "killed"]
    print(f"\n{len(slips) - len(left)} of {len(slips)} slips killed")
    for slip in left:
        print(f"{results[slip['name']][0]}: {slip['name']}, {slip['file']}\n  {slip['wrong']}")
    return 1 if left else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("names", nargs="*", metavar="NAME")
    parser.add_argument("-j", "--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--all", action="store_true", help="run every test on every slip, to see which of them notice")
    parser.add_argument("--check", action="store_true")
    given = parser.parse_args()

    slips = tomllib.loads(TABLE.read_text())["slip"]
    faults = list(stale_rows(slips))
    for fault in faults:
        print(f"{TABLE.relative_to(ROOT)} is stale. {fault}")
    if faults:
        sys.exit(2)
    if given.check:
        print(f"{len(slips)} slips, each fits its file")
        return
    slips = [slip for slip in slips if not given.names or any(name in slip["name"] for name in given.names)]
    if not slips:
        print(f"no slip of {TABLE.relative_to(ROOT)} has such a name")
        sys.exit(2)

    tests = prepare(given.jobs)
    print(f"{len(tests)} tests pass without a slip", flush=True)
    results = {}
    for number, slip in enumerate(slips, 1):
        begin = time.monotonic()
        fate, by = results[slip["name"]] = try_slip(slip, tests, given.jobs, given.all)
        print(f"{number:3}/{len(slips)} {time.monotonic() - begin:5.0f} s  {slip['name']}: {fate}"
              + (" by " + ", ".join(by) if by else ""), flush=True)
    sys.exit(summary(slips, results))


main()
