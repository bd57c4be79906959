#pragma once

#include "mox/authoring/GuiNodeFactory.h"

/// The factory of the Surface library: the output nodes of materials, and nodes that read values
/// from the host.
class GuiNodeFactorySurface : public Mox::Materials::GuiNodeFactory
{
public:
    GuiNodeFactorySurface();

    boost::shared_ptr<Mox::Materials::GuiNode> Create(const std::string& typeName) override;
};
