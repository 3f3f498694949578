"""A Slurm controller and nodes of one core each on this machine, all of it in one folder."""

import os
import pwd
import secrets
import signal
import socket
import subprocess
import time
from pathlib import Path

PROGRAMS = ("munged", "slurmctld", "slurmd", "sbatch")
os.environ["PATH"] += ":/usr/sbin"  # where the daemons are, also for others than root

# Without control groups, and whatever this machine has.
CONFIGURATION = """\
ClusterName=farm
SlurmctldHost=localhost
SlurmctldPort={ports[0]}
SlurmUser={user}
SlurmdUser={user}
AuthType=auth/munge
AuthInfo=socket={folder}/munge.socket,cred_expire=2
StateSaveLocation={folder}/state
SlurmdSpoolDir={folder}/spool-%n
SlurmctldPidFile={folder}/slurmctld.pid
SlurmdPidFile={folder}/%n.pid
SlurmctldLogFile={folder}/slurmctld.log
SlurmdLogFile={folder}/%n.log
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
SlurmdParameters=config_overrides
SelectType=select/cons_tres
SelectTypeParameters=CR_Core
SchedulerParameters=batch_sched_delay=0,sched_interval=1
MpiDefault=none
SlurmdTimeout=5
KillWait=1
{nodes}
PartitionName=all Nodes=ALL Default=YES
"""


def free_ports(count: int) -> list:
    sockets = [socket.socket() for _ in range(count)]
    for each in sockets:
        each.bind(("", 0))
    ports = [each.getsockname()[1] for each in sockets]
    for each in sockets:
        each.close()
    return ports


def parent_of(process: int) -> int:
    return int(Path(f"/proc/{process}/stat").read_text().rpartition(")")[2].split()[1])


class SlurmCluster:
    """Stands from entry to exit and leaves no process. Jobs run as the user who runs this. One thread."""

    def __init__(self, folder: Path, environment: dict, cores: tuple = (None, None)):
        """folder: empty, without spaces in its name. A node for each of the cores, bound to that one unless it is none."""
        self.folder, self.daemons = folder, {}
        self.nodes = {f"node{number}": core for number, core in enumerate(cores)}
        self.environment = dict(environment, SLURM_CONF=str(folder / "slurm.conf"))

    def __enter__(self):
        key = self.folder / "munge.key"
        key.write_bytes(secrets.token_bytes(1024))
        key.chmod(0o400)
        (self.folder / "state").mkdir()
        port, *ports = free_ports(1 + len(self.nodes))
        nodes = "\n".join(f"NodeName={name} NodeHostname={socket.gethostname()} NodeAddr=localhost Port={port} CPUs=1 RealMemory=4096"
                          for name, port in zip(self.nodes, ports))
        (self.folder / "slurm.conf").write_text(CONFIGURATION.format(folder=self.folder, ports=[port], nodes=nodes,
                                                                     user=pwd.getpwuid(os.getuid()).pw_name))
        files = (f"--{option}={self.folder}/munge.{ending}" for option, ending in (
            ("key-file", "key"), ("socket", "socket"), ("pid-file", "pid"), ("log-file", "log"), ("seed-file", "seed")))
        try:
            self.start("munged", "munged", "--foreground", "--force", *files)
            self.wait_until((self.folder / "munge.socket").exists, "munged")
            self.start("slurmctld", "slurmctld", "-D")
            for name, core in self.nodes.items():
                bound = [] if core is None else ["taskset", "-c", str(core)]
                self.start(name, *bound, "slurmd", "-D", "-N", name)
            self.wait_until(lambda: self.node_states() == ["idle"] * len(self.nodes), "the nodes")
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for name in reversed(list(self.daemons)):
            if name in self.nodes:
                self.lose_node(name)
                continue
            daemon = self.daemons.pop(name)
            daemon.terminate()
            try:
                daemon.wait(20)
            except subprocess.TimeoutExpired:
                daemon.kill()
                daemon.wait()

    def start(self, name: str, *command: str):
        with open(self.folder / f"{name}.output.log", "w") as output:
            self.daemons[name] = subprocess.Popen(command, env=self.environment, stdout=output, stderr=output,
                                                  stdin=subprocess.DEVNULL, start_new_session=True)

    def lose_node(self, name: str):
        """All its processes are gone at once, as those of a machine without power."""
        daemon = self.daemons.pop(name)
        daemon.kill()
        daemon.wait()
        jobs = [process for process in map(int, filter(str.isdigit, os.listdir("/proc"))) if self.is_of_job(process, name)]
        for process in {parent_of(job) for job in jobs} | set(jobs):  # the parent of a job's script is its slurmstepd
            try:
                os.kill(process, signal.SIGKILL)
            except ProcessLookupError:
                pass

    def is_of_job(self, process: int, node: str) -> bool:
        try:
            environment = Path(f"/proc/{process}/environ").read_bytes().split(b"\0")
        except OSError:
            return False
        return {f"SLURMD_NODENAME={node}".encode(), f"SLURM_CONF={self.folder}/slurm.conf".encode()} <= set(environment)

    def run(self, *command: str) -> str:
        result = subprocess.run(command, env=self.environment, capture_output=True, text=True, timeout=60)
        if result.returncode:
            raise AssertionError(f"{' '.join(command)}: {result.stderr or result.stdout}")
        return result.stdout.strip()

    def node_states(self) -> list:
        try:
            return self.run("sinfo", "-h", "-N", "-o", "%T").split()
        except AssertionError:  # the controller is not there yet
            return []

    def wait_until(self, condition, what: str, seconds: float = 60):
        end = time.monotonic() + seconds
        while not condition():
            if time.monotonic() > end:
                raise AssertionError(f"{what}: not after {seconds} s\n{self.logs()}")
            time.sleep(0.2)

    def logs(self) -> str:
        return "\n".join(f"== {log.name}\n{log.read_text(errors='replace')[-3000:]}" for log in sorted(self.folder.glob("*.log")))
