#include "mox/Text.h"
#include "mox/bindings/Binding.h"
#include "mox/bindings/FloatBinding.h"
#include "mox/bindings/StreamType.h"
#include "mox/bindings/TextureBinding.h"
#include "tests/support/Failure.h"
#include "tests/support/Session.h"
#include "tests/support/XmlElement.h"

#include <gtest/gtest.h>

#include <sstream>

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

constexpr std::uint32_t streamTypeEnd = 12; ///< one more than the number of types

const char* ClassOf(const Binding& binding)
{
    if (dynamic_cast<const TextureBinding*>(&binding))
        return "TextureBinding";
    if (dynamic_cast<const StringBinding*>(&binding))
        return "StringBinding";
    return dynamic_cast<const FloatBinding*>(&binding) ? "FloatBinding" : "Binding";
}

std::string DescribeNew(StreamType type)
{
    EXPECT_FALSE(CreateBinding(type, "a", 0));
    const auto binding = CreateBinding(type, "a", 3);
    if (!binding)
        return Compose("none \"", Binding(type, "a", 1).GetStreamTypeName(), "\"\n");
    EXPECT_EQ(binding->GetCount(), 3u);
    EXPECT_EQ(Written(*binding), "tag=\"a\"") << "defaults are not written";
    return Compose(ClassOf(*binding), " \"", binding->GetStreamTypeName(), "\", widget ",
                   static_cast<int>(binding->uiType), ", format \"", binding->streamFormat,
                   "\", modifiers \"", binding->datasetModifiers, "\"\n");
}

/// Reads several sets of attributes one after another, separated by "then".
std::string DescribeReads(const std::string& type, std::istream& words)
{
    boost::shared_ptr<Binding> binding;
    for (std::uint32_t i = 0; !binding || binding->GetStreamTypeName() != type; ++i)
        binding = CreateBinding(static_cast<StreamType>(i % streamTypeEnd), "a", 2);
    std::string text;
    std::string attributes;
    const auto read = [&] {
        const std::string failure = Read(*binding, attributes);
        text += Compose(failure == "no failure" ? "" : failure + ": ", Written(*binding), "\n");
        const XmlElement stored;
        binding->WriteXml(stored.Get());
        const auto other = CreateBinding(binding->streamType, "b", 2);
        other->ReadXml(stored.Get());
        // Formats are read case-insensitively.
        EXPECT_TRUE(Written(*other) == Written(*binding) || binding->streamFormat == "X11Y11Z10n");
        attributes.clear();
    };
    for (std::string word; words >> word;) {
        if (word == "then")
            read();
        else
            attributes += word + " ";
    }
    read();
    return text;
}

TEST(Binding, AsTheFileSays)
{
    ExpectSession("bindings/bindings.txt", [](const std::string& line) {
        std::istringstream words(line);
        std::string task, subject;
        words >> task >> subject;
        if (task == "create")
            return DescribeNew(static_cast<StreamType>(std::stoul(subject)));
        if (task == "read")
            return DescribeReads(subject, words);
        return Compose("\"", ToStreamFormat(subject, true), "\" \"", ToStreamFormat(subject, false),
                       "\"\n");
    });
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

TEST(Binding, SettingAStringCallsNoOtherOperation)
{
    struct Watched : StringBinding
    {
        using StringBinding::StringBinding;
        void SetDefaultText(const std::string&) override { ADD_FAILURE(); }
    };
    Watched binding(StreamType::Uv, "a", 1);
    static_cast<Binding&>(binding).SetDefault(7, "map1");
    EXPECT_EQ(binding.GetDefaultText(), "map1");
}

TEST(Binding, WordsOfValuesOutOfRangeAreEmpty)
{
    Binding binding(StreamType::Normal, "a", 1);
    binding.group = "not stored";
    binding.uiType = static_cast<UiType>(10);
    binding.uiUnitType = static_cast<UiUnitType>(4);
    EXPECT_EQ(Written(binding), "tag=\"a\" gui=\"\" uiunittype=\"\"");
}

/// Relies on the sanitizers to detect errors.
TEST(Binding, HostileAttributes)
{
    for (const std::string& value :
         {std::string(3'000'000, 'x'), std::string("&#9;&#10;&#13;&#127;&#x80;"),
          std::string("\xf0\x9f\x8e\xa8"), std::string(200'000, ','),
          "1e" + std::string(100'000, '9')}) {
        std::string attributes;
        for (const char* name : {"tag", "gui", "cgname", "uv", "desc", "helpUrl", "uilabel",
                                 "uiunittype", "min", "max", "default", "stream_type",
                                 "stream_normalize", "dataset_modifiers", "usage_hint"})
            attributes += std::string(name) + "='" + value + "' ";
        for (std::uint32_t type = 0; type < streamTypeEnd; ++type) {
            if (const auto binding = CreateBinding(static_cast<StreamType>(type), "a", 2)) {
                EXPECT_EQ(Read(*binding, attributes), "no failure");
                EXPECT_FALSE(Written(*binding).empty());
            }
        }
    }
}

/// A host may pass an element that no parser has validated.
TEST(Binding, BytesThatAreNoUtf8)
{
    for (const char* name : {"tag", "gui", "uiunittype", "min", "default", "stream_type"}) {
        const XmlElement element(std::string(name) + "='zzzz'");
        xmlChar* content = element.Get()->properties->children->content;
        for (const xmlChar byte : {0xff, 0xc3, 0x80, 0xf4})
            *content++ = byte;
        for (std::uint32_t type = 0; type < streamTypeEnd; ++type) {
            if (const auto binding = CreateBinding(static_cast<StreamType>(type), "a", 2)) {
                binding->ReadXml(element.Get());
                EXPECT_EQ(binding->tag, name == std::string("tag") ? "\xff\xc3\x80\xf4" : "a");
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
