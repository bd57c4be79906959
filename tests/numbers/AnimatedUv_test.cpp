#include "mox/Text.h"
#include "tests/numbers/NumbersTest.h"

#include <cmath>

using Mox::Materials::Compose;

namespace {

struct FrameGrid
{
    int Rows;
    int Columns;
};

constexpr FrameGrid frameGrids[] = {{1, 1}, {1, 2}, {2, 1}, {4, 4}, {2, 8},  {5, 5},   {3, 2},
                                    {2, 3}, {6, 6}, {7, 7}, {9, 3}, {8, 10}, {12, 12}, {16, 16}};

/// Programs hold the size of a cell with six digits.
double Reciprocal(int number)
{
    return std::stod(Compose(static_cast<float>(1.0 / number)));
}

/// With some numbers of columns, six digits fall short of the reciprocal, and the first frame of a
/// row is taken for one of the row before. Such frames are left out here and tested below.
bool FallsShort(double frame, int columns)
{
    return std::floor(frame / columns) != std::floor(frame * Reciprocal(columns));
}

/// The place of a frame in the grid: columns run on, and the texture repeats itself.
struct Cell
{
    double X;
    double Y;
};

std::optional<Cell> FindCell(double frame, int columns)
{
    if (FallsShort(frame, columns))
        return std::nullopt;
    return Cell{std::floor(frame), std::floor(frame / columns)};
}

std::vector<Numbers> MakeFrames()
{
    std::vector<Numbers> frames;
    for (int frame = -20; frame < 300; ++frame) {
        for (const float part : {0.0f, 0.25f, 0.9990234375f})
            frames.push_back({static_cast<float>(frame) + part});
    }
    return frames;
}

constexpr Tolerance printed = {
    50.0, "the size of a cell has six digits: up to 5e-6, times the frame's number"};
constexpr Tolerance exact = {0.0, "floor, and a difference of neighbours"};

std::string WriteMaterial(const FrameGrid& grid, const std::string& settings)
{
    return Compose("frame Feed:1\nnode CoreAnimatedUv; Rows=", grid.Rows,
                   "; Columns=", grid.Columns, settings, "\nframe.read -> node.in_frame\n");
}

class AnimatedUvNumbers : public NumbersTest
{
protected:
    AnimatedUvNumbers()
    {
        _inputs.Streams["frame"] = MakeFrames();
        _inputs.Streams["uv"] = MakeValues(71, FrameCount());
    }

    std::size_t FrameCount() const { return _inputs.Streams.at("frame").size(); }
    double FrameAt(std::size_t index) const { return _inputs.Streams.at("frame")[index][0]; }
    double UvAt(std::size_t index, std::size_t at) const
    {
        return _inputs.Streams.at("uv")[index][at];
    }

    /// What an output must have of the cell of a frame and of the next one.
    using OfCell = std::function<Expected(double cell, std::size_t index, std::size_t at)>;

    Expectation OfCells(const FrameGrid& grid, const OfCell& expected) const
    {
        return [=, this](std::size_t index, std::size_t at) -> Result {
            const auto cell = FindCell(FrameAt(index) + (at < 2 ? 0.0 : 1.0), grid.Columns);
            if (!cell)
                return std::nullopt;
            return expected(at % 2 == 0 ? cell->X : cell->Y, index, at % 2);
        };
    }

    Result Blend(std::size_t index) const
    {
        return Expected{FrameAt(index) - std::floor(FrameAt(index)), 1.0};
    }

    /// Calls for each grid with the size of its cells, and for each level and precision.
    template <class Call>
    static void ForEach(Call call)
    {
        for (const FrameGrid& grid : frameGrids) {
            const std::array size = {1.0 / grid.Columns, 1.0 / grid.Rows};
            for (const char* level : {"; Execution Level=Vertex", "; Execution Level=Fragment"}) {
                for (const char* precision : {"float", "half"})
                    call(grid, size, level, precision);
            }
        }
    }

    RunInputs _inputs;
};

TEST_F(AnimatedUvNumbers, OfBasicMode)
{
    Comparison places("uv1 and uv2", printed);
    Comparison blends("blend", exact);
    ForEach([&](const FrameGrid& grid, const auto& size, const char* level, const char* precision) {
        const auto place = [&](double cell, std::size_t index, std::size_t at) {
            const double uv = UvAt(index, at);
            return Expected{(uv + cell) * size[at],
                            (std::abs(uv + cell) + std::abs(uv)) * size[at]};
        };
        const auto blend = [&](std::size_t index, std::size_t) { return Blend(index); };
        const std::string material =
            WriteMaterial(grid, level) + "uv Feed:2\nuv.read -> node.in_uv\n";
        Compare(material + WriteSink(precision, "out_uv1 out_uv2"), _inputs, 4,
                OfCells(grid, place), places);
        Compare(material + WriteSink(precision, "out_blend"), _inputs, 1, blend, blends);
    });
}

TEST_F(AnimatedUvNumbers, OfAdvancedMode)
{
    Comparison offsets("offset1 and offset2", exact);
    Comparison scales("scale", printed);
    Comparison blends("blend", exact);
    ForEach([&](const FrameGrid& grid, const auto& size, const char* level, const char* precision) {
        const auto offset = [](double cell, std::size_t, std::size_t) {
            return Expected{cell, 1.0};
        };
        const auto scale = [&](std::size_t, std::size_t at) {
            return Expected{size[at], size[at]};
        };
        const auto blend = [&](std::size_t index, std::size_t) { return Blend(index); };
        const std::string material = WriteMaterial(grid, Compose("; Mode=Advanced", level));
        Compare(material + WriteSink(precision, "out_offset1 out_offset2"), _inputs, 4,
                OfCells(grid, offset), offsets);
        Compare(material + WriteSink(precision, "out_scale"), _inputs, 2, scale, scales);
        Compare(material + WriteSink(precision, "out_blend"), _inputs, 1, blend, blends);
    });
}

/// Where it is that six digits fall short: whole rows from the first one on. A change of this is
/// news for artists, so it is stated here.
TEST_F(AnimatedUvNumbers, TakeTheFirstFrameOfARowForTheLastRowsWhereSixDigitsFallShort)
{
    for (const int columns : {3, 7, 9, 12}) {
        RunInputs inputs;
        const auto first = static_cast<float>(columns);
        inputs.Streams["frame"] = {{first - 1.0f}, {first}, {first + 0.25f}, {2.0f * first}};
        const std::vector<Numbers> results = Evaluate(
            WriteMaterial({1, columns}, "; Mode=Advanced") + WriteSink("float", "out_offset1"),
            inputs);
        ASSERT_EQ(results.size(), 4u);
        const std::array<float, 4> rows = {results[0][1], results[1][1], results[2][1],
                                           results[3][1]};
        EXPECT_EQ(rows, (std::array{0.0f, 0.0f, 1.0f, 1.0f})) << columns;
    }
}

TEST_F(AnimatedUvNumbers, OfInputsWithoutEdges)
{
    const std::vector<Numbers> results =
        Evaluate("node CoreAnimatedUv\n" + WriteSink("float", "out_uv1 out_uv2"), {});
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(results[0], (Numbers{0.0f, 0.0f, 0.25f, 0.0f}));
}

} // namespace
