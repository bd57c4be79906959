// Elements of bindings with arbitrary attributes: reading fails only for invalid booleans, and what
// is written reads back as the same.

#include "fuzz/support/Choices.h"
#include "mox/ShaderError.h"
#include "mox/bindings/Binding.h"
#include "mox/bindings/FloatBinding.h"
#include "tests/support/Claim.h"
#include "tests/support/XmlElement.h"

#include <string_view>

using namespace Mox::Materials;

namespace {

constexpr const char* names[] = {
    "tag",         "gui",  "cgname",           "uv",         "desc",           "helpUrl",
    "uilabel",     "min",  "uiunittype",       "max",        "default",        "stream_type",
    "srgb",        "None", "stream_normalize", "normalised", "usage_hint",     "dataset_modifiers",
    "using_alpha", "x",    "basic_colour",     "",           "signed_expanded"};

std::string Written(const Binding& binding)
{
    const XmlElement element;
    binding.WriteXml(element.Get());
    return element.Attributes();
}

/// Makes arbitrary calls on a new binding before it is read.
void ChangeValues(Binding& binding, Choices& choices)
{
    while (choices.Flip()) {
        const auto index = static_cast<std::uint32_t>(choices.Below(12));
        const float value = static_cast<float>(choices.Below(256)) * 0.37f - 40.0f;
        switch (choices.Below(5)) {
        case 0:
            binding.SetCount(index);
            break;
        case 1:
            binding.SetMin(index, value);
            break;
        case 2:
            binding.SetMax(index, value);
            break;
        case 3:
            binding.SetDefault(index, value);
            break;
        case 4:
            binding.SetDefault(index, std::string("text"));
            break;
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Choices choices(data, size);
    const auto type = static_cast<StreamType>(1 + choices.Below(10));
    const auto count = static_cast<std::uint32_t>(1 + choices.Below(8));
    const auto binding = CreateBinding(type, "a", count);
    ChangeValues(*binding, choices);

    XmlElement element;
    while (!choices.IsAtEnd()) {
        const std::string name = names[choices.Below(std::size(names))];
        if (!name.empty())
            xmlSetProp(element.Get(), BAD_CAST name.c_str(), BAD_CAST choices.Text().c_str());
    }
    try {
        binding->ReadXml(element.Get());
    } catch (const ShaderError& error) {
        Claim(std::string_view(error.what()).find("contains invalid boolean data") !=
                  std::string_view::npos,
              "only a boolean stops the read");
    }

    const std::string first = Written(*binding);
    const XmlElement stored;
    binding->WriteXml(stored.Get());
    const auto again = CreateBinding(type, "b", count);
    again->SetCount(binding->GetCount());
    again->ReadXml(stored.Get());
    const std::string second = Written(*again);
    // Storage formats are converted to lower case when they are read, but one contains capitals.
    if (binding->streamFormat != "X11Y11Z10n")
        ClaimEqual(second, first, "what is written reads back as the same");

    const XmlElement storedAgain;
    again->WriteXml(storedAgain.Get());
    again->ReadXml(storedAgain.Get());
    ClaimEqual(Written(*again), second, "reading its own text changes nothing");
    return 0;
}
