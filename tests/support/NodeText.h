#pragma once

#include "mox/authoring/GuiNode.h"
#include "mox/shader/ShaderGraph.h"

#include <cstdint>
#include <map>
#include <string>

/// Sets properties from a string such as "Colour Type=Normal; Alpha=true", with values as in
/// documents. Calling UpdatePorts is left to the caller.
void ApplySettings(Mox::Materials::GuiNode& node, const std::string& settings);

/// Resolves a node as if the given ports (separated by spaces, "*" for all) had edges: inputs
/// without a fixed count get the width, and outputs feed inputs of the precision.
void ResolveAlone(Mox::Materials::GuiNode& node, const std::string& connected, std::int32_t width,
                  ComponentType precision);

/// Describes ports with label and fixed values, and the node's hidden or locked properties.
std::string DescribeState(const Mox::Materials::GuiNode& node);

/// Describes the shader graph that the node alone generates and the ends of its edges in it; or its
/// failure, which must leave the graph empty.
std::string DescribeShader(Mox::Materials::GuiNode& node);

/// The same in a graph that contains what the node requests.
std::string DescribeShader(Mox::Materials::GuiNode& node, ShaderGraph& graph);

/// Formats bindings as a document.
std::string FormatBindings(const Mox::Materials::Material& material);

/// The bindings that the node creates, as a document, or "no binding".
std::string DescribeBindings(Mox::Materials::GuiNode& node);

/// The values that nodes of the Surface plug-in request, with their types.
std::map<std::string, ShaderType> SurfaceValues();
