#include "mox/targets/MadePrograms.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

using namespace Mox::Host;

namespace {

CgProgram ProgramOf(const std::string& text, const std::string& header)
{
    CgProgram program{{}, {text, {}, 0}, {}, header};
    return program;
}

TEST(MadePrograms, MakesEqualProgramsOnce)
{
    MadePrograms made;
    std::atomic<int> count = 0;
    const auto get = [&](const std::string& text, const std::string& header) {
        return made.Get(ProgramOf(text, header), [&] {
            ++count;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            const std::string line = header.empty() ? "" : "// " + header + "\n";
            std::vector<int> lines(header.empty() ? 2 : 3);
            lines.back() = 7;
            return MadePrograms::Files{{"#version\n" + line + text, {}, lines}, {"{}"}};
        });
    };
    {
        std::vector<std::jthread> threads;
        for (const char* header : {"one", "two", "three"})
            threads.emplace_back([&get, header] {
                EXPECT_EQ(get("same", header),
                          (MadePrograms::Files{
                              {std::string("#version\n// ") + header + "\nsame", {}, {0, 0, 7}},
                              {"{}"}}));
            });
    }
    EXPECT_EQ(count, 1);
    EXPECT_EQ(get("same", "")[0], (ProgramFile{"#version\nsame", {}, {0, 7}}));
    EXPECT_EQ(get("other", "one")[0].Text, "#version\n// one\nother");
}

TEST(MadePrograms, TellsApartWhatReflectionsTell)
{
    const ShaderType scalar(ComponentType::Float, 1, 1, 1);
    ProgramPlan plan;
    plan.Parameters = {{ParameterKind::Sampler, "wall", "wall", scalar, {}, true, false, true}};
    plan.EnvironmentUniforms = {{"time", scalar, UniformRate::Frame}};
    plan.Crossings = {{"facing", scalar, {PlanOperand::Source::Result, 0}, {}}};
    MadePrograms made;
    int count = 0;
    const auto get = [&] {
        CgProgram program = ProgramOf("same", "");
        program.Plan = plan;
        made.Get(program, [&] { return MadePrograms::Files{{std::to_string(++count)}}; });
        return count;
    };
    EXPECT_EQ(get(), 1);
    SamplerState& sampler = plan.Parameters[0].Sampler;
    int makings = 1;
    for (std::string* text : {&plan.Crossings[0].Name, &plan.Parameters[0].Name, &sampler.WrapU,
                              &sampler.WrapV, &sampler.Filter, &sampler.Anisotropy}) {
        *text += "other";
        EXPECT_EQ(get(), ++makings) << *text;
        EXPECT_EQ(get(), makings);
    }
    plan.EnvironmentUniforms[0].Rate = UniformRate::Object;
    EXPECT_EQ(get(), ++makings);
}

TEST(MadePrograms, KeepsNoFailuresAndNotEverything)
{
    MadePrograms made;
    int count = 0;
    const auto get = [&](const std::string& text, std::size_t size) {
        return made.Get(ProgramOf(text, ""), [&]() -> MadePrograms::Files {
            ++count;
            if (text == "throws")
                throw std::runtime_error("no");
            return MadePrograms::Files(size > 0 ? 1 : 0, {std::string(size, 'x')});
        });
    };
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(get("fails", 0).empty());
        EXPECT_THROW(get("throws", 0), std::runtime_error);
    }
    EXPECT_EQ(count, 4);
    constexpr std::size_t half = 17 << 20;
    for (const char* text : {"a", "b", "b", "a"})
        EXPECT_EQ(get(text, half).at(0).Text.size(), half);
    EXPECT_EQ(count, 7) << "what was made first is dropped first";
}

} // namespace
