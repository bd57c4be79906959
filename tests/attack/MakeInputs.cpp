#include "mox/Text.h"
#include "mox/document/MaterialDocument.h"
#include "mox/host/File.h"
#include "tests/support/Random.h"
#include "tests/support/RandomMaterial.h"

#include <algorithm>
#include <exception>
#include <fstream>
#include <string>
#include <vector>

// Writes material documents for an attack on the program: random materials and given documents,
// most of them corrupted in a few places. The same seed gives the same documents.

namespace {

/// Values that attributes should not have, and a few valid ones.
std::vector<std::string> HostileValues()
{
    std::vector<std::string> values = {std::string(1001, 'n'), std::string(70000, 'n'),
                                       std::string(5000, '(')};
    std::ifstream file(MOX_TEST_DATA "/attack/values.txt");
    for (std::string line; std::getline(file, line);)
        values.push_back(line);
    return values;
}

/// Corrupts a few places of a document.
class Breaker
{
public:
    explicit Breaker(Random& random) : _random(random) {}

    std::string Break(std::string text)
    {
        for (std::size_t count = _random.Below(6); count > 0 && !text.empty(); --count) {
            const std::size_t line = LineAt(text);
            const std::size_t length = text.find('\n', line) + 1 - line;
            switch (_random.Below(8)) {
            case 0:
                text.erase(_random.Below(text.size()));
                break;
            case 1:
                text[_random.Below(text.size())] = static_cast<char>(_random.Below(256));
                break;
            case 2:
                text.insert(LineAt(text), text.substr(line, length));
                break;
            case 3:
                text.erase(line, length);
                break;
            default:
                ReplaceValue(text);
            }
        }
        return text;
    }

private:
    /// The start of some line.
    std::size_t LineAt(const std::string& text) const
    {
        return text.rfind('\n', _random.Below(text.size())) + 1;
    }

    void ReplaceValue(std::string& text) const
    {
        const std::size_t equals = text.find("=\"", _random.Below(text.size()));
        if (equals == std::string::npos)
            return;
        const std::size_t end = std::min(text.find('"', equals + 2), text.size());
        text.replace(equals + 2, end - equals - 2, _random.Pick(_values));
    }

    Random& _random;
    const std::vector<std::string> _values = HostileValues();
};

} // namespace

/// Usage: mox_attack_inputs SEED COUNT FOLDER DOCUMENT...
int main(int argumentCount, char** arguments)
{
    try {
        const auto seed = static_cast<std::uint32_t>(std::stoul(arguments[1]));
        const auto count = static_cast<std::uint32_t>(std::stoul(arguments[2]));
        const std::filesystem::path folder = arguments[3];
        const std::vector<std::string> documents(arguments + 4, arguments + argumentCount);
        Random random(seed);
        Breaker breaker(random);
        for (std::uint32_t i = 0; i < count; ++i) {
            const int nodes = 1 + static_cast<int>(random.Below(12));
            const std::string text =
                random.Below(2) == 0
                    ? Mox::Host::ReadFile(random.Pick(documents))
                    : Mox::Host::FormatMaterialDocument(MakeRandomMaterial(seed + i, nodes));
            std::ofstream(folder / Mox::Materials::Compose("attack_", i, ".xml"), std::ios::binary)
                << breaker.Break(text);
        }
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "mox_attack_inputs: " << error.what() << '\n';
        return 1;
    }
}
