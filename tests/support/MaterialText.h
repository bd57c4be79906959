#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/graph/GraphChange.h"

#include <string>

/// Makes a material from lines such as
///     paint CoreTexture; Name=rock; Alpha=true
///     lost StudioWobble@2; Twin:node=paint
///     uv.read -> paint.in_uv
///     ; Level:enum=High
///     # a comment
///
/// Values are written as in documents; their kinds are those of a new node's properties unless they
/// are given. A number after the type is the version, by default 0. A line that starts with a
/// semicolon contains further properties of the node above.
Mox::Host::MaterialDocument MaterialFromText(const std::string& text);

/// Steps from such lines: a node at the end, an edge, and "paint; Alpha:bool=true" for a property.
Mox::Host::GraphStep Add(const std::string& node);
Mox::Host::GraphStep Edge(const std::string& edge);
Mox::Host::GraphStep Set(const std::string& setting);
