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

/// Programs contain the size of a cell with six digits.
double Reciprocal(int number)
{
    return std::stod(Compose(static_cast<float>(1.0 / number)));
}

/// For some numbers of columns, six digits are less than the exact reciprocal, and the first frame
/// of a row is mistaken for one of the previous row. Such frames are excluded here and tested
/// below.
bool FallsShort(double frame, int columns)
{
    return std::floor(frame / columns) != std::floor(frame * Reciprocal(columns));
}

/// The grid position of a frame: columns continue without bounds, and the texture repeats.
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

/// Where a component of an output comes from.
struct Source
{
    double Frame;
    double Uv; ///< coordinate along the axis of the component
    FrameGrid Grid;
    std::size_t At; ///< components of two outputs alternate between both axes

    bool IsAlongU() const { return At % 2 == 0; }
    double Size() const { return 1.0 / (IsAlongU() ? Grid.Columns : Grid.Rows); }

    /// The cell of the frame for the first output, or that of the next frame for the second output.
    std::optional<double> Cell() const
    {
        const auto cell = FindCell(Frame + (At < 2 ? 0.0 : 1.0), Grid.Columns);
        if (!cell)
            return std::nullopt;
        return IsAlongU() ? cell->X : cell->Y;
    }
};

Result Place(const Source& source)
{
    const auto cell = source.Cell();
    if (!cell)
        return std::nullopt;
    const double sum = source.Uv + *cell;
    return Expected{sum * source.Size(), (std::abs(sum) + std::abs(source.Uv)) * source.Size()};
}

Result Offset(const Source& source)
{
    const auto cell = source.Cell();
    return cell ? Result(Expected{*cell, 1.0}) : std::nullopt;
}

Result Scale(const Source& source)
{
    return Expected{source.Size(), source.Size()};
}

Result Blend(const Source& source)
{
    return Expected{source.Frame - std::floor(source.Frame), 1.0};
}

struct Output
{
    const char* Mode;
    const char* Ports;
    std::size_t Count; ///< number of components
    Tolerance Allowed;
    Result (*Of)(const Source& source);
};

constexpr Output outputs[] = {
    {"Basic", "out_uv1 out_uv2", 4, printed, Place},
    {"Basic", "out_blend", 1, exact, Blend},
    {"Advanced", "out_offset1 out_offset2", 4, exact, Offset},
    {"Advanced", "out_scale", 2, printed, Scale},
    {"Advanced", "out_blend", 1, exact, Blend},
};

std::string WriteMaterial(const FrameGrid& grid, const std::string& settings)
{
    return Compose("frame Feed:1\nnode CoreAnimatedUv; Rows=", grid.Rows,
                   "; Columns=", grid.Columns, "; ", settings, "\nframe.read -> node.in_frame\n");
}

using AnimatedUvNumbers = NumbersTest;

TEST_F(AnimatedUvNumbers, OfAllOutputs)
{
    RunInputs inputs;
    const auto& frames = inputs.Streams["frame"] = MakeFrames();
    const auto& uvs = inputs.Streams["uv"] = MakeValues(71, frames.size());
    for (const auto& [mode, ports, count, allowed, reference] : outputs) {
        Comparison comparison(Compose(mode, " ", ports), allowed);
        const std::string feed =
            mode == std::string("Basic") ? "uv Feed:2\nuv.read -> node.in_uv\n" : "";
        for (const FrameGrid& grid : frameGrids) {
            const auto expected = [&, of = reference](std::size_t i, std::size_t at) {
                return of({frames[i][0], uvs[i][at % 2], grid, at});
            };
            for (const char* level : {"; Execution Level=Vertex", "; Execution Level=Fragment"}) {
                const std::string material = WriteMaterial(grid, Compose("Mode=", mode, level));
                for (const char* precision : {"float", "half"})
                    Compare(material + feed + WriteSink(precision, ports), inputs, count, expected,
                            comparison);
            }
        }
    }
}

/// Documents where six digits are too few: entire rows, starting with the first one. A change here
/// affects artists, so the expected values are listed.
TEST_F(AnimatedUvNumbers, TakeTheFirstFrameOfARowForTheLastRowsWhereSixDigitsFallShort)
{
    for (const int columns : {3, 7, 9, 12}) {
        RunInputs inputs;
        const auto first = static_cast<float>(columns);
        inputs.Streams["frame"] = {{first - 1.0f}, {first}, {first + 0.25f}, {2.0f * first}};
        const std::vector<Numbers> results = Evaluate(WriteMaterial({1, columns}, "Mode=Advanced") +
                                                          WriteSink("float", "out_offset1"),
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
