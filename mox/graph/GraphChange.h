#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/host/HostError.h"

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

namespace Mox::Host {

/// Changes of a material as a user makes them, as plain values. They name nodes by id and hold
/// values as documents do, so that they can be printed, stored and applied to any material in which
/// they make sense.

/// A node comes.
struct AddNode
{
    DocumentNode Node;  ///< as a document has it
    std::string Before; ///< node that it stands ahead of; empty: at the end
};

/// A node goes, and with it its edges; references to it are emptied.
struct RemoveNode
{
    std::string Id;
};

/// A node gets another id; references and edges follow.
struct RenameNode
{
    std::string Id;
    std::string NewId;
};

/// An edge comes.
struct AddEdge
{
    DocumentEdge Edge;
    std::string BeforeHead;     ///< the edge that it stands ahead of feeds this node; empty: last
    std::string BeforeHeadPort; ///< and this input
};

/// An edge goes.
struct RemoveEdge
{
    DocumentEdge Edge;
};

/// An edge gets the points that it is drawn through.
struct SetPoints
{
    DocumentEdge Edge; ///< with the points
};

struct PropertySetting
{
    std::string Node;
    DocumentProperty Property;
};

/// Properties get values, all of them before any node rebuilds its ports.
struct SetProperties
{
    std::vector<PropertySetting> Settings;
};

/// The description or the render state of the material becomes another one.
struct SetDescription
{
    std::vector<DocumentValue> Values;
};

struct SetRenderState
{
    std::vector<DocumentValue> Values;
};

/// The values of a binding are replaced; a binding that is not there comes at the end.
struct SetBinding
{
    DocumentBinding Binding;
};

/// A binding goes.
struct RemoveBinding
{
    std::string Stream;
    std::string Tag;
};

/// An annotation is added at the end.
struct AddAnnotation
{
    DocumentAnnotation Annotation;
};

/// The annotation with the same id becomes another one; it keeps its comments.
struct SetAnnotation
{
    DocumentAnnotation Annotation;
};

/// An annotation is removed, and nothing of what is in it.
struct RemoveAnnotation
{
    std::string Id;
};

using GraphStep = std::variant<AddNode, RemoveNode, RenameNode, AddEdge, RemoveEdge, SetPoints,
                               SetProperties, SetDescription, SetRenderState, SetBinding,
                               RemoveBinding, AddAnnotation, SetAnnotation, RemoveAnnotation>;

/// Steps that are done together or not at all.
struct GraphChange
{
    std::vector<GraphStep> Steps;

    /// One line for each step, and below it one for each value that the step brings.
    std::string Format() const;

    /// The first step, and how many values or steps follow it, in a line for people.
    std::string Summary() const;
};

/// A change is refused because of one of its steps.
class RefusedStep : public HostError
{
public:
    RefusedStep(const HostError& cause, std::size_t step) : HostError(cause), Step(step) {}

    std::size_t Step; ///< position in the change
};

} // namespace Mox::Host
