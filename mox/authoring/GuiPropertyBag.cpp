#include "mox/authoring/GuiPropertyBag.h"

#include "mox/ShaderError.h"
#include "mox/Text.h"

#include <tuple>
#include <utility>

namespace Mox::Materials {

GuiPropertyBag::GuiPropertyBag() = default;

GuiPropertyBag::~GuiPropertyBag() = default;

void GuiPropertyBag::Add(const boost::shared_ptr<GuiProperty>& property)
{
    // Properties grows last: property may be a reference to one of its own entries.
    const auto [entry, inserted] =
        Index.emplace(std::piecewise_construct, std::tie(property->Name), std::tie(property));
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
    // Names are unique, so nothing is left to copy once every property of the source has been met.
    std::size_t left = source->Index.size();
    for (auto property = Properties.begin(); left > 0 && property != Properties.end(); ++property) {
        const auto stored = source->Index.find((*property)->Name);
        if (stored == source->Index.end())
            continue;
        (*property)->CopyFrom(stored->second);
        --left;
    }
}

} // namespace Mox::Materials
