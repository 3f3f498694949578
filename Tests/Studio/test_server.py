"""What the studio's server answers, and whom."""

import http.client
import json
import os
import signal
import socket
import subprocess
import tempfile
import threading
import time
import unittest
from urllib.parse import quote, urlsplit

TOOL = os.environ["QV_TOOL"]


def make_clip(path, seconds=2):
    subprocess.run(["ffmpeg", "-v", "error", "-y", "-f", "lavfi", "-i", f"testsrc2=size=320x180:rate=25:duration={seconds}",
                    "-c:v", "libx264", "-g", "10", path], check=True)


class Studio:
    """A running studio over a clip, or several, in a folder of its own."""

    def __init__(self, clips=1):
        self.folder = tempfile.TemporaryDirectory()
        self.clips = [self.path(f"clip{i or ''}.mp4") for i in range(clips)]
        self.clip = self.clips[0]
        for clip in self.clips:
            make_clip(clip)
        os.mkdir(self.path("out"))
        self.process = subprocess.Popen([TOOL, "studio", *self.clips, "--no-open", "-o", self.path("out")],
                                        stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.address = self.process.stdout.readline().strip()
        parts = urlsplit(self.address)
        self.host, self.port, self.token = parts.netloc, parts.port, parts.path.strip("/")

    def path(self, *names):
        return os.path.join(self.folder.name, *names)

    def ask(self, path, body=None, headers=None, token=None):
        """Status and bytes of an answer."""
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=60)
        connection.request("GET" if body is None else "POST", f"/{self.token if token is None else token}/{path}", body, headers or {})
        answer = connection.getresponse()
        result = answer.status, answer.read()
        connection.close()
        return result

    def project(self, *effects, **members):
        return json.dumps({"clips": [{"file": self.clip, "effects": list(effects)}], **members})

    def close(self):
        """The exit status, and what was said."""
        self.process.send_signal(signal.SIGINT)
        output, errors = self.process.communicate(timeout=30)
        self.folder.cleanup()
        return self.process.returncode, errors


