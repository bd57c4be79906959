#include "tests/numbers/other/FrontEnd.h"

#include "mox/Text.h"
#include "tests/numbers/other/Prelude.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <glslang/Public/ResourceLimits.h>
#include <glslang/Public/ShaderLang.h>
#include <glslang/SPIRV/GlslangToSpv.h>
#include <sstream>

namespace Mox::Host {

using Materials::Compose;

namespace {

constexpr auto rules = static_cast<EShMessages>(EShMsgSpvRules | EShMsgVulkanRules |
                                                EShMsgReadHlsl | EShMsgHlslDX9Compatible);

constexpr std::string_view programName = "program";

/// Reformats "'x' : unknown variable" as "'x': unknown variable", and "'expression' : Expected" as
/// "expected expression".
std::string ToSentence(std::string_view text)
{
    constexpr std::string_view separator = "' : ";
    const std::size_t at = text.find(separator);
    if (at == text.npos)
        return std::string(text);
    const std::string_view subject = text.substr(0, at + 1);
    const std::string_view predicate = text.substr(at + separator.size());
    if (predicate == "Expected")
        return Compose("expected ", subject.substr(1, subject.size() - 2));
    return Compose(subject, ": ", predicate);
}

/// Parses the message after the name of the program, such as "12: 'x' : unknown variable ".
FrontEndMessage ParseMessage(std::string_view text)
{
    FrontEndMessage message{0, {}};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), message.Line);
    if (error == std::errc())
        text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    while (!text.empty() && (text.front() == ':' || text.front() == ' '))
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    message.Text = ToSentence(text);
    return message;
}

/// Parses the line number in "program(12): error at column 4, HLSL parsing failed.", which follows
/// all other messages and appears alone if a declaration is missing; returns 0 for other lines.
int ParseEnd(std::string_view text)
{
    int line = 0;
    if (text.starts_with(programName)) {
        text.remove_prefix(programName.size());
        if (text.starts_with('('))
            std::from_chars(text.data() + 1, text.data() + text.size(), line);
    }
    return line;
}

/// Keeps only the first message for each line; further messages for a line are consequential
/// errors.
std::vector<FrontEndMessage> ParseLog(const std::string& log)
{
    constexpr std::string_view error = "ERROR: ";
    std::vector<FrontEndMessage> messages;
    int end = 0;
    std::istringstream stream(log);
    for (std::string line; std::getline(stream, line);) {
        std::string_view text = line;
        end = std::max(end, ParseEnd(text));
        if (!text.starts_with(error))
            continue;
        text.remove_prefix(error.size());
        if (!text.starts_with(programName))
            continue;
        text.remove_prefix(programName.size() + 1);
        const FrontEndMessage message = ParseMessage(text);
        if (messages.empty() || messages.back().Line != message.Line)
            messages.push_back(message);
    }
    if (messages.empty())
        messages.push_back({end, end > 0 ? "expected a declaration" : log});
    return messages;
}

} // namespace

FrontEnd::FrontEnd()
{
    glslang::InitializeProcess();
}

FrontEnd::~FrontEnd()
{
    glslang::FinalizeProcess();
}

FrontEndResult FrontEnd::Read(const std::string& text, ProgramStage stage) const
{
    const EShLanguage language = stage == ProgramStage::Vertex ? EShLangVertex : EShLangFragment;
    const std::array<const char*, 2> strings{prelude.data(), text.data()};
    const std::array<int, 2> lengths{static_cast<int>(prelude.size()),
                                     static_cast<int>(text.size())};
    const std::array<const char*, 2> names{"prelude", programName.data()};

    glslang::TShader shader(language);
    shader.setStringsWithLengthsAndNames(strings.data(), lengths.data(), names.data(), 2);
    shader.setPreamble(stage == ProgramStage::Vertex ? "#define MOX_VERTEX\n" : "");
    shader.setEntryPoint("main");
    shader.setSourceEntryPoint("main");
    shader.setEnvInput(glslang::EShSourceHlsl, language, glslang::EShClientVulkan, 100);
    shader.setEnvClient(glslang::EShClientVulkan, glslang::EShTargetVulkan_1_0);
    shader.setEnvTarget(glslang::EShTargetSpv, glslang::EShTargetSpv_1_0);
    shader.setEnvTargetHlslFunctionality1();
    shader.setAutoMapBindings(true);
    shader.setAutoMapLocations(true);
    if (!shader.parse(GetDefaultResources(), 500, false, rules))
        return {{}, ParseLog(shader.getInfoLog())};

    glslang::TProgram program;
    program.addShader(&shader);
    if (!program.link(rules) || !program.mapIO())
        return {{}, ParseLog(program.getInfoLog())};

    glslang::SpvOptions options;
    options.disableOptimizer = true;
    spv::SpvBuildLogger logger;
    FrontEndResult result;
    glslang::GlslangToSpv(*program.getIntermediate(language), result.Module, &logger, &options);
    return result;
}

} // namespace Mox::Host
