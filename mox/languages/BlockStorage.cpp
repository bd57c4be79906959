#include "mox/languages/BlockStorage.h"

#include <algorithm>

namespace Mox::Languages {

Std140 GetStd140(const Cg::Type& type)
{
    constexpr std::uint32_t scalar = 4;
    constexpr std::uint32_t vector = 16;
    const std::uint32_t length = std::max<std::uint32_t>(type.Length, 1);
    if (type.Rows > 1)
        return {vector * type.Columns * length, vector};
    if (type.IsArray())
        return {vector * length, vector};
    const std::uint32_t columns = type.Columns;
    return {scalar * columns, scalar * (columns == 3 ? 4 : columns)};
}

bool IsStoredAsVectors(const Cg::Type& type)
{
    return type.Rows > 1 ? type.Rows == 2 : type.IsArray();
}

int CountStoredVectors(const Cg::Type& type)
{
    return std::max<int>(type.Length, 1) * (type.Rows > 1 ? type.Columns : 1);
}

} // namespace Mox::Languages
