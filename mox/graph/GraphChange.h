#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/host/HostError.h"

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

namespace Mox::Host {

/// Changes that a user makes to a material, as plain values. They refer to nodes by id and store
/// values as documents do, so they can be printed, stored and applied to any material in which they
/// are valid.

/// Adds a node.
struct AddNode
{
    DocumentNode Node;  ///< as stored in a document
    std::string Before; ///< node to insert it before; if empty, appended
};

/// Removes a node with its edges; references to it are cleared.
struct RemoveNode
{
    std::string Id;
};

/// Changes the id of a node; references and edges are updated.
struct RenameNode
{
    std::string Id;
    std::string NewId;
};

/// Adds an edge.
struct AddEdge
{
    DocumentEdge Edge;
    std::string BeforeHead;     ///< head of the edge to insert it before; if empty, appended
    std::string BeforeHeadPort; ///< head port of that edge
};

/// Removes an edge.
struct RemoveEdge
{
    DocumentEdge Edge;
};

/// Sets the points that an edge is drawn through.
struct SetPoints
{
    DocumentEdge Edge; ///< including the points
};

struct PropertySetting
{
    std::string Node;
    DocumentProperty Property;
};

/// Sets properties. All values are set before any node rebuilds its ports.
struct SetProperties
{
    std::vector<PropertySetting> Settings;
};

/// Replaces the description or the render state of the material.
struct SetDescription
{
    std::vector<DocumentValue> Values;
};

struct SetRenderState
{
    std::vector<DocumentValue> Values;
};

/// Replaces the values of a binding; a binding that does not exist is appended.
struct SetBinding
{
    DocumentBinding Binding;
};

/// Removes a binding.
struct RemoveBinding
{
    std::string Stream;
    std::string Tag;
};

/// Appends an annotation.
struct AddAnnotation
{
    DocumentAnnotation Annotation;
};

/// Replaces the annotation with the same id; its comments are kept.
struct SetAnnotation
{
    DocumentAnnotation Annotation;
};

/// Removes an annotation but none of its content.
struct RemoveAnnotation
{
    std::string Id;
};

using GraphStep = std::variant<AddNode, RemoveNode, RenameNode, AddEdge, RemoveEdge, SetPoints,
                               SetProperties, SetDescription, SetRenderState, SetBinding,
                               RemoveBinding, AddAnnotation, SetAnnotation, RemoveAnnotation>;

/// Steps that are applied all together or not at all.
struct GraphChange
{
    std::vector<GraphStep> Steps;

    /// Formats the change with one line per step, followed by one line per value of the step.
    std::string Format() const;

    /// Describes the first step on one line for display, with the number of further values or
    /// steps.
    std::string Summary() const;
};

/// Reports that a change was rejected because of one of its steps.
class RefusedStep : public HostError
{
public:
    RefusedStep(const HostError& cause, std::size_t step) : HostError(cause), Step(step) {}

    std::size_t Step; ///< index of the step in the change
};

} // namespace Mox::Host
