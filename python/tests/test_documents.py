"""Runs the scripts in docs/python.md as they appear in the document."""

import json
import re
import shutil
import sys
import unittest
from pathlib import Path

import mox
from support import PROGRAM, ROOT, TestInFolder, make_preview, run

SCRIPTS = dict(re.findall(r"^```python (\S+)\n(.*?)^```$", (ROOT / "docs/python.md").read_text(), re.S | re.M))


class Documented(TestInFolder):
    def setUp(self):
        super().setUp()
        Path("scripts").mkdir()
        for name, text in SCRIPTS.items():
            Path("scripts", name).write_text(text)

    def script(self, name, *arguments):
        return run(sys.executable, f"scripts/{name}", *arguments)

    def succeed(self, name, *arguments):
        done = self.script(name, *arguments)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return done.stdout


class Recipes(Documented):
    def test_tour(self):
        printed = self.succeed("tour.py").splitlines()
        self.assertEqual(printed[0], "Multiply 3")
        self.assertEqual(Path("copy.xml").read_text(), Path("rim_light.xml").read_text())

    def test_report(self):
        Path("materials").mkdir()
        for name in ("rim_light.xml", "two_maths.xml"):
            shutil.copy(name, "materials")
        self.succeed("report.py", "materials", "report.md")
        report = Path("report.md").read_text()
        self.assertIn("## rim_light.xml: 0 problems", report)
        self.assertRegex(report, "- warning in line .*nothing reaches the surface")
        Path("materials/bad.xml").write_text("<material")
        self.assertEqual(self.script("report.py", "materials", "report.md").returncode, 1)

    def test_textures(self):
        Path("rock").mkdir()
        for source, name in (("rock", "rock_colour"), ("normal", "rock_normal"), ("noise", "rock_roughness")):
            shutil.copy(f"textures/{source}.png", f"rock/{name}.png")
        Path("materials").mkdir()
        for output, normal in (("rock.xml", "rock/rock_normal.png"), ("materials/rock.xml", "../rock/rock_normal.png")):
            with self.subTest(output):
                self.succeed("textures.py", "rock", output)
                material = self.library.open(output)
                self.assertEqual(material.problems, ())
                files = {binding.name: binding.file for binding in material.bindings if binding.stream == "texture"}
                self.assertEqual(files["normalTexture"], normal)
                self.assertEqual(material["surface"]["in_roughness"].source.node.id, "roughness")

    def test_sweep(self):
        make_preview(self.library)
        self.succeed("sweep.py", "rim_light.xml", "sheet.png")
        self.assertEqual(Path("sheet.png").read_bytes()[16:24], bytes([0, 0, 1, 32, 0, 0, 1, 32]))

    def test_replace(self):
        shown = self.succeed("replace.py", "Surface", "SurfacePbr", "rim_light.xml", "two_maths.xml")
        self.assertIn('rim_light.xml: node "surface" changed its type from "Surface" to "SurfacePbr"', shown)
        self.assertEqual(self.library.open("rim_light.xml")["surface"].type, "Surface")
        self.succeed("replace.py", "Surface", "SurfacePbr", "rim_light.xml", "--write")
        material = self.library.open("rim_light.xml")
        self.assertEqual((material["surface"].type, material.problems), ("SurfacePbr", ()))
        self.assertEqual(material["surface"]["in_emission"].source.node.id, "rimGlow")

    def test_bake(self):
        make_preview(self.library)
        self.succeed("bake.py", "rim_light.xml", "glow.read", "glow.png")
        picture = mox.Preview(self.library).render(self.library.open("rim_light.xml"), node="glow", mesh="plane", size=16,
                                                   values={"worldViewProjection": [float(i % 5 == 0) for i in range(16)]})
        self.assertEqual(len(set(picture.tobytes()[i:i + 4] for i in range(0, 1024, 4))), 1)  # fills it
        self.assertEqual(Path("glow.png").read_bytes()[16:24], bytes([0, 0, 1, 0, 0, 0, 1, 0]))
        self.assertEqual(self.script("bake.py", "rim_light.xml", "missing", "missing.png").returncode, 1)


