#pragma once

#include "mox/authoring/GuiNode.h"
#include "mox/document/MaterialDocument.h"

#include <string>
#include <vector>

/// A node type in one of its modes.
struct NodeMode
{
    std::string Type;
    std::string Name;                     ///< for messages: the type with its settings
    Mox::Host::MaterialDocument Material; ///< the node with edges at all its ports
};

/// Combines the values of all choices and flags of a node, as settings for ApplySettings.
std::vector<std::string> CombineSettings(const Mox::Materials::GuiNode& node);

/// All listed node types with every combination of choices and flags. Nodes whose ports
/// accept any component count are included with one and with three components.
std::vector<NodeMode> ModesOfEveryNode();

/// A Cg function of a node or of the environment.
struct ModeFunction
{
    std::string Name;              ///< for messages, on one line
    std::vector<std::string> Code; ///< the code that the function calls, in order of definition
    std::string Text;
};

/// The distinct functions of the materials of ModesOfEveryNode: those of the nodes, and those of
/// the environment of the build tree.
std::vector<ModeFunction> FunctionsOfEveryMode();
