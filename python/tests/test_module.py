"""Tests the module, comparing it with the program where both do the same."""

import gc
import json
import re
import threading
import unittest
from pathlib import Path

import mox
from support import PROGRAM, TestInFolder, make_preview, run

FAULTY = Path(__file__).with_name("faulty.xml").read_text()


class Reading(TestInFolder):
    def test_catalogue(self):
        printed = json.loads(run(PROGRAM, "catalogue", "--json").stdout)
        self.assertEqual(self.library.catalogue(), printed)
        self.assertEqual(list(self.library.types), [one["type"] for one in printed])
        maths = self.library.types["CoreMaths"]
        kinds = {one.name: one.kind for one in maths.properties}
        self.assertEqual(kinds["Function"], "enum")
        self.assertEqual([port.name for port in maths.outputs], ["out_value"])
        self.assertIn("Fresnel", next(p for p in maths.properties if p.name == "Function").choices)
        self.assertEqual((maths.icon.width > 0, len(maths.icon.tobytes())), (True, maths.icon.width * maths.icon.height * 4))
        self.assertEqual(self.library.types["NoiseFractal"].icon.width, 32, "the icon of a node file")
        self.assertEqual(self.library.new_node("CoreUv", "uv"), run(PROGRAM, "new", "CoreUv", "--id", "uv").stdout)
        with self.assertRaises(mox.Error) as caught:
            self.library.new_node("CoreMats")
        self.assertEqual(f"mox: {caught.exception}\n", run(PROGRAM, "new", "CoreMats").stderr)

    def test_faults_are_problems(self):
        Path("faulty.xml").write_text(FAULTY)
        material = self.library.open("faulty.xml")
        printed = json.loads(run(PROGRAM, "check", "--json", "faulty.xml").stdout)
        fields = ("severity", "rule", "file", "line", "column", "node", "port", "message")
        found = [{name: getattr(p, name) for name in fields if getattr(p, name)} for p in material.problems]
        self.assertEqual(found, printed)
        self.assertEqual(list(material.problems), self.library.check(["faulty.xml"]))
        self.assertTrue(material["lost"].is_placeholder)
        with self.assertRaises(mox.Error) as caught:
            material.compile()
        error = caught.exception
        self.assertEqual((error.file, error.line), ("faulty.xml", next(p.line for p in material.problems if p.severity == "error")))
        self.assertIn(error.message, [problem.message for problem in error.problems])

    def test_what_cannot_be_read(self):
        for text, rule in (("<material", "not-well-formed"), ("<other/>", "schema"), ("", "not-well-formed")):
            Path("broken.xml").write_text(text)
            material = self.library.open("broken.xml")
            self.assertEqual(material.problems[0].rule, rule)
            with self.assertRaisesRegex(mox.Error, "would be lost"):
                material.save()
            self.assertRaises(mox.Error, lambda: material.text)
            self.assertEqual(Path("broken.xml").read_text(), text)
        with self.assertRaises(mox.Error) as caught:
            self.library.open("missing.xml")
        self.assertEqual(caught.exception.file, "missing.xml")

    def test_a_state_becomes_a_material(self):
        Path("faulty.xml").write_text(FAULTY)
        for file in self.library.find(["."]):
            with self.subTest(file=file):
                material = self.library.open(file)
                copy = self.library.from_state(json.loads(json.dumps(material.state())), file=str(file))
                self.assertEqual((copy.file, copy.state()), (None, material.state()))
                self.assertEqual(mox.diff(material, copy), [])
                self.assertEqual(*([p.message for p in one.problems] for one in (material, copy)))
        for spoil, message in (
            (lambda state: state.pop("edges"), '"edges" is missing'),
            (lambda state: state["nodes"][0]["record"].update(proprties=[]), "/nodes/0/record.*proprties"),
            (lambda state: state["nodes"][0]["record"].update(version="0"), "/nodes/0/record/version"),
            (lambda state: state["renderState"].update(colour="red"), "/renderState/colour"),
            (lambda state: state["description"].update(name=float("nan")), "JSON"),
        ):
            state = material.state()
            spoil(state)
            with self.assertRaisesRegex(mox.Error, message):
                self.library.from_state(state)
        self.assertRaises(TypeError, self.library.from_state, {"nodes": object()})
        state = material.state()
        state["nodes"] *= 2
        self.assertIn("doubled-id", [problem.rule for problem in self.library.from_state(state).problems])

    def test_views(self):
        material = self.library.open("rim_light.xml")
        rim = material["rim"]
        self.assertEqual((rim.type, rim.title, rim.values["Default Power"], rim.line > 1), ("CoreMaths", "Fresnel", 4.0, True))
        self.assertEqual(material["base"].values["Default Colour"], (0.1, 0.2, 0.4))
        self.assertEqual(rim["in_facing"].source, material["facing"]["read"])
        self.assertEqual(rim["out_value"].readers, [material["rimGlow"]["in_value1"]])
        self.assertEqual((rim["out_value"].components, rim["out_value"].precision, rim["out_value"].is_input), (1, "half", False))
        self.assertEqual(len({edge.head for edge in material.edges}), len(material.edges))
        self.assertEqual([node.id for node in material], [record["record"]["id"] for record in material.state()["nodes"]])
        for mapping, wrong, right in (
            (material, "rimm", "rim"),
            (rim, "in_fading", "in_facing"),
            (rim, "out_valeu", "out_value"),
            (self.library.types, "CoreMats", "CoreMaths"),
        ):
            with self.assertRaisesRegex(KeyError, f'"{wrong}".*did you mean "{right}"'):
                mapping[wrong]
        self.assertEqual(material.text, Path("rim_light.xml").read_text())
        bindings = {binding.name: binding.values for binding in material.bindings}
        self.assertEqual(bindings["rimColour"], (1.0, 0.7, 0.3))
        for form, option in (("xml", ()), ("json", ("--json",))):
            printed = run(PROGRAM, "bindings", "rim_light.xml", *option).stdout
            self.assertEqual(mox.format_bindings(material.bindings, form), printed)

    def test_views_keep_what_they_need(self):
        port = mox.Library().open("rim_light.xml")["rim"]["in_facing"]
        gc.collect()
        self.assertEqual(port.node.type, "CoreMaths")


