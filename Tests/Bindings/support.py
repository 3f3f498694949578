"""Pictures and programs for the tests of the bindings."""

import os
import subprocess
import sys
from pathlib import Path

import numpy as np

TOOL, SOURCE = os.environ["QV_TOOL"], Path(os.environ["QV_SOURCE_ROOT"])
WIDTH, HEIGHT = 160, 90


def run(*command: str, stdin: bytes = b"", **settings) -> bytes:
    for seconds in (60, 240):
        try:
            result = subprocess.run(command, input=stdin, capture_output=True, timeout=seconds, **settings)
        except subprocess.TimeoutExpired:
            # On a busy machine melt 7.12 waits now and then for its writer, which has ended before the first frame; also where none of
            # our modules is there.
            print(f"{command[0]} did not end in {seconds} s", file=sys.stderr)
            continue
        assert result.returncode == 0, f"{command}: {result.stderr.decode()}"
        return result.stdout
    raise AssertionError(f"{command} does not end")


def picture(seed: int, channels: int = 3, width: int = WIDTH, height: int = HEIGHT) -> np.ndarray:
    y, x = np.mgrid[0:height, 0:width]
    planes = [(x * (2 + c) + y * 3 + 70 * seed) % 256 for c in range(3)] + [np.full_like(x, 255)]
    return np.dstack(planes[:channels]).astype(np.uint8)


def write(path: str, *frames: np.ndarray) -> str:
    """A PNG, or a lossless clip of 25 frames a second."""
    height, width = frames[0].shape[:2]
    codec = ["-c:v", "ffv1", "-pix_fmt", "bgr0"] if path.endswith(".mkv") else []
    run("ffmpeg", "-v", "error", "-y", "-f", "rawvideo", "-pix_fmt", "rgb24", "-s", f"{width}x{height}", "-r", "25", "-i", "-",
        *codec, path, stdin=b"".join(frame.tobytes() for frame in frames))
    return path


def read(path: str, width: int = WIDTH, height: int = HEIGHT) -> np.ndarray:
    """All frames: count x height x width x 3."""
    raw = run("ffmpeg", "-v", "error", "-i", path, "-pix_fmt", "rgb24", "-f", "rawvideo", "-")
    return np.frombuffer(raw, np.uint8).reshape(-1, height, width, 3)


def link_modules(folder: Path, which: str = "*") -> str:
    """A folder of MLT's own modules, those whose names match, and ours; what MLT_REPOSITORY takes."""
    folder.mkdir()
    for module in [*Path(os.environ["MLT_MODULES"]).glob(f"libmlt{which}.so"), Path(os.environ["QV_MLT_MODULE"])]:
        (folder / module.name).symlink_to(module)
    return str(folder)


def still(source: str, choice: str, time: float, target: str) -> np.ndarray:
    """What the tool draws."""
    run(TOOL, "still", "-y", "-i", source, "-e", choice, "--time", str(time), "-o", target)
    return read(target)[0]
