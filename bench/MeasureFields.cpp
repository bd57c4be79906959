#include "Pipeline.h"
#include "mox/authoring/GuiEdge.h"
#include "mox/authoring/GuiNode.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <exception>
#include <iostream>
#include <malloc.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace Mox;

std::size_t BytesInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

/// Memory of the nodes, with ports, and the edges of a chain, stored in the classes of the node
/// interface, in bytes.
std::size_t MeasureFields(const Bench::Workshop& workshop, std::size_t count)
{
    std::vector<boost::shared_ptr<Materials::GuiNode>> nodes;
    std::vector<boost::shared_ptr<Materials::GuiEdge>> edges;
    nodes.reserve(count);
    edges.reserve(count);
    const std::size_t before = BytesInUse();
    for (std::size_t i = 0; i < count; ++i) {
        nodes.push_back(workshop.Plugins.CreateNode("CoreMaths").Handle());
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

/// Prints the bytes per node of a chain of COUNT nodes, counting only the fields of the nodes, as
/// reported by the C library's allocator.
int main(int argumentCount, char** arguments)
{
    try {
        if (argumentCount != 2)
            throw std::invalid_argument("usage: mox_bench_fields COUNT");
        const Bench::Workshop workshop;
        const std::size_t count = std::stoul(arguments[1]);
        std::cout << MeasureFields(workshop, count) / count << '\n';
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "mox_bench_fields: " << error.what() << '\n';
        return 1;
    }
}
