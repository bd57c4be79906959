#include "mox/authoring/GuiPropertyBag.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"

namespace Mox::Materials {

GuiPropertyBag::GuiPropertyBag() = default;

GuiPropertyBag::~GuiPropertyBag() = default;

void GuiPropertyBag::Add(const boost::shared_ptr<GuiProperty>& property)
{
    // Add to Properties last: property may refer to one of its elements.
    const auto [entry, inserted] = Index.emplace(property->Name, property);
    if (!inserted)
        throw ShaderError(Compose("property with name \"", property->Name, "\" already exists"));
    try {
        Properties.push_back(property);
    } catch (...) {
        Index.erase(entry);
        throw;
    }
}

boost::shared_ptr<GuiProperty>& GuiPropertyBag::Get(const std::string& name)
{
    const auto entry = Index.find(name);
    if (entry == Index.end())
        throw ShaderError(Compose("failed to find property \"", name, "\""));
    return entry->second;
}

void GuiPropertyBag::CopyFrom(const boost::shared_ptr<GuiPropertyBag>& source)
{
    // Copying a reference may destroy the node that owns the source.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const boost::shared_ptr<GuiPropertyBag> kept = source;
    for (const auto& property : Properties) {
        const auto stored = kept->Index.find(property->Name);
        if (stored != kept->Index.end())
            property->CopyFrom(stored->second);
    }
}

} // namespace Mox::Materials
