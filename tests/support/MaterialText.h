#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/host/PluginSet.h"

#include <string>

/// The plug-ins of the build tree.
const Mox::Host::PluginSet& TestPlugins();

/// A material from lines such as
///     paint CoreTexture; Name=rock; Alpha=true
///     uv.read -> paint.in_uv
/// Values stand as in documents; their kinds are those of a new node's properties.
Mox::Host::MaterialDocument MaterialFromText(const std::string& text);
