#pragma once

#include "mox/document/MaterialDocument.h"

#include <type_traits>
#include <variant>
#include <vector>

namespace Mox::Host {

/// What the description of a material becomes.
struct DescriptionChange
{
    std::vector<DocumentValue> Values;
};

/// What the render state of a material becomes.
struct RenderStateChange
{
    std::vector<DocumentValue> Values;
};

/// The nodes, edges, bindings or annotations of a document.
template <class Record, class Document>
auto& RecordsOf(Document& document)
{
    if constexpr (std::is_same_v<Record, DocumentNode>)
        return document.Nodes;
    else if constexpr (std::is_same_v<Record, DocumentEdge>)
        return document.Edges;
    else if constexpr (std::is_same_v<Record, DocumentBinding>)
        return document.Bindings;
    else
        return document.Annotations;
}

using DocumentStep = std::variant<RecordChange<DocumentNode>, RecordChange<DocumentEdge>,
                                  RecordChange<DocumentBinding>, RecordChange<DocumentAnnotation>,
                                  DescriptionChange, RenderStateChange>;

/// Changes of the records of a document, in the order in which they are made. It fits one state of
/// one document, since it names records by number. An edit gives such a change as its inverse.
struct DocumentChange
{
    std::vector<DocumentStep> Steps;

    bool IsEmpty() const { return Steps.empty(); }
};

} // namespace Mox::Host
