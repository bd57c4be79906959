#pragma once

/// Marks symbols that mox_materials exports to hosts and plug-ins; all others are hidden.
#define MOX_API __attribute__((visibility("default")))

/// Marks the two entry points of a plug-in; all other symbols are hidden.
#define MOX_PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))