class Changing(TestInFolder):
    def setUp(self):
        super().setUp()
        self.material = self.library.open("rim_light.xml")

    def add_tint(self, title=""):
        with self.material.edit(title) as edit:
            tint = edit.add("CoreConstant", values={"Name": "tint", "Default Colour": (1, 0.5, 1 / 3)})
            edit.set("rim", {"Default Power": 2, "Function": "Fresnel"})
            edit.connect(tint["read"], self.material["surface"]["in_colour"], replace=True)
        return tint

    def test_an_edit_is_one_step(self):
        before = self.material.text
        tint = self.add_tint("tint it")
        self.assertEqual((tint.id, tint.values["Default Colour"]), ("CoreConstant", (1.0, 0.5, 0.33333334)))
        self.assertEqual(self.material["surface"]["in_colour"].source, tint["read"])
        self.assertEqual((self.material.undo_title, self.material.unsaved), ("tint it", True))
        self.assertTrue(self.material.undo())
        self.assertEqual((self.material.text, self.material.redo_title, self.material.unsaved), (before, "tint it", False))
        self.assertRaises(mox.StaleError, lambda: tint.type)
        self.assertTrue(self.material.redo())
        self.assertEqual(tint.type, "CoreConstant")
        self.assertFalse(self.material.redo())

    def test_stale_views_name_what_they_viewed(self):
        tint, facing = self.add_tint(), self.material["rim"]["in_facing"]
        self.material.undo()
        with self.material.edit() as edit:
            edit.set("rim", {"Function": "Multiply"})
        for use, place in (
            (lambda: tint.title, ("CoreConstant", None)),
            (lambda: tint["read"], ("CoreConstant", None)),
            (lambda: facing.components, ("rim", "in_facing")),
        ):
            with self.assertRaises(mox.StaleError) as caught:
                use()
            error = caught.exception
            self.assertEqual((error.file, error.node, error.port), ("rim_light.xml", *place))

    def test_all_or_nothing(self):
        before = self.material.text
        for spoil in (
            lambda edit: edit.connect(self.material["base"]["read"], self.material["surface"]["in_emission"]),
            lambda edit: edit.set("rim", {"Default Power": "much"}),
            lambda edit: edit.set("rim", {"Nothing": 1}),
            lambda edit: edit.add("CoreUv", values={"Name": "a\x01b"}),
            lambda edit: edit.set_render_state({"colour": "red"}),
            lambda edit: edit.remove("nothing"),
        ):
            with self.assertRaises(mox.Error):
                with self.material.edit() as edit:
                    edit.add("CoreUv", id="uv")
                    spoil(edit)
            self.assertEqual((self.material.text, self.material.undo_title), (before, ""))
        with self.assertRaises(ZeroDivisionError):
            with self.material.edit() as edit:
                edit.remove("rim")
                1 / 0
        self.assertIn("rim", self.material)
        self.assertRaises(mox.Error, edit.remove, "rim")
        change = mox.Change.from_json('{"version": 1, "steps": [{"do": "removeNode", "id": "x"}]}')
        with self.assertRaises(mox.RefusedError) as caught:
            self.material.apply(change)
        self.assertEqual(caught.exception.step, 0)

    def test_names_follow_within_an_edit(self):
        with self.material.edit() as edit:
            renamed = edit.rename("rim", "edge")
            edit.set(renamed, {"Default Power": 8})
            edit.connect(self.material["glow"]["read"], renamed["in_scale"])
        self.assertEqual((renamed.values["Default Power"], renamed["in_scale"].source.node.id), (8.0, "glow"))
        self.assertNotIn("rim", self.material)

    def test_problems_follow_each_change(self):
        self.assertEqual(self.material.problems, ())
        with self.material.edit() as edit:
            idle = [edit.add("CoreMaths") for _ in range(2)]
        found = {(p.rule, p.node) for p in self.material.problems}
        self.assertEqual(found, {("dead-node", idle[0].id), ("dead-node", idle[1].id)})
        self.assertNotEqual(idle[0].id, idle[1].id)

    def test_changes_travel_as_json(self):
        with self.material.edit() as edit:
            edit.set_description({"name": "Rim"})
            edit.set_binding("float", "rimColour", {"default": (0, 1, 0)})
            change = edit.change
        other = self.library.open("rim_light.xml")
        self.assertTrue(other.apply(mox.Change.from_json(change.to_json())))
        self.assertEqual(other.state(), self.material.state())
        self.assertFalse(other.apply(mox.Change.from_json('{"version": 1, "steps": []}')))

    def test_differences(self):
        self.add_tint()
        self.material.save_as("new.xml")
        found = mox.diff("rim_light.xml", self.material)
        for form, option in (("text", ()), ("json", ("--json",))):
            printed = run(PROGRAM, "diff", "rim_light.xml", "new.xml", *option).stdout
            self.assertEqual(mox.format_differences(found, form), printed)
        self.assertEqual("".join(f"{one}\n" for one in found), mox.format_differences(found))
        self.assertIn(("changed", "rim"), [(one.kind, one.node) for one in found if one.property == "Default Power"])
        fed = next(one for one in found if one.edge_before)
        self.assertEqual((fed.edge_before, fed.edge_after), tuple((tail, "read", "surface", "in_colour") for tail in ("base", "CoreConstant")))
        self.assertEqual(mox.diff("new.xml", self.material), [])

    def test_materialx(self):
        text, problems = self.material.materialx()
        done = run(PROGRAM, "convert", "rim_light.xml", "-o", "theirs.mtlx")
        self.assertEqual((text, len(problems)), (Path("theirs.mtlx").read_text(), len(done.stderr.splitlines())))
        back = self.library.open("theirs.mtlx")
        self.assertIsNone(back.file)
        self.assertRaises(mox.Error, back.save)
        back.save_as("back.xml")
        run(PROGRAM, "convert", "theirs.mtlx", "-o", "convert.xml")
        self.assertEqual(Path("back.xml").read_text(), Path("convert.xml").read_text())

    def test_saving(self):
        self.add_tint()
        Path("rim_light.xml").write_text(Path("rim_light.xml").read_text() + "\n")
        with self.assertRaisesRegex(mox.Error, "has changed on disk"):
            self.material.save()
        self.material.save(force=True)
        self.assertEqual((self.library.open("rim_light.xml").text, self.material.unsaved), (self.material.text, False))
        new = self.library.new()
        self.assertRaises(mox.Error, new.save)
        with new.edit() as edit:
            edit.add("CoreUv")
        new.save_as(Path("new.xml"))
        self.assertEqual((new.file, new.unsaved), (Path("new.xml"), False))
        Path("new.xml").chmod(0o444)
        with new.edit() as edit:
            edit.add("CoreUv")
        self.assertRaises(mox.Error, new.save)


