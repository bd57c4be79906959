#include "tests/numbers/FunctionNumbers.h"

#include "mox/Text.h"

#include <algorithm>

using Mox::Materials::Compose;

namespace {

constexpr std::size_t caseCount = 768;

/// All component counts, and inputs that are unconnected or narrower than the others.
std::vector<Use> UsesOf(const Ports& ports)
{
    const auto isWide = [](const Port& port) { return port.Is == Kind::Wide; };
    if (std::none_of(ports.begin(), ports.end(), isWide))
        return {{3, "float"}, {3, "half"}, {3, "float", 0u}};
    std::vector<Use> uses;
    for (const char* precision : {"float", "half"}) {
        for (std::size_t count = 1; count <= 4; ++count)
            uses.push_back({count, precision});
        uses.push_back({1, precision, 0u});
    }
    const auto wideCount = std::count_if(ports.begin(), ports.end(), isWide);
    for (std::size_t i = 0; i < ports.size(); ++i) {
        const unsigned port = 1u << i;
        if (isWide(ports[i]) && wideCount == 1)
            continue; // nothing else determines the count
        uses.push_back({3, i % 2 == 0 ? "float" : "half", ~port});
        if (isWide(ports[i]))
            uses.push_back({3, i % 2 == 0 ? "half" : "float", ~0u, port});
    }
    return uses;
}

/// One function, used in one way.
class FunctionRun
{
public:
    FunctionRun(const Function& function, const Use& use, const std::string& type,
                const char* output)
        : _function(function), _use(use)
    {
        std::string node = Compose("node ", type, function.Name, use.Settings);
        std::string feeds;
        for (std::size_t i = 0; i < function.Inputs.size(); ++i) {
            const Port& port = function.Inputs[i];
            if (*port.Property)
                node += Compose("; ", port.Property, "=", Show(port.Default));
            if (!IsConnected(i))
                continue;
            const std::string feed = Compose("feed", i);
            feeds +=
                Compose(feed, " Feed:", WidthOf(i), "\n", feed, ".read -> node.", port.Name, "\n");
            std::vector<Numbers>& values = Inputs.Streams[feed];
            values = NumbersTest::MakeValues(i + 1, caseCount);
            if (port.Is == Kind::Colour) {
                for (Numbers& value : values) {
                    for (float& component : value)
                        component = std::abs(component);
                }
            }
        }
        Material = node + "\n" + feeds + WriteSink(use.Precision, output);
        // Occasionally two inputs are equal.
        for (std::size_t i = 0; i < caseCount && !Inputs.Streams.empty(); i += 7) {
            for (auto& [name, values] : Inputs.Streams)
                values[i] = Inputs.Streams.begin()->second[i];
        }
    }

    std::size_t Width() const { return _function.Width > 0 ? _function.Width : _use.Count; }

    Result At(std::size_t index, std::size_t component) const
    {
        Arguments arguments{{}, _use.Count, component};
        for (std::size_t i = 0; i < _function.Inputs.size(); ++i) {
            for (std::size_t c = 0; c < 4; ++c) {
                arguments.Ports[i][c] =
                    IsConnected(i)
                        ? Inputs.Streams.at(Compose("feed", i))[index][WidthOf(i) == 1 ? 0 : c]
                        : _function.Inputs[i].Default;
            }
        }
        return _function.Of(arguments);
    }

    std::string Material;
    RunInputs Inputs;

private:
    bool IsConnected(std::size_t port) const
    {
        const Kind kind = _function.Inputs[port].Is;
        return (kind != Kind::Wide && kind != Kind::Scalar) || (_use.Connected >> port & 1u) != 0;
    }

    std::size_t WidthOf(std::size_t port) const
    {
        switch (_function.Inputs[port].Is) {
        case Kind::Wide:
            return (_use.Narrow >> port & 1u) != 0 ? 1 : _use.Count;
        case Kind::Pair:
            return 2;
        case Kind::Vector:
        case Kind::Colour:
            return 3;
        default:
            return 1;
        }
    }

    const Function& _function;
    const Use& _use;
};

} // namespace

Result Power(double base, double exponent)
{
    if (base < 0.0 || (base == 0.0 && exponent <= 0.0))
        return std::nullopt;
    if (base == 0.0)
        return Rounded(0.0);
    const double value = std::pow(base, exponent);
    return Expected{value, value * (1.0 + std::abs(exponent) * (1.0 + std::abs(std::log2(base))))};
}

void FunctionNumbers::CompareAll(const std::string& type, std::span<const Function> functions,
                                 const std::vector<Use>& moreUses, const char* output) const
{
    for (const Function& function : functions) {
        Comparison comparison(function.Name, function.Allowed);
        std::vector<Use> uses = UsesOf(function.Inputs);
        uses.insert(uses.end(), moreUses.begin(), moreUses.end());
        for (const Use& use : uses) {
            const FunctionRun run(function, use, type, output);
            Compare(
                run.Material, run.Inputs, run.Width(),
                [&](std::size_t index, std::size_t at) { return run.At(index, at); }, comparison);
        }
    }
}
