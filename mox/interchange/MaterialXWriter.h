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

/// A node of a material with all that its document leaves to the node's type.
struct CompleteNode
{
    struct Property
    {
        std::string Value;
        bool IsDefault = false;
        bool IsVisible = true; ///< whether it matters with the node's other properties
    };

    std::string Id;
    std::string Type;
    Place Where;
    std::map<std::string, Property> Properties;
    std::vector<std::string> Inputs;  ///< ports
    std::vector<std::string> Outputs; ///< ports
};

/// A resolved material.
struct CompleteMaterial
{
    const MaterialDocument& Document;
    std::vector<CompleteNode> Nodes; ///< each after those that feed it
};

/// Writes a material as a MaterialX document: its graph as a node graph, its surface as a shader.
/// What is not carried over as it is becomes a problem of a rule "interchange-...".
class MaterialXWriter
{
public:
    /// @param material must outlive the writer, like problems
    MaterialXWriter(const CompleteMaterial& material, ProblemList& problems);

    /// The text of the document; to be called once.
    std::string Write();

private:
    using Ports = std::map<std::string, MaterialXValue>; ///< by output port

    static constexpr const char* GraphName = "NG_material";

    /// A node while it is written.
    struct Current
    {
        const CompleteNode* Node = nullptr;
        std::string Name;           ///< in MaterialX
        std::set<std::string> Used; ///< properties that were carried over
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
    void Describe(MaterialXElement& element);
    std::string AddFile(const std::string& binding, bool isSrgb);

    void WriteSurface();
    void FeedUnlit();
    void FeedPhysical(const InterchangeSurface& surface);
    void FeedShader(const std::string& input, const MaterialXValue& value, const std::string& type);
    MaterialXValue MakeNormal(const std::string& port);
    void WriteRenderState();
    std::string Finish();

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
    std::map<std::pair<std::string, std::string>, MaterialXValue> _outputs; ///< by node and port
    std::map<std::pair<std::string, std::string>, std::pair<std::string, std::string>>
        _feeds;                                                              ///< by head
    std::set<std::pair<std::string, std::string>> _read;                     ///< outputs with edges
    std::map<std::pair<std::string, std::string>, MaterialXValue> _unpacked; ///< normals
    std::map<std::string, std::string> _files; ///< inputs of the node graph by binding
    std::map<std::string, const CompleteNode*> _nodes;
    MaterialXElement _shader;
    MaterialXElement _surfaceMaterial;
};

/// Writes a material as MaterialX 1.39.
/// @throws HostError if the material has no surface, or if XML cannot hold one of its texts
std::string WriteMaterialX(const CompleteMaterial& material, ProblemList& problems);

} // namespace Mox::Host
