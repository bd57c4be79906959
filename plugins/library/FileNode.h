#pragma once

#include "mox/authoring/GuiNode.h"
#include "mox/nodefile/NodeFile.h"
#include "mox/shader/ShaderFunctionBuilder.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

/// A node with the properties, ports and code described by a node file.
class FileNode : public Mox::Materials::GuiNode
{
public:
    explicit FileNode(std::shared_ptr<const Mox::Host::NodeFile> file);
    ~FileNode() override;

    void UpdatePorts(const boost::shared_ptr<void>& hostContext) override;

    /// Returns the value of the title property; without one, the name if there is a binding,
    /// otherwise the label.
    std::string GetTitle() override;

    /// @throws ShaderError if an input that must be connected is not
    void GenerateShader(ShaderGraphGenerator& generator) override;
    bool HasBinding() override;
    void CreateBindings(const boost::shared_ptr<Mox::Materials::Material>& material) override;

private:
    /// Parameters to connect to inputs of the function, by name of the input.
    using Feeds = std::vector<std::pair<std::string, ShaderNodeHandle>>;

    Mox::Host::NodeSettings Settings() const;
    void DeclareProperty(const Mox::Host::NodeProperty& property);
    void AddInput(const Mox::Host::NodeInput& input, ShaderGraphGenerator& generator,
                  ShaderFunctionBuilder& builder, Feeds& feeds);
    void AddConstant(const Mox::Host::NodeInput& input, ShaderFunctionBuilder& builder);
    ShaderLevel ChooseLevel(const Mox::Host::NodeSettings& settings) const;

    const std::shared_ptr<const Mox::Host::NodeFile> _file;
};