class Server(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.studio = Studio()

    @classmethod
    def tearDownClass(cls):
        status, errors = cls.studio.close()
        assert (status, errors) == (0, ""), (status, errors)

    def test_nothing_without_token_or_by_another_name(self):
        studio = self.studio
        self.assertEqual(studio.ask("")[0], 200)
        self.assertEqual(len(studio.token), 32)
        elsewhere = [("", "wrong" * 6 + "xx", None), ("api/session", studio.token[:-1], None), ("api/session", "", None),
                     ("", None, {"Host": f"rebound.example:{studio.port}"}), ("", None, {"Host": "127.0.0.1"}),
                     ("api/session", None, {"Origin": "http://elsewhere.example"})]
        for path, token, headers in elsewhere:
            with self.subTest(path=path, token=token, headers=headers):
                self.assertEqual(studio.ask(path, headers=headers, token=token), (403, b"Forbidden\n"))
        self.assertEqual(studio.ask("api/frame", "{}", token="0" * 32)[0], 403)
        # Only this machine is listened to.
        for name in {info[4][0] for info in socket.getaddrinfo(socket.gethostname(), None, socket.AF_INET)} - {"127.0.0.1"}:
            with self.assertRaises(OSError):
                socket.create_connection((name, studio.port), 1).close()

    def test_only_what_was_opened(self):
        studio = self.studio
        secret = studio.path("secret.mp4")
        make_clip(secret, 1)
        refused = [{"clips": [{"file": secret}]}, {"clips": [{"include": secret}]}, {"clips": [{"file": studio.clip, "mask": secret}]},
                   {"clips": [{"file": studio.clip}], "sound": {"file": secret}}, {"clips": [{"file": os.path.relpath(studio.clip)}]},
                   {"clips": [{"file": "${HOME}"}]}, {"OTIO_SCHEMA": "Timeline.1"}, {"clips": []}, [], 7]
        for project in refused:
            with self.subTest(project=project):
                status, text = studio.ask("api/frame", json.dumps(project))
                self.assertEqual(status, 422)
                self.assertEqual(text.count(b"\n"), 1, text)
        for path in ("../secret.mp4", "card/../../secret.mp4/after.jpg", "card/QVMosaicMTIFilter/..%2f..%2fcard.json", "clip.mp4", studio.clip):
            self.assertEqual(studio.ask(path)[0], 404, path)

    def test_exports_stay_in_their_folder(self):
        studio = self.studio
        os.symlink(studio.path("elsewhere.mp4"), studio.path("out", "link.mp4"))
        for name in ("../up.mp4", "/tmp/up.mp4", "a/b.mp4", "a\\b.mp4", "", ".hidden.mp4", "-o.mp4", "a\nb.mp4", "link.mp4", "x" * 300 + ".mp4"):
            with self.subTest(name=name):
                self.assertEqual(studio.ask(f"api/export?replace=yes&name={quote(name, safe='')}", studio.project())[0], 422)
        self.assertEqual(os.listdir(studio.path("out")), ["link.mp4"])
        os.remove(studio.path("out", "link.mp4"))

    def test_bad_bodies_have_one_line(self):
        studio = self.studio
        effect = {"class": "QVMosaicMTIFilter"}
        bodies = {"": b"", "no JSON": b"{", "deep": b"[" * 10000 + b"]" * 10000, "infinite": b'{"clips": [1e999]}',
                  "unknown class": studio.project({"class": "QVNoFilter"}), "no property": studio.project({**effect, "set": {"what": 1}}),
                  "out of range": studio.project({**effect, "set": {"effectValue": 7}}),
                  "two keys": studio.project({**effect, "set": {"effectValue": [{"at": 1, "value": 0}, {"at": 1, "value": 1}]}}),
                  "past the end": studio.project({**effect, "from": 9})}
        for name, body in bodies.items():
            with self.subTest(name):
                status, text = studio.ask("api/frame?time=0&side=320", body)
                self.assertEqual(status, 422, text)
                self.assertEqual(text.count(b"\n"), 1, text)
        self.assertEqual(studio.ask("api/frame", b" " * (2 << 20))[0], 413)
        self.assertEqual(studio.ask("api/frame?time=nan&side=1e99&view=x", studio.project())[0], 200)
        self.assertEqual(studio.ask("api/frame?time=-5&side=-3", studio.project())[0], 200)

    def test_only_the_newest_of_a_view_is_rendered(self):
        studio, answers = self.studio, []
        # Frames far apart, so that each takes a while.
        threads = [threading.Thread(target=lambda i=i: answers.append(studio.ask(f"api/frame?view=many&time={(i * 7 % 10) / 5}", studio.project())))
                   for i in range(40)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        counts = {status: sum(1 for answer, _ in answers if answer == status) for status in (200, 204)}
        self.assertEqual(counts[200] + counts[204], 40)
        self.assertGreater(counts[200], 0)
        self.assertGreater(counts[204], 0)
        self.assertTrue(all(body.startswith(b"\xff\xd8") for status, body in answers if status == 200))

    def test_moving_properties_are_told(self):
        studio = self.studio
        keys = [{"at": 0, "value": 0}, {"at": 1, "value": 1, "easing": "inQuad"}]
        connection = http.client.HTTPConnection("127.0.0.1", studio.port, timeout=60)
        connection.request("POST", f"/{studio.token}/api/frame?time=0.6", studio.project({"class": "QVMosaicMTIFilter", "from": 0.2, "set": {"effectValue": keys}}))
        answer = connection.getresponse()
        answer.read()
        moving = json.loads(answer.headers["Studio-Moving"])
        connection.close()
        self.assertAlmostEqual(float(moving["clips[0].effects[0]"]["effectValue"]), 0.4 ** 2, places=4)

    def test_an_export_can_be_cancelled_and_leaves_nothing(self):
        studio = self.studio
        effects = [{"class": "QVMosaicMTIFilter"}] * 12
        self.assertEqual(studio.ask("api/export?name=long.mp4", studio.project(*effects))[0], 202)
        self.assertEqual(studio.ask("api/export?name=second.mp4", studio.project())[0], 422)
        self.assertEqual(studio.ask("api/cancel", "")[0], 200)
        for _ in range(200):
            state = json.loads(studio.ask("api/session")[1])["export"]
            if state["state"] != "running":
                break
            time.sleep(0.05)
        self.assertEqual(state["state"], "cancelled")
        self.assertEqual(os.listdir(studio.path("out")), [])


class Beginning(unittest.TestCase):
    def expect_failure(self, status, cause, *arguments):
        result = subprocess.run([TOOL, "studio", "--no-open", *arguments], capture_output=True, text=True, timeout=60)
        self.assertEqual((result.returncode, result.stdout), (status, ""), result.stderr)
        self.assertEqual(result.stderr.count("\n"), 1)
        self.assertIn(cause, result.stderr)

    def test_failures(self):
        with tempfile.TemporaryDirectory() as folder, socket.socket() as taken:
            clip = os.path.join(folder, "clip.mp4")
            make_clip(clip, 1)
            taken.bind(("127.0.0.1", 0))
            taken.listen()
            self.expect_failure(2, "is in use", clip, "--port", str(taken.getsockname()[1]))
            self.expect_failure(3, "none.mp4", os.path.join(folder, "none.mp4"))
            self.expect_failure(5, "nowhere", clip, "-o", os.path.join(folder, "nowhere"))
            self.expect_failure(2, "standard input", "-")

    def test_closing_the_page_ends_it(self):
        studio = Studio()
        page = socket.create_connection(("127.0.0.1", studio.port))
        page.sendall(f"GET /{studio.token}/api/events HTTP/1.1\r\nHost: {studio.host}\r\n\r\n".encode())
        self.assertIn(b"text/event-stream", page.recv(4096))
        time.sleep(7)
        self.assertIsNone(studio.process.poll(), "an open page keeps it")
        page.close()
        self.assertEqual(studio.process.wait(30), 0)
        studio.process.communicate()
        studio.folder.cleanup()


if __name__ == "__main__":
    unittest.main()
