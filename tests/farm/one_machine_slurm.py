"""A Slurm of its own on this machine, as root or not: one node, own ports, everything in a temporary folder."""

import os
import pathlib
import shutil
import signal
import socket
import subprocess
import tempfile
import time

PATIENCE = 300  # seconds for anything that a busy machine may delay

# The processor count is made up: one task of 4 at a time, wherever the tests run.
CONFIG = """\
ClusterName=zam-test
SlurmctldHost={host}(127.0.0.1)
SlurmctldPort={ports[0]}
SlurmdPort={ports[1]}
AuthType=auth/munge
AuthInfo=socket={folder}/munge.socket
CredType=cred/munge
SlurmUser={user}
SlurmdUser={user}
StateSaveLocation={folder}/state
SlurmdSpoolDir={folder}/spool
SlurmctldPidFile={folder}/slurmctld.pid
SlurmdPidFile={folder}/slurmd.pid
ProctrackType=proctrack/linuxproc
SchedulerType=sched/builtin
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
SlurmdParameters=config_overrides
ReturnToService=2
MinJobAge=3600
NodeName={host} NodeAddr=127.0.0.1 CPUs=4
PartitionName=farm Nodes=ALL Default=YES
"""

# slurmd loads a plug-in for control groups even where nothing uses them. This one asks nothing of the system, so that the
# test runs in containers that have none.
CGROUP_CONFIG = """\
CgroupPlugin=cgroup/v1
CgroupMountpoint={folder}/cgroup
"""


class Failed(Exception):
    """Slurm itself does not do its part."""


def free_ports(count):
    sockets = [socket.socket() for _ in range(count)]
    try:
        for s in sockets:
            s.bind(("", 0))
        return [s.getsockname()[1] for s in sockets]
    finally:
        for s in sockets:
            s.close()


def wait_for(what, done, pause=0.2):
    """The first true answer of `done`."""
    end = time.monotonic() + PATIENCE
    while not (answer := done()):
        if time.monotonic() > end:
            raise Failed(f"waited {PATIENCE} s in vain for {what}")
        time.sleep(pause)
    return answer


class OneMachineSlurm:
    """with OneMachineSlurm() as slurm: nothing of it is left afterwards."""

    def __enter__(self):
        for program in ("munged", "slurmctld", "slurmd", "sbatch"):
            if not shutil.which(program, path=self.search_path()):
                raise Failed(f"there is no {program}: run tools/setup.sh farm")
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="zam-farm-"))
        self.daemons = {}
        try:
            self.start()
        except BaseException as failure:
            self.__exit__(type(failure), failure, None)
            raise
        return self

    def __exit__(self, kind, *_):
        if kind is Failed:
            self.show_logs()
        try:
            self.clear_queue()
        finally:
            for daemon in reversed(self.daemons.values()):
                daemon.terminate()
            for daemon in self.daemons.values():
                try:
                    daemon.wait(20)
                except subprocess.TimeoutExpired:
                    daemon.kill()
                    daemon.wait()
            self.kill_what_is_left()
            shutil.rmtree(self.folder, ignore_errors=True)

    @staticmethod
    def search_path():
        return os.environ.get("PATH", "") + ":/usr/sbin:/usr/bin"

    def start(self):
        self.folder.chmod(0o755)  # munge wants everybody to reach its socket
        for name in ("state", "spool", "log"):
            (self.folder / name).mkdir()
        key = self.folder / "munge.key"
        key.touch(0o600)
        key.write_bytes(os.urandom(128))
        host = socket.gethostname().split(".")[0]
        config = self.folder / "slurm.conf"
        config.with_name("cgroup.conf").write_text(CGROUP_CONFIG.format(folder=self.folder))
        config.write_text(CONFIG.format(host=host, folder=self.folder, user=self.user(), ports=free_ports(2)))
        self.environment = {**os.environ, "SLURM_CONF": str(config), "PATH": self.search_path(),
                            "SBATCH_OUTPUT": str(self.folder / "log" / "%A_%a.log")}
        self.daemon("munged", "--force", "--foreground", *(f"--{option}={self.folder}/{name}" for option, name in (
            ("socket", "munge.socket"), ("key-file", "munge.key"), ("seed-file", "munge.seed"),
            ("pid-file", "munged.pid"), ("log-file", "log/munge.log"))))
        wait_for("munged", (self.folder / "munge.socket").exists)
        self.daemon("slurmctld", "-D")
        self.daemon("slurmd", "-D")
        wait_for("an idle node", lambda: self.all_run() and self.run("sinfo", "-h", "-o", "%T", check=False) == "idle")

    @staticmethod
    def user():
        return subprocess.run(["id", "-un"], capture_output=True, text=True, check=True).stdout.strip()

    def daemon(self, *command):
        # Sessions of their own: a Ctrl-C at the terminal is for the test, which ends them in order.
        with open(self.folder / "log" / f"{command[0]}.out", "w") as out:
            self.daemons[command[0]] = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=out, stderr=out,
                                                        env=self.environment, start_new_session=True)

    def all_run(self):
        for name, daemon in self.daemons.items():
            if daemon.poll() is not None:
                raise Failed(f"{name} ended with {daemon.returncode}")
        return True

    def run(self, *command, check=True):
        """What the command prints."""
        run = subprocess.run(command, env=self.environment, capture_output=True, text=True, timeout=PATIENCE)
        if check and run.returncode != 0:
            raise Failed(f"{' '.join(command)}: exit code {run.returncode}: {run.stderr.strip()}")
        return run.stdout.strip()

    def task(self, name):
        """What Slurm knows of the array task "JOB_TASK": JobState, ExitCode and so on."""
        self.all_run()
        shown = self.run("scontrol", "-o", "show", "job", name)
        return dict(word.split("=", 1) for word in shown.split(" ") if "=" in word)

    def wait_for_state(self, name, *states):
        def reached():
            task = self.task(name)
            return task if task["JobState"] in states else None
        return wait_for(f"task {name} to be {' or '.join(states)}", reached)

    def processes(self, name):
        listed = self.run("scontrol", "listpids", self.task(name)["JobId"], check=False)
        return [int(line.split()[0]) for line in listed.splitlines()[1:] if line.split()[0].isdigit()]

    def task_log(self, name):
        log = self.folder / "log" / f"{name}.log"
        return log.read_text() if log.exists() else ""

    def start_now(self, name):
        """Slurm holds a requeued task back for two minutes."""
        wait_for(f"task {name} to be requeued", lambda: self.task(name)["JobState"] == "PENDING")
        self.run("scontrol", "update", f"JobId={name}", "StartTime=now")

    def show_logs(self):
        for log in sorted((self.folder / "log").iterdir()):
            lines = log.read_text(errors="replace").splitlines()
            print(f"--- {log.name}, its last lines", *lines[-15:], sep="\n", flush=True)

    def clear_queue(self):
        if "slurmd" in self.daemons and all(daemon.poll() is None for daemon in self.daemons.values()):
            self.run("scancel", "--user", self.user(), check=False)
            wait_for("the queue to be empty", lambda: not self.run("squeue", "-h", check=False))

    def kill_what_is_left(self):
        """Tasks outlive slurmd. They are known by their environment, which names this folder."""
        mark = f"SLURM_CONF={self.folder}/".encode()
        for process in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                if mark in (process / "environ").read_bytes():
                    os.kill(int(process.name), signal.SIGKILL)
            except OSError:
                pass  # it is another user's, or gone
