#include "mox/Export.h"
#include "mox/InterfaceVersion.h"
#include "mox/authoring/GuiNode.h"
#include "mox/authoring/GuiNodeFactory.h"

#include <boost/smart_ptr/make_shared.hpp>

// A module that is not a valid plug-in. The build defines how: ODD_VERSION and ODD_FACTORY are the
// bodies of the two exported functions; without ODD_FACTORY, only one is exported.

namespace {

/// An exception class whose code is unloaded with the module.
class OwnFailure : public std::exception
{
public:
    const char* what() const noexcept override { return "an exception of the module's own"; }
};

[[noreturn, maybe_unused]] void ThrowOwnFailure()
{
    throw OwnFailure();
}

/// A factory that creates nothing.
class EmptyFactory : public Mox::Materials::GuiNodeFactory
{
public:
    boost::shared_ptr<Mox::Materials::GuiNode> Create(const std::string&) override { return {}; }
};

class PlainNode : public Mox::Materials::GuiNode
{
public:
    PlainNode() : GuiNode("../../odd") {}
    void GenerateShader(ShaderGraphGenerator&) override {}
};

constexpr const char* icon[] = {"1 1 1 1", " \tc None", " "};

/// A factory whose strings are unsafe in file names, on terminals or in XPM tables.
class RudeFactory : public Mox::Materials::GuiNodeFactory
{
public:
    RudeFactory()
    {
        Mox::Materials::GuiNodeDescription row("../../odd");
        row.Label = "\x1b[31mred";
        row.Icon = icon;
        Descriptions.push_back(row);
    }

    boost::shared_ptr<Mox::Materials::GuiNode> Create(const std::string&) override
    {
        return boost::make_shared<PlainNode>();
    }
};

} // namespace

void NotDefinedAnywhere();

MOX_PLUGIN_EXPORT std::int32_t GetMaterialLibVersion()
{
    ODD_VERSION;
}

#ifdef ODD_FACTORY
MOX_PLUGIN_EXPORT void* CreateNodeFactory()
{
    ODD_FACTORY;
}
#endif
