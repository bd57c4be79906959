#include "mox/Text.h"
#include "mox/bindings/Binding.h"
#include "mox/bindings/XmlAttributes.h"
#include "tests/exhaustion/EveryAllocation.h"
#include "tests/support/XmlElement.h"

#include <algorithm>
#include <memory>
#include <sstream>

using namespace Mox::Materials;

namespace {

/// Makes a binding in which every field differs from its default.
boost::shared_ptr<Binding> MakeFull(StreamType type)
{
    std::string attributes =
        "gui='position' uiunittype='angular' min='1.25, 2.5, 3.75' max='4, 5, 6' "
        "default='1234.5, 1234.5, 1234.5' basic_colour='Yes' srgb='Yes' signed_expanded='Yes' "
        "normalised='No' using_alpha='Yes'";
    for (const char* text : {"cgname", "uv", "desc", "helpUrl", "uilabel", "stream_type",
                             "dataset_modifiers", "usage_hint"})
        attributes += Compose(" ", text, "='", longText, "'");
    auto binding = CreateBinding(type, longText, 3);
    binding->ReadXml(XmlElement(attributes).Get());
    return binding;
}

std::string DescribeBinding(const boost::shared_ptr<Binding>& binding)
{
    const XmlElement element;
    binding->WriteXml(element.Get());
    return element.Attributes();
}

/// One attribute per line, sorted, because an attribute that is lost and written again moves.
std::string DescribeAttributes(const std::unique_ptr<XmlElement>& element)
{
    std::vector<std::string> attributes = element->AttributeList();
    std::sort(attributes.begin(), attributes.end());
    std::string lines;
    for (const std::string& attribute : attributes)
        lines += attribute + "\n";
    return lines;
}

TEST(BindingExhaustion, AttributesAreWrittenWhole)
{
    for (const auto type : {StreamType::Float, StreamType::Texture, StreamType::Uv}) {
        const auto binding = MakeFull(type);
        const std::string whole = DescribeBinding(binding) + " ";
        const auto expectWhole = [&](const std::string&, const std::string& after) {
            std::istringstream attributes(after);
            for (std::string attribute; std::getline(attributes, attribute);)
                EXPECT_TRUE(whole.find(attribute + " ") != std::string::npos ||
                            attribute.ends_with("=\"old\""))
                    << attribute;
        };
        for (const char* present : {"", "tag='old' cgname='old'"}) {
            ExpectSurvival([&] { return std::make_unique<XmlElement>(present); },
                           [&](const auto& element) { binding->WriteXml(element->Get()); },
                           DescribeAttributes, expectWhole);
        }
    }
}

TEST(BindingExhaustion, AttributesAreReadOrReported)
{
    for (const auto type : {StreamType::Float, StreamType::Texture, StreamType::Uv}) {
        const XmlElement element;
        MakeFull(type)->WriteXml(element.Get());
        ExpectSurvival([&] { return CreateBinding(type, longText + "2", 3); },
                       [&](const auto& binding) { binding->ReadXml(element.Get()); },
                       DescribeBinding, ExpectUsable);
    }
}

TEST(BindingExhaustion, AttributeCalls)
{
    const XmlElement element("present='" + longText + "'");
    const auto failureOf = [](auto call) { return [=] { return FailureOf(call); }; };
    ExpectText([&] { return GetXmlAttribute(element.Get(), "present"); });
    ExpectText(failureOf([&] { GetXmlAttribute(element.Get(), "absent" + longText); }));
}

TEST(BindingExhaustion, ValuesAreSetWhole)
{
    const auto expect = [](StreamType type, auto call) {
        ExpectSurvival([=] { return CreateBinding(type, longText, 3); },
                       [&](const auto& binding) { call(*binding); }, DescribeBinding);
    };
    const auto setTexts = [](Binding& binding) { binding.SetDefaultText("1.5, 2.5, 3.5, 4.5"); };
    expect(StreamType::Float, setTexts);
    expect(StreamType::Texture, setTexts);
    expect(StreamType::Float, [](Binding& binding) { binding.SetCount(100); });
    ExpectSurvival([] { return CreateBinding(StreamType::Position, longText, 1); },
                   [](auto& binding) { binding = CreateBinding(StreamType::Float, "new", 4); },
                   DescribeBinding);
}

} // namespace
