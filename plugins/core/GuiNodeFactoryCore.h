#pragma once

#include "mox/authoring/GuiNodeFactory.h"

/// The factory of the Core library.
class GuiNodeFactoryCore : public Mox::Materials::GuiNodeFactory
{
public:
    GuiNodeFactoryCore();

    boost::shared_ptr<Mox::Materials::GuiNode> Create(const std::string& typeName) override;
};
