"""The tool on a machine without Vulkan: neither its loader nor a driver can be loaded."""

import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from support import TOOL, picture, read, run, write

COMPONENT = Path(os.environ["QV_LIBRARY"]).with_name("libQVFilterNative.so")
LOADER = "libvulkan.so.1"


@unittest.skipUnless(COMPONENT.exists() and shutil.which("cc") and shutil.which("nm"), "there is no component, or no C compiler")
class NoVulkan(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.photo = write(f"{self.folder}/in.png", picture(0))
        self.clip = write(f"{self.folder}/in.mkv", *[picture(n) for n in range(5)])
        self.libraries = self.folder / "libraries"
        self.libraries.mkdir()
        (self.libraries / LOADER).write_text("")  # stands before the system's, and is none
        self.replace_what_needs_the_loader()
        self.environment = dict(os.environ, LD_LIBRARY_PATH=str(self.libraries), XDG_CACHE_HOME=f"{self.folder}/cache")
        self.environment.pop("QVFILTER_DEVICE", None)

    def replace_what_needs_the_loader(self):
        """FFmpeg's filters bring a library that is linked with the loader; they get one that ends the process when it is called."""
        used = dict(re.findall(r"(\S+) => (\S+)", run("ldd", TOOL).decode()))
        if LOADER not in used:
            return
        undefined = {name: run("nm", "-D", "--undefined-only", path).decode() for name, path in used.items() if path.startswith("/")}
        for name, path in used.items():
            if name == LOADER or not path.startswith("/") or LOADER not in run("readelf", "-d", path).decode():
                continue
            offered = {line.split()[-1] for line in run("nm", "-D", "--defined-only", path).decode().splitlines()}
            wanted = {symbol for text in undefined.values() for symbol in re.findall(r"\bU (\S+)", text)} & offered
            text = self.libraries / "other.c"
            text.write_text("void abort(void);\n" + "".join(f"void {symbol.split('@')[0]}(void) {{ abort(); }}\n" for symbol in wanted))
            run("cc", "-shared", "-fPIC", f"-Wl,-soname,{name}", str(text), "-o", str(self.libraries / name))

    def qvfilter(self, *words: str) -> subprocess.CompletedProcess:
        return subprocess.run([TOOL, *words], env=self.environment, capture_output=True, text=True)

    def test_everything_is_drawn_on_the_processor(self):
        self.assertNotIn(LOADER, run("ldd", TOOL, env=self.environment).decode())
        devices = self.qvfilter("devices")
        self.assertEqual(devices.returncode, 0, devices.stderr)
        self.assertEqual(len(devices.stdout.splitlines()), 1)
        self.assertIn("native", devices.stdout)
        effects = ["-e", "crosshatch", "-e", "QVBlackWhiteMTIFilter"]
        for source, target in ((self.photo, "out.png"), (self.clip, "out.mkv")):
            command = ["still"] if target.endswith("png") else ["render", "--quiet", "--codec", "ffv1"]
            output = f"{self.folder}/{target}"
            done = self.qvfilter(*command, "-i", source, *effects, "-o", output)
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            run(TOOL, *command, "-y", "--device", "native", "-i", source, *effects, "-o", f"{self.folder}/expected_{target}")
            self.assertTrue((read(output) == read(f"{self.folder}/expected_{target}")).all())

    def test_who_asks_for_vulkan_is_told(self):
        done = self.qvfilter("still", "-i", self.photo, "--device", "vulkan", "-o", f"{self.folder}/out.png")
        self.assertNotEqual(done.returncode, 0)
        self.assertEqual(len(done.stderr.splitlines()), 1)
        self.assertIn("Vulkan loader", done.stderr)


if __name__ == "__main__":
    unittest.main()
