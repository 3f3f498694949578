"""The studio's page in a browser: what a user does, and what comes of it."""

import json
import os
import subprocess
import unittest

import numpy

import browser
from test_server import TOOL, Studio


def pixels(path, moment=None):
    """A picture, or the frame of a clip that is shown then, as RGB."""
    seek = [] if moment is None else ["-ss", str(moment)]
    raw = subprocess.run(["ffmpeg", "-v", "error", *seek, "-i", path, "-frames:v", "1", "-f", "rawvideo", "-pix_fmt", "rgb24", "-"],
                         capture_output=True, check=True).stdout
    return numpy.frombuffer(raw, numpy.uint8).astype(float)


@unittest.skipUnless(browser.program(), "there is no Chromium")
class Page(unittest.TestCase):
    def setUp(self):
        self.studio = Studio(2 if "clips" in self.id() else 1)
        self.browser = browser.Browser()
        self.browser.open(self.studio.address)

    def tearDown(self):
        self.assertEqual(self.browser.problems, [])
        elsewhere = [url for url in self.browser.requests if not url.startswith((self.studio.address, "data:", "blob:", "about:"))]
        self.assertEqual(elsewhere, [], "a request has left the studio")
        self.browser.close()
        self.assertEqual(self.studio.process.wait(30), 0, "closing the page ends the studio")
        self.studio.close()

    def find(self, words):
        page = self.browser
        page.key("/")
        page.run("document.getElementById('search').value = ''")
        for character in words:
            page.key(character)
        page.wait("document.querySelectorAll('#cards .card').length < 20")

    def document(self):
        return json.loads(self.browser.run("qvStudio.model.document()"))

    def effects(self):
        return self.document()["clips"][0]["effects"]

    def render(self, name):
        """Renders through the dialog."""
        page = self.browser
        page.run("document.activeElement.blur()")
        page.key("r")
        page.wait("document.getElementById('render-dialog').open")
        page.run(f"document.getElementById('name').value = {json.dumps(name)}")
        page.click("#start")
        page.wait("['done', 'failed'].includes(document.getElementById('render-end').dataset.state)", 60)
        self.assertEqual(page.run("document.getElementById('render-end').dataset.state"), "done")
        page.run("delete document.getElementById('render-end').dataset.state")
        page.key("Escape")
        return self.studio.path("out", name)

    def test_a_look_from_nothing_is_what_the_tool_renders(self):
        page = self.browser
        # By the mouse: an effect, its slider, a key at the beginning and one a second later.
        self.find("square blocks")
        page.click("[data-name=QVMosaicMTIFilter] .add")
        page.wait("qvStudio.model.chain.length === 1")
        page.click("[data-property=factor] .key")
        page.run("document.getElementById('scrubber').focus()")
        page.key("ArrowRight", modifiers=8)
        page.wait("Math.abs(qvStudio.scrubber.time - 1) < 1e-6")
        x, y, width, _ = page.place("#control-factor")
        page.drag((x - width / 2 + 12, y), (x - width / 4, y))
        moving = self.effects()[0]["set"]["factor"]
        self.assertEqual([key["at"] for key in moving], [0, 1])
        self.assertGreater(moving[1]["value"], moving[0]["value"])
        page.click("[data-key='factor 1']")
        page.run("(() => { const s = document.querySelector('#key select'); s.value = 'inOutCubic'; s.dispatchEvent(new Event('change')); })()")
        # By the keyboard: another one, before the first.
        self.find("hard black and white")
        page.key("Enter")
        page.key("Enter")
        page.wait("qvStudio.model.chain.length === 2")
        page.run("document.querySelector('#chain li:last-child .choose').focus()")
        page.key("ArrowUp", modifiers=1)
        self.assertEqual([effect["class"] for effect in self.effects()], ["QVBlackWhiteMTIFilter", "QVMosaicMTIFilter"])
        # To a moment in between, and out as a picture and as a clip.
        page.run("document.getElementById('scrubber').focus()")
        for _ in range(11):
            page.key("ArrowLeft")
        moment = page.run("qvStudio.scrubber.time")
        self.assertAlmostEqual(moment, 14 / 25)
        picture, clip = self.render("look.png"), self.render("look.mkv")
        options = [option for effect in self.effects() for option in ("-e", effect["class"] + "".join(
            f":{name}=" + (",".join(f"{key['value']}@{key['at']}" + (f"~{key['easing']}" if "easing" in key else "") for key in value)
                           if isinstance(value, list) else str(value)) for name, value in effect.get("set", {}).items()))]
        still = self.studio.path("still.png")
        subprocess.run([TOOL, "still", "-i", self.studio.clip, *options, "--time", str(moment), "-o", still], check=True)
        with open(picture, "rb") as ours, open(still, "rb") as theirs:
            self.assertEqual(ours.read(), theirs.read())
        self.assertLess(abs(pixels(clip, moment) - pixels(still)).mean(), 3)
        self.assertGreater(abs(pixels(self.studio.clip, moment) - pixels(still)).mean(), 10, "the look is seen")
        # What the page shows is that, too.
        page.wait(f"Math.abs(qvStudio.stage.shownTime - {moment}) < 1e-6")
        shown = page.run("[...document.getElementById('picture').getContext('2d').getImageData(0, 0, 320, 180).data].filter((_, i) => i % 4 < 3)")
        self.assertLess(abs(numpy.array(shown, float) - pixels(still)).mean(), 4)
        # And the command line that is copied makes the same clip.
        page.run("document.activeElement.blur()")
        page.key("c", modifiers=2)
        page.wait("document.getElementById('copy-dialog').open")
        command = page.run("document.querySelector('[data-text=command]').textContent")
        again = self.studio.path("again.mkv")
        subprocess.run(command.replace("qvfilter", TOOL, 1).replace("-o look.mkv", f"-o {again} --quiet"), shell=True, check=True)
        self.assertLess(abs(pixels(clip, moment) - pixels(again, moment)).mean(), 1e-9)

    def test_clips_with_a_transition_between(self):
        page = self.browser
        page.click("#targets .join")
        self.find("sliding strips")
        page.click("[data-name=QVSliceTransitionMTIFilter] .add")
        page.wait("qvStudio.model.timeline.seconds === 3")
        page.wait("Math.abs(qvStudio.scrubber.time - 1.52) < 0.021")
        page.run("(() => { const n = document.querySelector('[data-property=count] input[type=number]'); n.value = 5; n.dispatchEvent(new Event('change')); })()")
        page.run("qvStudio.model.select(1); qvStudio.model.add('QVBlackWhiteMTIFilter'); qvStudio.scrubber.goTo(1.4)")
        picture, project = self.render("both.png"), self.studio.path("look.json")
        page.run("document.activeElement.blur()")
        page.key("c", modifiers=2)
        page.wait("document.getElementById('copy-dialog').open")
        with open(project, "w") as file:
            file.write(page.run("document.querySelector('[data-text=project]').textContent"))
        clip = self.studio.path("both.mkv")
        subprocess.run([TOOL, "edit", project, "--codec", "ffv1", "-o", clip, "--quiet"], check=True)
        self.assertLess(abs(pixels(clip, 1.4) - pixels(picture)).mean(), 6)
        plain = self.studio.path("plain.png")
        subprocess.run([TOOL, "transition", "QVSliceTransitionMTIFilter:count=5", "-i", self.studio.clips[0], "-i", self.studio.clips[1],
                        "--at", "0.4", "-o", plain], check=True)
        self.assertGreater(abs(pixels(plain) - pixels(picture)).mean(), 10, "the second clip has lost its colours")

    def test_steps_back_looks_and_favourites(self):
        page = self.browser
        page.run("['QVMosaicMTIFilter', 'QVFireMTIFilter', 'QVSnowMTIFilter'].forEach((name) => qvStudio.model.add(name))")
        page.click("#chain li:nth-child(2) [aria-label^=Remove]")
        page.click("#chain li:nth-child(1) [aria-label^='Switch off']")
        self.assertEqual([effect["class"] for effect in self.effects()], ["QVSnowMTIFilter"])
        page.run("document.activeElement.blur()")
        page.key("z", modifiers=2)
        page.key("z", modifiers=2)
        self.assertEqual(len(self.effects()), 3)
        page.key("Z", modifiers=10)
        self.assertEqual(len(self.effects()), 2)
        # What is dropped on the chain goes where it is dropped.
        page.run("""(() => {
            const data = new DataTransfer(), first = document.querySelector("#chain li");
            data.setData("text/qv-class", "QVFireMTIFilter");
            first.dispatchEvent(new DragEvent("drop", { bubbles: true, dataTransfer: data, clientY: first.getBoundingClientRect().top + 1 }));
        })()""")
        self.assertEqual([effect["class"] for effect in self.effects()], ["QVFireMTIFilter", "QVMosaicMTIFilter", "QVSnowMTIFilter"])
        page.key("z", modifiers=2)
        # Two looks keep apart.
        page.key("x")
        page.wait("qvStudio.model.state.letter === 'B'")
        page.run("qvStudio.model.remove(qvStudio.model.chain[0].id)")
        self.assertEqual(page.run("[qvStudio.model.state.looks.A, qvStudio.model.state.looks.B].map((look) => look.clips[0].length)"), [2, 1])
        page.wait("document.getElementById('picture-other').width === 320")
        page.click("[data-name] .star")
        page.run("document.getElementById('look-name').value = 'mine'")
        page.click("#keep button")
        page.open(self.studio.address)
        page.run("document.querySelector('#kinds [value=favourite]').click()")
        self.assertEqual(page.run("[document.querySelectorAll('#cards .card').length, document.querySelector('#looks strong').textContent]"), [1, "mine"])
        page.click("#looks .look")
        self.assertEqual(len(self.effects()), 1)

    def test_every_class_has_controls_that_work(self):
        page = self.browser
        page.complains = False  # subjects that nobody knows
        wrong = page.run("""(async () => {
            const { model, stage } = qvStudio, wrong = [];
            for (const entry of model.classes.values()) {
                if (entry.kind !== "effect") continue;
                model.add(entry.name, 0);
                const rows = [...document.querySelectorAll("#properties .property")].map((row) => row.dataset.property);
                const wanted = entry.properties.filter(({ driver }) => driver === "user").map(({ name }) => name);
                if (String(rows) !== String(wanted)) wrong.push([entry.name, rows]);
                for (const range of document.querySelectorAll("#properties input[type=range]")) {
                    range.value = Number(range.min) + 0.7 * (range.max - range.min);
                    range.dispatchEvent(new Event("input"));
                }
                const response = await fetch("api/frame?time=0.5&view=all", { method: "POST", body: model.document() });
                const text = response.ok ? "" : await response.text();
                if (!response.ok && !text.includes("needs --mask")) wrong.push([entry.name, text]);
                model.remove(model.chain[0].id);
            }
            return wrong;
        })()""")
        self.assertEqual(wrong, [])

    def test_without_a_mouse_and_on_a_phone(self):
        page = self.browser
        for width, height, isPhone in ((1280, 800, False), (390, 844, True), (320, 640, True)):
            page.resize(width, height, isPhone)
            self.assertLessEqual(page.run("document.documentElement.scrollWidth"), width)
        page.resize(1280, 800)
        unnamed = page.run("""[...document.querySelectorAll("button, input, select, [role=slider]")].filter((e) => e.checkVisibility() &&
            !(e.getAttribute("aria-label") || e.textContent.trim() || e.labels?.length || e.title)).map((e) => e.outerHTML)""")
        self.assertEqual(unnamed, [])
        reached = set()
        for _ in range(40):
            page.key("Tab")
            reached.add(page.run("document.activeElement.id || document.activeElement.className || document.activeElement.name"))
            self.assertTrue(page.run("document.activeElement === document.body || document.activeElement.matches(':focus-visible')"))
        self.assertLessEqual({"search", "category", "scrubber", "play", "render", "copy", "theme", "look-name"}, reached)
        page.media(scheme="dark", motion="reduce")
        dark = page.run("getComputedStyle(document.body).backgroundColor")
        page.click("#theme")
        self.assertNotEqual(page.run("getComputedStyle(document.body).backgroundColor"), dark)


if __name__ == "__main__":
    unittest.main()
