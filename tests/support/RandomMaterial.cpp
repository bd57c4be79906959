#include "tests/support/RandomMaterial.h"

#include "mox/Text.h"
#include "mox/authoring/GuiNode.h"
#include "mox/document/PropertyText.h"
#include "tests/support/BuildTree.h"
#include "tests/support/MaterialText.h"
#include "tests/support/Random.h"

#include <set>
#include <stdexcept>
#include <vector>

using namespace Mox::Host;
using namespace Mox::Materials;

namespace {

/// All types except output nodes.
std::vector<std::string> ListTypes(RandomTypes types)
{
    std::vector<std::string> listed;
    for (const Plugin& plugin : TestPlugins().Plugins()) {
        if (types == RandomTypes::DefinedEverywhere && plugin.OffersNodeFiles())
            continue;
        for (const auto& row : plugin.Types()) {
            if (row.Listed && row.TypeName != "Surface" && row.TypeName != "SurfacePbr")
                listed.push_back(row.TypeName);
        }
    }
    return listed;
}

constexpr int mostTextures = 12;

/// An output that later nodes may read.
struct Source
{
    std::string Node;
    std::string Port;
    std::int32_t Width;
    bool IsPerFragment; ///< depends on something that only runs per fragment
};

class RandomMaterial
{
public:
    RandomMaterial(std::uint32_t seed, RandomTypes types)
        : _random(seed), _allows(types), _types(ListTypes(types))
    {
        _document.File = Compose("random_", seed, ".xml");
    }

    MaterialDocument Make(int nodeCount)
    {
        AddNode("CoreUv"); // so that there is always something to read
        for (int i = 1; i < nodeCount; ++i)
            AddNode(_random.Below(3) == 0 ? "CoreMaths" : _random.Pick(_types));
        AddNode(_random.Below(4) == 0 ? "SurfacePbr" : "Surface");
        return std::move(_document);
    }

private:
    void AddNode(std::string type)
    {
        const bool isTexture = type == "CoreTexture" || type.starts_with("Texture");
        if (isTexture && ++_textures > mostTextures)
            type = "CoreMaths";
        const std::string id = Compose("n", _document.Nodes.size());
        const auto node = TestPlugins().CreateNode(type).Handle();
        DocumentNode record;
        record.Id = id;
        record.Type = type;
        const std::size_t standardProperties = 8;
        for (std::size_t i = standardProperties; i < node->Properties->Properties.size(); ++i) {
            GuiProperty& property = *node->Properties->Properties[i];
            const bool isLeft =
                property.Kind == GuiPropertyKind::Node || property.Kind == GuiPropertyKind::String;
            if (!isLeft && _random.Below(3) > 0)
                Store(property, AnyValue(property), record);
        }
        if (node->HasBinding())
            Store(*node->Name, id + "_name", record);
        node->UpdatePorts({});
        Feed(*node, record);
        _document.Nodes.push_back(std::move(record));
    }

    void Store(GuiProperty& property, const std::string& value, DocumentNode& record)
    {
        if (!SetFromText(property, property.Kind, value))
            throw std::logic_error("a random value does not fit its property");
        record.Properties.push_back({property.Name, property.Kind, value});
    }

    /// A random valid value of a property that is neither a reference nor free text.
    std::string AnyValue(const GuiProperty& property)
    {
        switch (property.Kind) {
        case GuiPropertyKind::Bool:
            return _random.Below(2) ? "true" : "false";
        case GuiPropertyKind::Integer:
            return std::to_string(2 + _random.Below(3));
        case GuiPropertyKind::Float:
            return FormatFloat(static_cast<float>(_random.Below(9)) * 0.25f - 0.5f);
        case GuiPropertyKind::Colour:
            return _random.Below(2) ? "1 0.5 0" : "0.2 0.4 0.8";
        case GuiPropertyKind::Enum:
            return AnyChoice(property.Choices);
        default:
            return "";
        }
    }

