#include "mox/Text.h"
#include "mox/cg/Lowering.h"
#include "mox/languages/Languages.h"
#include "tests/numbers/CaseDrawer.h"
#include "tests/numbers/Comparison.h"
#include "tests/numbers/OutsideRunners.h"
#include "tests/numbers/other/OtherCompiler.h"
#include "tests/support/Browser.h"
#include "tests/support/CgCases.h"
#include "tests/support/DeviceTest.h"
#include "tests/support/GlslModule.h"
#include "tests/support/PlainStage.h"

#include <algorithm>
#include <cmath>
#include <regex>

using namespace Mox;
using Host::SpirvWords;
using Languages::Language;
using Materials::Compose;

namespace {

std::string Write(const std::string& code, bool isVertex, const Language& language)
{
    const auto module = Cg::ReadModule(code);
    for (const Cg::SourceError& error : module->Errors)
        throw std::runtime_error(Compose(error.Where.Line, ": ", error.Message, "\n", code));
    Cg::LowerModule(*module);
    return language.Write(Languages::MakeStage(*module, isVertex), Languages::Precision::Full).Text;
}

/// Each implementation approximates angles differently; Vulkan requires an error below 2^-11.
float BoundOf(const std::string& name)
{
    static const std::regex angle(R"((sin|cos|tan)[h2]?\()");
    return std::regex_search(name, angle) ? 5e-4f : 1e-5f;
}

/// The first lines of the names, which name the expressions.
std::string ListTitles(const CgCases& cases)
{
    std::string titles;
    for (const std::string& name : cases.Names)
        titles += Compose(name.substr(0, name.find('\n')), "\n");
    return titles;
}

/// The programs in Vulkan GLSL are the reference for all other languages.
class LanguagesTest : public DeviceTest<CaseDrawer>
{
protected:
    LanguagesTest() : _cases(MakeCgCases()), _inputs(CaseDrawer::MakeInputs(1)) {}

    std::vector<Numbers> Draw(const CgCases& cases, const Language& language) const
    {
        return Get().Draw(Compile(cases.Vertex, true, language),
                          Compile(cases.Fragment, false, language), cases.Names.size(), _inputs);
    }

    static SpirvWords Compile(const std::string& code, bool isVertex, const Language& language)
    {
        return CompileWithGlslang(
            Write(code, isVertex, language),
            &language == &Language::Hlsl ? GlslangInput::Hlsl : GlslangInput::VulkanGlsl, isVertex);
    }

    /// @param language for messages
    void Compare(const CgCases& cases, const std::vector<Numbers>& actual, const char* language)
    {
        const std::vector<Numbers> expected = Draw(cases, Language::VulkanGlsl);
        for (std::size_t i = 0; i < cases.Names.size(); ++i) {
            const float bound = BoundOf(cases.Names[i]);
            for (std::size_t at = 0; at < CaseDrawer::Count; ++at) {
                const std::size_t pixel = i * CaseDrawer::Count + at;
                for (std::size_t component = 0; component < 4; ++component) {
                    const float want = expected[pixel][component];
                    const float is = actual[pixel][component];
                    const bool isSame = (std::isnan(want) && std::isnan(is)) || want == is ||
                                        std::abs(want - is) <= bound * (1 + std::abs(want));
                    EXPECT_TRUE(isSame)
                        << language << ": component " << component << " is " << is
                        << " in place of " << want << " for a = " << Show(_inputs[3 * at])
                        << ", b = " << Show(_inputs[3 * at + 1])
                        << ", c = " << Show(_inputs[3 * at + 2]) << " in " << cases.Names[i];
                    ++_compared;
                    if (!isSame)
                        at = CaseDrawer::Count - 1; // one message per expression is enough
                }
            }
        }
    }

