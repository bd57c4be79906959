#include "MaterialShapes.h"

#include <exception>
#include <iostream>
#include <string>

/// Prints a material document for benchmarks. Usage: mox_bench_material SHAPE COUNT
int main(int argumentCount, char** arguments)
{
    try {
        if (argumentCount != 3) {
            std::cerr << "usage: mox_bench_material chain|values|tree|fan|layered COUNT\n";
            return 2;
        }
        const Mox::Bench::Shape shape = Mox::Bench::ParseShape(arguments[1]);
        std::cout << Mox::Bench::MakeDocument(shape, std::stoul(arguments[2]));
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "mox_bench_material: " << error.what() << '\n';
        return 1;
    }
}
