#pragma once

#include "mox/authoring/GuiProperty.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace Mox::Host {

/// One stored property, as text; the value's form hangs on the kind.
struct DocumentProperty
{
    std::string Name;
    Materials::GuiPropertyKind Kind = Materials::GuiPropertyKind::Bool;
    std::string Value;
    int Line = 0;
};

struct DocumentNode
{
    std::string Id; ///< unique in the document
    std::string Type;
    std::int32_t Version = 0; ///< of the stored set of properties
    std::vector<DocumentProperty> Properties;
    int Line = 0;
};

/// Ends are node ids and Cg names of ports.
struct DocumentEdge
{
    std::string Tail;
    std::string TailPort;
    std::string Head;
    std::string HeadPort;
    int Line = 0;
};

/// A material as it stands in a file, without any knowledge of node types.
struct MaterialDocument
{
    std::string File; ///< as it is named in messages
    std::vector<DocumentNode> Nodes;
    std::vector<DocumentEdge> Edges;
};

/// Reads a material document. It opens no other file and no network connection, and refuses
/// document type declarations, and with them entities.
/// @throws HostError if the file cannot be read, is not well-formed or is no material document; the
///         place has the line
MaterialDocument ReadMaterialDocument(const std::filesystem::path& file);

} // namespace Mox::Host