    void TearDown() override
    {
        DeviceTest::TearDown();
        if (!IsSkipped()) {
            EXPECT_GT(_compared, 50'000u);
        }
    }

    const std::vector<CgCases> _cases;
    const std::vector<Numbers> _inputs;

private:
    std::size_t _compared = 0;
};

/// What the reference compiler is known to evaluate incorrectly or to refuse.
bool IsOldFault(const std::string& name)
{
    static const std::regex faults[] = {
        std::regex("fmod"), // rounds towards minus infinity for negative numbers
        std::regex("^(float|half): .*(faceforward|normalize|reflect)"), // reported as ambiguous for
                                                                        // scalars
        std::regex("lit\\("),                                           // not supported
        std::regex("^(float|half|bool): .*(any|all)\\("), // produces invalid modules for scalars
        std::regex("^(float|half)[234]: .*r\\+\\+"),      // likewise for vectors
        std::regex("_m00_m11"),      // cannot multiply elements of matrices with a scalar
        std::regex("&& andOut"),     // not evaluated if the left-hand side is false
        std::regex("3\\.x"),         // cannot swizzle an int
        std::regex("^half.*Out\\("), // treats half as float, so both overloads are the same
                                     // function
        std::regex("m = m\\*m"),     // does not multiply component-wise
        std::regex("^int.*%"),       // its instruction is undefined for negative numbers
    };
    return std::any_of(std::begin(faults), std::end(faults),
                       [&](const std::regex& fault) { return std::regex_search(name, fault); });
}

TEST_F(LanguagesTest, TheOtherCompilerComputesTheSame)
{
    for (const CgCases& cases : MakeCgCases(IsOldFault)) {
        // It treats half as float, so overloads for both would define the same function twice.
        std::string fragment =
            std::regex_replace(cases.Fragment, std::regex(R"(pick\( (\(?half))"), "pickHalf( $1");
        // The word is reserved in HLSL.
        fragment = std::regex_replace(fragment, std::regex("\\bpoint\\b"), "where");
        try {
            // Its vertex program has no outputs for what the fragment stage does not read.
            Compare(cases,
                    Get().Draw(Compile(cases.Vertex, true, Language::VulkanGlsl),
                               CompileAsHlsl(fragment), cases.Names.size(), _inputs),
                    "other compiler");
        } catch (const std::runtime_error& error) {
            ADD_FAILURE() << error.what() << "one of:\n" << ListTitles(cases);
        }
    }
}

TEST_F(LanguagesTest, HlslComputesTheSame)
{
    for (const CgCases& cases : _cases)
        Compare(cases, Draw(cases, Language::Hlsl), "HLSL");
}

TEST_F(LanguagesTest, MslComputesTheSame)
{
    std::vector<std::string> programs;
    std::vector<std::size_t> rows;
    for (const CgCases& cases : _cases) {
        programs.push_back(Write(cases.Fragment, false, Language::Msl));
        rows.push_back(cases.Names.size());
    }
    const std::vector<RunResult> results = RunMsl(programs, rows, _inputs);
    for (std::size_t i = 0; i < _cases.size(); ++i)
        Compare(_cases[i], results[i].Pixels, "MSL");
}

TEST_F(LanguagesTest, BrowsersComputeTheSame)
{
    if (!HasBrowser())
        GTEST_SKIP() << "no browser was found";
    std::vector<BrowserRun> runs;
    std::size_t rows = 0;
    for (const CgCases& cases : _cases) {
        rows = std::max(rows, cases.Names.size());
        for (const auto& [word, language] :
             {std::pair("essl", Language::Essl), std::pair("wgsl", Language::Wgsl)})
            runs.push_back({word, Write(cases.Vertex, true, language),
                            Write(cases.Fragment, false, language)});
    }
    const std::vector<RunResult> results = DrawInBrowser(runs, rows, _inputs);
    ASSERT_EQ(results.size(), runs.size());
    for (std::size_t i = 0; i < results.size(); ++i) {
        EXPECT_EQ(results[i].Error, "") << runs[i].Language << ", one of:\n"
                                        << ListTitles(_cases[i / 2]) << runs[i].Fragment;
        if (results[i].Error.empty())
            Compare(_cases[i / 2], results[i].Pixels, runs[i].Language);
    }
}

} // namespace
