"""Calls every function of the package with random arguments."""

import copy
import gc
import pickle
import random
from pathlib import Path

import mox

# Excluded because they are slow, would end the test or would write outside its folder.
AVOIDED = {"save", "save_as", "export", "graph", "__class__", "__init_subclass__", "__subclasshook__", "__dir__", "__sizeof__"}
FILES = ["rim_light.xml", "two_maths.xml", "brushed_metal.xml", "missing.xml", "textures", "textures/rock.png"]
TEXTS = ["rim", "base", "surface", "CoreMaths", "CoreUv", "in_value1", "out_value", "read", "Function", "Multiply", "essl",
         "spirv", "", "\0", "\ud800", "a\x01", "x" * 10000, "<material version='1'/>", "{}", '{"version": 1, "steps": []}', "plane"]
NUMBERS = [0, 1, -1, 3, 64, 2**31, -(2**63), 2**64, 10**40, 0.5, float("nan"), float("inf"), True]


def make_pool(rng):
    library = mox.Library()
    materials = [library.open(file) for file in FILES[:3]] + [library.new(), library.parse("<material")]
    pool = [library, *materials, *mox.__dict__.values(), *map(Path, FILES), *TEXTS, *NUMBERS, None, object(), b"bytes", bytearray(4)]
    for material in materials:
        pool += material.nodes + material.edges + [port for node in material for port in node.inputs]
        pool += [material.edit("x"), {"Default Power": rng.random()}, {"Function": None, 5: 6}, [material], FILES[:2], (1, 2, 3)]
    pool += [library.types["CoreMaths"], library.types["CoreMaths"].icon, library.types, mox.Problem("a/b", "c")]
    pool.append(materials[0].compile("cg", "essl"))
    try:
        pool.append(mox.Preview(library))
    except mox.Error:
        pass
    return pool


def find_callables(thing, rng):
    """Returns a random attribute of an object as a callable: a method, or a property wrapped in
    a function."""
    names = [name for name in dir(type(thing)) if name not in AVOIDED]
    name = rng.choice(names)
    return lambda *args, **kwargs: attribute(*args, **kwargs) if callable(attribute := getattr(thing, name)) else attribute


def run(seed, count=3000):
    rng = random.Random(seed)
    pool = make_pool(rng)
    returned = raised = 0
    for number in range(count):
        thing = rng.choice(pool)
        if type(thing).__module__.startswith("mox") and rng.random() < 0.9:
            call = find_callables(thing, rng)
        elif callable(thing) and getattr(thing, "__module__", "").startswith("mox"):
            call = thing
        else:
            call = rng.choice([copy.copy, copy.deepcopy, pickle.dumps, repr, hash, len, list, memoryview, iter])
        arguments = [rng.choice(pool) for _ in range(rng.choice([0, 0, 0, 1, 1, 2, 3]))]
        names = ["values", "id", "size", "node", "threads", "mesh", "frames", "force", "replace", "before", "format"]
        keywords = {rng.choice(names): rng.choice(pool) for _ in range(rng.choice([0, 0, 0, 0, 1]))}
        if call in (list, copy.deepcopy) and not type(thing).__module__.startswith("mox"):
            continue
        try:
            result = call(*([thing] if call.__name__ != "<lambda>" and call is not thing else []), *arguments, **keywords)
            returned += 1
            if len(pool) < 400 and not isinstance(result, (bytes, int, type(NotImplemented))):
                pool.append(result)
        except Exception:
            raised += 1
        if number % 500 == 250:  # views then refer to removed nodes
            for thing in list(pool):
                if isinstance(thing, mox.Material) and rng.random() < 0.5 and len(thing):
                    with thing.edit() as edit:
                        edit.remove(rng.choice(thing.nodes))
            rng.shuffle(pool)
            del pool[: len(pool) // 8]
            gc.collect()
    print(f"{count} calls, {returned} returned, {raised} raised")
