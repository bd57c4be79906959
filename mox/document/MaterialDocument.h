#pragma once

#include "mox/authoring/GuiProperty.h"
#include "mox/document/OrderedSlots.h"
#include "mox/host/Problem.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace Mox::Host {

/// XML comments without their delimiters.
using DocumentComments = std::vector<std::string>;

/// A stored property as a string; the format of the value depends on the kind.
struct DocumentProperty
{
    std::string Name;
    Materials::GuiPropertyKind Kind = Materials::GuiPropertyKind::Bool;
    std::string Value;
    int Line = 0;
    DocumentComments Comments = {}; ///< before the property

    bool operator==(const DocumentProperty& other) const = default;
};

struct DocumentNode
{
    std::string Id; ///< unique in the document
    std::string Type;
    std::int32_t Version = 0; ///< of the stored properties
    std::vector<DocumentProperty> Properties;
    int Line = 0;
    DocumentComments Comments = {};     ///< before the node
    DocumentComments LastComments = {}; ///< after its last property

    bool operator==(const DocumentNode& other) const = default;
};

/// A point in the plane of the nodes, in pixels like their positions.
struct DocumentPoint
{
    std::int32_t X = 0;
    std::int32_t Y = 0; ///< increases downwards

    bool operator==(const DocumentPoint& other) const = default;
};

/// The ends of an edge are node ids and Cg names of ports.
struct DocumentEdge
{
    std::string Tail;
    std::string TailPort;
    std::string Head;
    std::string HeadPort;
    int Line = 0;
    DocumentComments Comments = {};         ///< before the edge
    std::vector<DocumentPoint> Points = {}; ///< path of the edge in editors, from tail to head
};

/// A named value of the whole material, as a string.
struct DocumentValue
{
    std::string Name;
    std::string Value;
};

/// Values that the host sets on a binding, such as the file of a texture. They override the values
/// from the node.
struct DocumentBinding
{
    std::string Stream;                ///< keyword of the stream type
    std::string Tag;                   ///< name of the binding
    std::vector<DocumentValue> Values; ///< attributes of the binding in XML
    int Line = 0;
    DocumentComments Comments = {}; ///< before the binding
};

enum class AnnotationKind
{
    Frame, ///< a titled rectangle that is drawn behind nodes
    Note   ///< a rectangle with text
};

/// A note or frame for the users who edit the document. It does not affect programs.
///
/// A document does not store the nodes of a frame: a frame contains the nodes whose top left corner
/// is inside it.
struct DocumentAnnotation
{
    AnnotationKind Kind = AnnotationKind::Frame;
    std::string Id;       ///< unique among the annotations of the document
    std::string Text;     ///< title of the frame, or content of the note
    DocumentPoint Corner; ///< top left corner
    std::int32_t Width = 0;
    std::int32_t Height = 0;
    std::string Colour; ///< such as "#4080c0"; if empty, the editor chooses
    int Line = 0;
    DocumentComments Comments = {}; ///< before the annotation

    bool operator==(const DocumentAnnotation& other) const = default;
};

/// Comments of one section of a document.
struct SectionComments
{
    DocumentComments Before; ///< before the section
    DocumentComments Last;   ///< after the last element of the section
};

/// Comments that do not belong to a node, edge, binding or annotation.
struct MaterialComments
{
    SectionComments Document;
    DocumentComments Description; ///< before the description
    DocumentComments RenderState; ///< before the render state
    SectionComments Nodes;
    SectionComments Edges;
    SectionComments Bindings;
    SectionComments Annotations;
};

/// A material as stored in a file, without any knowledge of node types. It is the complete state of
/// a material: graphs are built from it, and edits modify it.
struct MaterialDocument
{
    std::string File;                            ///< file name for messages
    std::vector<std::filesystem::path> Includes; ///< files that it included when it was read
    std::vector<DocumentValue> Description;      ///< description for users and catalogues
    std::vector<DocumentValue> RenderState;      ///< blending, tests and culling
    OrderedSlots<DocumentNode> Nodes;
    OrderedSlots<DocumentEdge> Edges;
    OrderedSlots<DocumentBinding> Bindings;
    OrderedSlots<DocumentAnnotation> Annotations; ///< in drawing order: the first is at the back
    MaterialComments Comments;
};

/// Parses the source of a document.
/// @param file the file name for messages
/// @param problems receives the errors in the source
using DocumentParser = std::function<MaterialDocument(
    const std::string& file, std::string_view text, ProblemList& problems)>;

/// Reads the source of a document and parses it.
/// @param read returns the source; if it throws HostError, this is reported under the rule
///        "unreadable", and the document is empty
MaterialDocument ReadDocumentText(const std::string& file, const std::function<std::string()>& read,
                                  const DocumentParser& parse, ProblemList& problems);

/// Reads a material document. It opens no other file and no network connection, and rejects
/// document type declarations and therefore entities.
/// @throws HostError for the first error: the file cannot be read, is not well-formed or violates
///         the rules of material documents
MaterialDocument ReadMaterialDocument(const std::filesystem::path& file);

/// Does the same for callers that need all errors.
/// @param problems receives the errors in the document, or the reason why the file cannot be read
/// @returns the parts that could be read; the document is complete only if problems contains no new
///          errors
MaterialDocument ReadMaterialDocument(const std::filesystem::path& file, ProblemList& problems);

/// Do the same for a document in memory.
/// @param file the file name for messages
MaterialDocument ParseMaterialDocument(const std::string& file, std::string_view text);
MaterialDocument ParseMaterialDocument(const std::string& file, std::string_view text,
                                       ProblemList& problems);

/// Formats a document in canonical form: sections and attributes are in the order of the rules,
/// nodes, edges, bindings and annotations in their own order, with one element per line. Reading
/// and formatting the result reproduces it byte for byte, and changing one value changes one line.
/// The version is the lowest that supports the content of the document: 2 with annotations or edge
/// points, otherwise 1.
/// @throws HostError if a string contains a character that XML does not allow, or if the
///         description, the render state or a binding has a value that the rules do not define
std::string FormatMaterialDocument(const MaterialDocument& document);

/// Formats a node in canonical form.
/// @throws HostError if a string contains a character that XML does not allow
std::string FormatNode(const DocumentNode& node);

} // namespace Mox::Host
