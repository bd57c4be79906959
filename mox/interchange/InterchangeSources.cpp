// The members of InterchangeGraph that create constants, textures and streams.

#include "mox/Text.h"
#include "mox/interchange/InterchangeGraph.h"

namespace Mox::Host {

using InputValues = InterchangeGraph::Values;
using Materials::Compose;
using Materials::GuiPropertyKind;
using Site = InterchangeGraph::Site;

namespace {

/// Returns whether a texture contains colours, so that the colour space of its file applies.
bool HoldsColours(const Site& site)
{
    return site.Type.starts_with("color") || site.Type == "multioutput";
}

} // namespace

InterchangeGraph::Values InterchangeGraph::MakeTexture(const InterchangeAlternative& alternative,
                                                       const InputValues& inputs, const Site& site)
{
    const InterchangeValue& file = inputs.at("file");
    const InterchangeValue coordinate = Evaluate(alternative.Is, inputs, site.Step("uv"));
    InputValues known = inputs;
    InputValues outputs;
    known["value"] = ReadTexture(file, inputs, coordinate, site);
    const std::string texture = known["value"].Node;
    const int width = known["value"].Width;
    const InterchangeNode* conversion = FindColourConversion(file.ColourSpace);
    if (conversion && HoldsColours(site) && file.ColourSpace != "srgb_texture")
        known["value"] = Evaluate(ParseFormula(Compose(conversion->Name, "( value )")), known,
                                  site.Step("linear"));
    const bool hasAlpha = site.Type == "multioutput";
    if (hasAlpha)
        outputs["a"] = outputs["outa"] = MakePortValue(texture, "out_alpha", 1);
    if (alternative.After.IsEmpty()) {
        outputs["out"] = known["value"];
        return outputs;
    }
    if (hasAlpha) {
        InputValues ofAlpha = known;
        for (auto& [name, value] : ofAlpha) {
            if (value.Numbers.size() == 4)
                value.Numbers = {value.Numbers.back()};
            else if (value.IsConnected() && value.Count == 4)
                value = Component(value, 3, site.Step(name));
        }
        ofAlpha["value"] = outputs["a"];
        outputs["a"] = outputs["outa"] = Evaluate(alternative.After, ofAlpha, site.Step("alpha"));
    }
    for (auto& [name, value] : known) {
        if (name != "value" && value.Width > width &&
            !(value.Numbers.empty() && !value.IsConnected()))
            value = _builder.Resize(value, width, Compose(site.Id, "_", name), site.Line);
    }
    outputs["out"] = Evaluate(alternative.After, known, site.Step("value"));
    return outputs;
}

InterchangeValue InterchangeGraph::ReadTexture(const InterchangeValue& file,
                                               const InputValues& inputs,
                                               const InterchangeValue& coordinate, const Site& site)
{
    const bool isTriple = site.IsNormalMap || site.Type == "multioutput";
    const int width = isTriple ? 3 : WidthOfType(site.Type);
    const char* kind = site.IsNormalMap ? "Normal"
                       : width <= 2     ? "Component"
                       : width == 3     ? "Colour"
                                        : "Vector";
    const bool isSrgb = HoldsColours(site) && file.ColourSpace == "srgb_texture";
    DocumentNode record = site.Record("CoreTexture");
    DocumentBinding binding{"texture", {}, {}, site.Line, {}};
    if (!file.Text.empty())
        binding.Values.push_back({"default", file.Text});
    const auto add = [&](std::string_view attribute, std::initializer_list<const char*> names,
                         std::initializer_list<std::pair<const char*, const char*>> words) {
        for (const char* name : names) {
            const auto input = inputs.find(name);
            for (const auto& [word, meaning] : words) {
                if (input != inputs.end() && input->second.Text == word)
                    binding.Values.push_back({std::string(attribute), meaning});
            }
        }
    };
    add("wrap_u", {"uaddressmode", "wrapS"},
        {{"mirror", "mirror"}, {"clamp", "clamp"}, {"constant", "clamp"}, {"black", "clamp"}});
    add("wrap_v", {"vaddressmode", "wrapT"},
        {{"mirror", "mirror"}, {"clamp", "clamp"}, {"constant", "clamp"}, {"black", "clamp"}});
    add("filter", {"filtertype"}, {{"closest", "nearest"}});

    std::string key;
    if (!file.Text.empty() || !file.Parameter.empty()) {
        key =
            Compose(file.Parameter, "\n", kind, isSrgb ? 1 : 0, site.Type == "multioutput" ? 1 : 0);
        for (const DocumentValue& value : binding.Values)
            key += "\n" + value.Name + "=" + value.Value;
    }
    const auto same = key.empty() ? _textures.end() : _textures.find(key);
    if (same != _textures.end()) {
        MaterialBuilder::Set(record, "Reference", GuiPropertyKind::Node, same->second);
    } else {
        MaterialBuilder::Set(record, "Colour Type", GuiPropertyKind::Enum, kind);
        MaterialBuilder::Set(record, "sRGB", isSrgb || site.IsNormalMap ? "true" : "false");
        if (site.Type == "multioutput" || width == 4)
            MaterialBuilder::Set(record, "Alpha", "true");
        binding.Tag = _builder.BindingName(file.Parameter.empty() ? site.Id : file.Parameter);
        MaterialBuilder::Set(record, "Name", GuiPropertyKind::String, binding.Tag);
        if (!binding.Values.empty())
            _builder.Bind(binding);
    }
    const std::string id = _builder.Add(std::move(record));
    if (same == _textures.end() && !key.empty())
        _textures[key] = id;
    InterchangeValue uv = _builder.Resize(Supply(coordinate, site), 2, id + "_uv", site.Line);
    if (!uv.IsConnected())
        uv = _builder.Constant(uv.Numbers, id + "_uv", site.Line);
    _builder.Connect(uv, id, "in_uv", site.Line);
    InterchangeValue value =
        MakePortValue(id, width <= 2 ? "out_red" : "out_colour", width <= 2 ? 1 : width);
    if (site.IsNormalMap)
        value = MakePortValue(id, "out_colour", 3);
    value.IsUnpacked = site.IsNormalMap;
    if (width == 2) {
        DocumentNode merge = site.Step("xy").Record("CoreSwizzle");
        MaterialBuilder::Set(merge, "Vector Type", "Uv");
        MaterialBuilder::Set(merge, "Component Count", "2");
        MaterialBuilder::Set(merge, "Reverse", "true");
        const std::string both = _builder.Add(std::move(merge));
        _builder.Connect(value, both, "in_x", site.Line);
        _builder.Connect(MakePortValue(id, "out_green", 1), both, "in_y", site.Line);
        value = MakePortValue(both, "out_vec", 2);
    }
    return value;
}

InterchangeGraph::Values InterchangeGraph::MakeStream(const InputValues& inputs, const Site& site)
{
    const auto text = [&](const char* input) {
        const auto found = inputs.find(input);
        return found == inputs.end() ? std::string() : found->second.Text;
    };
    const std::string property = text("geomprop") + text("varname");
    const bool isUv =
        site.Type.empty() || site.Type == "vector2" || (site.Type == "vector3" && property.empty());
    const std::string index = text("index").empty() ? "0" : text("index");
    const std::string name = !property.empty() ? property : Compose(isUv ? "uv" : "colour", index);
    const int width = isUv ? 2 : WidthOfType(site.Type);
    const char* kind = width == 4 ? "Vector" : width == 3 ? "Colour" : "Component";
    const std::string key = Compose(isUv ? "uv" : kind, "\n", name);
    if (!_streams.contains(key)) {
        DocumentNode record = site.Record(isUv ? "CoreUv" : "CoreVertexColour");
        if (site.IsStep || site.Type.empty())
            record.Id = name;
        MaterialBuilder::Set(record, "Name", GuiPropertyKind::String, _builder.BindingName(name));
        if (!isUv) {
            MaterialBuilder::Set(record, "Colour Type", GuiPropertyKind::Enum, kind);
            MaterialBuilder::Set(record, "Alpha", width == 4 ? "true" : "false");
        }
        _streams[key] = _builder.Add(std::move(record));
    }
    if (isUv)
        return {{"out", MakePortValue(_streams[key], "read", 2)}};
    return {{"out", MakePortValue(_streams[key], width < 3 ? "out_red" : "out_colour",
                                  width < 3 ? 1 : width)}};
}

InterchangeGraph::Values InterchangeGraph::MakeConstant(const InputValues& inputs, const Site& site)
{
    const InterchangeValue& value = inputs.at("value");
    if (value.IsConnected() || value.Numbers.empty())
        return {{"out", value}};
    DocumentNode record = site.Record("CoreConstant");
    if (!value.Parameter.empty()) {
        if (!value.Lowest.empty())
            MaterialBuilder::Set(record, "Min Scalar", GuiPropertyKind::Float, value.Lowest);
        if (!value.Highest.empty())
            MaterialBuilder::Set(record, "Max Scalar", GuiPropertyKind::Float, value.Highest);
        return {{"out", _builder.Parameter(value.Numbers, std::move(record), value.Parameter)}};
    }
    return {{"out", _builder.Locked(value.Numbers, std::move(record))}};
}

} // namespace Mox::Host
