"""The materials from which the node reference takes formulas and images: one for each node type and function."""

from dataclasses import dataclass, field
from xml.sax.saxutils import quoteattr

# The property that selects the function of a type, if it is not the first enumeration.
FUNCTION_PROPERTY = {"CoreTexture": "Colour Type"}

# Functions of one number, which are plotted. All others are shown over u and v.
PLOTTED = {
    "CoreMaths": ["Invert", "Power", "Clamp", "Range", "Ceil", "Floor", "Frac", "Abs"],
    "MathsArithmetic": None,
    "MathsTrigonometry": ["Sine", "Cosine", "Tangent", "Arc Sine", "Arc Cosine", "Arc Tangent"],
}
ON_SPHERE = {"Surface", "SurfacePbr", "VectorTransform", "CoreVertexColour"}
SPHERE_FUNCTIONS = {"Cross Product", "Reflect", "Refract", "Cube", "Triplanar"}
# Property values that are more informative than the defaults, by type or function.
IMAGE_SETTINGS = {
    "CoreConstant": {"Default Colour": "0.9 0.5 0.1"},
    "Tile": {"Default U": 3.0, "Default V": 2.0},
    "Offset": {"Default U": 0.3, "Default V": 0.2},
    "Rotate": {"Default Angle": 30.0},
}
SHOWN_TIMES = {"SurfaceEyeDistance": 0.2}


@dataclass
class Case:
    """One node type with one value of the property that selects its function."""

    kind: dict  # the type in the catalogue
    selector: str = ""
    value: str = ""
    inputs: list = field(default_factory=list)
    outputs: list = field(default_factory=list)

    @property
    def name(self):
        return "_".join([self.kind["type"], *self.value.split()])

    @property
    def settings(self):
        return {self.selector: self.value} if self.selector else {}

    @property
    def on_sphere(self):
        type_name = self.kind["type"]
        source = type_name.startswith("Surface") and type_name not in ("SurfaceTime", "SurfaceFrame", "SurfaceScreenUv")
        return source or type_name in ON_SPHERE or self.value in SPHERE_FUNCTIONS


def cases_of(kind):
    """The cases of a type in the catalogue."""
    choices = [p for p in kind["properties"] if p["kind"] == "enum" and p["name"] != "Execution Level"]
    wanted = FUNCTION_PROPERTY.get(kind["type"])
    chosen = next((p for p in choices if wanted in (None, p["name"])), None)
    if chosen is None:
        return [Case(kind, inputs=kind["inputs"], outputs=kind["outputs"])]
    found = []
    for value in chosen["choices"]:
        variant = next((v for v in kind.get("variants", [])
                        if v["property"] == chosen["name"] and v["value"] == value), {})
        found.append(Case(kind, chosen["name"], value, variant.get("inputs", kind["inputs"]),
                          variant.get("outputs", kind["outputs"])))
    return found


class Material:
    """A material document that is built step by step."""

    def __init__(self, kinds):
        self._kinds = kinds
        self._nodes = []
        self._edges = []
        self._bindings = []
        self._uv = None

    def add(self, type_name, settings=None, **inputs):
        """Adds a node and returns its id. Inputs are fed by (id, port)."""
        node = f"n{len(self._nodes)}"
        kinds = {p["name"]: p["kind"] for p in self._kinds[type_name]["properties"]}
        lines = [f'<property name={quoteattr(name)} kind="{kinds[name]}" value={quoteattr(str(value))}/>'
                 for name, value in (settings or {}).items()]
        self._nodes.append(f'<node id="{node}" type="{type_name}" version="0">{"".join(lines)}</node>')
        for port, (tail, tail_port) in inputs.items():
            self._edges.append(f'<edge tail="{tail}" tailPort="{tail_port}" head="{node}" headPort="{port}"/>')
        return node

    def texture(self, name, colour_type="Colour", scale=1.0):
        uv = self.uv()
        if scale != 1.0:
            uv = (self.add("UvTransform", {"Function": "Tile", "Default U": scale, "Default V": scale}, in_uv=uv), "out_uv")
        self.bind(name)
        return self.add("CoreTexture", {"Name": name, "Colour Type": colour_type}, in_uv=uv), "out_colour"

    def bind(self, name):
        line = f'<binding stream="texture" tag="{name}" default="textures/{name}.png"/>'
        if line not in self._bindings:
            self._bindings.append(line)

    def uv(self):
        if self._uv is None:
            self._uv = self.add("CoreUv", {"Name": "uv0"})
        return self._uv, "read"

    def coordinate(self, axis, low=0.0, high=1.0):
        """Adds u (axis "x") or v, scaled from low at the left or top to high."""
        part = self.add("CoreSwizzle", {"Vector Type": "Uv"}, in_vec=self.uv())
        scaled = self.add("CoreMaths", {"Function": "Multiply", "Default Value 2": float(high - low)},
                          in_value1=(part, f"out_{axis}"))
        return self.add("CoreMaths", {"Function": "Addition", "Default Value 2": float(low)},
                        in_value1=(scaled, "out_value")), "out_value"

    def maths(self, function, first, second):
        ports = {"in_value1": first}
        settings = {"Function": function}
        if isinstance(second, tuple):
            ports["in_value2"] = second
        else:
            settings["Default Value 2"] = float(second)
        return self.add("CoreMaths", settings, **ports), "out_value"

    def step(self, edge, value):
        return self.add("MathsArithmetic", {"Function": "Step"}, in_value1=value, in_value2=edge), "out_value"

    @property
    def text(self):
        return ('<?xml version="1.0" encoding="UTF-8"?>\n<material version="1">\n<nodes>\n' + "\n".join(self._nodes) +
                "\n</nodes>\n<edges>\n" + "\n".join(self._edges) + "\n</edges>\n<bindings>\n" +
                "\n".join(self._bindings) + "\n</bindings>\n</material>\n")