class Programs(TestInFolder):
    def test_programs_are_those_of_the_program(self):
        targets = mox.targets
        run(PROGRAM, "export", "brushed_metal.xml", "-o", "out", "--target", ",".join(targets))
        program = self.library.open("brushed_metal.xml").compile(*targets)
        files = {file.name.removeprefix("brushed_metal"): file.read_bytes() for file in Path("out").glob("brushed*")}
        self.assertEqual(program.files, files)
        self.assertEqual(program["essl"].fragment.text.encode(), files[".fragment.essl"])
        self.assertEqual(program["spirv"].vertex.bytes, files[".vertex.spv"])
        self.assertEqual(program.reflection, json.loads(files[".reflection.json"]))
        callers = {}
        for target in set(targets) - {"spirv"}:
            stage = program[target].fragment
            lines = stage.text.splitlines()
            self.assertEqual(len(stage.nodes), len(lines))
            calls = [(re.match(r"\t(\w+Code\w*)\(", line), node) for line, node in zip(lines, stage.nodes)]
            callers[target] = {call[1]: node for call, node in calls if call}
            self.assertEqual(callers[target], callers.get("cg", callers[target]), target)
        self.assertIn("bumps", callers["cg"].values())
        self.assertEqual(program["spirv"].fragment.nodes, ())
        self.assertRaises(TypeError, lambda: program["spirv"].vertex.text)
        self.assertRaises(KeyError, lambda: self.library.open("rim_light.xml").compile("cg")["msl"])
        with self.assertRaisesRegex(mox.Error, "essl"):
            self.library.open("rim_light.xml").compile("esl")

    def test_many(self):
        Path("faulty.xml").write_text(FAULTY)
        files = self.library.find(["."])
        materials = self.library.open_many(files, threads=3)
        self.assertEqual([material.file for material in materials], files)
        programs = self.library.compile_many(files, ["essl"], threads=3)
        for file, material, program in zip(files, materials, programs):
            self.assertEqual(program.failed, file.name == "faulty.xml")
            if program.failed:
                self.assertRaises(mox.Error, lambda: program["essl"])
            else:
                self.assertEqual(program.files, material.compile("essl").files)
        self.assertRaises(mox.Error, self.library.open_many, [*files, "missing.xml"])

    def test_threads_share_a_material(self):
        material = self.library.open("rim_light.xml")
        failures = []

        def work(number):
            try:
                for power in range(10):
                    with material.edit() as edit:
                        edit.set("rim", {"Default Power": power + number})
                        edit.add("CoreUv", id=f"uv{number}.{power}")
                    material.compile("essl")
                    material.undo()
                    [port.components for node in material for port in node.inputs]
            except mox.StaleError:
                pass
            except BaseException as failure:
                failures.append(failure)

        threads = [threading.Thread(target=work, args=(number,)) for number in range(4)]
        [thread.start() for thread in threads]
        [thread.join() for thread in threads]
        self.assertEqual(failures, [])
        while material.undo():
            pass
        self.assertEqual(material.text, Path("rim_light.xml").read_text())

    def test_texts_and_diagrams(self):
        material = self.library.open("rim_light.xml")
        self.assertEqual(material.shader_graph(), run(PROGRAM, "export", "--shader-graph", "rim_light.xml").stdout)
        self.assertEqual(material.graph(format="dot").decode(), run(PROGRAM, "graph", "rim_light.xml").stdout)
        self.assertEqual(material.graph(format="dot", shader=True).decode(), run(PROGRAM, "graph", "--shader", "rim_light.xml").stdout)
        self.assertIn(b"<svg", material.graph())


