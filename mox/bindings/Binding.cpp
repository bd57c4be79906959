#include "mox/bindings/Binding.h"

#include "mox/LetterCase.h"
#include "mox/bindings/DocumentKeys.h"
#include "mox/bindings/FloatBinding.h"
#include "mox/bindings/StringBinding.h"
#include "mox/bindings/TextureBinding.h"
#include "mox/bindings/XmlAttributes.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <cstddef>
#include <iterator>

namespace Mox::Materials {

namespace Keys = BindingKeys;

namespace {

using Create = boost::shared_ptr<Binding> (*)(StreamType, const std::string&, std::uint32_t);

template <class Class>
boost::shared_ptr<Binding> CreateAs(StreamType streamType, const std::string& name,
                                    std::uint32_t count)
{
    return boost::make_shared<Class>(streamType, name, count);
}

/// The defaults that depend on a stream type.
struct StreamRow
{
    const char* Word;
    Create CreateOf; ///< null if no class exists
    UiType Ui;
    const char* Format;
    bool IsNormalised;
    const char* Modifiers;
};

// clang-format off
constexpr StreamRow streamRows[] = {
    // Word, CreateOf,                         Ui,                      Format, IsNormalised, Modifiers
    {"invalid",      nullptr,                  UiType::None,            "",     false, ""},
    {"position",     CreateAs<Binding>,        UiType::None,            "f32",  false, ""},
    {"normal",       CreateAs<Binding>,        UiType::None,            "f16",  false, ""},
    {"uv",           CreateAs<StringBinding>,  UiType::UvSet,           "f32",  false, "oneminus|v"},
    {"tangent",      CreateAs<Binding>,        UiType::None,            "f16",  false, ""},
    {"binormal",     CreateAs<Binding>,        UiType::None,            "f16",  false, "negate"},
    {"colour",       CreateAs<StringBinding>,  UiType::VertexColourSet, "u8n",  true,  ""},
    {"blendindices", CreateAs<Binding>,        UiType::None,            "u8",   false, ""},
    {"blendweights", CreateAs<Binding>,        UiType::None,            "s16n", true,  ""},
    {"texture",      CreateAs<TextureBinding>, UiType::Texture,         "",     false, ""},
    {"float",        CreateAs<FloatBinding>,   UiType::FloatField,      "",     false, ""},
};
// clang-format on

constexpr StreamRow unknownRow = {"", nullptr, UiType::None, "", false, ""};

const StreamRow& RowOf(StreamType streamType)
{
    const auto index = static_cast<std::uint32_t>(streamType);
    return index < std::size(streamRows) ? streamRows[index] : unknownRow;
}

/// The keyword for an enumeration value; empty if the value is outside the table.
template <class Value, std::size_t Count>
std::string WordOf(const std::string_view (&words)[Count], Value value)
{
    const auto index = static_cast<std::uint32_t>(value);
    return index < Count ? std::string(words[index]) : std::string();
}

/// The value for a keyword; 0 if the keyword is not in the table.
template <class Value, std::size_t Count>
Value ValueOf(const std::string_view (&words)[Count], const std::string& word)
{
    for (std::uint32_t index = 1; index < Count; ++index) {
        if (word == words[index])
            return static_cast<Value>(index);
    }
    return static_cast<Value>(0);
}

constexpr const char* trueWords[] = {"1", "y", "yes", "true"};

bool IsTrueWord(const std::string& text)
{
    const std::string word = ToLower(text);
    for (const char* trueWord : trueWords) {
        if (word == trueWord)
            return true;
    }
    return false;
}

void WriteUnlessEmpty(xmlNodePtr element, const char* name, const std::string& value)
{
    if (!value.empty())
        SetXmlAttribute(element, name, value);
}

void ReadIfPresent(xmlNodePtr element, const char* name, std::string& value)
{
    if (HasXmlAttribute(element, name))
        value = GetXmlAttribute(element, name);
}

} // namespace

Binding::Binding(StreamType newStreamType, const std::string& name, std::uint32_t newCount)
    : tag(name), streamType(newStreamType), uiType(RowOf(newStreamType).Ui), count(newCount),
      streamFormat(RowOf(newStreamType).Format), datasetModifiers(RowOf(newStreamType).Modifiers)
{}

Binding::~Binding() = default;

std::uint32_t Binding::GetCount() const
{
    return count;
}

void Binding::SetCount(std::uint32_t newCount)
{
    count = newCount;
}

float Binding::GetMin(std::uint32_t) const
{
    return 0.0f;
}

float Binding::GetMax(std::uint32_t) const
{
    return 0.0f;
}

float Binding::GetDefault(std::uint32_t) const
{
    return 0.0f;
}

void Binding::SetMin(std::uint32_t, const std::string&)
{}

void Binding::SetMin(std::uint32_t, float)
{}

void Binding::SetMax(std::uint32_t, const std::string&)
{}

void Binding::SetMax(std::uint32_t, float)
{}

void Binding::SetDefault(std::uint32_t, const std::string&)
{}

void Binding::SetDefault(std::uint32_t, float)
{}

std::string Binding::GetMinString(std::uint32_t) const
{
    return {};
}

std::string Binding::GetMaxString(std::uint32_t) const
{
    return {};
}

std::string Binding::GetDefaultString(std::uint32_t) const
{
    return {};
}

void Binding::WriteXml(xmlNodePtr element) const
{
    const StreamRow& defaults = RowOf(streamType);
    SetXmlAttribute(element, Keys::Tag, tag);
    if (uiType != defaults.Ui)
        SetXmlAttribute(element, Keys::Gui, WordOf(Keys::UiTypeWords, uiType));
    WriteUnlessEmpty(element, Keys::CgName, cgName);
    WriteUnlessEmpty(element, Keys::Uv, uv);
    WriteUnlessEmpty(element, Keys::Desc, desc);
    WriteUnlessEmpty(element, Keys::HelpUrl, helpUrl);
    WriteUnlessEmpty(element, Keys::UiLabel, uiLabel);
    if (uiUnitType != UiUnitType::Raw)
        SetXmlAttribute(element, Keys::UiUnitType, WordOf(Keys::UiUnitTypeWords, uiUnitType));
    WriteUnlessEmpty(element, Keys::Min, GetMinText());
    WriteUnlessEmpty(element, Keys::Max, GetMaxText());
    WriteUnlessEmpty(element, Keys::Default, GetDefaultText());
    if (streamFormat != defaults.Format)
        SetXmlAttribute(element, Keys::StreamFormat, streamFormat);
    if (datasetModifiers != defaults.Modifiers)
        SetXmlAttribute(element, Keys::DatasetModifiers, datasetModifiers);
    if (basicColour)
        SetXmlBool(element, Keys::BasicColour, true);
}

void Binding::ReadXml(xmlNodePtr element)
{
    ReadIfPresent(element, Keys::Tag, tag);
    if (HasXmlAttribute(element, Keys::Gui))
        uiType = ValueOf<UiType>(Keys::UiTypeWords, ToLower(GetXmlAttribute(element, Keys::Gui)));
    ReadIfPresent(element, Keys::CgName, cgName);
    ReadIfPresent(element, Keys::Uv, uv);
    ReadIfPresent(element, Keys::Desc, desc);
    ReadIfPresent(element, Keys::HelpUrl, helpUrl);
    ReadIfPresent(element, Keys::UiLabel, uiLabel);
    if (HasXmlAttribute(element, Keys::UiUnitType)) {
        uiUnitType = ValueOf<UiUnitType>(Keys::UiUnitTypeWords,
                                         ToLower(GetXmlAttribute(element, Keys::UiUnitType)));
    }
    if (HasXmlAttribute(element, Keys::Min))
        SetMinText(GetXmlAttribute(element, Keys::Min));
    if (HasXmlAttribute(element, Keys::Max))
        SetMaxText(GetXmlAttribute(element, Keys::Max));
    if (HasXmlAttribute(element, Keys::Default))
        SetDefaultText(GetXmlAttribute(element, Keys::Default));

    std::string format = RowOf(streamType).Format;
    bool isNormalised = RowOf(streamType).IsNormalised;
    if (HasXmlAttribute(element, Keys::StreamFormat))
        format = ToLower(GetXmlAttribute(element, Keys::StreamFormat));
    if (HasXmlAttribute(element, Keys::StreamNormalize))
        isNormalised = IsTrueWord(ToLower(GetXmlAttribute(element, Keys::StreamNormalize)));
    streamFormat = ToStreamFormat(format, isNormalised);

    ReadIfPresent(element, Keys::DatasetModifiers, datasetModifiers);
    if (HasXmlAttribute(element, Keys::BasicColour))
        basicColour = GetXmlBool(element, Keys::BasicColour);
}

void Binding::SetMinText(const std::string&)
{}

void Binding::SetMaxText(const std::string&)
{}

void Binding::SetDefaultText(const std::string&)
{}

std::string Binding::GetMinText() const
{
    return {};
}

std::string Binding::GetMaxText() const
{
    return {};
}

std::string Binding::GetDefaultText() const
{
    return {};
}

std::string Binding::GetStreamTypeName() const
{
    return RowOf(streamType).Word;
}

boost::shared_ptr<Binding> CreateBinding(StreamType streamType, const std::string& name,
                                         std::uint32_t count)
{
    const Create create = RowOf(streamType).CreateOf;
    if (!create || count == 0)
        return {};
    return create(streamType, name, count);
}

} // namespace Mox::Materials
