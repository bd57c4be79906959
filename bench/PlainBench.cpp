#include "MeasureNodes.h"
#include "Pipeline.h"
#include "PlainNode.h"
#include "mox/authoring/GuiNode.h"

#include <benchmark/benchmark.h>
#include <string>
#include <utility>
#include <vector>

namespace Mox::Bench {

namespace {

/// The properties of a node as rows that refer to the node's strings.
std::vector<PlainRow> RowsOf(const Materials::GuiNode& node)
{
    std::vector<PlainRow> rows;
    for (const auto& property : node.Properties->Properties) {
        PlainRow row{property->Name.c_str(), property->Help.c_str(),
                     property->Editable,     property->Visible,
                     property->Style,        static_cast<int>(property->Kind),
                     property->Text.c_str(), property->Integer,
                     property->Floats,       {}};
        for (const std::string& choice : property->Choices)
            row.Choices.push_back(choice.c_str());
        rows.push_back(std::move(row));
    }
    return rows;
}

} // namespace

void RegisterPlainBenchmarks(const Workshop& workshop)
{
    const auto node = workshop.Plugins.CreateNode("CoreMaths").Handle();
    const std::vector<PlainRow> rows = RowsOf(*node);
    for (const std::int64_t count : {100, 1000, 10000, 100000}) {
        benchmark::RegisterBenchmark("plain/CoreMaths", [node, rows](benchmark::State& state) {
            MeasureNodes(state, [&] { return CreatePlainNode(rows); });
        })->Arg(count);
    }
}

} // namespace Mox::Bench
