"""The library in a process that has another FFmpeg, whose functions stand before those of its own."""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from support import TOOL, picture, read, run, write

LIBRARY = Path(os.environ["QV_LIBRARY"]).with_name("libQVFilterExtension.so")
DRAWING = """
import sys; sys.path.insert(0, ".")
import numpy as np
import qv
import test_frei0r as hosted
frame, mask = hosted.picture(0, 4), np.zeros((hosted.HEIGHT, hosted.WIDTH), np.uint8)
mask[20:70, 50:110] = 255
for name in qv.classes(kind="effect"):
    if name not in ("QVBuildingFilter", "QVDesertFilter"):  # these show clips
        masked = any(each["role"] == "mask" for each in qv.describe(name)["inputs"])
        qv.Effect(name)(frame, 0.5, **({"mask": mask} if masked else {}))
for name in qv.classes(kind="transition"):
    qv.Transition(name)(frame, hosted.picture(1, 4), 0.4)
drawn = qv.Effect("QVSnowMTIFilter", effectValue=0.75)(frame, 1)
assert hosted.near(drawn, hosted.Plugin("QVSnowMTIFilter").draw(1, frame, effectValue=0.75))
print("drawn")
"""


@unittest.skipUnless(shutil.which("cc") and shutil.which("nm"), "there is no compiler")
class OtherFFmpeg(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.clip = write(f"{self.folder}/in.mkv", *[picture(n) for n in range(5)])

    def preload(self, version: str) -> dict:
        """The environment of a process whose other FFmpeg ends it at the first call. Every function that the library takes from its own
        is in it, of that version, or of none."""
        functions = re.findall(r"\b((?:av|sws|swr)\w*)@", run("nm", "-D", "--undefined-only", str(LIBRARY)).decode())
        self.assertGreater(len(functions), 50)
        text, script, built = (f"{self.folder}/other{version}.{suffix}" for suffix in ("c", "map", "so"))
        Path(text).write_text("void abort(void);\n" + "".join(f"void {name}(void) {{ abort(); }}\n" for name in functions))
        Path(script).write_text(f"{version} {{ global: *; }};\n")  # without a name it gives none
        run("cc", "-shared", "-fPIC", f"-Wl,--version-script={script}", text, "-o", built)
        return dict(os.environ, LD_PRELOAD=built, LD_BIND_NOW="1")

    def render(self, environment: dict) -> int:
        return subprocess.run([TOOL, "render", "-y", "--quiet", "-i", self.clip, "-e", "crosshatch", "--codec", "ffv1",
                               "-o", f"{self.folder}/out.mkv"], env=environment, capture_output=True).returncode

    def test_of_another_release_is_not_taken_for_ones_own(self):
        self.assertEqual(self.render(dict(os.environ)), 0)
        expected = read(f"{self.folder}/out.mkv")
        self.assertEqual(self.render(self.preload("LIBAV_99")), 0)
        self.assertTrue((read(f"{self.folder}/out.mkv") == expected).all())

    def test_without_versions_is_not_called_for_frames_in_memory(self):
        environment = self.preload("")
        self.assertLess(self.render(environment), 0, "clips need FFmpeg: the one that stands before would be called")
        done = subprocess.run([sys.executable, "-c", DRAWING], env=environment, capture_output=True, text=True)
        self.assertEqual((done.returncode, done.stdout), (0, "drawn\n"), done.stderr)


if __name__ == "__main__":
    unittest.main()
