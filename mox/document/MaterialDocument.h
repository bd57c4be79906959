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

/// XML comments, without their brackets.
using DocumentComments = std::vector<std::string>;

/// One stored property, as text; the value's form hangs on the kind.
struct DocumentProperty
{
    std::string Name;
    Materials::GuiPropertyKind Kind = Materials::GuiPropertyKind::Bool;
    std::string Value;
    int Line = 0;
    DocumentComments Comments = {}; ///< in front of the property

    bool operator==(const DocumentProperty& other) const = default;
};

struct DocumentNode
{
    std::string Id; ///< unique in the document
    std::string Type;
    std::int32_t Version = 0; ///< of the stored set of properties
    std::vector<DocumentProperty> Properties;
    int Line = 0;
    DocumentComments Comments = {};     ///< in front of the node
    DocumentComments LastComments = {}; ///< behind its last property

    bool operator==(const DocumentNode& other) const = default;
};

/// A point of the plane that the nodes are placed on, in pixels as their positions are.
struct DocumentPoint
{
    std::int32_t X = 0;
    std::int32_t Y = 0; ///< grows downwards

    bool operator==(const DocumentPoint& other) const = default;
};

/// Ends are node ids and Cg names of ports.
struct DocumentEdge
{
    std::string Tail;
    std::string TailPort;
    std::string Head;
    std::string HeadPort;
    int Line = 0;
    DocumentComments Comments = {};         ///< in front of the edge
    std::vector<DocumentPoint> Points = {}; ///< that editors draw it through, from tail to head
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
    DocumentComments Comments = {}; ///< in front of the binding
};

enum class AnnotationKind
{
    Frame, ///< a titled rectangle behind nodes
    Note   ///< text in a rectangle
};

/// What a document says to the people who edit it. It has no influence on programs.
///
/// Which nodes belong to a frame is not stored: those whose upper left corner is in it do.
struct DocumentAnnotation
{
    AnnotationKind Kind = AnnotationKind::Frame;
    std::string Id;       ///< unique among the annotations of the document
    std::string Text;     ///< title of the frame, or text of the note
    DocumentPoint Corner; ///< the upper left one
    std::int32_t Width = 0;
    std::int32_t Height = 0;
    std::string Colour; ///< such as "#4080c0"; empty: the editor's choice
    int Line = 0;
    DocumentComments Comments = {}; ///< in front of the annotation

    bool operator==(const DocumentAnnotation& other) const = default;
};

/// Comments of one of the parts of a document.
struct SectionComments
{
    DocumentComments Before; ///< in front of the part
    DocumentComments Last;   ///< behind all that it holds
};

/// Comments that are with no node, edge, binding or annotation.
struct MaterialComments
{
    SectionComments Document;
    DocumentComments Description; ///< in front of it
    DocumentComments RenderState; ///< in front of it
    SectionComments Nodes;
    SectionComments Edges;
    SectionComments Bindings;
    SectionComments Annotations;
};

/// A material as it stands in a file, without any knowledge of node types. It is the whole state of
/// a material: graphs are built from it, and edits change it.
struct MaterialDocument
{
    std::string File;                       ///< as it is named in messages
    std::vector<DocumentValue> Description; ///< what the material is, for people and catalogues
    std::vector<DocumentValue> RenderState; ///< blending, tests and culling
    OrderedSlots<DocumentNode> Nodes;
    OrderedSlots<DocumentEdge> Edges;
    OrderedSlots<DocumentBinding> Bindings;
    OrderedSlots<DocumentAnnotation> Annotations; ///< the first one is the hindmost
    MaterialComments Comments;
};

/// Makes a document of a text.
/// @param file as it is named in messages
/// @param problems takes what is wrong with the text
using DocumentParser = std::function<MaterialDocument(
    const std::string& file, std::string_view text, ProblemList& problems)>;

/// Reads a text and makes a document of it.
/// @param read gives the text; if it throws HostError, that is a problem of the rule "unreadable",
///        and the document is empty
MaterialDocument ReadDocumentText(const std::string& file, const std::function<std::string()>& read,
                                  const DocumentParser& parse, ProblemList& problems);

/// Reads a material document. It opens no other file and no network connection, and refuses
/// document type declarations, and with them entities.
/// @throws HostError for the first error: the file cannot be read, is not well-formed or does not
///         follow the rules of material documents
MaterialDocument ReadMaterialDocument(const std::filesystem::path& file);

/// The same for callers that want to know all that is wrong.
/// @param problems takes what is wrong with the document, or why the file cannot be read
/// @returns what could be understood; only without new errors in problems is that the whole
/// document
MaterialDocument ReadMaterialDocument(const std::filesystem::path& file, ProblemList& problems);

/// The same for a document in memory.
/// @param file the name that messages are to give the document
MaterialDocument ParseMaterialDocument(const std::string& file, std::string_view text,
                                       ProblemList& problems);

/// The canonical form of a document: the parts and attributes in the order of the rules, nodes,
/// edges, bindings and annotations in their own order, one element on a line. What is read from it
/// has this form again, to the byte, and a changed value changes one line. The version is the
/// lowest that has all that the document holds: 2 with annotations or points of edges, otherwise 1.
/// @throws HostError if a text has a character that XML cannot hold, or if the description, the
///         render state or a binding has a value that the rules do not know
std::string FormatMaterialDocument(const MaterialDocument& document);

/// A node as it stands in that form.
/// @throws HostError if a text has a character that XML cannot hold
std::string FormatNode(const DocumentNode& node);

} // namespace Mox::Host
