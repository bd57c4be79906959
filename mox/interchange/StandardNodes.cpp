#include "mox/interchange/StandardNodes.h"

#include "mox/Text.h"
#include "mox/document/PropertyText.h"
#include "mox/interchange/StandardNodesText.h"
#include "mox/xml/XmlTree.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace Mox::Host {

namespace {

using Materials::Compose;

std::vector<std::string> SplitWords(const std::string& text, char separator)
{
    std::vector<std::string> parts;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find(separator, begin), text.size());
        const std::size_t first = std::min(text.find_first_not_of(' ', begin), end);
        if (first < end)
            parts.push_back(text.substr(first, end - first));
        begin = end + 1;
    }
    return parts;
}

NamedTexts ParsePairs(const std::string& text, char separator)
{
    NamedTexts pairs;
    for (const std::string& part : SplitWords(text, separator)) {
        const std::size_t sign = std::min(part.find('='), part.size());
        pairs.emplace_back(part.substr(0, sign), part.substr(std::min(sign + 1, part.size())));
    }
    return pairs;
}

InterchangeCondition ParseCondition(const std::string& word)
{
    using Test = InterchangeCondition::Test;
    if (word.starts_with("@type="))
        return {Test::NodeType, {}, word.substr(6)};
    if (word.starts_with("@#"))
        return {Test::NodeWidth, {}, word.substr(2)};
    const std::size_t sign = word.find_first_of("#=~@");
    if (sign == word.npos)
        throw HostError({}, Compose("invalid condition: ", word));
    const Test test = word[sign] == '#'   ? Test::Width
                      : word[sign] == '~' ? Test::OneOf
                      : word[sign] == '@' ? Test::InputType
                                          : Test::Equals;
    return {test, word.substr(0, sign), word.substr(sign + 1)};
}

std::vector<InterchangeCondition> ParseConditions(const XmlTree& element, std::string_view name)
{
    std::vector<InterchangeCondition> conditions;
    for (const std::string& word : SplitWords(element.Get(name), ' '))
        conditions.push_back(ParseCondition(word));
    return conditions;
}

std::vector<InterchangePort> ParsePorts(const XmlTree& element, std::string_view name)
{
    std::vector<InterchangePort> ports;
    for (const auto& [input, text] : ParsePairs(element.Get(name), ' ')) {
        const std::size_t colon = std::min(text.find(':'), text.size());
        const auto count = ParseInteger(text.substr(std::min(colon + 1, text.size())));
        ports.push_back({input, text.substr(0, colon), count.value_or(0)});
    }
    return ports;
}

Formula ParseOptional(const XmlTree& element, std::string_view name)
{
    const std::string text = element.Get(name);
    return text.empty() ? Formula() : ParseFormula(text);
}

Carry ParseCarry(const XmlTree& element)
{
    if (element.Name == "direct")
        return Carry::Direct;
    if (element.Name == "composed")
        return Carry::Composed;
    if (element.Name == "approximated")
        return Carry::Approximated;
    if (element.Name == "none")
        return Carry::None;
    throw HostError(element.Where, Compose("unknown element ", element.Name));
}

InterchangeAlternative ReadAlternative(const XmlTree& element)
{
    InterchangeAlternative alternative;
    alternative.Kind = ParseCarry(element);
    alternative.When = ParseConditions(element, "when");
    alternative.Type = element.Get("type");
    alternative.Code = element.Get("code");
    alternative.Settings = ParsePairs(element.Get("set"), ';');
    alternative.Inputs = ParsePorts(element, "ports");
    alternative.Outputs = ParsePorts(element, "out");
    alternative.Is = ParseOptional(element, "is");
    alternative.After = ParseOptional(element, "after");
    alternative.Text = element.Get("is");
    alternative.Note = element.Get("note");
    return alternative;
}

InterchangeNode ReadNode(const XmlTree& element)
{
    InterchangeNode node;
    node.IsHelper = element.Name == "helper";
    node.Inputs = ParsePairs(element.Get("inputs"), ' ');
    node.Neutral = ParsePairs(element.Get("neutral"), ' ');
    node.IsVector = element.Get("vector") == "true";
    node.Kinds = element.Get("kinds");
    node.FloatInputs = element.Get("float");
    node.SingleInputs = element.Get("single");
    node.IntegerInputs = element.Get("integer");
    node.FixedInputs = SplitWords(element.Get("fixed"), ' ');
    node.Gives = element.Get("gives");
    for (const XmlTree& child : element.Children)
        node.Alternatives.push_back(ReadAlternative(child));
    return node;
}

InterchangeSurface ReadSurface(const XmlTree& element)
{
    InterchangeSurface surface;
    surface.Name = element.Get("name");
    surface.Type = element.Get("type");
    surface.Inputs = ParsePairs(element.Get("inputs"), ' ');
    surface.FixedInputs = SplitWords(element.Get("fixed"), ' ');
    for (const XmlTree& child : element.Children) {
        if (child.Name == "port") {
            surface.Ports.push_back({child.Get("name"), ParseOptional(child, "is"),
                                     ParseConditions(child, "unless"), child.Get("unfed")});
        } else if (child.Name == "state") {
            surface.States.push_back({ParseConditions(child, "when"),
                                      ParseConditions(child, "unless"),
                                      ParsePairs(child.Get("set"), ';')});
        } else {
            const auto [input, neutral] = ParsePairs(child.Get("inputs"), ' ').front();
            surface.IgnoredInputs.push_back(
                {input, neutral, child.Get("note"), child.Name == "approximated"});
        }
    }
    return surface;
}

