"""The editor's descriptions of the classes, against what the tool tells of them and what MLT has."""

import json
import math
import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path
from xml.etree import ElementTree

from support import TOOL, link_modules, run

GROUPS = "kdenliveeffectscategory.rc"
GIVEN = '<data name="effects">\n<group list="wave,sepia"><text>Theirs</text></group>\n</data>\n'


class Export(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder, self.out = Path(folder.name), Path(folder.name, "out")
        (self.folder / "kdenlive").mkdir()
        (self.folder / "kdenlive" / GROUPS).write_text(GIVEN)
        self.classes = {each["name"]: each for each in json.loads(run(TOOL, "list", "--json"))}

    def export(self, *options: str, data: str = "", editor: str = "kdenlive") -> subprocess.CompletedProcess:
        return subprocess.run([TOOL, "export", editor, str(self.out), *options], capture_output=True, text=True,
                              env=dict(os.environ, XDG_DATA_DIRS=data or str(self.folder)))

    def descriptions(self, kind: str) -> dict:
        """The root of each file, by class."""
        self.assertEqual(self.export().returncode, 0)
        return {path.stem: ElementTree.parse(path).getroot() for path in (self.out / f"{kind}s").iterdir()}

    def assertControls(self, parameter: ElementTree.Element, told: dict):
        kind, initial, shown = parameter.get("type"), parameter.get("default"), float(parameter.get("factor", 1))
        self.assertEqual((parameter.find("name").text, parameter.find("comment").text), (told["title"], told["help"]))
        if "variants" in told:
            self.assertEqual((kind, initial), ("list", told["variants"][told["default"]]))
            self.assertEqual(parameter.get("paramlist").split(";"), told["variants"])
            self.assertEqual(parameter.find("paramlistdisplay").text.split(","), told["variants"])
        elif told["type"] in ("float", "int"):
            self.assertEqual(kind, "animated")
            self.assertTrue(math.isclose(float(initial), told["default"], abs_tol=1e-12))
            for end in ("min", "max"):
                self.assertTrue(math.isclose(float(parameter.get(end)), told[end] * shown, rel_tol=1e-6), end)
            unit = {"radians": (180 / math.pi, "°"), "turns": (360, "°"), "fraction": (100, " %"), "frame sides": (100, " %")}
            factor, suffix = unit.get(told["unit"], (1, parameter.get("suffix")))
            self.assertTrue(math.isclose(shown, factor, rel_tol=1e-9))
            self.assertEqual(parameter.get("suffix"), suffix)
            value = told["default"] * shown
            self.assertLess(abs(round(value, int(parameter.get("decimals"))) - value), 1e-3, "the slider cannot show its default")
        elif told["type"] == "bool":
            self.assertEqual((kind, initial), ("bool", str(int(told["default"]))))
        elif told["type"] == "color":
            self.assertEqual((kind, initial), ("color", told["default"]))
        elif told["type"] == "colors":
            self.assertEqual((kind, initial), ("color", "".join(told["default"][:1])))
        else:
            self.assertEqual(kind, "keywords")

    def test_has_every_class_with_its_controls(self):
        masked = {name for name, each in self.classes.items() if any(i["role"] == "mask" for i in each["inputs"])}
        wanted = {kind: {name for name, each in self.classes.items() if each["kind"] == kind} for kind in ("effect", "transition")}
        wanted["transition"] |= masked & wanted["effect"]
        for kind in ("effect", "transition"):
            found = self.descriptions(kind)
            self.assertEqual(set(found), wanted[kind])
            for name, root in found.items():
                told = {p["name"]: p for p in self.classes[name]["properties"] if p["driver"] == "user"}
                with self.subTest(name):
                    self.assertEqual((root.tag, root.get("tag"), root.get("id")), (kind, f"qv.{name}", f"qv.{name}"))
                    self.assertTrue(root.find("name").text.startswith(self.classes[name]["title"]))
                    self.assertEqual(root.find("description").text, self.classes[name]["help"])
                    self.assertEqual(root.get("type"), "short" if self.classes[name]["kind"] == "transition" else None)
                    self.assertEqual([p.get("name") for p in root.iter("parameter")], list(told))
                    for parameter in root.iter("parameter"):
                        self.assertControls(parameter, told[parameter.get("name")])

    @unittest.skipUnless(shutil.which("melt") and Path(os.environ["QV_MLT_MODULE"]).exists(), "MLT is not installed")
    def test_names_what_mlt_has(self):
        environment = dict(os.environ, MLT_REPOSITORY=link_modules(self.folder / "modules", "core"))
        for kind, sort in (("effect", "filter"), ("transition", "transition")):
            found = self.descriptions(kind)
            services = set(re.findall(r"qv\.(\w+)", run("melt", "-query", f"{sort}s", env=environment).decode()))
            self.assertEqual(set(found), services)
            for name in sorted(services)[::8]:
                told = run("melt", "-query", f"{sort}=qv.{name}", env=environment).decode()
                self.assertEqual([p.get("name") for p in found[name].iter("parameter")], re.findall(r"- identifier: (\w+)", told))
                self.assertIn(f"title: {found[name].find('name').text}\n", told)

    def test_groups_stand_beside_the_editors(self):
        effects = self.descriptions("effect")
        groups = ElementTree.parse(self.out / GROUPS).getroot().findall("group")
        self.assertEqual((groups[0].get("list"), groups[0].find("text").text), ("wave,sepia", "Theirs"))
        for group in groups[1:]:
            for effect in group.get("list").split(","):
                category = self.classes[effect.removeprefix("qv.")]["category"]
                self.assertEqual(group.find("text").text, f"QV {category}")
                effects.pop(effect.removeprefix("qv."))
        self.assertEqual(effects, {}, "in no group")

    def test_what_differs_is_replaced_only_where_that_is_allowed(self):
        for _ in range(2):
            self.assertEqual(self.export().returncode, 0)
        mine = self.out / "effects" / "QVSnowMTIFilter.xml"
        mine.write_text("mine")
        done = self.export()
        self.assertEqual((done.returncode, done.stdout, done.stderr.count("\n"), mine.read_text()), (5, "", 1, "mine"), done.stderr)
        self.assertEqual(self.export("-y").returncode, 0)
        ElementTree.parse(mine)
        self.assertEqual(self.export(editor="another").returncode, 2)
        shutil.rmtree(self.out)
        done = self.export(data="/nowhere")
        self.assertEqual((done.returncode, done.stderr.count("\n"), (self.out / GROUPS).exists()), (0, 1, False))


if __name__ == "__main__":
    unittest.main()
