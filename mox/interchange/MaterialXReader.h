#pragma once

#include "mox/interchange/InterchangeGraph.h"
#include "mox/interchange/MaterialXScopes.h"

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace Mox::Host {

/// Options for reading a MaterialX document.
struct MaterialXOptions
{
    bool ReadsIncludes = false; ///< whether to read included files from its folder
    std::string Material;       ///< name of the material to read; empty for the first one
};

/// Reads a MaterialX document as a material: node graphs are expanded, and the shader becomes an
/// output node. Anything that is not converted exactly is reported as a problem with a rule
/// "interchange-...".
class MaterialXReader
{
public:
    /// @param file the name of the file, for messages
    /// @param problems must outlive the reader
    MaterialXReader(const std::string& file, const MaterialXOptions& options,
                    ProblemList& problems);

    /// May be called only once.
    MaterialDocument Read(std::string_view text);

private:
    using Key = std::pair<std::size_t, const XmlTree*>; ///< scope and node

    struct Evaluated
    {
        bool IsDone = false; ///< if false, its inputs have not been evaluated yet
        InterchangeGraph::Values Outputs;
    };

    void ReadRoot(const XmlTree& root);
    const XmlTree* ChooseMaterial(const XmlTree& root);
    MaterialXSource FindShader(const XmlTree& root);
    MaterialXSource ReadSurfaceMaterial(const XmlTree& material);
    void ReadShader(const MaterialXSource& shader);
    void FeedSurface(const InterchangeSurface& surface, const InterchangeGraph::Values& inputs,
                     const XmlTree& element);
    void SetRenderState(const InterchangeSurface& surface, const InterchangeGraph::Values& inputs);
    void WarnOfIgnored(const InterchangeSurface& surface, const InterchangeGraph::Values& inputs,
                       const XmlTree& element);
    void WarnOfUnread();

    void Evaluate(const MaterialXSource& source);
    void EvaluateNode(const Key& key);
    std::string SuggestNode(const std::string& name) const;
    InterchangeGraph::Values ReadInputs(const Key& key, const NamedTexts& inputs,
                                        const std::string& category);
    InterchangeValue ReadInput(const MaterialXSource& source, const XmlTree& input,
                               const std::string& category);
    InterchangeValue ReadFixedInput(const Key& key, const XmlTree& input);
    InterchangeValue ReadLiteral(const MaterialXSource& source, bool isParameter);
    void MakeLinear(InterchangeValue& colour, const MaterialXSource& source);
    void WarnOfColourSpace(const std::string& space, const XmlTree& element);
    InterchangeGraph::Site SiteOf(const Key& key);

    void Report(Carry kind, const XmlTree& element, const std::string& message);
    Place PlaceOf(const XmlTree& element) const { return _scopes->PlaceOf(element); }
    int LineOf(const XmlTree& element) const;

    std::string _file;
    MaterialXOptions _options;
    ProblemList& _problems;
    MaterialBuilder _builder;
    InterchangeGraph _graph;
    MaterialXScopes* _scopes = nullptr; ///< valid while reading
    std::map<Key, Evaluated> _evaluated;
    std::map<const XmlTree*, InterchangeValue> _parameters; ///< keyed by node graph input
    std::set<const XmlTree*> _fixed; ///< graph inputs, constants and dots that fixed inputs read
    std::map<const XmlTree*, bool> _readByNormalMapsOnly; ///< whether each connected node is read
                                                          ///< only by normal maps
};

} // namespace Mox::Host