def formula_material(case, kinds):
    """A material in which the node of the case is the only one with a function, and all its inputs have edges."""
    material = Material(kinds)
    feeds = {}
    for port in case.inputs:
        count = port.get("components", 3)
        if count == 2:
            feeds[port["name"]] = material.uv()
        else:
            kind = {1: "Scalar", 3: "Colour", 4: "Vector"}[count]
            feeds[port["name"]] = (material.add("CoreConstant", {"Name": port["name"], "Constant Type": kind}), "read")
    material.add(case.kind["type"], case.settings, **feeds)
    return material.text


def _feed(material, case, port):
    """Returns what feeds an input in an image, or None if its default is more informative."""
    name, value = port["name"], case.value
    type_name = case.kind["type"]
    if type_name in ("Surface", "SurfacePbr"):
        return material.texture("paint") if name == "in_colour" else None
    if value == "Cube":
        return material.add("SurfaceWorldNormal"), "read"
    if name == "in_normal":
        if type_name == "NormalMaths":
            return material.texture("normal", "Normal")
        return material.add("SurfaceWorldNormal"), "read"
    if name in ("in_direction", "in_vector1"):
        return material.add("SurfaceViewDirection"), "read"
    if name == "in_detail":
        return material.texture("normal", "Normal", 4.0)
    if name == "in_height":
        return material.add("NoiseFractal", {"Default Scale": 6.0}, in_uv=material.uv()), "out_value"
    if name in ("in_position", "in_vector", "in_place"):
        return material.add("SurfaceObjectPosition"), "read"
    if name == "in_vector2":
        return material.add("SurfaceWorldNormal"), "read"
    if name in ("in_colour", "in_vec"):
        return material.uv() if port.get("components") == 2 else material.texture("paint")
    if name == "in_uv":
        return material.uv()
    if name == "in_amount":
        return material.coordinate("x", 0, 1 if value == "Hue" else 2)
    if type_name == "VectorMaths":
        return material.uv() if name == "in_value1" else None
    if name in ("in_value", "in_blend", "in_test1", "in_facing"):
        return material.coordinate("x")
    if name == "in_test2":
        return material.coordinate("y")
    if name == "in_x" or value == "Arc Tangent 2" and name == "in_value2":
        return material.coordinate("x", -1, 1)
    if name == "in_y" or value == "Arc Tangent 2" and name == "in_value1":
        return material.coordinate("y", -1, 1)
    if value in ("Lerp", "SmoothStep", "Compare") or type_name == "CoreLayerBlend":
        if name == "in_value1":
            return material.texture("paint")
        return material.coordinate("y") if name == "in_value2" and type_name == "CoreLayerBlend" else None
    if name == "in_value1":
        return material.coordinate("x")
    if name == "in_value2":
        return material.coordinate("y")
    return None


def image_material(case, kinds):
    """A material for the image of a case, and the node to show, or None for its surface."""
    material = Material(kinds)
    type_name = case.kind["type"]
    settings = dict(case.settings)
    functions = PLOTTED.get(type_name, [])
    if functions is None or case.value in functions:
        return _plot(material, case)
    if type_name in ("CoreTexture", "TextureRead"):
        name = {"Normal": "normal", "DXT5 Normal": "normal", "Cube": "sky", "Volume": "flames"}.get(case.value, "paint")
        settings["Name"] = name
        material.bind(name)
    settings |= IMAGE_SETTINGS.get(type_name, {}) | IMAGE_SETTINGS.get(case.value, {})
    feeds = {}
    for port in case.inputs:
        source = _feed(material, case, port)
        if source is not None:
            feeds[port["name"]] = source
    node = material.add(type_name, settings, **feeds)
    if type_name in ("Surface", "SurfacePbr"):
        return material.text, None
    if case.outputs[0]["name"] in ("out_uv", "out_uv1"):
        material.bind("paint")
        node = material.add("CoreTexture", {"Name": "paint"}, in_uv=(node, case.outputs[0]["name"]))
    if type_name in SHOWN_TIMES:
        node = material.maths("Multiply", (node, case.outputs[0]["name"]), SHOWN_TIMES[type_name])[0]
    return material.text, node


def _plot(material, case):
    """Light below the curve of the function and dark above, from -3 to 3 on both axes."""
    x, y = material.coordinate("x", -3, 3), material.coordinate("y", 3, -3)  # v grows downwards
    names = [port["name"] for port in case.inputs]
    first = "in_value1" if "in_value1" in names else names[0]
    node = material.add(case.kind["type"], case.settings, **{first: x})
    below = material.maths("Multiply", material.step(y, (node, case.outputs[0]["name"])), 0.6)
    above_axis = material.maths("Multiply", material.step(material.maths("Multiply", y, 0.0), y), 0.08)
    right_of_axis = material.maths("Multiply", material.step(material.maths("Multiply", x, 0.0), x), 0.04)
    shown = material.maths("Addition", below, material.maths("Addition", above_axis, right_of_axis))[0]
    return material.text, shown
