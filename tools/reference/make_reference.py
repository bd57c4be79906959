#!/usr/bin/env python3
"""Writes docs/nodes.md, the reference of all node types, from the catalogue and from the Cg that the nodes generate.

Usage: tools/reference/make_reference.py MOX [--images [NAME] | --check]

MOX is the program mox. --images also renders the images in docs/pictures/nodes and requires a Vulkan device.
--check writes nothing. It fails if the page or the table in README.md is out of date, or if an image is missing.
"""

import argparse
import json
import re
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from cases import SHOWN_TIMES, cases_of, formula_material, image_material

ROOT = Path(__file__).resolve().parents[2]
IMAGES = ROOT / "docs/pictures/nodes"
SIZE = 64
STAGES = {"v": "vertex", "f": "fragment", "*": "either"}
LONG_FORMULA = 5  # lines; longer ones are shown after the table
COMMON = {"Type", "Name", "BindingIndex", "BindingGroup", "PositionX", "PositionY", "Description", "Help Url"}
IDENTITY = "1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1"

FUNCTION = re.compile(r'^\[\d+\] function "(\w+)" \(\d+/\d+/(.)\)\n(.*?)^\}\n\n(?=\[|edges)',
                      re.MULTILINE | re.DOTALL)
PARAMETER = re.compile(r'^\[\d+\] (\w+) parameter "(\w+)" \(([^)]*)\)', re.MULTILINE)


def run(*command):
    done = subprocess.run([str(part) for part in command], capture_output=True, text=True)
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))}\n{done.stderr}")
    return done.stdout


def read_catalogue(mox):
    listed = [kind for kind in json.loads(run(mox, "catalogue", "--json")) if kind["listed"]]
    libraries = list(dict.fromkeys(kind["library"] for kind in listed))
    return sorted(listed, key=lambda kind: libraries.index(kind["library"]))


def code_of(function):
    """The lines of a function's body without its braces and its indentation."""
    body = function.partition("\n{\n")[2].rstrip()
    return [line.removeprefix("\t") for line in body.splitlines() if line.strip()]


def describe(case, graph):
    """Returns the formula of a case, as lines of prose or Cg, and its stage, from the printed shader graph."""
    own = [match for match in FUNCTION.finditer(graph) if " out_" in match.group(3).partition("{")[0]]
    written = [name for how, name, _ in PARAMETER.findall(graph) if how == "interface"]
    if not case.outputs:
        return ["writes " + ", ".join(f"`{name}`" for name in written)], "chosen by the environment"
    if own:
        lines = [line for match in own for line in code_of(match.group(3))]
        return lines, ", ".join(dict.fromkeys(STAGES[match.group(2)] for match in own))
    words = {"interface": "environment value", "uniform": "binding", "varying": "vertex stream"}
    return [f"reads the {words[how]} `{name}` ({kind.partition(',')[0]})"
            for how, name, kind in PARAMETER.findall(graph)], STAGES["*"]


def called_functions(graphs, formulas):
    """The Cg functions that the formulas call, directly or through each other, in the order of their definition."""
    defined = {}
    for graph in graphs:
        for match in FUNCTION.finditer(graph):
            if " out_" not in match.group(3).partition("{")[0]:
                defined[match.group(1)] = code_of(match.group(3))
    called = set()
    waiting = [line for formula in formulas for line in formula]
    while waiting:
        names = set(re.findall(r"\w+", waiting.pop())) & defined.keys() - called
        called |= names
        waiting += [line for name in names for line in defined[name]]
    return [code for name, code in defined.items() if name in called]


def port_text(ports):
    def one(port):
        count = f" ×{port['components']}" if "components" in port else ""
        return f"`{port['name']}`{count}"
    return ", ".join(map(one, ports)) or "none"


def cell(lines):
    if lines[0].startswith(("reads", "writes")):
        return ", ".join(lines)
    return "<br>".join("`" + line.strip().replace("|", "\\|") + "`" for line in lines)


def property_text(kind):
    found = []
    for one in kind["properties"]:
        if one["name"] in COMMON:
            continue
        default = one["default"]
        default = f"{default:g}" if isinstance(default, float) else json.dumps(default).strip('"')
        if isinstance(one["default"], list):
            default = " ".join(f"{number:g}" for number in one["default"])
        about = f" ({default})" if default not in ("", "null") else ""
        found.append(f"*{one['name']}*{about}")
    return ", ".join(found)


