"""The plugins as a host loads them, and in the hosts that there are."""

import ctypes
import json
import os
import re
import shutil
import subprocess
import tempfile
import threading
import unittest
from ctypes import POINTER, Structure, byref, c_char_p, c_double, c_float, c_int, c_uint, c_void_p
from pathlib import Path

import numpy as np

from support import HEIGHT, SOURCE, TOOL, WIDTH, picture, read, run, still, write

PLUGINS = Path(os.environ["FREI0R_PATH"])
FILTER, MIXER2 = 0, 2
BOOL, DOUBLE, COLOR, POSITION = range(4)


class Info(Structure):
    _fields_ = [("name", c_char_p), ("author", c_char_p), ("type", c_int), ("color_model", c_int), ("version", c_int),
                ("major", c_int), ("minor", c_int), ("params", c_int), ("explanation", c_char_p)]


class Param(Structure):
    _fields_ = [("name", c_char_p), ("type", c_int), ("explanation", c_char_p)]


class Plugin:
    """One as a host of seconds sees it."""

    def __init__(self, name: str):
        self.code = ctypes.CDLL(str(PLUGINS / f"{name}.so"))
        self.code.f0r_construct.restype = c_void_p
        self.code.f0r_construct.argtypes = [c_uint, c_uint]
        assert self.code.f0r_init() == 1
        self.info = Info()
        self.code.f0r_get_plugin_info(byref(self.info))
        self.params = [Param() for _ in range(self.info.params)]
        for index, param in enumerate(self.params):
            self.code.f0r_get_param_info(byref(param), index)

    def index(self, name: str) -> int:
        return [param.name.decode() for param in self.params].index(name)

    def draw(self, time: float, *frames: np.ndarray, **values: float) -> np.ndarray:
        height, width = frames[0].shape[:2]
        instance = c_void_p(self.code.f0r_construct(width, height))
        for name, value in values.items():
            self.code.f0r_set_param_value(instance, byref(c_double(value)), self.index(name))
        out = np.zeros((height, width, 4), np.uint8)
        pixels = [np.ascontiguousarray(frame).ctypes.data_as(c_void_p) for frame in frames]
        if self.info.type == MIXER2:
            self.code.f0r_update2(instance, c_double(time), *pixels, None, out.ctypes.data_as(c_void_p))
        else:
            self.code.f0r_update(instance, c_double(time), *pixels, out.ctypes.data_as(c_void_p))
        self.code.f0r_destruct(instance)
        return out


def near(first: np.ndarray, second: np.ndarray) -> bool:
    return int(np.abs(first[..., :3].astype(int) - second[..., :3]).max()) <= 1


