#pragma once

#include "mox/authoring/GuiNodeFactory.h"

/// The factory of the Surface library: the node in which a material ends, and those in which it
/// begins.
class GuiNodeFactorySurface : public Mox::Materials::GuiNodeFactory
{
public:
    GuiNodeFactorySurface();

    boost::shared_ptr<Mox::Materials::GuiNode> Create(const std::string& typeName) override;
};
