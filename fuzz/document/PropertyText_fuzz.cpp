// Property values as strings: a value that can be read is written as an equivalent string, and an
// invalid one changes nothing.

#include "fuzz/support/Choices.h"
#include "mox/document/PropertyText.h"
#include "tests/support/Claim.h"

#include <bit>
#include <regex>

using namespace Mox::Host;
using namespace Mox::Materials;

namespace {

std::string DescribeAll(const GuiProperty& property)
{
    std::string text = Compose(static_cast<int>(property.Kind), " ", property.Integer);
    for (const float value : property.Floats)
        text += Compose(" ", std::bit_cast<std::uint32_t>(value));
    return text + " " + property.Text;
}

/// Whether documents may contain this string as a number.
bool IsNumber(const std::string& text)
{
    static const std::regex form(R"(-?((\d+\.?\d*|\.\d+)([eE][+-]?\d+)?|inf|nan))");
    return std::regex_match(text, form);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Choices choices(data, size);
    const auto kind = static_cast<GuiPropertyKind>(choices.Below(7));
    const std::string text = choices.Text();
    ClaimEqual(Compose(static_cast<int>(*ParseKind(FormatKind(kind)))),
               Compose(static_cast<int>(kind)), "a kind has a word");

    const auto property = GuiProperty::Create("p");
    const std::string before = DescribeAll(*property);
    if (!SetFromText(*property, kind, text)) {
        ClaimEqual(DescribeAll(*property), before, "an invalid value changes nothing");
        return 0;
    }
    Claim(property->Kind == kind, "the property has the kind of the text");
    if (kind == GuiPropertyKind::Float)
        Claim(text.size() > 1000 || IsNumber(text), "only what documents may have is a number");

    const auto again = GuiProperty::Create("p");
    const std::string written = FormatValue(*property);
    Claim(SetFromText(*again, kind, written), "what is written can be read");
    ClaimEqual(DescribeAll(*again), DescribeAll(*property), "what is written means the same");
    ClaimEqual(FormatValue(*again), written, "a value has one text");
    return 0;
}
