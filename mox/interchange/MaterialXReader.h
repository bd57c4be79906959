#pragma once

#include "mox/interchange/InterchangeGraph.h"
#include "mox/interchange/MaterialXScopes.h"

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Mox::Host {

/// Reads a MaterialX document as a material: the node graphs unfolded, the shader as an end of the
/// material. What is not carried over as it is becomes a problem of a rule "interchange-...".
class MaterialXReader
{
public:
    /// @param file as it is named in messages
    /// @param problems must outlive the reader
    MaterialXReader(const std::string& file, ProblemList& problems);

    /// To be called once.
    MaterialDocument Read(std::string_view text);

private:
    using Key = std::pair<std::size_t, const XmlTree*>; ///< scope and node

    struct Evaluated
    {
        bool IsDone = false; ///< otherwise it waits for its inputs
        InterchangeGraph::Values Outputs;
    };

    void ReadRoot(const XmlTree& root);
    MaterialXSource FindShader(const XmlTree& root, MaterialXScopes& scopes);
    void ReadShader(const MaterialXSource& shader);
    void FeedSurface(const InterchangeSurface& surface, const InterchangeGraph::Values& inputs,
                     const XmlTree& element);
    void SetRenderState(const InterchangeSurface& surface, const InterchangeGraph::Values& inputs);
    void WarnOfIgnored(const InterchangeSurface& surface, const InterchangeGraph::Values& inputs,
                       const XmlTree& element);
    void WarnOfUnread();

    void Evaluate(const MaterialXSource& source);
    void EvaluateNode(const Key& key);
    InterchangeGraph::Values ReadInputs(const Key& key, const NamedTexts& inputs,
                                        const std::string& category);
    InterchangeValue ReadInput(const MaterialXSource& source, const XmlTree& input,
                               const std::string& category);
    InterchangeValue ReadLiteral(const MaterialXSource& source, bool isKept);
    InterchangeGraph::Site SiteOf(const Key& key);

    void Report(Carry kind, const XmlTree& element, const std::string& message);
    Place PlaceOf(const XmlTree& element) const;

    std::string _file;
    ProblemList& _problems;
    MaterialBuilder _builder;
    InterchangeGraph _graph;
    MaterialXScopes* _scopes = nullptr; ///< while reading
    std::map<Key, Evaluated> _evaluated;
    std::map<const XmlTree*, InterchangeValue> _parameters; ///< by input of a node graph
    std::map<const XmlTree*, bool> _readByNormalMapsOnly;   ///< nodes that are connected
};

} // namespace Mox::Host
