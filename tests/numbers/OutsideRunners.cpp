#include "tests/numbers/OutsideRunners.h"

#include "mox/Text.h"
#include "tests/numbers/CaseDrawer.h"
#include "tests/support/Browser.h"
#include "tests/support/TemporaryFolder.h"

#include <bit>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>

using namespace Mox;
using Materials::Compose;
using Json = nlohmann::json;

namespace {

constexpr std::size_t componentCount = 4;

std::vector<Numbers> ToPixels(const std::vector<std::uint32_t>& bits)
{
    std::vector<Numbers> pixels(bits.size() / componentCount);
    for (std::size_t i = 0; i < pixels.size() * componentCount; ++i)
        pixels[i / componentCount][i % componentCount] = std::bit_cast<float>(bits[i]);
    return pixels;
}

} // namespace

std::vector<RunResult> DrawInBrowser(const std::vector<BrowserRun>& runs, std::size_t expressions,
                                     const std::vector<Numbers>& inputs,
                                     const std::vector<RunBlock>& blocks)
{
    Json request{{"width", CaseDrawer::Count}, {"height", expressions}};
    for (const Host::DrawStream& stream : CaseDrawer::MakeCall(expressions, inputs).Streams)
        request["streams"].push_back({{"location", stream.Location},
                                      {"components", stream.Components},
                                      {"values", stream.Values}});
    for (const RunBlock& block : blocks) {
        Json bytes = Json::array();
        for (const std::byte byte : block.Uniforms.Bytes)
            bytes.push_back(std::to_integer<int>(byte));
        request["blocks"].push_back(
            {{"name", block.Name}, {"number", block.Uniforms.Set}, {"bytes", std::move(bytes)}});
    }
    for (const BrowserRun& run : runs)
        request["runs"].push_back(
            {{"language", run.Language}, {"vertex", run.Vertex}, {"fragment", run.Fragment}});
    std::vector<RunResult> results;
    for (const Json& result : AskBrowser(request)) {
        if (result.contains("error"))
            results.push_back({{}, result["error"]});
        else
            results.push_back({ToPixels(result["pixels"]), {}});
    }
    return results;
}

std::vector<RunResult> RunMsl(const std::vector<std::string>& programs,
                              const std::vector<std::size_t>& rows,
                              const std::vector<Numbers>& inputs,
                              const std::vector<RunBlock>& blocks)
{
    std::ostringstream source;
    source << "#include <metal_stdlib>\n#include <cstdio>\n#include <cstring>\n";
    for (std::size_t i = 0; i < programs.size(); ++i)
        source << "namespace stage" << i << " {\n" << programs[i] << "}\n";
    source << "static const float inputs[][4] = {\n";
    for (const Numbers& input : inputs)
        source << "{ " << input[0] << ", " << input[1] << ", " << input[2] << ", " << input[3]
               << " },\n";
    source << "};\n";
    for (const RunBlock& block : blocks) {
        source << "alignas(16) static const unsigned char " << block.Name << "[] = { ";
        for (const std::byte byte : block.Uniforms.Bytes)
            source << std::to_integer<int>(byte) << ", ";
        source << "};\n";
    }
    source << R"(template <class Run>
void Show(int rows, Run run)
{
	for (int row = 0; row < rows; ++row)
		for (int at = 0; at < int(sizeof inputs/sizeof *inputs); at += 3) {
			const auto vector = [&](int i) { const float* v = inputs[at + i]; return metal::float4(v[0], v[1], v[2], v[3]); };
			const metal::float4 colour = run(vector(0), vector(1), vector(2), float(row));
			for (int i = 0; i < 4; ++i) {
				unsigned bits;
				std::memcpy(&bits, &colour.Data[i], sizeof bits);
				std::printf("%u\n", bits);
			}
		}
}
int main()
{
)";
    for (std::size_t i = 0; i < programs.size(); ++i) {
        source << "\tShow(" << rows[i] << ", [](auto a, auto b, auto c, float k) { return stage"
               << i << "::fragmentMain({ a, b, c, k }";
        for (const RunBlock& block : blocks)
            source << ", reinterpret_cast<const stage" << i << "::" << block.Name << "&>("
                   << block.Name << ")";
        source << ").colour; });\n";
    }
    source << "}\n";
    const TemporaryFolder folder;
    const std::filesystem::path program = folder.Path() / "programs";
    RunCommand(Compose(MOX_CXX_COMPILER " -std=c++20 -w -I" MOX_TEST_DATA "/languages/metal -o ",
                       Quoted(program), " ", Quoted(folder.Write("programs.cpp", source.str()))),
               folder.Path() / "log");
    RunCommand(Quoted(program), folder.Path() / "log");
    std::vector<RunResult> results;
    std::ifstream stream(folder.Path() / "log");
    for (const std::size_t count : rows) {
        std::vector<std::uint32_t> bits(count * CaseDrawer::Count * componentCount);
        for (std::uint32_t& word : bits)
            stream >> word;
        if (!stream)
            throw std::runtime_error("the programs in MSL end early");
        results.push_back({ToPixels(bits), {}});
    }
    return results;
}