    std::string AnyChoice(const std::vector<std::string>& choices)
    {
        // These may divide by zero, or compute a root or power of a negative number.
        static const std::set<std::string> partlyUndefined = {
            "Range",       "Power",       "Fresnel",    "Colour Dodge",
            "Colour Burn", "Vivid Light", "DXT5 Normal"};
        std::string choice = _random.Pick(choices);
        while (_allows == RandomTypes::DefinedEverywhere && partlyUndefined.contains(choice))
            choice = _random.Pick(choices);
        return choice;
    }

    /// The choice that a property has, or nothing if the node lacks it.
    static std::string WordOf(const GuiNode& node, const std::string& property)
    {
        const auto found = node.Properties->Index.find(property);
        return found == node.Properties->Index.end() ? "" : found->second->GetEnum();
    }

    /// Whether the type is defined by a file. Such a type may require edges or run per fragment.
    static bool IsFromFile(const GuiNode& node)
    {
        return TestPlugins().FindSupplier(node.GetType())->OffersNodeFiles();
    }

    /// Whether a function of the node cannot run per vertex, or may depend on one that cannot.
    static bool RunsPerFragment(const GuiNode& node)
    {
        static const std::set<std::string> perFragment = {"Power", "SmoothStep", "Compare", "Ceil",
                                                          "Floor", "Frac",       "Abs"};
        const std::string level = WordOf(node, "Execution Level");
        if (level == "Vertex" || level == "Fragment")
            return level == "Fragment";
        return node.GetType() == "CoreTexture" || node.GetType() == "SurfaceBumpedNormal" ||
               IsFromFile(node) || perFragment.contains(WordOf(node, "Function"));
    }

    void Feed(GuiNode& node, DocumentNode& record)
    {
        const bool perVertex = WordOf(node, "Execution Level") == "Vertex";
        bool isPerFragment = RunsPerFragment(node);
        std::int32_t width = 1;
        for (GuiPort& port : node.InputPorts) {
            const bool mustBeFed = IsFromFile(node) || port.Name == "in_uv" ||
                                   port.Name == "in_facing" ||
                                   (node.OutputPorts.empty() && port.Name == "in_colour");
            if (!mustBeFed && _random.Below(4) == 0)
                continue;
            const bool needsVertex = perVertex || port.Name == "in_offset";
            const Source* source =
                Find(port.CountFixed ? port.ComponentCount : 0, width, needsVertex);
            if (!source)
                source = MakeSource();
            if (!port.CountFixed) {
                width = std::max(width, source->Width);
                port.ComponentCount = source->Width;
                port.CountKnown = true;
            }
            isPerFragment = isPerFragment || source->IsPerFragment;
            _document.Edges.push_back({source->Node, source->Port, record.Id, port.Name});
        }
        node.ResolveComponentCounts();
        for (const GuiPort& port : node.OutputPorts)
            _sources.push_back({record.Id, port.Name, port.ComponentCount, isPerFragment});
    }

    /// @param fixedWidth of the port, or 0
    /// @param width common width of the node's other ports so far
    const Source* Find(std::int32_t fixedWidth, std::int32_t width, bool needsVertex)
    {
        std::vector<const Source*> fitting;
        for (const Source& source : _sources) {
            const bool fits =
                source.Width == 1 ||
                (fixedWidth > 0 ? source.Width == fixedWidth : width == 1 || source.Width == width);
            if (fits && !(needsVertex && source.IsPerFragment))
                fitting.push_back(&source);
        }
        return fitting.empty() ? nullptr : _random.Pick(fitting);
    }

    /// Adds a scalar, which fits everywhere.
    const Source* MakeSource()
    {
        const std::string id = Compose("n", _document.Nodes.size(), "_", _sources.size());
        _document.Nodes.push_back({id, "SurfaceTime", 0, {}});
        _sources.push_back({id, "read", 1, false});
        return &_sources.back();
    }

    Random _random;
    const RandomTypes _allows;
    const std::vector<std::string> _types;
    MaterialDocument _document;
    std::vector<Source> _sources;
    int _textures = 0;
};

} // namespace

MaterialDocument MakeRandomMaterial(std::uint32_t seed, int nodeCount, RandomTypes types)
{
    return RandomMaterial(seed, types).Make(nodeCount);
}
