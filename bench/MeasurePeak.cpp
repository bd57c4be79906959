#include "Pipeline.h"

#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>
#include <sys/resource.h>

namespace {

std::size_t PeakBytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

} // namespace

/// Prints the peak memory of the whole pipeline for a document of COUNT nodes, in bytes per node.
int main(int argumentCount, char** arguments)
{
    try {
        if (argumentCount != 3)
            throw std::invalid_argument("usage: mox_bench_peak COUNT DOCUMENT");
        const Mox::Bench::Workshop workshop;
        const std::size_t before = PeakBytes();
        Mox::Bench::RunPipeline(workshop, arguments[2], Mox::Bench::Language::Cg);
        std::cout << (PeakBytes() - before) / std::stoul(arguments[1]) << '\n';
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "mox_bench_peak: " << error.what() << '\n';
        return 1;
    }
}