void AddNodes(StandardNodes& table, const XmlTree& element)
{
    InterchangeNode node = ReadNode(element);
    for (const std::string& name : SplitWords(element.Get("name"), ' ')) {
        node.Name = name;
        if (!table.NodeIndex.emplace(name, table.Nodes.size()).second)
            throw HostError(element.Where, Compose("duplicate node ", name));
        table.Nodes.push_back(node);
    }
}

StandardNodes ReadTable()
{
    StandardNodes table;
    for (const XmlTree& element : ParseXmlTree("standard_nodes.xml", standardNodesText).Children) {
        if (element.Name == "type") {
            for (const auto& [port, property] : ParsePairs(element.Get("ports"), ';'))
                table.PortProperties[{element.Get("name"), port}] = property;
        } else if (element.Name == "surface") {
            table.Surfaces.push_back(ReadSurface(element));
        } else if (element.Name == "back") {
            table.Back.push_back({element.Get("type"), ParsePairs(element.Get("set"), ';'),
                                  ParsePairs(element.Get("inputs"), ' '),
                                  ParseOptional(element, "is"), element.Get("note")});
        } else {
            AddNodes(table, element);
        }
    }
    return table;
}

std::string FormatPairs(const NamedTexts& pairs)
{
    std::string text;
    for (const auto& [name, value] : pairs)
        text += Compose(text.empty() ? "" : ", ", name, " ", value);
    return text;
}

std::string FormatAlternative(const InterchangeAlternative& alternative)
{
    std::string text;
    if (alternative.Kind == Carry::None)
        return alternative.Note;
    if (!alternative.Type.empty()) {
        text = Compose("`", alternative.Type, "`");
        if (!alternative.Settings.empty())
            text += Compose(" ", FormatPairs(alternative.Settings));
    }
    if (!alternative.Text.empty())
        text += Compose(text.empty() ? "" : " at ", "`", alternative.Text, "`");
    if (!alternative.Note.empty())
        text += Compose(text.empty() ? "" : "; ", alternative.Note);
    return text.empty() ? "by its type" : text;
}

} // namespace

const InterchangeNode* StandardNodes::Find(std::string_view name) const
{
    const auto entry = NodeIndex.find(name);
    return entry == NodeIndex.end() ? nullptr : &Nodes[entry->second];
}

const InterchangeSurface* StandardNodes::FindSurface(std::string_view name) const
{
    const auto surface = std::ranges::find(Surfaces, name, &InterchangeSurface::Name);
    return surface == Surfaces.end() ? nullptr : &*surface;
}

bool StandardNodes::HasFixedInput(std::string_view category, const std::string& input) const
{
    const auto has = [&](const auto* entry) {
        return entry && std::find(entry->FixedInputs.begin(), entry->FixedInputs.end(), input) !=
                            entry->FixedInputs.end();
    };
    return has(Find(category)) || has(FindSurface(category));
}

const std::string* StandardNodes::FindProperty(const std::string& type,
                                               const std::string& port) const
{
    const auto entry = PortProperties.find({type, port});
    return entry == PortProperties.end() ? nullptr : &entry->second;
}

const StandardNodes& GetStandardNodes()
{
    static const StandardNodes table = ReadTable();
    return table;
}

std::string FormatStandardNodes()
{
    constexpr const char* kinds[] = {"direct", "composed", "approximated", "none"};
    std::array<int, 4> counts = {};
    std::string text = "| MaterialX | carried over | becomes |\n|---|---|---|\n";
    for (const InterchangeNode& node : GetStandardNodes().Nodes) {
        if (node.IsHelper)
            continue;
        const InterchangeAlternative& first = node.Alternatives.front();
        ++counts.at(static_cast<std::size_t>(first.Kind));
        text += Compose("| `", node.Name, "` | ", kinds[static_cast<std::size_t>(first.Kind)],
                        " | ", FormatAlternative(first));
        if (node.Alternatives.size() > 1)
            text += Compose("; otherwise ", FormatAlternative(node.Alternatives.back()));
        text += " |\n";
    }
    return Compose("Counting the first entry of each node, ", counts[0], " nodes are direct, ",
                   counts[1], " composed and ", counts[2], " approximated; ", counts[3],
                   " have no counterpart.\n\n", text);
}

bool IsPlainColourSpace(std::string_view space)
{
    constexpr std::array<std::string_view, 5> words = {"", "lin_rec709", "linear", "none", "raw"};
    return std::find(words.begin(), words.end(), space) != words.end();
}

const InterchangeNode* FindColourConversion(std::string_view space)
{
    constexpr std::array<std::pair<std::string_view, std::string_view>, 4> formerNames = {{
        {"gamma18", "g18_rec709"},
        {"gamma22", "g22_rec709"},
        {"gamma24", "rec709_display"},
        {"lin_ap1", "acescg"},
    }};
    for (const auto& [former, name] : formerNames) {
        if (space == former)
            space = name;
    }
    return GetStandardNodes().Find(Compose(std::string(space), "_to_lin_rec709"));
}

bool IsGeometryName(std::string_view text)
{
    if (text.empty() || std::isupper(static_cast<unsigned char>(text.front())) == 0)
        return false;
    const InterchangeNode* node = GetStandardNodes().Find(text);
    return node && node->IsHelper;
}

} // namespace Mox::Host