def section(kind, cases, graphs):
    lines = [f"### {kind['label']}", "", f"`{kind['type']}`. {kind['help']}", ""]
    properties = property_text(kind)
    if properties:
        lines += [f"Properties, with their defaults: {properties}.", ""]
    lines += ["| image | function | inputs | outputs | stage | formula |", "|---|---|---|---|---|---|"]
    long = []
    formulas = []
    for case in cases:
        formula, stage = describe(case, graphs[case.name])
        formulas.append(formula)
        shown = cell(formula)
        if len(formula) > LONG_FORMULA:
            long.append((case, formula))
            shown = "below"
        image = f"![{case.value or kind['label']}](pictures/nodes/{case.name}.png)"
        lines.append(f"| {image} | {case.value or kind['label']} | {port_text(case.inputs)} | {port_text(case.outputs)} "
                     f"| {stage} | {shown} |")
    lines.append("")
    if kind["type"] in SHOWN_TIMES:
        lines += [f"The image shows {SHOWN_TIMES[kind['type']]:g} times the value.", ""]
    for case, formula in long:
        lines += [f"{case.value or kind['label']}:", "", "```", *formula, "```", ""]
    functions = called_functions([graphs[case.name] for case in cases], formulas)
    if functions:
        lines += ["Functions that these formulas call:", "", "```"]
        lines += [line for code in functions for line in [*code, ""]][:-1]
        lines += ["```", ""]
    return lines


def reference(kinds, cases, graphs):
    lines = (Path(__file__).parent / "introduction.md").read_text(encoding="utf-8").splitlines() + [""]
    library = None
    for kind in kinds:
        if kind["library"] != library:
            library = kind["library"]
            lines += [f"## {library}", ""]
        lines += section(kind, cases[kind["type"]], graphs)
    return "\n".join(lines).rstrip() + "\n"


def anchor(label):
    return label.lower().replace(" ", "-")


def table(kinds, cases):
    """The node types by library, for README.md."""
    lines = ["| library | nodes |", "|---|---|"]
    for library in dict.fromkeys(kind["library"] for kind in kinds):
        nodes = []
        for kind in (kind for kind in kinds if kind["library"] == library):
            functions = [case.value for case in cases[kind["type"]] if case.value]
            several = f" ({', '.join(functions)})" if functions else ""
            nodes.append(f"[{kind['label']}](docs/nodes.md#{anchor(kind['label'])}){several}")
        lines.append(f"| {library} | {', '.join(nodes)} |")
    return "\n".join(lines) + "\n"


def render(mox, case, kinds, folder):
    text, node = image_material(case, kinds)
    file = folder / f"{case.name}.image.xml"
    file.write_text(text, encoding="utf-8")
    view = ["--mesh", "sphere"] if case.on_sphere else ["--mesh", "plane", "--set", f"worldViewProjection={IDENTITY}"]
    shown = ["--node", node] if node else []
    run(mox, "preview", file, "-o", IMAGES / f"{case.name}.png", "--size", SIZE, *view, *shown,
        "--frame", 15)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("mox", type=Path, help="the program mox")
    what = parser.add_mutually_exclusive_group()
    what.add_argument("--images", nargs="?", const="", metavar="NAME", help="also render the images whose names begin with NAME")
    what.add_argument("--check", action="store_true", help="write nothing, but fail if a file is out of date")
    options = parser.parse_args()
    mox = options.mox.resolve()

    kinds = read_catalogue(mox)
    by_type = {kind["type"]: kind for kind in kinds}
    cases = {kind["type"]: cases_of(kind) for kind in kinds}
    every = [case for found in cases.values() for case in found]
    with tempfile.TemporaryDirectory() as temporary:
        folder = Path(temporary)
        (folder / "textures").symlink_to(ROOT / "examples/textures")
        graphs = {}
        materials = folder / "materials"
        materials.mkdir()
        for case in every:
            (materials / f"{case.name}.xml").write_text(formula_material(case, by_type), encoding="utf-8")
        run(mox, "export", "--shader-graph", materials, "-o", folder / "graphs")
        for case in every:
            graphs[case.name] = (folder / f"graphs/{case.name}.graph.txt").read_text(encoding="utf-8")
        if options.images is not None:
            IMAGES.mkdir(exist_ok=True)
            shown = [case for case in every if case.name.startswith(options.images)]
            with ThreadPoolExecutor() as workers:
                list(workers.map(lambda case: render(mox, case, by_type, folder), shown))

    page = reference(kinds, cases, graphs)
    readme = (ROOT / "README.md").read_text(encoding="utf-8")
    block = re.compile(r"(?<=<!-- node types -->\n).*?(?=<!-- end of node types -->)", re.DOTALL)
    renewed = block.sub(lambda _: table(kinds, cases), readme)
    wrong = []
    for file, text in ((ROOT / "docs/nodes.md", page), (ROOT / "README.md", renewed)):
        if options.check:
            if file.read_text(encoding="utf-8") != text:
                wrong.append(f"{file} is out of date: run tools/reference/make_reference.py")
        else:
            file.write_text(text, encoding="utf-8")
    named = set(re.findall(r"pictures/nodes/([\w.]+)", page))
    there = {file.name for file in IMAGES.glob("*.png")}
    for what, names in (("have no image", named - there), ("are no longer used", there - named)):
        if names:
            wrong.append(f"docs/pictures/nodes: {', '.join(sorted(names))} {what}: run tools/reference/make_reference.py --images")
    sys.exit("\n".join(wrong) if wrong else 0)


if __name__ == "__main__":
    main()
