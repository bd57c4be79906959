#pragma once

#include <mox/authoring/GuiNodeFactory.h>

class GuiNodeFactoryChecker : public Mox::Materials::GuiNodeFactory
{
public:
    GuiNodeFactoryChecker();

    boost::shared_ptr<Mox::Materials::GuiNode> Create(const std::string& typeName) override;
};
