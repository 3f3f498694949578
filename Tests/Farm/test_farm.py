"""The engines' files of Docs/farm at work on a short film: Slurm and GNU parallel on this machine. Kubernetes' one is read only."""

import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

import film
import kubernetes.client
import yaml
from slurm_cluster import PROGRAMS, SlurmCluster

ENGINES = Path(os.environ["QV_SOURCE_ROOT"], "Docs", "farm")
TOOL = os.environ["QV_TOOL"]
# Encoded so slowly that a part is met in the middle.
PARTS, LOSSLESS = 4, ("--crf", "0", "--preset", "slower", "--audio-codec", "alac")


def run(*command: str, **settings) -> str:
    result = subprocess.run(command, capture_output=True, text=True, timeout=300, **settings)
    if result.returncode:
        raise AssertionError(f"{' '.join(command)}: {result.stdout}{result.stderr}")
    return result.stdout


def hashes(path: Path) -> str:
    """A line for each decoded frame with its time, and one for each second of sound."""
    return run("ffmpeg", "-v", "error", "-i", str(path), "-map", "0:v", "-map", "0:a", "-af", "asetnsamples=48000", "-f", "framemd5", "-")


#: Fields that are younger than Debian's models of the interface.
YOUNGER = {"V1JobSpec": {"backoffLimitPerIndex": "int"}}


def kubernetes_object(value, kind: str):
    """The value as the interface's model of that name; a field that is unknown, missing or of another type is an error."""
    if match := re.fullmatch(r"list\[(.+)\]", kind):
        return [kubernetes_object(each, match[1]) for each in value]
    if match := re.fullmatch(r"dict\(str, (.+)\)", kind):
        return {key: kubernetes_object(each, match[1]) for key, each in value.items()}
    if kind in ("str", "int", "bool"):
        if type(value).__name__ != kind:
            raise AssertionError(f"{value!r} is not {kind}")
        return value
    model = getattr(kubernetes.client, kind)
    names = {name: field for field, name in model.attribute_map.items()}
    fields = {}
    for name, each in value.items():
        if name in YOUNGER.get(kind, ()):
            kubernetes_object(each, YOUNGER[kind][name])
        elif name in names:
            fields[names[name]] = kubernetes_object(each, model.openapi_types[names[name]])
        else:
            raise AssertionError(f"{kind} has no {name}")
    return model(**fields)


class Film(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="farm film ")
        cls.addClassCleanup(folder.cleanup)
        cls.folder = Path(folder.name)
        clips = [f"clip {number}.mp4" for number in range(3)]
        for number, clip in enumerate(clips):
            film.make_clip(cls.folder / clip, 6, "640x360", number)
        film.write_project(cls.folder / "film.json", clips, clips=6, frames=300, length=150, overlap=15, music=clips[1])
        run(TOOL, "edit", str(cls.folder / "film.json"), "-o", str(cls.folder / "whole.mp4"), *LOSSLESS)
        cls.whole = hashes(cls.folder / "whole.mp4")

    def setUp(self):
        """A folder of its own with the tool in it, which obeys its faults."""
        self.work = Path(tempfile.mkdtemp(dir=self.folder))
        self.faults = self.work / "faults"
        (self.work / "bin").mkdir()
        self.faults.mkdir()
        (self.work / "bin" / "qvfilter").symlink_to(Path(__file__).with_name("faulty_tool.py"))
        self.environment = dict(os.environ, QV_FAULTS=str(self.faults), PATH=f"{self.work / 'bin'}:{os.environ['PATH']}")

    def render(self, engine: str, **environment: str) -> str:
        return run(str(ENGINES / engine), "film.json", str(self.work / "film.mp4"), str(PARTS), *LOSSLESS, cwd=self.folder,
                   env={**self.environment, **environment})

    def fault(self, part: int, kind: str):
        (self.faults / str(part)).write_text(kind)

    def assertWhole(self):
        """The film is what one run makes, every part and the sound was rendered once, and each fault was met."""
        self.assertEqual(hashes(self.work / "film.mp4"), self.whole)
        self.assertEqual(sorted((self.faults / "rendered").read_text().split()), [str(part) for part in range(PARTS + 1)])
        self.assertEqual([fault.name for fault in self.faults.iterdir() if fault.name.isdigit()], [])

    @unittest.skipUnless(all(map(shutil.which, PROGRAMS)), "no Slurm")
    def test_slurm_survives_a_killed_part_a_full_disk_and_a_lost_node(self):
        for part, kind in enumerate(("killed", "disk", "hangs")):
            self.fault(part, kind)
        with tempfile.TemporaryDirectory(prefix="slurm") as folder, SlurmCluster(Path(folder), self.environment) as cluster:
            self.render("slurm.sh", cores="1", **cluster.environment)
            cluster.wait_until((self.faults / "hangs").exists, "the part that hangs")
            cluster.lose_node((self.faults / "hangs").read_text())
            cluster.wait_until(lambda: not cluster.run("squeue", "-h"), "the end of all jobs", 240)
        log = "".join(log.read_text() for log in self.work.glob("film.parts/log_task_*"))
        self.assertTrue((self.work / "film.mp4").exists(), log)
        self.assertWhole()

    @unittest.skipUnless(shutil.which("parallel"), "no GNU parallel")
    def test_parallel_tries_another_machine_and_goes_on(self):
        """With a stand-in for ssh, which cannot reach one of the machines, started as a service is: without SHELL."""
        self.environment.pop("SHELL", None)
        self.fault(1, "killed")
        self.fault(3, "disk")
        (self.work / "bin" / "ssh").write_text('#!/bin/bash\nwhile [ "$1" != -- ]; do host=$1; shift; done\n'
                                               '[ "$host" = otto ] && exit 255\nshift\nexec bash -c "$*"\n')
        (self.work / "bin" / "ssh").chmod(0o755)
        for _ in range(2):
            self.render("parallel.sh", PARALLEL="--sshlogin 1/anna,1/otto --memfree 10M")
            self.assertWhole()

    def test_kubernetes_manifest_is_of_the_interface_and_its_commands_are_right(self):
        split, parts, join = jobs = list(yaml.safe_load_all((ENGINES / "kubernetes.yaml").read_text()))
        for job in jobs:
            kubernetes_object(job, "V1Job")
            pod = job["spec"]["template"]["spec"]
            self.assertEqual([mount["name"] for mount in pod["containers"][0]["volumeMounts"]], [each["name"] for each in pod["volumes"]])
        self.assertEqual((parts["spec"]["completionMode"], parts["spec"]["template"]["spec"]["restartPolicy"]), ("Indexed", "Never"))
        shutil.copytree(self.folder, self.work / "clips", ignore=lambda *_: {self.work.name})
        (self.work / "clips" / "film.json").rename(self.work / "clips" / "trailer.json")

        def start(job: dict, index: int = 0) -> subprocess.CompletedProcess:
            words = [word.replace("$(JOB_COMPLETION_INDEX)", str(index)) for word in job["spec"]["template"]["spec"]["containers"][0]["args"]]
            return subprocess.run([TOOL, *words], cwd=self.work / "clips", capture_output=True, text=True)

        self.assertTrue(start(split).stdout.startswith(f"{parts['spec']['completions']} parts"))
        self.assertEqual(start(parts, 3).returncode, 0)
        self.assertIn("part_000.mkv", start(join).stderr)
