#include "mox/layout/NodeShape.h"

#include "mox/host/HostError.h"

#include <algorithm>

namespace Mox::Host {

namespace {

constexpr float pixelsPerPoint = 96.0f / 72.0f;
constexpr float iconSide = 32;
constexpr float headerHeight = 44;
constexpr float rowHeight = 23;
constexpr float padding = 8;
constexpr float widthOfCharacter = 0.65f; ///< average, relative to the text size; generous for most
                                          ///< letters
constexpr float roomOfPin = 16;           ///< including the distance to the label
constexpr std::size_t longestType = 6;    ///< characters, as in "float4"

/// The number of characters in a UTF-8 string, up to the limit that a diagram shows.
std::size_t ShownLength(const std::string& text)
{
    const auto isFirstByte = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80; };
    const auto length = std::count_if(text.begin(), text.end(), isFirstByte);
    return std::min(static_cast<std::size_t>(length), maxNameLength);
}

float WidthOf(std::size_t characters, float textSize)
{
    return static_cast<float>(characters) * textSize * widthOfCharacter * pixelsPerPoint;
}

float WidthOfPorts(const std::vector<Materials::GuiPort>& ports)
{
    float width = 0;
    for (const Materials::GuiPort& port : ports) {
        const std::string& label = port.Label.empty() ? port.Name : port.Label;
        width = std::max(width, WidthOf(ShownLength(label), nodePortSize) + roomOfPin +
                                    WidthOf(longestType, nodeSmallSize));
    }
    return width;
}

} // namespace

std::string TitleOf(const GraphNode& node)
{
    try {
        return node.Gui.GetTitle(node.Where);
    } catch (const HostError&) {
        return node.Id;
    }
}

float NodeShape::PortOffset(std::int32_t index)
{
    return headerHeight + (static_cast<float>(std::max(index, 0)) + 0.5f) * rowHeight;
}

NodeShape ShapeOf(const GraphNode& node)
{
    const auto& inputs = node.Gui.InputPorts();
    const auto& outputs = node.Gui.OutputPorts();
    const std::size_t idLength =
        ShownLength(node.Id) + (node.IsPlaceholder ? ShownLength(node.Gui.Type()) : 0);
    const float header = iconSide + std::max(WidthOf(ShownLength(TitleOf(node)), nodeTitleSize),
                                             WidthOf(idLength, nodeSmallSize));
    const auto rows = static_cast<float>(std::max(inputs.size(), outputs.size()));
    return {std::max(header, WidthOfPorts(inputs) + WidthOfPorts(outputs)) + 2 * padding,
            headerHeight + rows * rowHeight + padding};
}

} // namespace Mox::Host
