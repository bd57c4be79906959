#include "tests/numbers/other/ModuleLayout.h"

#include "mox/Text.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <optional>
#include <span>
#include <spirv/unified1/spirv.hpp>
#include <stdexcept>
#include <string_view>

namespace Mox::Host {

using Materials::Compose;

namespace {

using Instruction = std::span<const std::uint32_t>;

constexpr std::size_t headerSize = 5;

spv::Op OpcodeOf(Instruction instruction)
{
    return static_cast<spv::Op>(instruction[0] & spv::OpCodeMask);
}

/// Calls visit with each instruction of a well-formed module.
template <class Visit>
void ForEachInstruction(const SpirvWords& words, Visit visit)
{
    for (std::size_t at = headerSize; at < words.size();) {
        const std::size_t count = words[at] >> spv::WordCountShift;
        visit(Instruction(words).subspan(at, count));
        at += count;
    }
}

/// The string that starts at the given word of an instruction.
std::string TextAt(Instruction instruction, std::size_t word)
{
    return reinterpret_cast<const char*>(instruction.data() + word);
}

void Append(SpirvWords& words, Instruction instruction)
{
    words.insert(words.end(), instruction.begin(), instruction.end());
}

void Append(SpirvWords& words, spv::Op opcode, std::span<const std::uint32_t> operands,
            const std::string& text)
{
    SpirvWords packed(text.size() / 4 + 1);
    std::memcpy(packed.data(), text.data(), text.size());
    const std::size_t count = 1 + operands.size() + packed.size();
    words.push_back(static_cast<std::uint32_t>(count << spv::WordCountShift) | opcode);
    Append(words, operands);
    Append(words, packed);
}

void AppendDecoration(SpirvWords& words, std::uint32_t id, spv::Decoration decoration,
                      std::uint32_t value)
{
    Append(words,
           std::initializer_list<std::uint32_t>{(4u << spv::WordCountShift) | spv::OpDecorate, id,
                                                static_cast<std::uint32_t>(decoration), value});
}

/// The number after the keyword in a semantic such as "TEXCOORD3".
std::optional<std::uint32_t> NumberBehind(std::string_view word, const std::string& semantic)
{
    if (!semantic.starts_with(word) || semantic.size() == word.size())
        return std::nullopt;
    return static_cast<std::uint32_t>(std::strtoul(semantic.c_str() + word.size(), nullptr, 10));
}

/// The location of a variable of a program.
struct VariablePlace
{
    std::optional<std::uint32_t> Location;
    std::string Name;
};

using Places = std::map<std::uint32_t, VariablePlace>;

VariablePlace PlaceOfSemantic(const std::string& semantic, const std::string& name)
{
    if (const auto attribute = NumberBehind("ATTR", semantic))
        return {attribute, name};
    if (const auto interpolant = NumberBehind("TEXCOORD", semantic))
        return {interpolant, Compose("interpolant", *interpolant)};
    if (const auto target = NumberBehind("SV_TARGET", semantic))
        return {target, Compose("fragmentColour", *target)};
    return {{}, name};
}

Places FindPlaces(const SpirvWords& words)
{
    Places places;
    std::map<std::uint32_t, std::string> names;
    ForEachInstruction(words, [&](Instruction instruction) {
        if (OpcodeOf(instruction) == spv::OpName)
            names[instruction[1]] = TextAt(instruction, 2);
        if (OpcodeOf(instruction) == spv::OpDecorateString) {
            const std::uint32_t id = instruction[1];
            places[id] = PlaceOfSemantic(TextAt(instruction, 3), names[id]);
        }
    });
    return places;
}

/// Whether the instruction assigns a location chosen by the front end to one of these variables.
bool IsOldPlace(Instruction instruction, const Places& places)
{
    if (OpcodeOf(instruction) != spv::OpDecorate || !places.contains(instruction[1]))
        return false;
    return instruction[2] == spv::DecorationLocation;
}

bool IsSemanticMark(Instruction instruction)
{
    return OpcodeOf(instruction) == spv::OpDecorateString ||
           OpcodeOf(instruction) == spv::OpMemberDecorateString ||
           (OpcodeOf(instruction) == spv::OpExtension &&
            TextAt(instruction, 1) == "SPV_GOOGLE_hlsl_functionality1");
}

bool IsDecoration(Instruction instruction)
{
    return OpcodeOf(instruction) == spv::OpDecorate ||
           OpcodeOf(instruction) == spv::OpMemberDecorate ||
           OpcodeOf(instruction) == spv::OpDecorateString;
}

void AppendPlaces(SpirvWords& words, const Places& places)
{
    for (const auto& [id, place] : places) {
        if (place.Location)
            AppendDecoration(words, id, spv::DecorationLocation, *place.Location);
    }
}

} // namespace

SpirvWords LayOutModule(const SpirvWords& words)
{
    const Places places = FindPlaces(words);
    SpirvWords result(words.begin(), words.begin() + headerSize);
    bool isPlaced = false;
    ForEachInstruction(words, [&](Instruction instruction) {
        if (!isPlaced && IsDecoration(instruction)) {
            AppendPlaces(result, places);
            isPlaced = true;
        }
        if (IsOldPlace(instruction, places) || IsSemanticMark(instruction))
            return;
        if (OpcodeOf(instruction) != spv::OpName)
            Append(result, instruction);
        else if (const auto place = places.find(instruction[1]); place != places.end())
            Append(result, spv::OpName, instruction.subspan(1, 1), place->second.Name);
    });
    return result;
}

} // namespace Mox::Host
