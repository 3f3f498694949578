#!/usr/bin/env python3
"""Stands where the tool is looked for: the first try of some parts meets a fault, and what was rendered is written down.

QV_FAULTS names a folder. A file in it that is called after a part has the fault, and is taken away when it is met: "killed" dies in
the middle, "disk" may write 64 KiB a file, "hangs" stops in the middle until its machine is gone. "rendered" grows by a line for
each part that this call put in its place.
"""

import json
import os
import resource
import signal
import subprocess
import sys
from pathlib import Path

TOOL = os.environ["QV_TOOL"]


def fault_of(faults: Path, part: int) -> str:
    try:
        (faults / str(part)).rename(faults / f"{part}.met")
        return (faults / f"{part}.met").read_text()
    except FileNotFoundError:
        return ""


def stop_in_the_middle(words: list) -> subprocess.Popen:
    tool = subprocess.Popen([TOOL, *(word for word in words if word != "--quiet"), "--progress"], stderr=subprocess.PIPE, text=True)
    line = tool.stderr.readline()
    tool.send_signal(signal.SIGSTOP)
    if "progress=continue" not in line:
        sys.exit(f"not in the middle: {line}")
    return tool


def limit_files():
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    resource.setrlimit(resource.RLIMIT_FSIZE, (65536, 65536))


def main() -> int:
    words = sys.argv[1:]
    if "--span" not in words:
        os.execv(TOOL, [TOOL, *words])
    faults, part = Path(os.environ["QV_FAULTS"]), int(words[words.index("--span") + 1])
    folder = Path(words[words.index("-o") + 1])
    file = folder / json.loads((folder / "plan.json").read_text())["parts"][part]["file"]
    before = file.stat().st_ino if file.exists() else None
    fault = fault_of(faults, part)
    if fault == "killed":
        tool = stop_in_the_middle(words)
        tool.kill()
        return 128 + -tool.wait()
    if fault == "hangs":
        tool = stop_in_the_middle(words)
        (faults / "hangs").write_text(os.environ["SLURMD_NODENAME"])
        return tool.wait()
    status = subprocess.run([TOOL, *words], preexec_fn=limit_files if fault == "disk" else None).returncode
    if not status and file.stat().st_ino != before:
        with open(faults / "rendered", "a") as rendered:
            rendered.write(f"{part}\n")
    return status


sys.exit(main())
