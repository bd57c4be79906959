#include "MeasureNodes.h"
#include "PlainNode.h"
#include "Road.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <memory>
#include <vector>

namespace Mox::Bench {

namespace {

/// The properties of a new node of a type as plain rows.
std::vector<PlainProperty> RowsOf(const Materials::GuiNode& node)
{
    std::vector<PlainProperty> rows;
    for (const auto& property : node.Properties->Properties) {
        PlainProperty row;
        row.Name = property->Name;
        row.Help = property->Help;
        row.Editable = property->Editable;
        row.Visible = property->Visible;
        row.Style = property->Style;
        row.Kind = static_cast<int>(property->Kind);
        row.Text = property->Text;
        row.Integer = property->Integer;
        std::copy(std::begin(property->Floats), std::end(property->Floats), row.Floats);
        row.Choices = property->Choices;
        rows.push_back(row);
    }
    return rows;
}

} // namespace

void RegisterPlainBenchmarks(const Workshop& workshop)
{
    const auto rows = std::make_shared<std::vector<PlainProperty>>(
        RowsOf(*workshop.Plugins.CreateNode("CoreMaths")));
    for (const std::int64_t count : {1000, 100000}) {
        benchmark::RegisterBenchmark("plain/CoreMaths", [rows](benchmark::State& state) {
            MeasureNodes(state, [&] { return CreatePlainNode(*rows); });
        })->Arg(count);
    }
}

} // namespace Mox::Bench
