"""The compiler of kernels in a process that has another LLVM, whose functions stand before those of its own."""

import ctypes.util
import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from support import TOOL, picture, read, run, write

COMPONENT = Path(os.environ["QV_LIBRARY"]).with_name("libQVFilterNative.so")


@unittest.skipUnless(COMPONENT.exists() and shutil.which("cc") and shutil.which("nm"), "there is no component, or no C compiler")
class OtherLLVM(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.photo = write(f"{self.folder}/in.png", picture(0))

    def draw(self, name: str, **environment: str):
        """A picture for which two filters are joined and compiled by LLVM: each time anew."""
        cache = f"{self.folder}/{name}"
        done = subprocess.run([TOOL, "still", "-i", self.photo, "-e", "crosshatch", "-e", "QVBlackWhiteMTIFilter", "--device", "native", "-o", f"{cache}.png"],
                              env=dict(os.environ, XDG_CACHE_HOME=cache, **environment), capture_output=True, text=True)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertTrue(list(Path(cache).rglob("*.obj")), "nothing was compiled")
        return read(f"{cache}.png")

    def test_of_another_version_is_not_taken_for_ones_own(self):
        expected = self.draw("alone")
        names = re.findall(r"\b(\w*llvm\w*)@LLVM", run("nm", "-D", "--undefined-only", str(COMPONENT)).decode())
        self.assertGreater(len(names), 50)
        text, script, other = (f"{self.folder}/other.{suffix}" for suffix in ("c", "map", "so"))
        Path(text).write_text("void abort(void);\n" + "".join(f"void {name}(void) {{ abort(); }}\n" for name in names))
        Path(script).write_text("LLVM_99 { global: *; };\n")
        run("cc", "-shared", "-fPIC", f"-Wl,--version-script={script}", text, "-o", other)
        self.assertTrue((self.draw("beside_a_copy", LD_PRELOAD=other) == expected).all())
        if real := ctypes.util.find_library("LLVM-14"):
            self.assertTrue((self.draw("beside_14", LD_PRELOAD=real) == expected).all())


if __name__ == "__main__":
    unittest.main()
