"""Chromium without a screen, told what to do through its debugging pipe."""

import base64
import json
import os
import shutil
import subprocess
import tempfile
import time


def program():
    """The browser; None where there is none."""
    return shutil.which("chromium") or shutil.which("chromium-browser")


class Browser:
    """One page. Everything that goes wrong on it is kept in `problems`."""

    def __init__(self, width=1280, height=800):
        self.folder = tempfile.mkdtemp(prefix="qv-browser-")
        our_read, its_write = os.pipe()
        its_read, our_write = os.pipe()
        # The browser reads from its descriptor 3 and writes to 4.
        command = f'exec "$0" "$@" 3<&{its_read} 4>&{its_write}'
        options = ["--headless=new", "--no-sandbox", "--disable-gpu", "--no-first-run", "--disable-dev-shm-usage",
                   "--disable-background-networking", "--hide-scrollbars", f"--user-data-dir={self.folder}",
                   f"--window-size={width},{height}", "--remote-debugging-pipe", "about:blank"]
        self.process = subprocess.Popen(["/bin/bash", "-c", command, program(), *options], pass_fds=[its_read, its_write],
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(its_read)
        os.close(its_write)
        self.input, self.output = os.fdopen(our_read, "rb"), os.fdopen(our_write, "wb")
        self.buffer, self.number, self.problems, self.requests, self.session = b"", 0, [], [], None
        self.complains = True  # of requests that are refused
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        self.session = self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.call(domain + ".enable")
        self.resize(width, height)

    def close(self):
        self.process.terminate()
        self.process.wait()
        self.input.close()
        self.output.close()
        shutil.rmtree(self.folder, ignore_errors=True)

    def _message(self):
        while b"\0" not in self.buffer:
            bytes_ = os.read(self.input.fileno(), 1 << 20)
            if not bytes_:
                raise RuntimeError("the browser has ended")
            self.buffer += bytes_
        line, self.buffer = self.buffer.split(b"\0", 1)
        return json.loads(line)

    def _note(self, message):
        method, what = message.get("method"), message.get("params", {})
        if method == "Runtime.exceptionThrown":
            details = what["exceptionDetails"]
            self.problems.append(details.get("exception", {}).get("description", details["text"]))
        elif method == "Log.entryAdded" and what["entry"]["level"] == "error" and self.complains:
            self.problems.append(what["entry"]["text"] + " " + what["entry"].get("url", ""))
        elif method == "Network.requestWillBeSent":
            self.requests.append(what["request"]["url"])

    def call(self, method, **parameters):
        self.number += 1
        message = {"id": self.number, "method": method, "params": parameters}
        if self.session:
            message["sessionId"] = self.session
        self.output.write(json.dumps(message).encode() + b"\0")
        self.output.flush()
        while True:
            answer = self._message()
            if answer.get("id") != self.number:
                self._note(answer)
                continue
            if "error" in answer:
                raise RuntimeError(f"{method}: {answer['error']['message']}")
            return answer["result"]

    def run(self, script):
        """The value of a script, which may be a promise's."""
        result = self.call("Runtime.evaluate", expression=script, awaitPromise=True, returnByValue=True, userGesture=True)
        if "exceptionDetails" in result:
            raise RuntimeError(result["exceptionDetails"].get("exception", {}).get("description", "failed") + " in " + script)
        return result["result"].get("value")

    def wait(self, condition, seconds=20):
        """Until a script's value is true, which it returns."""
        end = time.monotonic() + seconds
        while True:
            value = self.run(condition)
            if value:
                return value
            if time.monotonic() > end:
                raise AssertionError(f"never: {condition}; {self.problems}")
            time.sleep(0.05)

    def open(self, address):
        self.call("Page.navigate", url=address)
        self.wait("document.readyState === 'complete' && Boolean(window.qvStudio) && qvStudio.stage.latencies.length > 0", 60)

    def resize(self, width, height, mobile=False):
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=mobile)

    def media(self, **features):
        names = {"scheme": "prefers-color-scheme", "motion": "prefers-reduced-motion"}
        self.call("Emulation.setEmulatedMedia", features=[{"name": names[name], "value": value} for name, value in features.items()])

    def key(self, key, code=None, modifiers=0, text=None):
        """A key as a keyboard sends it; modifiers: 1 Alt, 2 Ctrl, 8 Shift."""
        codes = {"ArrowLeft": 37, "ArrowUp": 38, "ArrowRight": 39, "ArrowDown": 40, "Enter": 13, "Tab": 9, "Escape": 27,
                 "Home": 36, "End": 35, "Delete": 46, " ": 32}
        number = code or codes.get(key, ord(key[0].upper()))
        text = text or ("\r" if key == "Enter" else key if len(key) == 1 and not modifiers & 2 else "")
        common = {"key": key, "windowsVirtualKeyCode": number, "modifiers": modifiers}
        self.call("Input.dispatchKeyEvent", type="keyDown" if text else "rawKeyDown", text=text, **common)
        self.call("Input.dispatchKeyEvent", type="keyUp", **common)

    def place(self, selector):
        """Its middle on the page, once it is in view."""
        return self.run(f"(() => {{ const e = document.querySelector({json.dumps(selector)}); e.scrollIntoView({{block: 'nearest'}});"
                        " const b = e.getBoundingClientRect(); return [b.x + b.width / 2, b.y + b.height / 2, b.width, b.height]; })()")

    def mouse(self, kind, x, y, buttons=0):
        self.call("Input.dispatchMouseEvent", type=kind, x=x, y=y, button="left" if kind != "mouseMoved" or buttons else "none",
                  buttons=buttons, clickCount=1)

    def click(self, selector):
        x, y = self.place(selector)[:2]
        self.mouse("mouseMoved", x, y)
        self.mouse("mousePressed", x, y, 1)
        self.mouse("mouseReleased", x, y)

    def drag(self, begin, end, steps=8):
        self.mouse("mouseMoved", *begin)
        self.mouse("mousePressed", *begin, 1)
        for step in range(1, steps + 1):
            self.mouse("mouseMoved", *[a + (b - a) * step / steps for a, b in zip(begin, end)], 1)
        self.mouse("mouseReleased", *end)

    def picture(self, path):
        """A picture of the page."""
        with open(path, "wb") as file:
            file.write(base64.b64decode(self.call("Page.captureScreenshot", format="png")["data"]))
