#include "mox/interchange/MaterialBuilder.h"

#include "mox/Identifier.h"
#include "mox/Text.h"
#include "mox/document/PropertyText.h"
#include "mox/host/HostError.h"

#include <algorithm>
#include <set>
#include <utility>

namespace Mox::Host {

namespace {

using Materials::Compose;
using Materials::GuiPropertyKind;

constexpr std::size_t mostNodes = 50'000;

constexpr const char* splitPorts[] = {"out_x", "out_y", "out_z", "out_w"};
constexpr const char* mergePorts[] = {"in_x", "in_y", "in_z", "in_w"};

DocumentNode Swizzle(int count, bool isMerging, const std::string& id, int line)
{
    DocumentNode node;
    node.Id = id;
    node.Type = "CoreSwizzle";
    node.Line = line;
    MaterialBuilder::Set(node, "Vector Type", "Vector");
    MaterialBuilder::Set(node, "Component Count", Compose(count));
    MaterialBuilder::Set(node, "Reverse", isMerging ? "true" : "false");
    return node;
}

/// Sets the properties of a constant. Unless there are exactly three numbers, all must be equal.
void SetConstant(DocumentNode& node, const std::vector<float>& numbers)
{
    node.Type = "CoreConstant";
    if (numbers.size() == 3) {
        MaterialBuilder::Set(node, "Default Colour", GuiPropertyKind::Colour,
                             Compose(FormatNumber(numbers[0]), " ", FormatNumber(numbers[1]), " ",
                                     FormatNumber(numbers[2])));
        return;
    }
    MaterialBuilder::Set(node, "Constant Type", numbers.size() == 1 ? "Scalar" : "Vector");
    if (numbers.size() > 1)
        MaterialBuilder::Set(node, "Component Count", Compose(numbers.size()));
    MaterialBuilder::Set(node, "Default Scalar", GuiPropertyKind::Float,
                         FormatNumber(numbers.front()));
}

} // namespace

std::string MaterialBuilder::Add(DocumentNode node)
{
    if (_document.Nodes.size() >= mostNodes)
        throw HostError({_document.File, node.Line},
                        Compose("the graph has more than ", mostNodes, " nodes after expansion"));
    node.Id = MakeUnique(_ids, node.Id);
    std::string id = node.Id;
    _document.Nodes.push_back(std::move(node));
    return id;
}

void MaterialBuilder::Connect(const InterchangeValue& tail, const std::string& head,
                              const std::string& port, int line)
{
    _document.Edges.push_back({tail.Node, tail.Port, head, port, line, {}});
}

InterchangeValue MaterialBuilder::Constant(const std::vector<float>& numbers, const std::string& id,
                                           int line)
{
    const auto known = _constants.find(numbers);
    if (known != _constants.end())
        return known->second;
    DocumentNode node;
    node.Id = id;
    node.Line = line;
    const InterchangeValue value = Locked(numbers, std::move(node));
    return _constants[numbers] = value;
}

InterchangeValue MaterialBuilder::Locked(const std::vector<float>& numbers, DocumentNode node)
{
    const int count = static_cast<int>(numbers.size());
    const int line = node.Line;
    if (count == 1 || count == 3 || numbers == std::vector(numbers.size(), numbers.front())) {
        SetConstant(node, numbers);
        Set(node, "Lock", "true");
        return MakePortValue(Add(std::move(node)), "read", count);
    }
    const std::string id = node.Id;
    const std::string merge = Add(Swizzle(count, true, id, line));
    for (int i = 0; i < count; ++i)
        Connect(Constant({numbers[static_cast<std::size_t>(i)]},
                         Compose(id, "_", mergePorts[i] + 3), line),
                merge, mergePorts[i], line);
    return MakePortValue(merge, "out_vec", count);
}

InterchangeValue MaterialBuilder::Parameter(const std::vector<float>& numbers, DocumentNode node,
                                            const std::string& name)
{
    const std::string binding = BindingName(name);
    Set(node, "Name", GuiPropertyKind::String, binding);
    SetConstant(node, numbers);
    if (numbers.size() == 1) {
        // Sliders range from 0 to 1 unless the file specifies otherwise.
        const auto has = [&](std::string_view property) {
            return std::ranges::count(node.Properties, property, &DocumentProperty::Name) > 0;
        };
        if (!has("Min Scalar") && numbers[0] < 0.0f)
            Set(node, "Min Scalar", GuiPropertyKind::Float, FormatNumber(numbers[0]));
        if (!has("Max Scalar") && numbers[0] > 1.0f)
            Set(node, "Max Scalar", GuiPropertyKind::Float, FormatNumber(numbers[0]));
    } else if (numbers.size() != 3 && numbers != std::vector(numbers.size(), numbers.front())) {
        Bind({"float", binding, {{"default", FormatNumbers(numbers)}}, node.Line, {}});
    }
    return MakePortValue(Add(std::move(node)), "read", static_cast<int>(numbers.size()));
}

InterchangeValue MaterialBuilder::Resize(const InterchangeValue& value, int count,
                                         const std::string& id, int line)
{
    const auto wanted = static_cast<std::size_t>(count);
    if (!value.IsConnected()) {
        InterchangeValue resized = value;
        const std::size_t before = value.Numbers.size();
        resized.Numbers.resize(wanted, before == 1 ? value.Numbers.front() : 0.0f);
        if (wanted == 4 && before > 1 && before < 4)
            resized.Numbers[3] = 1.0f;
        resized.Width = count;
        return resized;
    }
    if (value.Count == count)
        return value;
    if (count == 1) {
        const std::string split = Add(Swizzle(value.Count, false, id + "_split", line));
        Connect(value, split, "in_vec", line);
        return MakePortValue(split, splitPorts[0], 1);
    }
    const std::string merge = Add(Swizzle(count, true, id + "_merge", line));
    std::string split;
    if (value.Count > 1) {
        split = Add(Swizzle(value.Count, false, id + "_split", line));
        Connect(value, split, "in_vec", line);
    }
    for (int i = 0; i < count; ++i) {
        if (split.empty())
            Connect(value, merge, mergePorts[i], line);
        else if (i < value.Count)
            Connect(MakePortValue(split, splitPorts[i], 1), merge, mergePorts[i], line);
        else if (i == 3)
            Connect(Constant({1.0f}, id + "_one", line), merge, mergePorts[i], line);
    }
    return MakePortValue(merge, "out_vec", count);
}

std::string MaterialBuilder::BindingName(const std::string& wanted)
{
    return MakeUnique(_bindings, wanted);
}

void MaterialBuilder::Prune(const std::string& type)
{
    for (;;) {
        std::set<std::string> read;
        for (const DocumentEdge& edge : _document.Edges)
            read.insert(edge.Tail);
        std::set<std::string> gone;
        for (const DocumentNode& node : _document.Nodes) {
            if (node.Type == type && !read.contains(node.Id))
                gone.insert(node.Id);
        }
        if (gone.empty())
            return;
        erase_if(_document.Nodes, [&](const DocumentNode& node) { return gone.contains(node.Id); });
        erase_if(_document.Edges,
                 [&](const DocumentEdge& edge) { return gone.contains(edge.Head); });
    }
}

void MaterialBuilder::Set(DocumentNode& node, const std::string& property, GuiPropertyKind kind,
                          const std::string& value)
{
    node.Properties.push_back({property, kind, value, node.Line, {}});
}

void MaterialBuilder::Set(DocumentNode& node, const std::string& property, const std::string& value)
{
    const bool isNumber = IsNumber(value) && IsDigit(value.back());
    GuiPropertyKind kind = GuiPropertyKind::Enum;
    if (value == "true" || value == "false")
        kind = GuiPropertyKind::Bool;
    else if (isNumber)
        kind = ParseInteger(value) ? GuiPropertyKind::Integer : GuiPropertyKind::Float;
    Set(node, property, kind, value);
}

} // namespace Mox::Host
