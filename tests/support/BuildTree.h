#pragma once

#include "mox/host/PluginSet.h"
#include "mox/program/Environment.h"

/// The plug-ins of the build tree.
const Mox::Host::PluginSet& TestPlugins();

/// The environment of the build tree.
const Mox::Host::Environment& TestEnvironment();
