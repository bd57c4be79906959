"""Turns the measurements of one run into tables of ratios. Usage: report.py FOLDER MATERIALS"""

import json
import os
import platform
import statistics
import sys
from pathlib import Path

SIZES = [10, 100, 1000, 10000, 100000]
STAGES = ["read", "load", "resolve", "write", "free"]
NATIVE_LOAD_MILLISECONDS = 31  # the limit for loading a plug-in is a hundredth of this time


def read_medians(files):
    """Maps each benchmark's name to the medians of its figures over all processes that measured
    it."""
    found = {}
    for file in files:
        for row in json.loads(file.read_text())["benchmarks"]:
            if row.get("aggregate_name") == "median":
                found.setdefault(row["run_name"].split("/iterations")[0], []).append(row)
    return {name: {key: statistics.median(row[key] for row in rows)
                   for key, value in rows[0].items() if isinstance(value, float)}
            for name, rows in found.items()}


def read_instructions(file):
    """Maps the name of each program to its instructions per additional node."""
    counted = {}
    for line in file.read_text().splitlines():
        name, nodes, count = line.split()
        counted.setdefault(name, []).append((int(nodes), int(count)))
    return {name: (many[1] - few[1]) / (many[0] - few[0]) for name, (few, many) in counted.items()}


def read_seconds(file):
    """Maps the name of each run to its median duration in seconds."""
    seconds = {}
    for line in file.read_text().splitlines():
        name, value = line.split()
        seconds.setdefault(name, []).append(float(value))
    return {name: statistics.median(values) for name, values in seconds.items()}


def table(head, rows):
    lines = ["| " + " | ".join(head) + " |", "|" + "---|" * len(head)]
    lines += ["| " + " | ".join(row) + " |" for row in rows]
    return "\n".join(lines)


def ratio(value, limit=None, at_most=True):
    if limit is None:
        return f"{value:.2f}"
    return f"{value:.3g}" + (" (reached)" if (value <= limit) == at_most else " (not reached)")


