#include "mox/program/CrossingLayout.h"

#include "mox/Text.h"

#include <algorithm>
#include <bit>
#include <numeric>

namespace Mox::Host {

namespace {

using Materials::Compose;

constexpr std::int32_t registerWidth = 4;

std::vector<std::int32_t> ComponentsOf(ComponentMask mask)
{
    std::vector<std::int32_t> components;
    for (std::int32_t i = 0; i < registerWidth; ++i) {
        if ((mask >> i & 1u) != 0)
            components.push_back(i);
    }
    return components;
}

/// Registers, each filled from its first component on.
class Registers
{
public:
    explicit Registers(std::span<const std::int32_t> numbers)
        : _numbers(numbers), _used(numbers.size())
    {}

    /// Returns the first register with the given number of free components, or the end.
    std::size_t Find(std::int32_t width) const
    {
        const auto room = std::find_if(_used.begin(), _used.end(), [&](std::int32_t used) {
            return used + width <= registerWidth;
        });
        return static_cast<std::size_t>(room - _used.begin());
    }

    bool IsEnd(std::size_t index) const { return index == _used.size(); }

    /// Appends a component of a value to a register.
    void Put(std::size_t index, std::int32_t component, std::vector<CrossingPiece>& pieces)
    {
        const std::int32_t place = _used[index]++;
        if (!pieces.empty()) {
            CrossingPiece& last = pieces.back();
            if (last.Register == _numbers[index] && last.Component + last.Width == component &&
                last.RegisterComponent + last.Width == place) {
                ++last.Width;
                return;
            }
        }
        pieces.push_back({component, 1, _numbers[index], place});
    }

private:
    std::span<const std::int32_t> _numbers;
    std::vector<std::int32_t> _used; ///< number of used components of each register
};

/// Returns the texture coordinate registers that no node of the material uses.
std::vector<std::int32_t> FindFreeRegisters(const ProgramGraph& graph)
{
    std::set<std::int32_t> taken;
    for (const ProgramNode& node : graph.Nodes()) {
        const ShaderRegister& place = node.Shader->Register;
        if (node.Shader->Kind == ShaderNodeKind::CgRegisterParameter &&
            (place.Type == ShaderRegisterType::VertexTexCoord ||
             place.Type == ShaderRegisterType::FragmentTexCoord))
            taken.insert(place.Index);
    }
    std::vector<std::int32_t> free;
    for (std::int32_t i = 0; i < GetRegisterInfo(ShaderRegisterType::FragmentTexCoord).Count; ++i) {
        if (!taken.contains(i))
            free.push_back(i);
    }
    return free;
}

void ReportCrowd(const ProgramGraph& graph, const StageChoice& stages, std::size_t registers,
                 ProblemList& problems)
{
    std::string values;
    for (const auto& [value, components] : stages.Crossing()) {
        values += Compose(values.empty() ? "" : ", ", DescribeValue(graph, value), " (",
                          graph.PortOf(value).Type.Format(), ")");
    }
    problems.Fail(
        "too-many-interpolants", {},
        Compose(
            "the values passed from the vertex program to the fragment program do not fit into ",
            registers, " registers of four components: ", values));
}

} // namespace

std::optional<std::vector<std::vector<CrossingPiece>>>
PackCrossing(const std::vector<ComponentMask>& values, std::span<const std::int32_t> registers)
{
    std::vector<std::size_t> order(values.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return std::popcount(values[a]) > std::popcount(values[b]);
    });
    Registers packed(registers);
    std::vector<std::vector<CrossingPiece>> pieces(values.size());
    std::vector<std::size_t> left;
    for (const std::size_t value : order) {
        const std::vector<std::int32_t> components = ComponentsOf(values[value]);
        const std::size_t index = packed.Find(static_cast<std::int32_t>(components.size()));
        if (packed.IsEnd(index)) {
            left.push_back(value);
            continue;
        }
        for (const std::int32_t component : components)
            packed.Put(index, component, pieces[value]);
    }
    for (const std::size_t value : left) {
        for (const std::int32_t component : ComponentsOf(values[value])) {
            const std::size_t index = packed.Find(1);
            if (packed.IsEnd(index))
                return std::nullopt;
            packed.Put(index, component, pieces[value]);
        }
    }
    return pieces;
}

std::string_view LettersOf(std::int32_t first, std::int32_t width)
{
    constexpr std::string_view letters = "xyzw";
    return letters.substr(static_cast<std::size_t>(first), static_cast<std::size_t>(width));
}

CrossingLayout::CrossingLayout(const ProgramGraph& graph, StageCopies copies, ProblemList& problems)
    : _graph(graph), _registers(FindFreeRegisters(graph))
{
    ProblemList found;
    if (copies == StageCopies::HandedOn && TryCopies(copies, found))
        return;
    ProblemList foundTwice;
    if (!TryCopies(StageCopies::MadeTwice, foundTwice) && !foundTwice.HasErrors())
        ReportCrowd(graph, *_stages, _registers.size(), foundTwice);
    problems.Append(foundTwice);
}

/// @returns whether the programs can be written with this choice
bool CrossingLayout::TryCopies(StageCopies copies, ProblemList& problems)
{
    _stages.emplace(_graph, copies, problems);
    return !problems.HasErrors() && LayOut();
}

/// @returns false if the crossing values do not fit into the registers
bool CrossingLayout::LayOut()
{
    std::vector<ComponentMask> masks;
    for (const auto& [value, components] : _stages->Crossing())
        masks.push_back(components);
    const auto packed = PackCrossing(masks, _registers);
    if (!packed)
        return false;
    auto pieces = packed->begin();
    for (const auto& [value, components] : _stages->Crossing())
        _pieces.emplace(value, *pieces++);
    return true;
}

} // namespace Mox::Host
