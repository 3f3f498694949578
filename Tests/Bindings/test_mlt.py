"""The module of MLT, in its own program."""

import os
import shutil
import tempfile
import unittest
from pathlib import Path

import numpy as np

import qv
from support import HEIGHT, WIDTH, link_modules, picture, read, run, write


@unittest.skipUnless(shutil.which("melt") and Path(os.environ["QV_MLT_MODULE"]).exists(), "MLT is not installed")
class Services(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.kept = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.kept.cleanup)
        cls.folder = cls.kept.name
        cls.environment = dict(os.environ, MLT_REPOSITORY=link_modules(Path(cls.folder, "modules")))
        cls.frames = [picture(n) for n in range(30)]
        cls.clip = write(f"{cls.folder}/in.mkv", *cls.frames)
        cls.out = f"{cls.folder}/out.mkv"

    def melt(self, *arguments: str, threads: int = 1) -> np.ndarray:
        run("melt", "-silent", *arguments, "-consumer", f"avformat:{self.out}", "vcodec=ffv1", "pix_fmt=bgr0", "an=1",
            f"real_time=-{threads}", env=self.environment)
        return read(self.out).astype(int)

    def query(self, what: str) -> str:
        return run("melt", "-query", what, env=self.environment).decode()

    def assertNear(self, first, second):
        self.assertLessEqual(int(np.abs(first.astype(int) - second).max()), 1)

    def test_are_all_classes_with_their_ranges(self):
        filters, transitions = self.query("filters"), self.query("transitions")
        for name in qv.classes(kind="effect"):
            self.assertIn(f"qv.{name}\n", filters)
        for name in qv.classes(kind="transition"):
            self.assertIn(f"qv.{name}\n", transitions)
        described = self.query("filter=qv.QVMosaicMTIFilter")
        for line in ("title: Mosaic", "identifier: factor", "minimum: 1", "maximum: 1080", "animation: yes", "unit: pixels at 1080"):
            self.assertIn(line, described)
        self.assertIn("values:", self.query("filter=qv.QVMirrorMTIFilter"))

    def test_follow_keyframes(self):
        snow = qv.Effect("QVSnowMTIFilter")
        for threads in (1, 3):
            drawn = self.melt(self.clip, "-filter", "qv.QVSnowMTIFilter", "effectValue=0=0;25=0.75", threads=threads)
            for n in (0, 10, 28):
                snow.effectValue = 0.75 * min(n / 25, 1)
                self.assertNear(drawn[n], snow(self.frames[n], n / 25))

    def test_take_what_the_user_changed_from_what_follows_from_it(self):
        # An editor writes all that it shows, numbers as keyframes.
        for settings in (["effectValue=0.9"], ["effectValue=0.9", "factor=58"], ["effectValue=0.9", "factor=00:00:00.000=58.0"], ["factor=200"]):
            mosaic = qv.Effect("QVMosaicMTIFilter", **dict(s.split("=") for s in settings if "58" not in s))
            drawn = self.melt(self.clip, "-filter", "qv.QVMosaicMTIFilter", *settings)
            self.assertNear(drawn[3], mosaic(self.frames[3]))

    def test_transitions_run_with_the_hosts_progress(self):
        second = write(f"{self.folder}/b.mkv", *[picture(90)] * 30)
        wave = qv.Transition("QVWaveTransitionMTIFilter")
        drawn = self.melt(self.clip, "-track", second, "-transition", "qv.QVWaveTransitionMTIFilter", "in=0", "out=19", "a_track=0",
                          "b_track=1")
        for n in (0, 7, 15):
            self.assertNear(drawn[n], wave(self.frames[n], picture(90), n / 20, duration=0.8))

    def test_masks_come_from_a_second_track(self):
        masked = next(name for name in qv.classes(kind="effect")
                      if any(each["role"] == "mask" for each in qv.describe(name)["inputs"]))
        mask = np.zeros((HEIGHT, WIDTH), np.uint8)
        mask[25:65, 50:110] = 255
        track = write(f"{self.folder}/mask.mkv", *[np.dstack([mask] * 3)] * 30)
        drawn = self.melt(self.clip, "-track", track, "-transition", f"qv.{masked}", "in=0", "out=29", "a_track=0", "b_track=1")
        self.assertNear(drawn[12], qv.Effect(masked)(self.frames[12], 12 / 25, end=30 / 25, mask=mask))


if __name__ == "__main__":
    unittest.main()