def main(folder, materials):
    rows = read_medians([folder / "all.json"]) | read_medians(sorted(folder.glob("mox-*.json")))
    beside = read_medians([folder / "beside.json"])
    system = read_medians(sorted(folder.glob("plain-*.json")))
    pipeline = lambda shape, size: rows[f"pipeline/{shape}/{size}"]
    plain = {size: rows[f"plain/CoreMaths/{size}"] for size in SIZES[1:]}
    cost = lambda row: row["create"] + row["free"]
    floor = {size: cost(row) for size, row in plain.items()}
    languages = read_medians(sorted(folder.glob("essl-*.json")))
    essl = lambda shape, size: languages[f"essl/{shape}/{size}"]

    print("# Results of a run\n")
    print(f"Written by `bench/run` on {os.cpu_count()} processors ({platform.machine()}), "
          f"one-minute load {os.getloadavg()[0]:.1f} at the end. Every figure is a ratio of medians "
          "of this run; times are processor time of one thread unless stated otherwise.\n")

    print("## Limits\n")
    limits = []
    for size in (1000, 100000):
        for allocator, baseline in (("C library's", cost(system[f"plain/CoreMaths/{size}"])),
                                    ("same", floor[size])):
            limits.append([f"whole pipeline / plain baseline on the {allocator} allocator, chain of {size:,}",
                         "", ratio(pipeline("chain", size)["total"] / baseline)])
    instructions = read_instructions(folder / "instructions.txt")
    for allocator, program in (("C library's", "mox_bench_plain"), ("same", "mox_bench")):
        limits.append([f"instructions: `mox export` / plain baseline on the {allocator} allocator, per node "
                     f"({instructions['export']:,.0f} / {instructions[program]:,.0f})",
                     "", ratio(instructions["export"] / instructions[program])])
    loaded = rows["plug-in/load"]
    limits.append([f"plug-in load / {NATIVE_LOAD_MILLISECONDS} ms", "at most 0.01",
                 ratio(loaded["real_time"] * 1e-9 / (NATIVE_LOAD_MILLISECONDS * 1e-3), 0.01)])
    for peer, file in (("MaterialX", "materialx.json"), ("Babylon.js", "babylon.json")):
        for key, seconds in json.loads((folder / file).read_text())[peer].items():
            shape, size = key.split("/")
            if isinstance(seconds, str):
                limits.append([f"{peer}'s ESSL / ours, {shape} of {size}", "at least 10", seconds])
                continue
            own = beside[f"essl/{key}"]["real_time"] * 1e-3 / int(size)  # wall-clock time, like theirs
            limits.append([f"{peer}'s ESSL / ours, {shape} of {size}, wall-clock time",
                         "at least 10" if size == "1000" else "",
                         ratio(seconds / own, 10 if size == "1000" else None, False)])
    for shape in ("chain", "values"):
        for size in SIZES[:4]:
            # Both times come from the same runs: ESSL is written from the Cg program, and the speed
            # of two processes differs by more than what is measured here.
            total, spell = essl(shape, size)["total"], essl(shape, size)["spell"]
            limits.append([f"document to ESSL / document to Cg, {shape} of {size:,}", "at most 1.5",
                         ratio(total / (total - spell), 1.5)])
        limits.append([f"node of 10,000 / node of 100 to ESSL, {shape}", "at most 1.5",
                     ratio(essl(shape, 10000)["total"] / essl(shape, 100)["total"], 1.5)])
    limits.append(["plain baseline on the pipeline's allocator: node of 10,000 / node of 100", "",
                 ratio(floor[10000] / floor[100])])
    process = read_seconds(folder / "process.txt")
    limits.append(["a process for 30 nodes to ESSL / to Cg", "at most 1.2",
                 ratio(process["essl"] / process["cg"], 1.2)])
    texts = read_seconds(folder / "languages.txt")
    limits.append(["2,000 materials, 88 of them different, in all text languages / in Cg", "at most 4",
                 ratio(texts["all"] / texts["cg"], 4)])
    for shape in ("chain", "tree", "layered"):
        limits.append([f"node of 100,000 / node of 1,000, {shape}", "at most 1.25",
                     ratio(pipeline(shape, 100000)["total"] / pipeline(shape, 1000)["total"], 1.25)])
    limits.append(["plain baseline on the C library's allocator: node of 100,000 / node of 1,000", "",
                 ratio(cost(system["plain/CoreMaths/100000"]) / cost(system["plain/CoreMaths/1000"]))])
    limits.append(["plain baseline on the pipeline's allocator: node of 100,000 / node of 1,000", "",
                 ratio(floor[100000] / floor[1000])])
    first = json.loads((folder / "first.json").read_text())["benchmarks"][0]["total"]
    limits.append(["first run in a process / a later one, chain of 100,000", "",
                 ratio(first / pipeline("chain", 100000)["total"])])
    edit = rows["edit/100000"]
    limits.append(["resolving and checking after one changed value / the first time, chain of 100,000",
                 "at most 0.001", ratio(edit["again"] / edit["first"], 0.001)])
    batch = {1: [], 2: []}
    is_calm = True
    for line in (folder / "batch.txt").read_text().splitlines():
        workers, real, user, system, machine = map(float, line.split())
        batch[workers].append(real)
        is_calm = is_calm and machine - user - system < 0.1 * real * os.cpu_count() + 1
    gain = statistics.median(batch[1]) / statistics.median(batch[2])
    limits.append([f"`-j 1` / `-j 2`, {int(materials):,} materials, wall-clock time", "at least 1.7",
                 ratio(gain, 1.7, False) if is_calm
                 else "not judged, the processors were busy with other work"])
    for line in (folder / "memory.txt").read_text().splitlines():
        count, fields, peak = map(int, line.split())
        limits.append([f"peak / fields of nodes, ports and edges, chain of {count:,} ({peak:,} / {fields:,} bytes)",
                     "at most 1.5", ratio(peak / fields, 1.5)])
    print(table(["ratio", "limit", "this run"], limits))
    print("\nThe pipeline uses the same allocator as `mox`: mimalloc, unless it was built without it. The "
          "plain baseline is a program written without regard to speed and therefore uses the C "
          "library's allocator; running it on the pipeline's allocator too shows how much of the "
          "difference is due to the allocator. Fields are measured in bytes of the C library's "
          "allocator. Times are from a process that has run the pipeline before: the first large "
          "material in a process also has to obtain memory pages from the system.")

    print("\n## Size\n\nTime per node relative to the same shape with 1,000 nodes. `values` is a chain in "
          "which every node has a different value and therefore a different function.\n")
    print(table(["shape"] + [f"{size:,}" for size in SIZES],
                [[shape] + [ratio(pipeline(shape, size)["total"] / pipeline(shape, 1000)["total"])
                            for size in SIZES]
                 for shape in ("chain", "values", "tree", "fan", "layered")]))

    print("\n## Stages\n\nEach stage of a chain relative to the plain baseline of the same size (of 100 nodes for 10), in which a "
          "plain struct with the same properties is created and freed with the same allocator. `read` "
          "reads the document, `load` creates nodes and edges, `write` covers every node's shader, the "
          "final pass and both programs.\n")
    near = lambda size: floor[max(size, 100)]
    print(table(["nodes"] + STAGES + ["total"],
                [[f"{size:,}"] + [ratio(pipeline("chain", size)[stage] / near(size))
                                  for stage in STAGES + ["total"]] for size in SIZES]))

    print("\n## Parts\n\nThe steps that follow a resolved graph, per node, relative to the plain baseline of the "
          "same size. `generate` is every node's shader and `join` the final pass, both using the "
          "library alone; `programs` writes the source of both stages, `save` the graph as a document.\n")
    parts = ["generate", "join", "programs", "save"]
    print(table(["shape", "nodes"] + parts,
                [[name.split("/")[1], f"{int(name.split('/')[2]):,}"] +
                 [ratio(row[part] / near(int(name.split("/")[2]))) for part in parts]
                 for name, row in sorted(rows.items(), key=lambda entry: (
                     entry[0].split("/")[0], entry[0].split("/")[1], len(entry[0])))
                 if name.startswith("parts/")]))
    bindings = rows["bindings/1000"]
    print(f"\nA binding of four floats takes {ratio(bindings['write'] / floor[1000])} of the baseline's time "
          f"to write as XML and {ratio(bindings['read'] / floor[1000])} to read from a file.")

    print("\n## Nodes\n\nCreating and freeing a node of each type, 1,000 at a time, relative to the plain "
          "maths node with the same allocator.\n")
    print(table(["type", "create", "free"],
                [[name.split("/")[1], ratio(row["create"] / plain[1000]["create"]),
                  ratio(row["free"] / plain[1000]["free"])]
                 for name, row in rows.items() if name.startswith("node/") and name.endswith("/1000")]))
    copy = rows["copy bytes/4096"]["cpu_time"]
    print(f"\nA bag's `CopyFrom` takes {rows['bag/CopyFrom']['cpu_time'] / copy:.1f} times as long as "
          f"allocating and copying 4 KiB, and creating and freeing the plain node "
          f"{floor[1000] * 1e9 / copy:.0f} times.")

    print("\n## What the peers leave out\n\n"
          "Each runs in one process after a warm-up, on documents with the same number of maths nodes, "
          "which alternately multiply and add. Mox reads its documents from files, the others from "
          "memory. All write both stages in ESSL. MaterialX (`@needle-tools/materialx`, the official "
          "generator as WebAssembly) does not "
          "divide a graph between stages and leaves constants as uniforms; its standard libraries are "
          "loaded beforehand. Babylon.js (`@babylonjs/core`, engine without a screen) resolves types "
          "while its graph is built, does not record line numbers, and requires an additional block "
          "for each unconnected input, which is not counted. Neither validates documents against a "
          "schema or maps lines of its output back to nodes. We leave out the lights and the tone "
          "mapping that they write around a material.")


main(Path(sys.argv[1]), sys.argv[2])
