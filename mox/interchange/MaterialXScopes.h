#pragma once

#include "mox/host/Problem.h"
#include "mox/xml/XmlTree.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Mox::Host {

/// Where an input of a MaterialX node gets its value, when all node graphs are unfolded.
struct MaterialXSource
{
    enum class Kind
    {
        Nothing,   ///< no value; the default of the node counts
        Literal,   ///< a value
        Parameter, ///< a value that the user of a node graph may set
        Output,    ///< an output of a node
    };

    Kind What = Kind::Nothing;
    const XmlTree* Element = nullptr; ///< the element with the value, or the node
    std::size_t Scope = 0;            ///< of the element
    std::string Output;               ///< of a node; empty for its only one
};

/// The document and the node graphs of a MaterialX file as one graph. A node graph that is used as
/// a definition is a scope of its own for each use.
class MaterialXScopes
{
public:
    /// The scope of the document itself.
    static constexpr std::size_t Root = 0;

    /// @param document must outlive the scopes, like problems
    MaterialXScopes(const XmlTree& document, ProblemList& problems);

    /// Follows an input, or an output of a node graph, to where its value comes from. What leads
    /// nowhere is reported.
    MaterialXSource Follow(std::size_t scope, const XmlTree& input);

    /// The child of a node with this name, or null.
    static const XmlTree* FindInput(const XmlTree& node, std::string_view name);

    /// The nearest value of an attribute on an element of a scope or on what holds it, or null.
    const std::string* FindInherited(std::size_t scope, const XmlTree& element,
                                     std::string_view attribute) const;

    /// The node graph of a scope.
    const XmlTree& GraphOf(std::size_t scope) const { return *_scopes[scope].Graph; }

private:
    struct Scope
    {
        const XmlTree* Graph = nullptr;
        const XmlTree* Instance = nullptr;   ///< the node that uses a definition, or null
        const XmlTree* Definition = nullptr; ///< declares the inputs
        std::size_t Parent = Root;
        int Depth = 0;
        std::unordered_map<std::string, const XmlTree*> Children; ///< but for inputs and outputs
    };

    std::size_t Enter(std::size_t parent, const XmlTree& graph, const XmlTree* instance,
                      const XmlTree& definition);
    bool StepToInterface(std::size_t& scope, const XmlTree*& input, const std::string& name);
    bool StepToGraph(std::size_t& scope, const XmlTree*& input, const XmlTree& graph,
                     const XmlTree* instance, const XmlTree& definition);
    const XmlTree* FindNamed(std::size_t scope, const std::string& name) const;

    ProblemList& _problems;
    std::vector<Scope> _scopes;
    std::map<std::pair<std::size_t, const XmlTree*>, std::size_t> _entered; ///< by parent and node
    std::unordered_map<std::string, std::pair<const XmlTree*, const XmlTree*>>
        _definitions; ///< nodedef and node graph, by node category
};

} // namespace Mox::Host
