#pragma once

/// Marks what mox_materials offers to hosts and plug-ins; everything else in it is hidden.
#define MOX_API __attribute__((visibility("default")))

/// Marks the two functions by which a plug-in is entered; everything else in it is hidden.
#define MOX_PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))
