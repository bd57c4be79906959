#pragma once

#include "mox/ShaderError.h"
#include "mox/graph/NodeMaker.h"
#include "tests/support/TestNode.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <limits>

/// A node that counts calls and behaves as its properties specify.
class ProbeNode : public TestNode
{
public:
    ProbeNode() : TestNode("Probe")
    {
        Width = Add("Width");
        Width->SetInt(0);
        IsFloat = Add("Float");
        Inputs = Add("Inputs");
        Inputs->SetInt(2);
        Failure = Add("Failure");
        Failure->SetString("");
        Master = Add("Master");
        Master->AddNodeTypename("Probe");
        ProbeNode::UpdatePorts({});
        PortCalls = 0;
    }

    /// If the node has a master, it corrupts all its ports and then adopts the master's number of
    /// inputs.
    void UpdatePorts(const boost::shared_ptr<void>&) override
    {
        ++PortCalls;
        InputPorts.clear();
        OutputPorts.clear();
        if (Master->Node)
            Inputs->SetInt(Master->Node->Properties->Get("Inputs")->GetInt());
        if (!Failure->GetString().empty())
            throw ShaderError(Failure->GetString());
        for (int i = 1; i <= Inputs->GetInt(); ++i) {
            InputPorts.emplace_back("in_" + std::to_string(i), "");
            if (IsFloat->GetBool())
                InputPorts.back().SetPrecision(ComponentType::Float);
        }
        OutputPorts.emplace_back("out", "");
        if (Width->GetInt() > 0)
            OutputPorts.back().SetComponentCount(Width->GetInt());
    }

    void ResolveComponentCounts() override
    {
        ++CountCalls;
        GuiNode::ResolveComponentCounts();
    }

    void ResolvePrecisions() override
    {
        ++PrecisionCalls;
        GuiNode::ResolvePrecisions();
    }

    boost::shared_ptr<Mox::Materials::GuiProperty> Width; ///< width of the output; 0: not fixed
    boost::shared_ptr<Mox::Materials::GuiProperty> IsFloat;
    boost::shared_ptr<Mox::Materials::GuiProperty> Inputs;
    boost::shared_ptr<Mox::Materials::GuiProperty> Failure;
    boost::shared_ptr<Mox::Materials::GuiProperty> Master;
    int PortCalls = 0;
    int CountCalls = 0;
    int PrecisionCalls = 0;

private:
    boost::shared_ptr<Mox::Materials::GuiProperty> Add(const std::string& name)
    {
        auto property = Mox::Materials::GuiProperty::Create(name);
        Properties->Add(property);
        return property;
    }
};

/// Creates probes, fails to create nodes of type "Bomb", and creates placeholders for all other
/// types.
inline Mox::Host::NodeMaker ProbeMaker()
{
    return Mox::Host::NodeMaker(
        [](const std::string& type, const Mox::Host::Place&) -> Mox::Host::PluginNode {
            using Mox::Host::PluginNode;
            if (type == "Probe")
                return PluginNode(boost::make_shared<ProbeNode>());
            if (type == "CoreDefault") {
                auto placeholder = boost::make_shared<TestNode>(type);
                placeholder->Properties->Version = std::numeric_limits<std::int32_t>::max();
                return PluginNode(placeholder);
            }
            if (type == "Bomb")
                throw ShaderError("no such luck");
            return {};
        });
}
