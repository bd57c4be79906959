#include "mox/cg/Type.h"

#include "mox/Text.h"

#include <iterator>

namespace Mox::Cg {

namespace {

/// In the order of Element.
constexpr std::string_view elementWords[] = {
    "void",      "bool",      "int",       "fixed",       "half",        "float",
    "sampler1D", "sampler2D", "sampler3D", "samplerCUBE", "samplerRECT",
};

bool IsSize(char c)
{
    return c >= '1' && c <= '4';
}

} // namespace

Type Type::With(Element element) const
{
    Type type = *this;
    type.Of = element;
    return type;
}

Type Type::Selected() const
{
    Type type = *this;
    if (IsArray())
        type.Length = 0;
    else if (IsMatrix())
        type.Rows = 1;
    else
        type.Columns = 1;
    return type;
}

std::string Type::Format() const
{
    std::string text(Structure ? Structure->Name : elementWords[static_cast<std::size_t>(Of)]);
    if (Rows > 1)
        text += Materials::Compose(Rows, "x", Columns);
    else if (Columns > 1)
        text += Materials::Compose(Columns);
    if (IsArray())
        text += Materials::Compose("[", Length, "]");
    return text;
}

Type VectorType(Element element, int columns)
{
    return {element, 1, static_cast<std::uint8_t>(columns), 0, nullptr};
}

bool FindBuiltInType(std::string_view word, Type& type)
{
    for (std::size_t i = 0; i < std::size(elementWords); ++i) {
        if (word[0] != elementWords[i][0] || !word.starts_with(elementWords[i]))
            continue;
        type = Type();
        type.Of = static_cast<Element>(i);
        const std::string_view size = word.substr(elementWords[i].size());
        if (size.empty())
            return true;
        if (type.IsSampler() || type.Of == Element::Void || !IsSize(size[0]))
            return false;
        type.Columns = static_cast<std::uint8_t>(size[0] - '0');
        if (size.size() == 1)
            return true;
        type.Rows = type.Columns;
        if (size.size() != 3 || size[1] != 'x' || !IsSize(size[2]))
            return false;
        type.Columns = static_cast<std::uint8_t>(size[2] - '0');
        return type.Rows > 1 && type.Columns > 1;
    }
    return false;
}

bool Converts(const Type& from, const Type& to)
{
    if (!from.IsNumeric() || !to.IsNumeric())
        return from == to;
    if (from.IsScalar())
        return true;
    if (from.IsMatrix() != to.IsMatrix())
        return false;
    return from.Rows >= to.Rows && from.Columns >= to.Columns;
}

} // namespace Mox::Cg
