#pragma once

#include "mox/host/Problem.h"
#include "mox/xml/XmlTree.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace Mox::Host {

/// The source of the value of a MaterialX input after all node graphs have been expanded.
struct MaterialXSource
{
    enum class Kind
    {
        Nothing,   ///< no value; the default of the node applies
        Literal,   ///< a constant value
        Parameter, ///< a value that the user of a node graph may set
        Output,    ///< an output of a node
    };

    Kind What = Kind::Nothing;
    const XmlTree* Element = nullptr; ///< the element that has the value, or the node
    std::size_t Scope = 0;            ///< scope of the element
    std::string Output;               ///< name of the node's output; empty if it has only one
};

/// Presents the document and the node graphs of a MaterialX file as a single graph. Each use of a
/// node graph as a definition is a separate scope.
class MaterialXScopes
{
public:
    /// The scope of the document itself.
    static constexpr std::size_t Root = 0;

    /// @param document must outlive the scopes, like problems
    MaterialXScopes(const XmlTree& document, ProblemList& problems);

    /// Follows an input, or an output of a node graph, to the source of its value. A dangling
    /// connection is reported.
    MaterialXSource Follow(std::size_t scope, const XmlTree& input);

    /// Returns the child of a node with this name, or null.
    static const XmlTree* FindInput(const XmlTree& node, std::string_view name);

    /// Returns the value of an attribute from an element of a scope or its nearest ancestor that
    /// has it, or null.
    const std::string* FindInherited(std::size_t scope, const XmlTree& element,
                                     std::string_view attribute) const;

    /// Returns the location of an element. An input or output is a port of the node that contains
    /// it.
    Place PlaceOf(const XmlTree& element) const;

    /// Reports a problem of an element once, although several nodes may use it.
    void Fail(const XmlTree& element, const std::string& message);

    /// The node graph of a scope.
    const XmlTree& GraphOf(std::size_t scope) const { return *_scopes[scope].Graph; }

private:
    struct Scope
    {
        const XmlTree* Graph = nullptr;
        const XmlTree* Instance = nullptr;   ///< the node that instantiates a definition, or null
        const XmlTree* Definition = nullptr; ///< declares the inputs
        std::size_t Parent = Root;
        int Depth = 0;
        std::unordered_map<std::string, const XmlTree*> Children; ///< all except inputs and outputs
    };

    std::size_t Enter(std::size_t parent, const XmlTree& graph, const XmlTree* instance,
                      const XmlTree& definition);
    bool StepToInterface(std::size_t& scope, const XmlTree*& input, const std::string& name);
    bool StepToGraph(std::size_t& scope, const XmlTree*& input, const XmlTree& graph,
                     const XmlTree* instance, const XmlTree& definition);
    const XmlTree* FindNamed(std::size_t scope, const std::string& name) const;
    std::string SuggestNode(std::size_t scope, const std::string& name) const;

    ProblemList& _problems;
    std::vector<Scope> _scopes;
    std::map<std::pair<std::size_t, const XmlTree*>, std::size_t> _entered; ///< scopes, keyed by
                                                                            ///< parent scope and
                                                                            ///< node
    std::unordered_map<const XmlTree*, const XmlTree*> _owners; ///< node of each input or output
    std::unordered_map<std::string, std::pair<const XmlTree*, const XmlTree*>>
        _definitions; ///< pairs of nodedef and node graph, keyed by node category
    std::unordered_set<const XmlTree*> _reported; ///< elements with a reported problem
};

} // namespace Mox::Host
