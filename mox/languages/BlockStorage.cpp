#include "mox/languages/BlockStorage.h"

#include <algorithm>

namespace Mox::Languages {

namespace {

constexpr std::uint32_t scalarSize = 4;
constexpr std::uint32_t vectorSize = 16;

std::uint32_t RoundUp(std::uint32_t size, std::uint32_t alignment)
{
    return (size + alignment - 1) / alignment * alignment;
}

/// Returns the offset after the last member of a block.
std::uint32_t EndOf(const UniformBlock& block)
{
    if (block.Members.empty())
        return 0;
    const BlockMember& last = block.Members.back();
    return last.Offset + GetStd140(last.Of->Of).Size;
}

} // namespace

Std140 GetStd140(const Cg::Type& type)
{
    const bool isMatrix = type.Rows > 1;
    if (isMatrix || type.IsArray()) {
        const std::uint32_t element = vectorSize * (isMatrix ? type.Columns : 1u);
        return {element * std::max<std::uint32_t>(type.Length, 1), vectorSize,
                type.IsArray() ? element : 0, isMatrix ? vectorSize : 0};
    }
    const std::uint32_t columns = type.Columns;
    return {scalarSize * columns, scalarSize * (columns == 3 ? 4 : columns), 0, 0};
}

void AppendMember(UniformBlock& block, const Cg::Variable& variable, std::string name)
{
    const std::uint32_t offset = RoundUp(EndOf(block), GetStd140(variable.Of).Alignment);
    block.Members.push_back({&variable, std::move(name), offset});
}

std::uint32_t SizeOf(const UniformBlock& block)
{
    return RoundUp(EndOf(block), vectorSize);
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
