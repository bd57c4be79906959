#include "Road.h"
#include "mox/authoring/GuiEdge.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <exception>
#include <iostream>
#include <malloc.h>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <vector>

namespace {

using namespace Mox;

std::size_t BytesInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

std::size_t PeakBytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

/// Bytes of nodes with ports and of the edges of a chain, as the classes of the interface hold
/// them.
std::size_t MeasureFields(const Bench::Workshop& workshop, std::size_t count)
{
    std::vector<boost::shared_ptr<Materials::GuiNode>> nodes;
    std::vector<boost::shared_ptr<Materials::GuiEdge>> edges;
    nodes.reserve(count);
    edges.reserve(count);
    const std::size_t before = BytesInUse();
    for (std::size_t i = 0; i < count; ++i) {
        nodes.push_back(workshop.Plugins.CreateNode("CoreMaths"));
        if (i == 0)
            continue;
        const auto& edge = edges.emplace_back(boost::make_shared<Materials::GuiEdge>());
        edge->Tail = nodes[i - 1];
        edge->Head = nodes[i];
        edge->TailPort = "out_value";
        edge->HeadPort = "in_value1";
        nodes[i - 1]->AddOutEdge(edge);
        nodes[i]->AddInEdge(edge);
    }
    return BytesInUse() - before;
}

} // namespace

/// Prints bytes for each node of a chain: mox_bench_memory COUNT for the fields alone, and
/// mox_bench_memory COUNT DOCUMENT for the peak of the whole road of that document.
int main(int argumentCount, char** arguments)
{
    try {
        if (argumentCount < 2)
            throw std::invalid_argument("usage: mox_bench_memory COUNT [DOCUMENT]");
        const Bench::Workshop workshop;
        const std::size_t count = std::stoul(arguments[1]);
        std::size_t bytes = 0;
        if (argumentCount == 2) {
            bytes = MeasureFields(workshop, count);
        } else {
            const std::size_t before = PeakBytes();
            Bench::TravelRoad(workshop, arguments[2]);
            bytes = PeakBytes() - before;
        }
        std::cout << bytes / count << '\n';
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "mox_bench_memory: " << error.what() << '\n';
        return 1;
    }
}
