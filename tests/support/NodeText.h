#pragma once

#include "mox/authoring/GuiNode.h"
#include "mox/shader/ShaderGraph.h"

#include <cstdint>
#include <string>

/// Sets properties from a text such as "Colour Type=Normal; Alpha=true"; values stand as in
/// documents. UpdatePorts is left to the caller.
void ApplySettings(Mox::Materials::GuiNode& node, const std::string& settings);

/// Resolves a node as if the ports of these names (blanks between them, "*" for all) had edges:
/// free inputs get the width, and outputs feed inputs of the precision.
void ResolveAlone(Mox::Materials::GuiNode& node, const std::string& connected, std::int32_t width,
                  ComponentType precision);

/// Ports with label and fixed values, and which of the node's own properties are hidden or locked.
std::string DescribeState(const Mox::Materials::GuiNode& node);

/// The shader graph that the node alone generates, and the ends that its edges have found in it; or
/// its failure, which must leave the graph empty.
std::string DescribeShader(Mox::Materials::GuiNode& node);

/// The same in a graph that has what the node asks for.
std::string DescribeShader(Mox::Materials::GuiNode& node, ShaderGraph& graph);

/// Bindings as a document.
std::string FormatBindings(const Mox::Materials::Material& material);

/// The bindings that the node creates, as a document, or "no binding".
std::string DescribeBindings(Mox::Materials::GuiNode& node);
