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

/// A named value of the material as a whole, as text.
struct DocumentValue
{
    std::string Name;
    std::string Value;
};

/// The host's own values on one binding, such as the file of a texture. They win over what the node
/// says.
struct DocumentBinding
{
    std::string Stream;                ///< word of the stream type
    std::string Tag;                   ///< name of the binding
    std::vector<DocumentValue> Values; ///< attributes of the binding's XML form
    int Line = 0;
};

/// A material as it stands in a file, without any knowledge of node types.
struct MaterialDocument
{
    std::string File;                       ///< as it is named in messages
    std::vector<DocumentValue> Description; ///< what the material is, for people and catalogues
    std::vector<DocumentValue> RenderState; ///< blending, tests and culling
    std::vector<DocumentNode> Nodes;
    std::vector<DocumentEdge> Edges;
    std::vector<DocumentBinding> Bindings;
};

/// Reads a material document. It opens no other file and no network connection, and refuses
/// document type declarations, and with them entities.
/// @throws HostError if the file cannot be read, is not well-formed or is no material document; the
///         place has the line
MaterialDocument ReadMaterialDocument(const std::filesystem::path& file);

} // namespace Mox::Host
