"""The examples in other languages, where these are installed: each draws what the Python package draws."""

import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

import numpy as np

import qv
from support import HEIGHT, SOURCE, WIDTH, picture, run

LIBRARIES = str(Path(os.environ["QV_LIBRARY"]).parent)
HEADERS = str(SOURCE / "Bindings/C")
JNA = Path("/usr/share/java/jna.jar")


class Examples(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.environment = dict(os.environ, LD_LIBRARY_PATH=LIBRARIES, HOME=self.folder, GOFLAGS="-mod=mod", GO111MODULE="off",
                                CGO_CFLAGS=f"-I{HEADERS}", CGO_LDFLAGS=f"-L{LIBRARIES}")

    def need(self, *needed):
        for each in needed:
            if not (each.exists() if isinstance(each, Path) else shutil.which(each)):
                self.skipTest(f"{each} is not installed")

    def assertDraws(self, *program: str):
        arguments = ["QVMosaicMTIFilter", str(WIDTH), str(HEIGHT), "effectValue=0.8"]
        drawn = run(*program, *arguments, stdin=picture(0).tobytes(), env=self.environment)
        self.assertEqual(drawn, qv.Effect("QVMosaicMTIFilter", effectValue=0.8)(picture(0), 1).tobytes())
        failed = subprocess.run([*program, *arguments[:3], "effectValue=2"], input=picture(0).tobytes(), capture_output=True,
                                env=self.environment)
        self.assertEqual((failed.returncode, failed.stdout), (1, b""))
        self.assertIn(b"outside 0 to 1", failed.stderr)

    def test_rust(self):
        self.need("rustc")
        run("rustc", "-O", "--edition", "2021", "-D", "warnings", "-L", LIBRARIES, str(SOURCE / "Examples/RustRender/main.rs"), "-o", f"{self.folder}/render")
        self.assertDraws(f"{self.folder}/render")

    def test_go(self):
        self.need("go")
        run("go", "build", "-o", f"{self.folder}/render", str(SOURCE / "Examples/GoRender/main.go"), env=self.environment)
        self.assertDraws(f"{self.folder}/render")

    def test_java(self):
        self.need("javac", JNA)
        run("javac", "-Xlint:all", "-Werror", "-cp", str(JNA), "-d", self.folder, str(SOURCE / "Examples/JavaRender/JavaRender.java"))
        self.assertDraws("java", f"-Djna.library.path={LIBRARIES}", "-cp", f"{JNA}:{self.folder}", "JavaRender")


if __name__ == "__main__":
    unittest.main()
