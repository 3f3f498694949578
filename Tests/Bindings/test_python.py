"""The Python package beside the tool, and the programs of Docs/hosts.md."""

import re
import subprocess
import sys
import tempfile
import threading
import unittest

import numpy as np

import qv
from support import HEIGHT, SOURCE, WIDTH, picture, read, run, still, write


class Pictures(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def assertNear(self, first, second):
        self.assertLessEqual(int(np.abs(first.astype(int) - second).max()), 1)

    def test_are_those_of_the_tool(self):
        frame = picture(0)
        source = write(f"{self.folder}/in.png", frame)
        for name, properties in [("QVMosaicMTIFilter", {"effectValue": 0.8}), ("QVWaveMTIFilter", {}),
                                 ("QVSnowMTIFilter", {"effectValue": 0.9})]:
            settings = "".join(f":{key}={value}" for key, value in properties.items())
            ours = qv.Effect(name, isPhoto=True, **properties)(frame, 1.25)
            self.assertNear(ours, still(source, name + settings, 1.25, f"{self.folder}/still.png"))
            self.assertFalse((ours == frame).all(), name)

    def test_of_a_chain_are_those_of_one_after_the_other(self):
        frame = picture(1)
        mosaic, wave = qv.Effect("QVMosaicMTIFilter"), qv.Effect("QVWaveMTIFilter")
        self.assertNear(qv.Chain(mosaic, wave)(frame, 0.5), wave(mosaic(frame, 0.5), 0.5))

    def test_of_transitions_begin_and_end_with_their_clips(self):
        a, b = picture(0), picture(3)
        for name in qv.classes(kind="transition"):
            transition = qv.Transition(name)
            self.assertNear(transition(a, b, 0), a)
            self.assertNear(transition(a, b, 1), b)

    def test_may_have_any_channels_and_strides(self):
        rgb = picture(2)
        wave = qv.Effect("QVWaveMTIFilter")
        expected = wave(rgb, 1)
        self.assertNear(wave(picture(2, 4), 1)[..., :3], expected)
        blue_first = qv.Effect("QVWaveMTIFilter", order="bgr")(rgb[..., ::-1], 1)
        self.assertNear(blue_first[..., ::-1], expected)
        wide = np.zeros((HEIGHT, WIDTH + 40, 3), np.uint8)
        wide[:, 20:-20] = rgb
        self.assertNear(wave(wide[:, 20:-20], 1), expected)
        self.assertNear(wave(wide[::-1, 20:-20][::-1], 1), expected)
        wave(rgb, 1, out=wide[:, 20:-20])
        self.assertNear(wide[:, 20:-20], expected)
        self.assertTrue((wide[:, :20] == 0).all() and (wide[:, -20:] == 0).all())

    def test_of_every_class_have_the_frames_size(self):
        mask = np.zeros((HEIGHT, WIDTH), np.uint8)
        mask[20:70, 50:110] = 255
        for name in qv.classes(kind="effect"):
            with self.subTest(name):
                self.assertEqual(qv.Effect(name)(picture(0), 0.7, mask=mask).shape, (HEIGHT, WIDTH, 3))


class Interface(unittest.TestCase):
    def test_properties_are_attributes(self):
        hatch = qv.Effect("crosshatch", effectValue=0.25)
        self.assertEqual((hatch.name, hatch.effectValue, hatch.isPhoto), ("QVCrosshatchMTIFilter", 0.25, False))
        hatch.effectValue, hatch.isPhoto = np.float32(0.75), True
        self.assertEqual((hatch.effectValue, hatch.isPhoto), (0.75, True))
        self.assertIn("effectValue", dir(hatch))
        self.assertIn("effectValue: how strong the effect is", hatch.__doc__)
        self.assertEqual(qv.describe("crosshatch")["properties"][0]["name"], "effectValue")
        self.assertIn("QVMosaicMTIFilter", qv.classes(category="mosaic"))

    def test_mistakes_are_told_in_a_line(self):
        frame, mosaic = picture(0), qv.Effect("mosaic")
        read_only = frame.copy()
        read_only.flags.writeable = False
        for cause, call in [("QVMosaicMTIFilter", lambda: qv.Effect("QVMosaikMTIFilter")),
                            ("outside 0 to 1", lambda: mosaic.set(effectValue=3)),
                            ("no property 'size'", lambda: mosaic.set(size=3)),
                            ("of kind transition", lambda: qv.Effect("QVWaveTransitionMTIFilter")),
                            ("of kind effect", lambda: qv.Transition("mosaic")),
                            ("uint8", lambda: mosaic(frame.astype(float))),
                            ("height x width", lambda: mosaic(frame[..., :2])),
                            ("read-only", lambda: mosaic(frame, out=read_only)),
                            ("160x90", lambda: mosaic(frame, out=np.empty((9, 16, 3), np.uint8))),
                            ("one after the other", lambda: mosaic(frame, out=np.empty((HEIGHT, WIDTH, 6), np.uint8)[..., ::2])),
                            ("'rgb' or 'bgr'", lambda: qv.Effect("mosaic", order="gbr")),
                            ("at least one", lambda: qv.Chain())]:
            with self.assertRaisesRegex(qv.Error, re.escape(cause)) as caught:
                call()
            self.assertNotIn("\n", str(caught.exception))
        with self.assertRaises(AttributeError):
            mosaic.nothing

    def test_threads_draw_with_filters_of_their_own(self):
        frame, results = picture(0), {}

        def draw(number):
            results[number] = qv.Effect("QVSnowMTIFilter")(frame, 2)

        threads = [threading.Thread(target=draw, args=(number,)) for number in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        for number in range(1, 4):
            self.assertTrue((results[number] == results[0]).all())


class Programs(unittest.TestCase):
    """Each program of the page writes out.mp4 with as many frames as in.mp4, and other pictures."""

    def test_of_the_page_run(self):
        page = (SOURCE / "Docs/hosts.md").read_text()
        programs = re.findall(r"```python\n(.*?)```", page, re.DOTALL)
        programs = [program for program in programs if "out.mp4" in program]
        self.assertGreaterEqual(len(programs), 2)
        for program in programs:
            with tempfile.TemporaryDirectory() as folder:
                run("ffmpeg", "-v", "error", "-f", "lavfi", "-i", f"testsrc=s={WIDTH}x{HEIGHT}:d=0.4:r=25", "-pix_fmt",
                    "yuv420p", f"{folder}/in.mp4")
                subprocess.run([sys.executable, "-c", program], cwd=folder, check=True)
                before, after = read(f"{folder}/in.mp4"), read(f"{folder}/out.mp4")
                self.assertEqual(len(before), len(after), program)
                self.assertGreater(np.abs(before.astype(int) - after).mean(), 3, program)


if __name__ == "__main__":
    unittest.main()