class Plugins(unittest.TestCase):
    def test_of_every_class_load_draw_and_hold_their_values(self):
        names = sorted(path.stem for path in PLUGINS.glob("*.so"))
        self.assertGreater(len(names), 100)
        a, b = picture(0, 4), picture(3, 4)
        a[20:60, 40:120, 3] = 128  # for classes that look for a subject
        for name in names:
            with self.subTest(name):
                plugin = Plugin(name)
                is_transition = plugin.info.type == MIXER2
                out = plugin.draw(0.7, a, b) if is_transition else plugin.draw(0.7, a)
                self.assertTrue(out.any())
                if is_transition:
                    self.assertEqual(plugin.params[0].name, b"progress")
                    self.assertTrue(near(plugin.draw(0, picture(0, 4), b, progress=0), picture(0)))
                    self.assertTrue(near(plugin.draw(0, picture(0, 4), b, progress=1), b))
                instance = c_void_p(plugin.code.f0r_construct(16, 16))
                for index, param in enumerate(plugin.params):
                    self.assertTrue(param.explanation)
                    value = {COLOR: c_float * 3, POSITION: c_double * 2}.get(param.type, c_double)()
                    again = type(value)()
                    plugin.code.f0r_get_param_value(instance, byref(value), index)
                    plugin.code.f0r_set_param_value(instance, byref(value), index)
                    plugin.code.f0r_get_param_value(instance, byref(again), index)
                    for held in (value[:] if hasattr(value, "__len__") else [value.value]):
                        self.assertTrue(0 <= held <= 1, param.name)
                    self.assertEqual(bytes(value), bytes(again), param.name)
                plugin.code.f0r_destruct(instance)
                plugin.code.f0r_deinit()

    def test_the_docs_name_those_that_need_a_subject(self):
        classes = json.loads(run(TOOL, "list", "--json", "--kind", "effect"))
        needy = {each["name"] for each in classes if any(i["role"] == "mask" and i["required"] for i in each["inputs"])}
        limits = (SOURCE / "Docs/hosts.md").read_text().split("need a subject")[1].split("##")[0]
        self.assertEqual(set(re.findall(r"`(QV\w+)`", limits)), needy)

    def test_ranges_are_folded(self):
        mosaic = Plugin("QVMosaicMTIFilter")
        self.assertIn(b"0 to 1 is 1 to 1080 pixels at 1080", mosaic.params[mosaic.index("factor")].explanation)
        frame = picture(1, 4, 1080, 1080)
        out = mosaic.draw(0, frame, factor=(270 - 1) / (1080 - 1))  # a block of 270 pixels, four a side
        blocks = out.reshape(4, 270, 4, 270, 4)
        self.assertTrue((blocks == blocks[:, :1, :, :1]).all())
        self.assertGreater(len(np.unique(blocks[:, 0, :, 0].reshape(16, 4), axis=0)), 8)

    def test_frames_of_any_size_and_time(self):
        snow = Plugin("QVSnowMTIFilter")
        for width, height in [(1, 1), (2, 2), (324, 20), (1920, 8)]:
            frame = picture(0, 4, width, height)
            self.assertEqual(snow.draw(1, frame).shape, frame.shape)
        for time in (-1e300, float("nan"), 1e18):  # no time: frames are counted
            self.assertTrue(near(snow.draw(time, picture(0, 4)), snow.draw(0, picture(0, 4))))
        self.assertFalse(near(snow.draw(1, picture(0, 4)), snow.draw(0, picture(0, 4))))
        self.assertIsNone(snow.code.f0r_construct(0, 10))

    def test_two_instances_on_two_threads(self):
        wave, results = Plugin("QVWaveMTIFilter"), {}
        threads = [threading.Thread(target=lambda n=n: results.setdefault(n, wave.draw(1, picture(0, 4)))) for n in range(2)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertTrue((results[0] == results[1]).all())

    def test_without_a_bundle_or_a_driver_frames_pass_and_one_line_says_why(self):
        program = ("import sys; sys.path.insert(0, '.'); import test_frei0r as t, numpy as np; p = t.Plugin('QVWaveMTIFilter');"
                   "f = t.picture(0, 4); print(all((p.draw(i, f) == f).all() for i in range(3)))")
        no_driver = {"VK_DRIVER_FILES": "/nowhere", "VK_ICD_FILENAMES": "/nowhere", "QVFILTER_DEVICE": "vulkan"}
        for missing in ({"QVFILTER_BUNDLE": "/nowhere"}, no_driver):
            done = subprocess.run([os.sys.executable, "-c", program], env=dict(os.environ, **missing), capture_output=True, text=True, check=True)
            self.assertEqual(done.stdout, "True\n")
            self.assertEqual(len([line for line in done.stderr.splitlines() if "pass unchanged" in line]), 1, done.stderr)


class Hosts(unittest.TestCase):
    """A frame of 1 s into a clip, drawn by each host, is what the tool draws for that time."""

    EFFECT, CHOICE = "QVSnowMTIFilter", "QVSnowMTIFilter:effectValue=0.75"

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.frames = [picture(n) for n in range(30)]
        self.clip = write(f"{self.folder}/in.mkv", *self.frames)
        self.out = f"{self.folder}/out.mkv"

    def need(self, program: str):
        if not shutil.which(program):
            self.skipTest(f"{program} is not installed")

    def assertDrawn(self, drawn: np.ndarray, tolerance: int = 1):
        picture_file = write(f"{self.folder}/frame.png", self.frames[25])
        # Not a photo for the host.
        expected = still(picture_file, self.CHOICE + ":isPhoto=false:iTime=1", 1, f"{self.folder}/still.png")
        self.assertLessEqual(int(np.abs(drawn.astype(int) - expected).max()), tolerance)
        self.assertGreater(int(np.abs(drawn.astype(int) - self.frames[25]).max()), 50)

    def test_ffmpeg(self):
        self.need("ffmpeg")
        run("ffmpeg", "-v", "error", "-i", self.clip, "-vf", f"format=rgba,frei0r={self.EFFECT}:0.75", "-c:v", "ffv1", "-pix_fmt", "bgr0",
            self.out)
        self.assertDrawn(read(self.out)[25])

    def test_ffmpeg_at_a_width_whose_frames_have_no_time(self):
        self.need("ffmpeg")
        for width in (324, 336, 854):
            clip = write(f"{self.folder}/{width}.mkv", *[picture(0, width=width)] * 10)
            run("ffmpeg", "-v", "error", "-y", "-i", clip, "-vf", f"format=rgba,frei0r={self.EFFECT}:0.75", "-c:v", "ffv1", "-pix_fmt", "bgr0",
                self.out)
            frames = read(self.out, width)
            self.assertFalse((frames[5] == frames[6]).all(), "it stands still")

    def test_melt(self):
        self.need("melt")
        run("melt", "-silent", self.clip, "-filter", f"frei0r.{self.EFFECT}", "effectValue=0=0;25=0.75", "-consumer",
            f"avformat:{self.out}", "vcodec=ffv1", "pix_fmt=bgr0", "an=1", "real_time=-1")
        self.assertDrawn(read(self.out)[25], 3)  # its own conversion of colours before and after

    def test_melt_transition(self):
        self.need("melt")
        second = write(f"{self.folder}/b.mkv", *[picture(90)] * 30)
        run("melt", "-silent", self.clip, "-track", second, "-transition", "frei0r.QVWaveTransitionMTIFilter", "in=0", "out=24",
            "progress=0=0;24=1", "a_track=0", "b_track=1", "-consumer", f"avformat:{self.out}", "vcodec=ffv1", "pix_fmt=bgr0", "an=1",
            "real_time=-1")
        frames = read(self.out).astype(int)
        self.assertLessEqual(int(np.abs(frames[0] - self.frames[0]).max()), 3)
        self.assertLessEqual(int(np.abs(frames[24] - picture(90)).max()), 3)
        self.assertGreater(int(np.abs(frames[12] - self.frames[12]).max()), 50)

    def test_gstreamer(self):
        self.need("gst-launch-1.0")
        if not run("gst-inspect-1.0", "frei0r").count(b"frei0r-filter-snow"):
            self.skipTest("GStreamer has no frei0r wrapper")
        source, raw = f"{self.folder}/in.raw", f"{self.folder}/out.raw"
        np.concatenate([np.dstack([frame, np.full((HEIGHT, WIDTH), 255, np.uint8)]) for frame in self.frames]).tofile(source)
        run("gst-launch-1.0", "-q", "filesrc", f"location={source}", "!", "rawvideoparse", "format=rgba", f"width={WIDTH}",
            f"height={HEIGHT}", "framerate=25/1", "!", "frei0r-filter-snow", "effectvalue=0.75", "!", "filesink", f"location={raw}")
        drawn = np.fromfile(raw, np.uint8).reshape(-1, HEIGHT, WIDTH, 4)[25, ..., :3]
        self.assertDrawn(drawn)


if __name__ == "__main__":
    unittest.main()
