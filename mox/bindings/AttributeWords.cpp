#include "mox/bindings/AttributeWords.h"

#include "mox/bindings/ClassicLocale.h"

#include <cctype>

namespace Mox::Materials {

std::string ToLower(std::string text)
{
    const ClassicLocale scope;
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

} // namespace Mox::Materials