class Lint(Documented):
    def check(self, *arguments, **settings):
        return run(sys.executable, "-m", "mox", "check", *arguments, **settings)

    def test_rules_beside_built_in_ones(self):
        rules = ("--rules", "scripts/studio_rules.py")
        for form in ((), ("--json",), ("--sarif",), ("--strict",)):
            ours = self.check("two_maths.xml", *form)
            theirs = run(PROGRAM, "check", "two_maths.xml", *form)
            self.assertEqual((ours.stdout, ours.returncode), (theirs.stdout, theirs.returncode))
        found = json.loads(self.check(*rules, "--json", "rim_light.xml", "two_maths.xml").stdout)
        self.assertEqual(
            [(one["rule"], one["file"], one.get("node"), one["severity"]) for one in found if "/" in one["rule"]],
            [("studio/lower-case-ids", "rim_light.xml", "rimGlow", "warning"), ("studio/one-output", "two_maths.xml", None, "error")],
        )
        self.assertIn("no-end", [one["rule"] for one in found])
        self.assertEqual(self.check(*rules, "rim_light.xml").returncode, 0)
        self.assertRegex(self.check(*rules, "rim_light.xml").stdout, r'rim_light.xml:\d+: warning: .*rimGlow.*\[studio/lower-case-ids\]')
        self.assertEqual(self.check(*rules, "--strict", "rim_light.xml").returncode, 1)
        sarif = json.loads(self.check(*rules, "--sarif", "two_maths.xml").stdout)
        self.assertIn("studio/one-output", [one["ruleId"] for one in sarif["runs"][0]["results"]])

    def test_rules_that_fail(self):
        Path("odd.py").write_text('import mox\n\n@mox.rule("studio/odd")\ndef odd(material):\n    yield 5\n    1 / 0\n')
        done = self.check("--rules", "odd.py", "--json", "rim_light.xml")
        problem = json.loads(done.stdout)[-1]
        self.assertEqual((done.returncode, problem["rule"], problem["file"]), (1, "rule-failed", "odd.py"))
        for text, message in (("import nothing\n", "odd.py:1"), ("def (\n", "odd.py:1"), ('import mox\nmox.rule("a")\n', "odd.py:2")):
            Path("odd.py").write_text(text)
            done = self.check("--rules", "odd.py", "rim_light.xml")
            self.assertEqual((done.returncode, message in done.stderr, "Traceback" in done.stderr), (1, True, False))
        done = self.check("--rules", "missing.py", "rim_light.xml")
        self.assertEqual((done.returncode, done.stderr), (1, "mox: missing.py: cannot be read: No such file or directory\n"))
        self.assertEqual(self.check("missing.xml").returncode, 1)

    def test_what_is_checked(self):
        run(PROGRAM, "convert", "rim_light.xml", "-o", "theirs.mtlx")
        Path("bad.xml").write_text("<material")
        Path("encoding.xml").write_bytes(b"\xff\0")
        tests = ROOT / "tests/mox"
        for source, *arguments in (
            ("two_maths.xml", "-"),
            ("theirs.mtlx", "-", "--strict"),
            ("bad.xml", "rim_light.xml", "-", "two_maths.xml", "--json"),
            ("encoding.xml", "-"),
            ("bad.xml", "-", "-"),
            ("bad.xml",),
            ("bad.xml", "--nodes", tests / "bad_nodes"),
            ("two_maths.xml", "--environment", tests / "bad_environment", "--nodes", tests / "bad_nodes", "-"),
        ):
            with self.subTest(source=source, arguments=arguments):
                outcomes = []
                for call in (self.check, lambda *rest, **settings: run(PROGRAM, "check", *rest, **settings)):
                    with open(source, "rb") as stream:
                        done = call(*arguments, stdin=stream)
                    outcomes.append((done.stdout, done.returncode))
                self.assertEqual(*outcomes)
        with open("rim_light.xml", "rb") as stream:
            done = self.check("--rules", "scripts/studio_rules.py", "-", "theirs.mtlx", stdin=stream)
        self.assertRegex(done.stdout, r"standard input:\d+: warning: .*\[studio/lower-case-ids\]")
        self.assertRegex(done.stdout, r"theirs.mtlx(:\d+)?: warning: .*\[studio/lower-case-ids\]")


class Commands(Documented):
    def compare(self, command, *arguments):
        """Runs the script and the program from the same state and returns the output of both."""
        outcomes = []
        for call in ((sys.executable, Path(f"scripts/{command}.py").absolute()), (PROGRAM, command)):
            Path("work").mkdir()
            for file in Path().glob("*.xml"):
                shutil.copy(file, "work")
            shutil.copytree("textures", "work/textures")
            done = run(*call, *arguments, cwd="work")
            files = {str(file): file.read_bytes() for file in Path("work").rglob("*") if file.is_file()}
            outcomes.append((done.returncode, done.stdout, done.stderr, files))
            shutil.rmtree("work")
        self.assertEqual(*(outcome[:3] for outcome in outcomes))
        self.assertEqual(outcomes[0][3], outcomes[1][3])
        return outcomes[0]

    def test_commands(self):
        Path("bad.xml").write_text("<material")
        Path("other.xml").write_text(Path("rim_light.xml").read_text().replace('"4"', '"5"'))
        Path("spaced.xml").write_text(Path("rim_light.xml").read_text().replace("  <", "    <"))
        step = {"do": "removeNode", "id": "rim"}
        for name, steps in (("change", [step]), ("refused", [step, step])):
            Path(f"{name}.json.xml").write_text(json.dumps({"version": 1, "steps": steps}))
        for status, *call in (
            (1, "check", "rim_light.xml", "bad.xml"),
            (1, "check", ".", "--json"),
            (1, "check", "two_maths.xml", "--strict", "--sarif"),
            (1, "check", "missing.xml"),
            (0, "diff", "rim_light.xml", "rim_light.xml"),
            (1, "diff", "rim_light.xml", "other.xml"),
            (2, "diff", "rim_light.xml", "missing.xml"),
            (2, "diff", "rim_light.xml", "bad.xml"),
            (1, "format", "--check", "spaced.xml", "rim_light.xml", "bad.xml"),
            (0, "format", "spaced.xml", "rim_light.xml"),
            (0, "format", "--tidy", "rim_light.xml"),
            (0, "apply", "rim_light.xml", "change.json.xml"),
            (1, "apply", "rim_light.xml", "refused.json.xml"),
            (1, "apply", "bad.xml", "change.json.xml"),
            (0, "export", "rim_light.xml", "tinted_texture.xml", "-o", "out", "--target", "cg,spirv"),
            (1, "export", ".", "-o", "out", "-j", "2"),
        ):
            with self.subTest(call=call):
                self.assertEqual(self.compare(*call)[0], status)


if __name__ == "__main__":
    unittest.main()
