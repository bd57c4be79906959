#include "mox/document/Catalogue.h"

#include "mox/Text.h"
#include "mox/document/MaterialDocument.h"
#include "mox/document/PropertyText.h"
#include "mox/host/HostError.h"

#include <set>
#include <utility>

namespace Mox::Host {

namespace {

using Materials::GuiPort;
using Materials::GuiProperty;
using Materials::GuiPropertyKind;

/// Returns all values of a property if they can be enumerated.
std::vector<std::string> ListValues(const GuiProperty& property)
{
    if (property.Kind == GuiPropertyKind::Enum)
        return property.Choices;
    if (property.Kind == GuiPropertyKind::Bool)
        return {"false", "true"};
    return {};
}

class TypeDescription
{
public:
    TypeDescription(const Plugin& plugin, const PluginType& type)
        : _plugin(plugin), _type(type), _where(plugin.File().string())
    {}

    CatalogueEntry Describe() const
    {
        const PluginNode node = Create();
        CatalogueEntry entry{_type,
                             node.Properties().Version,
                             DescribePorts(node.InputPorts()),
                             DescribePorts(node.OutputPorts()),
                             {},
                             node.Properties().Properties};
        for (const auto& property : entry.Properties) {
            if (!property->Editable)
                continue;
            for (const std::string& value : ListValues(*property)) {
                CatalogueVariant variant = DescribeVariant(entry, property->Name, value);
                if (variant.Inputs || variant.Outputs)
                    entry.Variants.push_back(std::move(variant));
            }
        }
        return entry;
    }

private:
    PluginNode Create() const { return _plugin.CreateNode(_type.TypeName, _where); }

    /// Creates a new node for each value, because setting one value may affect more than the ports.
    CatalogueVariant DescribeVariant(const CatalogueEntry& entry, const std::string& name,
                                     const std::string& value) const
    {
        const PluginNode node = Create();
        const auto property = node.Properties().Index.find(name);
        if (property != node.Properties().Index.end())
            SetFromText(*property->second, property->second->Kind, value);
        node.UpdatePorts(_where);
        CatalogueVariant variant{name, value, {}, {}};
        if (CataloguePorts inputs = DescribePorts(node.InputPorts()); inputs != entry.Inputs)
            variant.Inputs = std::move(inputs);
        if (CataloguePorts outputs = DescribePorts(node.OutputPorts()); outputs != entry.Outputs)
            variant.Outputs = std::move(outputs);
        return variant;
    }

    CataloguePorts DescribePorts(const std::vector<GuiPort>& ports) const
    {
        CataloguePorts described;
        for (const GuiPort& port : ports) {
            CataloguePort& added = described.emplace_back();
            added.Name = port.Name;
            added.Label = port.Label;
            if (port.CountFixed)
                added.Components = port.ComponentCount;
            if (port.PrecisionFixed) // a node may set an invalid precision
                added.Precision =
                    CallLibrary(_where, [&] { return GetComponentName(port.Precision); });
        }
        return described;
    }

    const Plugin& _plugin;
    const PluginType& _type;
    Place _where;
};

} // namespace

std::vector<CatalogueEntry> DescribeCatalogue(const PluginSet& plugins,
                                              const std::vector<std::string>& types,
                                              ProblemList& problems)
{
    std::vector<CatalogueEntry> entries;
    const std::set<std::string> wanted(types.begin(), types.end());
    std::set<std::string> unknown = wanted;
    for (const Plugin& plugin : plugins.Plugins()) {
        for (const PluginType& type : plugin.Types()) {
            unknown.erase(type.TypeName);
            if (!types.empty() && !wanted.contains(type.TypeName))
                continue;
            const Plugin* supplier = plugins.FindSupplier(type.TypeName);
            if (plugin.OffersNodeFiles() && !supplier->OffersNodeFiles()) {
                problems.Warn("node-twice", Place(plugin.File().string()),
                              Materials::Compose("the node file for the type \"", type.TypeName,
                                                 "\" is ignored, because the plug-in ",
                                                 supplier->File().filename().string(),
                                                 " already offers this type"));
                continue;
            }
            try {
                entries.push_back(TypeDescription(plugin, type).Describe());
            } catch (const HostError& error) {
                problems.Fail("node-failed", error);
            }
        }
    }
    if (!unknown.empty()) {
        const std::string& type = *unknown.begin();
        throw HostError({}, UnknownType(type).Message + plugins.SuggestType(type));
    }
    return entries;
}

std::string FormatNodeFragment(const PluginNode& node, const std::string& id)
{
    DocumentNode record;
    record.Id = id;
    record.Type = node.Type();
    record.Version = node.Properties().Version;
    for (const auto& property : node.Properties().Properties) {
        if (property != node.TypeProperty()) // the type is an attribute of the element
            record.Properties.push_back(
                {property->Name, property->Kind, FormatValue(*property), 0, {}});
    }
    return FormatNode(record);
}

} // namespace Mox::Host
