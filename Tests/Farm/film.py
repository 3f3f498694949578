#!/usr/bin/env python3
"""Makes a project of clips in a row, each led into by a transition, with effects and sound: `film.py --help`."""

import argparse
import json
import subprocess
from pathlib import Path

TRANSITIONS = ("QVWaveTransitionMTIFilter", "QVSmoothZoomTransitionMTIFilter", "QVSliceTransitionMTIFilter",
               "QVBrightDissolveTransitionMTIFilter", "QVGlitchTransitionMTIFilter", "QVTurbulenceTransitionMTIFilter",
               "QVFilmVerticalTransitionMTIFilter", "QVScanTransitionMTIFilter")
EFFECTS = ("QVSnowMTIFilter:effectValue=0.6", "QVRGBMTIFilter:effectValue=0@0,0.8@1.5,0@3", "QVVhsMTIFilter", "QVFilmNoisyMTIFilter")
RATE = 25  # frames a second


def make_clip(path: Path, seconds: float, size: str, number: int):
    """A clip of its own that moves and beeps."""
    subprocess.run(["ffmpeg", "-v", "error", "-y", "-f", "lavfi", "-i", f"testsrc2=s={size}:r={RATE}:d={seconds},hue=h={70 * number}+20*t",
                    "-f", "lavfi", "-i", f"sine={300 + 110 * number}:beep_factor=3:r=48000:d={seconds}", "-c:v", "libx264", "-preset",
                    "veryfast", "-g", "40", "-pix_fmt", "yuv420p", "-c:a", "aac", "-shortest", str(path)], check=True)


def write_project(path: Path, files: list, clips: int, frames: int, length: int, overlap: int = RATE, music: str = ""):
    """clips pieces of the files in turn, each from another place, which make frames frames together; the files have length frames."""
    each, more = divmod(frames + (clips - 1) * overlap, clips)
    rows = []
    for number in range(clips):
        duration = each + (number < more)
        row = {"file": str(files[number % len(files)]), "from": f"{number * 97 % (length - duration + 1)}f", "duration": f"{duration}f"}
        if number % 3 == 1:
            row["effects"] = [EFFECTS[number // 3 % len(EFFECTS)]]
        if number:
            row["transition"] = {"class": TRANSITIONS[number % len(TRANSITIONS)], "duration": f"{overlap}f"}
        rows.append(row)
    project = {"fps": RATE, "clips": rows}
    if music:
        project["sound"] = {"file": music, "gain": 0.5, "fadeOut": 2}
    path.write_text(json.dumps(project, indent=1))


if __name__ == "__main__":
    arguments = argparse.ArgumentParser(description="Writes a project of clips with a transition of a second between any two.")
    arguments.add_argument("project", type=Path)
    arguments.add_argument("files", nargs="+", help="clips of 25 frames a second")
    arguments.add_argument("--clips", type=int, default=41)
    arguments.add_argument("--seconds", type=int, default=600, help="of the film")
    arguments.add_argument("--length", type=int, default=130, help="seconds that each file has")
    arguments.add_argument("--music", default="")
    given = arguments.parse_args()
    write_project(given.project, given.files, given.clips, given.seconds * RATE, given.length * RATE, music=given.music)
