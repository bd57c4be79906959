#include "mox/Text.h"
#include "mox/bindings/Binding.h"
#include "mox/graph/BindingsDocument.h"
#include "tests/exhaustion/EveryAllocation.h"
#include "tests/support/XmlElement.h"

#include <vector>

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

TEST(BindingExhaustion, AreWrittenAndReadWholeOrNotAtAll)
{
    std::vector<Mox::Host::PluginBinding> bindings;
    for (const auto type : {StreamType::Float, StreamType::Texture, StreamType::Uv})
        bindings.emplace_back(MakeFull(type));
    const std::string text = Mox::Host::FormatBindings(bindings);
    ExpectAllOrNothing([&] { return Mox::Host::FormatBindings(bindings); });
    ExpectAllOrNothing(
        [&] { return Mox::Host::FormatBindings(Mox::Host::ParseBindings("x.xml", text)); });
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
