#pragma once

#include "mox/document/MaterialDocument.h"
#include "mox/interchange/MaterialXElements.h"
#include "mox/interchange/StandardNodes.h"

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace Mox::Host {

/// A node of a material, including values that the document omits because they are the defaults of
/// the node type.
struct CompleteNode
{
    struct Property
    {
        std::string Value;
        bool IsDefault = false;
        bool IsVisible = true; ///< whether the property is relevant given the node's other
                               ///< properties
    };

    std::string Id;
    std::string Type;
    Place Where;
    std::map<std::string, Property> Properties;
    std::vector<std::string> Inputs;  ///< names of input ports
    std::vector<std::string> Outputs; ///< names of output ports
};

/// A resolved material.
struct CompleteMaterial
{
    const MaterialDocument& Document;
    std::vector<CompleteNode> Nodes; ///< in topological order
};

/// Writes a material as a MaterialX document, with its graph as a node graph and its surface as a
/// shader. Anything that is not converted exactly is reported as a problem with a rule
/// "interchange-...".
class MaterialXWriter
{
public:
    /// @param material must outlive the writer, like problems
    MaterialXWriter(const CompleteMaterial& material, ProblemList& problems);

    /// Returns the document; may be called only once.
    std::string Write();

private:
    using Ports = std::map<std::string, MaterialXValue>; ///< keyed by output port

    static constexpr const char* GraphName = "NG_material";

    /// A node that is being written.
    struct Current
    {
        const CompleteNode* Node = nullptr;
        std::string Name;           ///< name in MaterialX
        std::set<std::string> Used; ///< properties that have been converted
    };

    void WriteNode();
    Ports WriteByTable();
    Ports WriteDirect(const InterchangeNode& node, const InterchangeAlternative& alternative);
    Ports WriteByFormula();
    Ports WriteConstant();
    Ports WriteTexture();
    Ports WriteStream();
    Ports Split(const MaterialXValue& value, const std::vector<std::string>& components,
                const std::string& whole);
    Ports SplitColour(const MaterialXValue& value, const std::string& kind, bool hasAlpha,
                      const char* what);
    void Describe(MaterialXElement& element);
    std::string AddFile(const std::string& binding, bool isSrgb);

    void WriteSurface();
    void FeedUnlit();
    void FeedPhysical(const InterchangeSurface& surface);
    void FeedShader(const std::string& input, const MaterialXValue& value, const std::string& type);
    MaterialXValue MakeNormal(const std::string& port);
    void WriteRenderState();
    std::string Finish();

    std::string ElementName(const CompleteNode& node) const;
    bool Allows(const InterchangeAlternative& alternative) const;
    bool Matches(const NamedTexts& settings);
    const std::string& PropertyOf(const std::string& name);
    MaterialXValue InputOf(const std::string& port);
    bool IsConnected(const std::string& port) const;
    bool IsRead(const std::string& port) const;
    const CompleteNode* Referred(const CompleteNode& node) const;
    std::map<std::string, std::string> BindingValues(const std::string& stream,
                                                     const std::string& tag) const;

    void WarnOfUnreadAlpha(bool isUnread);
    void WarnOfLosses();
    void WarnOfDocument();
    void Report(Carry kind, const std::string& message, const std::string& port = {});
    void ReportDocument(Carry kind, const std::string& message);

    const CompleteMaterial& _material;
    ProblemList& _problems;
    MaterialXElements _elements;
    Current _current;
    std::map<std::pair<std::string, std::string>, MaterialXValue> _outputs; ///< keyed by node and
                                                                            ///< port
    std::map<std::pair<std::string, std::string>, std::pair<std::string, std::string>>
        _feeds;                                                              ///< edges, keyed by
                                                                             ///< their head
    std::set<std::pair<std::string, std::string>> _read;                     ///< outputs that have
                                                                             ///< edges
    std::map<std::pair<std::string, std::string>, MaterialXValue> _unpacked; ///< normals in the
                                                                             ///< range -1 to 1
    std::map<std::string, std::string> _files; ///< node graph inputs, keyed by binding
    std::map<std::string, const CompleteNode*> _nodes;
    MaterialXElement _shader;
    MaterialXElement _surfaceMaterial;
};

/// Writes a material as MaterialX 1.39.
/// @throws HostError if the material has no surface, or if one of its strings cannot be stored in
///         XML
std::string WriteMaterialX(const CompleteMaterial& material, ProblemList& problems);

} // namespace Mox::Host