class Pictures(TestInFolder):
    def test_previews(self):
        preview = make_preview(self.library)
        material = self.library.open("rim_light.xml")
        picture = preview.render(material, size=(64, 32), values={"baseColour": (0.9, 0, 0)})
        run(PROGRAM, "preview", "rim_light.xml", "-o", "theirs.png", "--size", "64x32", "--set", "baseColour=0.9,0,0", check=True)
        picture.save("ours.png")
        self.assertEqual(Path("ours.png").read_bytes(), Path("theirs.png").read_bytes())
        view = memoryview(picture)
        self.assertEqual((view.shape, view.format, view.readonly, view.tobytes()), ((32, 64, 4), "B", True, picture.tobytes()))
        self.assertEqual(mox.Picture(view).tobytes(), picture.tobytes())
        with material.edit() as edit:
            edit.set("base", {"Default Colour": (0.9, 0, 0)})
        self.assertEqual(preview.render(material, size=(64, 32)).tobytes(), picture.tobytes())
        one, two = preview.render_nodes(material, [material["base"], material["glow"]["read"]], size=8)
        self.assertNotEqual(one.tobytes(), two.tobytes())
        self.assertEqual(preview.render(material, node="glow.read", mesh="plane", size=8).tobytes(), two.tobytes())
        self.assertTrue(preview.render(material, node="nothing", size=8).problems)
        for wrong in ({"mesh": "ball"}, {"values": {"nothing": 1}}, {"size": 0}, {"size": 1 << 20}, {"frame": float("nan")}):
            with self.subTest(wrong=wrong):
                self.assertRaises(mox.Error, preview.render, material, **wrong)

    def test_numpy_reads_without_a_copy(self):
        import numpy

        picture = self.library.types["CoreMaths"].icon
        array = numpy.asarray(picture)
        self.assertEqual((array.shape, array.dtype), ((picture.height, picture.width, 4), numpy.uint8))
        self.assertFalse(array.flags.owndata or array.flags.writeable)
        self.assertTrue(numpy.shares_memory(array, numpy.asarray(picture)))
        flipped = mox.Picture(array[::-1, ::-1])
        self.assertTrue((numpy.asarray(flipped) == array[::-1, ::-1]).all())
        for wrong in (array[..., :3], array.astype(float), array[0], b"", 5):
            self.assertRaises((ValueError, TypeError), mox.Picture, wrong)


if __name__ == "__main__":
    unittest.main()
