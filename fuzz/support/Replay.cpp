// Runs a fuzz target on known inputs, without the fuzzer. Usage: PROGRAM FILE|FOLDER...

#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

int count = 0;

void Replay(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    std::cout << file.string() << std::endl; // flushed, to show which input causes a crash
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    ++count;
}

void ReplayAll(const std::filesystem::path& path)
{
    if (!std::filesystem::is_directory(path)) {
        Replay(path);
        return;
    }
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
        if (entry.is_regular_file())
            Replay(entry.path());
    }
}

} // namespace

int main(int argumentCount, char** arguments)
{
    try {
        for (int i = 1; i < argumentCount; ++i)
            ReplayAll(arguments[i]);
    } catch (const std::exception& error) {
        std::cerr << error.what() << "\n";
        return 1;
    }
    if (count == 0) {
        std::cerr << "there is no input\n";
        return 1;
    }
    return 0;
}
