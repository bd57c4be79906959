#include "mox/Export.h"
#include "mox/InterfaceVersion.h"
#include "mox/ShaderError.h"
#include "mox/authoring/GuiNodeFactory.h"

// A module that is no proper plug-in. The build says in which way: ODD_VERSION and ODD_FACTORY are
// what the two exports do, and without ODD_FACTORY there is one only.

namespace {

/// An exception whose code goes with the module.
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
