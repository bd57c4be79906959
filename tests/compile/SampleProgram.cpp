#include "tests/compile/SampleProgram.h"

#include "mox/host/AttributeText.h"
#include "mox/host/File.h"

#include <algorithm>
#include <regex>
#include <sstream>

using namespace Mox::Host;

namespace {

ShaderType ParseType(const std::string& text, const std::string& arrayLength)
{
    const ShaderType one = ParseShaderType(text).value();
    return {one.Component, one.Columns, one.Rows, arrayLength.empty() ? 1 : std::stoi(arrayLength)};
}

void CollectParameters(const std::string& text, bool isVertex,
                       std::vector<ProgramParameter>& parameters)
{
    static const std::regex pattern(
        R"((uniform|\bin) (\w+) (\w+)(?:\[(\d+)\])?(?: : (TEXUNIT|ATTR)(\d+))?)");
    for (std::sregex_iterator it(text.begin(), text.end(), pattern), end; it != end; ++it) {
        const std::smatch& match = *it;
        if (match[1] == "in" && match[5] != "ATTR")
            continue;
        const auto known = std::find_if(parameters.begin(), parameters.end(),
                                        [&](const auto& p) { return p.CgName == match[3]; });
        if (known != parameters.end()) {
            known->InFragment = true;
            continue;
        }
        ProgramParameter parameter{ParameterKind::Uniform,
                                   match[3],
                                   match[3],
                                   ParseType(match[2], match[4]),
                                   {},
                                   true,
                                   isVertex,
                                   !isVertex};
        if (match[5] == "TEXUNIT") {
            parameter.Kind = ParameterKind::Sampler;
            parameter.Register = {ShaderRegisterType::FragmentTextureUnit, std::stoi(match[6])};
        } else if (match[5] == "ATTR") {
            parameter.Kind = ParameterKind::VertexStream;
            parameter.Register = {ShaderRegisterType::VertexAttribute, std::stoi(match[6])};
        }
        parameters.push_back(parameter);
    }
}

Mox::Host::StageProgram MakeStage(const std::string& text)
{
    static const std::regex origin(R"re(// node "(.*)")re");
    Mox::Host::StageProgram stage{text, {}};
    std::string node;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        std::smatch match;
        if (std::regex_match(line, match, origin))
            node = match[1];
        else if (line.empty())
            node.clear();
        stage.Lines.push_back({node});
    }
    return stage;
}

} // namespace

CgProgram MakeProgram(const std::string& vertex, const std::string& fragment,
                      const std::vector<EnvironmentUniform>& ofEnvironment)
{
    CgProgram program;
    program.Vertex = MakeStage(vertex);
    program.Fragment = MakeStage(fragment);
    CollectParameters(vertex, true, program.Plan.Parameters);
    CollectParameters(fragment, false, program.Plan.Parameters);
    program.Plan.EnvironmentUniforms = ofEnvironment;
    for (ProgramParameter& parameter : program.Plan.Parameters) {
        parameter.IsBinding =
            std::none_of(ofEnvironment.begin(), ofEnvironment.end(),
                         [&](const auto& uniform) { return uniform.Name == parameter.Name; });
    }
    return program;
}

CgProgram ReadProgram(const std::string& name)
{
    const std::string stem = MOX_TEST_DATA "/compile/programs/" + name;
    const ShaderType matrix(ComponentType::Float, 4, 4, 1);
    return MakeProgram(ReadFile(stem + ".vert.cg"), ReadFile(stem + ".frag.cg"),
                       {{"time", ShaderType(ComponentType::Float, 1, 1, 1), UniformRate::Frame},
                        {"lights", ShaderType(ComponentType::Float, 3, 1, 2), UniformRate::Frame},
                        {"world", matrix, UniformRate::Object},
                        {"worldViewProjection", matrix, UniformRate::Object}});
}

CgProgram MakeFragmentProgram(const std::string& fragment)
{
    return MakeProgram("void main( in float4 position : ATTR0, out float4 clip : POSITION, "
                       "out float4 interpolant0 : TEXCOORD0 )\n"
                       "{\n\tclip = position;\n\tinterpolant0 = position;\n}\n",
                       fragment);
}
