#pragma once

#include "mox/authoring/GuiNode.h"

#include <map>
#include <string>

/// Applies one of sixteen mathematical functions. The function determines the ports, the Cg code
/// and the level; the value of an unconnected input is that of a property.
class CoreMathsNode : public Mox::Materials::GuiNode
{
public:
    static const char* TypeName();

    CoreMathsNode();
    ~CoreMathsNode() override;

    void UpdatePorts(const boost::shared_ptr<void>& hostContext) override;
    std::string GetTitle() override;
    void GenerateShader(ShaderGraphGenerator& generator) override;

    using PropertyHandle = boost::shared_ptr<Mox::Materials::GuiProperty>;

    PropertyHandle Function;
    PropertyHandle DefaultValue1;
    PropertyHandle DefaultValue2;
    PropertyHandle DefaultBlend;
    PropertyHandle DefaultMin;
    PropertyHandle DefaultMax;
    PropertyHandle DefaultOldMin;
    PropertyHandle DefaultOldMax;
    PropertyHandle DefaultTest1;
    PropertyHandle DefaultTest2;
    PropertyHandle DefaultPower;
    PropertyHandle DefaultScale;
    PropertyHandle ExecutionLevel;

    /// For the Cg name of each input port, the property with its value if it is unconnected.
    std::map<std::string, PropertyHandle> PortDefaults;

private:
    float DefaultFor(const Mox::Materials::GuiPort& port) const;
};
