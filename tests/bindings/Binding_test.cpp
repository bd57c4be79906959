#include "mox/Text.h"
#include "mox/bindings/Binding.h"
#include "mox/bindings/FloatBinding.h"
#include "mox/bindings/StreamFormat.h"
#include "mox/bindings/TextureBinding.h"
#include "mox/bindings/XmlAttributes.h"
#include "tests/support/Failure.h"
#include "tests/support/XmlElement.h"

#include <gtest/gtest.h>

using namespace Mox::Materials;

namespace {

std::string Written(const Binding& binding)
{
    const XmlElement element;
    binding.WriteXml(element.Get());
    return element.Attributes();
}

std::string Read(Binding& binding, const std::string& attributes)
{
    const XmlElement element(attributes);
    return FailureOf([&] { binding.ReadXml(element.Get()); });
}

enum class Class
{
    None,
    Plain,
    String,
    Texture,
    Float,
};

struct StreamCase
{
    std::uint32_t Value;
    const char* Word;
    Class Made;
    UiType Ui;
    const char* Format;
    const char* Modifiers;
    const char* ReadAsShort; ///< the format after reading "short" without a normalise flag
};

constexpr StreamCase streamCases[] = {
    {0, "invalid", Class::None, UiType::None, "", "", ""},
    {1, "position", Class::Plain, UiType::None, "f32", "", "s16"},
    {2, "normal", Class::Plain, UiType::None, "f16", "", "s16"},
    {3, "uv", Class::String, UiType::UvSet, "f32", "oneminus|v", "s16"},
    {4, "tangent", Class::Plain, UiType::None, "f16", "", "s16"},
    {5, "binormal", Class::Plain, UiType::None, "f16", "negate", "s16"},
    {6, "colour", Class::String, UiType::VertexColourSet, "u8n", "", "s16n"},
    {7, "blendindices", Class::Plain, UiType::None, "u8", "", "s16"},
    {8, "blendweights", Class::Plain, UiType::None, "s16n", "", "s16n"},
    {9, "texture", Class::Texture, UiType::Texture, "", "", "s16"},
    {10, "float", Class::Float, UiType::FloatField, "", "", "s16"},
    {11, "", Class::None, UiType::None, "", "", ""},
    {0xffffffff, "", Class::None, UiType::None, "", "", ""},
};

Class ClassOf(const boost::shared_ptr<Binding>& binding)
{
    if (!binding)
        return Class::None;
    if (dynamic_cast<const TextureBinding*>(binding.get()))
        return Class::Texture;
    if (dynamic_cast<const StringBinding*>(binding.get()))
        return Class::String;
    return dynamic_cast<const FloatBinding*>(binding.get()) ? Class::Float : Class::Plain;
}

TEST(Binding, EveryStreamTypeHasItsClassAndDefaults)
{
    for (const StreamCase& c : streamCases) {
        SCOPED_TRACE(c.Value);
        const auto streamType = static_cast<StreamType>(c.Value);
        EXPECT_FALSE(CreateBinding(streamType, "a", 0));
        const auto binding = CreateBinding(streamType, "a", 3);
        ASSERT_EQ(ClassOf(binding), c.Made);
        if (!binding) {
            EXPECT_EQ(Binding(streamType, "a", 1).GetStreamTypeName(), c.Word);
            continue;
        }
        EXPECT_EQ(binding->GetStreamTypeName(), c.Word);
        EXPECT_EQ(binding->GetCount(), 3u);
        EXPECT_EQ(binding->uiType, c.Ui);
        EXPECT_EQ(binding->streamFormat, c.Format);
        EXPECT_EQ(binding->datasetModifiers, c.Modifiers);
        EXPECT_EQ(Written(*binding), "tag=\"a\"") << "defaults are not written";
        EXPECT_EQ(Read(*binding, "stream_type='SHORT'"), "no failure");
        EXPECT_EQ(binding->streamFormat, c.ReadAsShort);
    }
}

TEST(Binding, WritesFourteenAttributesInTheirOrderAndReadsThemBack)
{
    const auto fill = [](Binding& binding) {
        binding.uiType = UiType::Slider;
        binding.cgName = "cg";
        binding.uv = "set";
        binding.desc = "says <what> & \"more\"";
        binding.helpUrl = "http://help";
        binding.uiLabel = "Label";
        binding.uiUnitType = UiUnitType::SrgbColour;
        binding.SetMin(0, 0.5f);
        binding.SetMax(1, 2.0f);
        binding.SetDefault(0, 1e-7f);
        binding.streamFormat = "u8n";
        binding.datasetModifiers = "negate";
        binding.basicColour = true;
        binding.group = "not stored";
    };
    FloatBinding binding(StreamType::Float, "tag", 2);
    fill(binding);
    const XmlElement element;
    binding.WriteXml(element.Get());
    EXPECT_EQ(element.Attributes(),
              "tag=\"tag\" gui=\"slider\" cgname=\"cg\" uv=\"set\" desc=\"says <what> & "
              "\"more\"\" helpUrl=\"http://help\" uilabel=\"Label\" uiunittype=\"srgbcolour\" "
              "min=\"0.5, 0\" max=\"0, 2\" default=\"1e-07, 0\" stream_type=\"u8n\" "
              "dataset_modifiers=\"negate\" basic_colour=\"Yes\"");
    FloatBinding other(StreamType::Float, "other", 2);
    other.ReadXml(element.Get());
    EXPECT_EQ(Written(other), element.Attributes());
    EXPECT_EQ(other.group, "");
}

TEST(Binding, RoundTripOfEveryStreamType)
{
    struct Case
    {
        StreamType Type;
        const char* Stored; ///< in the order of writing, without what is default
    };
    for (const Case& c :
         {Case{StreamType::Position, "gui=\"position\" uv=\"u\" stream_type=\"s16\""},
          {StreamType::Normal, "cgname=\"n\" desc=\"d\" stream_type=\"f32\" "
                               "dataset_modifiers=\"negate\""},
          {StreamType::Uv, "gui=\"none\" default=\"map1\" dataset_modifiers=\"\""},
          {StreamType::Tangent, "helpUrl=\"h\" dataset_modifiers=\"oneminus|v\""},
          {StreamType::Binormal, "uilabel=\"l\" dataset_modifiers=\"\""},
          {StreamType::Colour, "default=\"set, 1\" stream_type=\"f32\" basic_colour=\"Yes\""},
          {StreamType::BlendIndices, "stream_type=\"u8n\""},
          {StreamType::BlendWeights, "gui=\"checkboxes\" stream_type=\"s16\""},
          {StreamType::Texture, "gui=\"none\" default=\"a.png\" stream_type=\"u8\" "
                                "basic_colour=\"Yes\" srgb=\"Yes\" signed_expanded=\"Yes\" "
                                "normalised=\"No\" usage_hint=\"DXT5 Normal\" "
                                "using_alpha=\"Yes\""},
          {StreamType::Float, "gui=\"slider\" uiunittype=\"angular\" min=\"-1, 0.333333\" "
                              "max=\"1e+20, inf\" default=\"0, 1\""}}) {
        const std::string stored = Compose("tag=\"t\" ", c.Stored);
        const auto binding = CreateBinding(c.Type, "a", 2);
        EXPECT_EQ(Read(*binding, stored), "no failure");
        EXPECT_EQ(Written(*binding), stored);
        const auto other = CreateBinding(c.Type, "b", 2);
        EXPECT_EQ(Read(*other, Written(*binding)), "no failure");
        EXPECT_EQ(Written(*other), stored);
    }
}

TEST(Binding, ReadingTouchesOnlyWhatIsThereButTheFormat)
{
    Binding binding(StreamType::Position, "a", 1);
    binding.uiType = UiType::Direction;
    binding.desc = "kept";
    binding.streamFormat = "s16";
    EXPECT_EQ(Read(binding, "default='1, 2' min='0'"), "no failure");
    EXPECT_EQ(Written(binding), "tag=\"a\" gui=\"direction\" desc=\"kept\"");
}

struct ReadCase
{
    StreamType Type;
    const char* Attributes;
    const char* WrittenAgain;
};

constexpr ReadCase readCases[] = {
    {StreamType::Float, "gui='SLIDER'", "tag=\"a\" gui=\"slider\""},
    {StreamType::Float, "gui='checkboxes'", "tag=\"a\" gui=\"checkboxes\""},
    {StreamType::Texture, "gui='none'", "tag=\"a\" gui=\"none\""},
    {StreamType::Texture, "gui='wheel'", "tag=\"a\" gui=\"none\""},
    {StreamType::Texture, "gui='Texture'", "tag=\"a\""},
    {StreamType::Texture, "gui='textur\xc3\x89'", "tag=\"a\" gui=\"none\""},
    {StreamType::Uv, "uiunittype='Angular'", "tag=\"a\" uiunittype=\"angular\""},
    {StreamType::Uv, "uiunittype='parsec'", "tag=\"a\""},
    {StreamType::Position, "stream_type='short' stream_normalize='TRUE'",
     "tag=\"a\" stream_type=\"s16n\""},
    {StreamType::Position, "stream_type='short' stream_normalize='Y'",
     "tag=\"a\" stream_type=\"s16n\""},
    {StreamType::Position, "stream_type='short' stream_normalize='on'",
     "tag=\"a\" stream_type=\"s16\""},
    {StreamType::BlendWeights, "stream_type='short' stream_normalize='no'",
     "tag=\"a\" stream_type=\"s16\""},
    {StreamType::Normal, "stream_type='packed'", "tag=\"a\" stream_type=\"X11Y11Z10n\""},
    {StreamType::Normal, "stream_type='X11Y11Z10n'", "tag=\"a\" stream_type=\"x11y11z10n\""},
    {StreamType::Normal, "stream_type='Odd'", "tag=\"a\" stream_type=\"odd\""},
    {StreamType::Normal, "basic_colour='No'", "tag=\"a\""},
    {StreamType::Normal, "tag='b' dataset_modifiers='X'", "tag=\"b\" dataset_modifiers=\"X\""},
};

TEST(Binding, ReadersRules)
{
    for (const ReadCase& c : readCases) {
        const auto binding = CreateBinding(c.Type, "a", 1);
        EXPECT_EQ(Read(*binding, c.Attributes), "no failure");
        EXPECT_EQ(Written(*binding), c.WrittenAgain) << c.Attributes;
    }
}

TEST(Binding, ABadBooleanStopsTheReadBehindWhatCameBefore)
{
    Binding binding(StreamType::Normal, "a", 1);
    EXPECT_EQ(Read(binding, "basic_colour='yes' tag='b' desc='c' stream_type='half'"),
              "attribute \"basic_colour\" contains invalid boolean data \"yes\"");
    EXPECT_EQ(Written(binding), "tag=\"b\" desc=\"c\"");
}

TEST(Binding, WordsOfValuesOutOfRangeAreEmpty)
{
    Binding binding(StreamType::Normal, "a", 1);
    binding.uiType = static_cast<UiType>(10);
    binding.uiUnitType = static_cast<UiUnitType>(4);
    EXPECT_EQ(Written(binding), "tag=\"a\" gui=\"\" uiunittype=\"\"");
}

TEST(Binding, StreamFormats)
{
    struct Case
    {
        const char* Word;
        const char* Normalised;
        const char* Plain;
    };
    for (const Case& c : {Case{"int", "f32", "f32"},
                          {"uint", "f32", "f32"},
                          {"float", "f32", "f32"},
                          {"half", "f16", "f16"},
                          {"ushort", "s16n", "s16"},
                          {"short", "s16n", "s16"},
                          {"byte", "u8n", "u8"},
                          {"ubyte", "u8n", "u8"},
                          {"packed", "X11Y11Z10n", "X11Y11Z10n"},
                          {"f32", "f32", "f32"},
                          {"", "", ""}}) {
        EXPECT_EQ(ToStreamFormat(c.Word, true), c.Normalised) << c.Word;
        EXPECT_EQ(ToStreamFormat(c.Word, false), c.Plain) << c.Word;
    }
}

TEST(Binding, AttributesOfAnElement)
{
    const XmlElement element("yes='Yes' no='No' odd='yes'");
    EXPECT_TRUE(GetXmlBool(element.Get(), "yes"));
    EXPECT_FALSE(GetXmlBool(element.Get(), "no"));
    EXPECT_EQ(FailureOf([&] { GetXmlBool(element.Get(), "odd"); }),
              "attribute \"odd\" contains invalid boolean data \"yes\"");
    EXPECT_EQ(FailureOf([&] { GetXmlAttribute(element.Get(), "none"); }),
              "failed to find \"none\" attribute on \"binding\" element");
}

/// Sanitizers watch over this one.
TEST(Binding, HostileAttributes)
{
    const std::string longText(3'000'000, 'x');
    for (const std::string& value :
         {longText, std::string("&#9;&#10;&#13;&#127;&#x80;"), std::string("\xf0\x9f\x8e\xa8"),
          std::string(200'000, ','), "1e" + std::string(100'000, '9')}) {
        std::string attributes;
        for (const char* name : {"tag", "gui", "cgname", "uv", "desc", "helpUrl", "uilabel",
                                 "uiunittype", "min", "max", "default", "stream_type",
                                 "stream_normalize", "dataset_modifiers", "usage_hint"})
            attributes += std::string(name) + "='" + value + "' ";
        for (const StreamCase& c : streamCases) {
            if (const auto binding = CreateBinding(static_cast<StreamType>(c.Value), "a", 2)) {
                EXPECT_EQ(Read(*binding, attributes), "no failure");
                EXPECT_FALSE(Written(*binding).empty());
            }
        }
    }
}

/// A host may hand over an element that no parser has checked.
TEST(Binding, BytesThatAreNoUtf8)
{
    for (const char* name : {"tag", "gui", "uiunittype", "min", "default", "stream_type"}) {
        const XmlElement element(std::string(name) + "='zzzz'");
        xmlChar* content = element.Get()->properties->children->content;
        for (const xmlChar byte : {0xff, 0xc3, 0x80, 0xf4})
            *content++ = byte;
        for (const StreamCase& c : streamCases) {
            if (const auto binding = CreateBinding(static_cast<StreamType>(c.Value), "a", 2)) {
                const std::string before = binding->tag;
                binding->ReadXml(element.Get());
                EXPECT_EQ(binding->tag, name == std::string("tag") ? "\xff\xc3\x80\xf4" : before);
            }
        }
    }
    Binding flag(StreamType::Normal, "a", 1);
    const XmlElement element("basic_colour='z'");
    element.Get()->properties->children->content[0] = 0xff;
    EXPECT_EQ(FailureOf([&] { flag.ReadXml(element.Get()); }),
              "attribute \"basic_colour\" contains invalid boolean data \"\xff\"");
}

} // namespace
