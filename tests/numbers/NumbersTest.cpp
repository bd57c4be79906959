#include "tests/numbers/NumbersTest.h"

#include "mox/host/HostError.h"

#include <cmath>

using namespace Mox::Host;

namespace {

struct SharedRunner
{
    std::unique_ptr<ValueRunner> Runner;
    std::string Failure;
    std::size_t MessagesSeen = 0;
};

/// Goes before the loader of the device does.
SharedRunner& Shared()
{
    static SharedRunner shared = [] {
        SharedRunner made;
        try {
            made.Runner = std::make_unique<ValueRunner>();
        } catch (const HostError& error) {
            made.Failure = error.what();
        }
        return made;
    }();
    return shared;
}

} // namespace

void NumbersTest::SetUp()
{
    const SharedRunner& shared = Shared();
    if (shared.Failure.find("no Vulkan device was found") == 0)
        GTEST_SKIP() << shared.Failure;
    ASSERT_TRUE(shared.Runner) << shared.Failure;
}

void NumbersTest::TearDown()
{
    SharedRunner& shared = Shared();
    if (!shared.Runner)
        return;
    const auto& messages = shared.Runner->Device().ValidationMessages();
    for (; shared.MessagesSeen < messages.size(); ++shared.MessagesSeen)
        ADD_FAILURE() << messages[shared.MessagesSeen];
}

ValueRunner& NumbersTest::Runner()
{
    return *Shared().Runner;
}

std::vector<Numbers> NumbersTest::Evaluate(const std::string& material,
                                           const RunInputs& inputs) const
{
    try {
        return Runner().Evaluate(material, inputs);
    } catch (const std::exception& error) {
        ADD_FAILURE() << error.what() << "\n" << material;
        return {};
    }
}

std::vector<Numbers> NumbersTest::MakeValues(std::uint32_t seed, std::size_t count)
{
    const float special[] = {0.0f,
                             1.0f,
                             -1.0f,
                             0.5f,
                             std::nextafter(0.5f, 0.0f),
                             std::nextafter(0.5f, 1.0f),
                             std::nextafter(1.0f, 0.0f),
                             std::nextafter(1.0f, 2.0f),
                             2.0f,
                             -2.0f,
                             -0.5f,
                             0.25f,
                             1e-3f,
                             -1e-3f,
                             100.0f};
    constexpr std::size_t specialCount = std::size(special);
    std::mt19937 random(seed);
    // Distributions differ between libraries, the engine does not.
    const auto next = [&] {
        const std::uint32_t bits = random();
        return bits % 2 == 0 ? special[bits / 2 % specialCount]
                             : static_cast<float>(bits / 2) / 268435456.0f - 4.0f;
    };
    std::vector<Numbers> values(count);
    for (Numbers& value : values) {
        for (float& number : value)
            number = next();
    }
    return values;
}
