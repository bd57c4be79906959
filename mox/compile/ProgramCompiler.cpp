#include "mox/compile/ProgramCompiler.h"

#include "mox/Text.h"
#include "mox/compile/CrossCompiler.h"
#include "mox/compile/SpirvOptimiser.h"

#include <algorithm>
#include <exception>
#include <sstream>
#include <stdexcept>
#include <unordered_set>

namespace Mox::Host {

using Materials::Compose;

namespace {

constexpr ProblemRule rule = "compile";

/// One line of a text without the blanks around it.
std::string LineOf(const std::string& text, int number)
{
    std::istringstream stream(text);
    std::string line;
    for (int i = 0; i < number; ++i)
        std::getline(stream, line);
    const std::size_t begin = line.find_first_not_of(" \t");
    return begin == line.npos ? std::string()
                              : line.substr(begin, line.find_last_not_of(" \t") + 1 - begin);
}

/// Compiles one stage of one program.
class StageCompiler
{
public:
    StageCompiler(const StageProgram& program, ProgramStage stage, const ParameterNames& names,
                  const std::string& file, ProblemList& problems)
        : _program(program), _stage(stage), _names(names), _file(file), _problems(problems)
    {}

    /// The module as the front end makes it, in which parameters stand under their aliases.
    /// @returns the module; empty after an error
    SpirvWords Read(const FrontEnd& frontEnd)
    {
        const FrontEndResult read = frontEnd.Read(_names.HideNames(_program.Text), _stage);
        for (const FrontEndMessage& message : read.Messages)
            Report(message);
        return read.Module;
    }

    /// Makes the valid module and reads its interface.
    /// @returns the module; empty after an error
    SpirvWords MakeModule(const FrontEnd& frontEnd,
                          const std::map<std::string, std::uint32_t>& samplerBindings,
                          StageInterface& interface)
    {
        const SpirvWords read = Read(frontEnd);
        if (read.empty())
            return {};
        return Finish([&] { return OptimiseModule(LayOutModule(read, _stage, samplerBindings)); },
                      interface);
    }

    /// Takes out of the vertex module what the fragment stage does not read after all.
    /// @returns the module; empty after an error
    SpirvWords DropUnread(const SpirvWords& module, const StageInterface& fragment,
                          StageInterface& interface)
    {
        std::unordered_set<std::uint32_t> read;
        for (const StageVariable& input : fragment.Inputs)
            read.insert(input.Location);
        if (std::all_of(
                interface.Outputs.begin(), interface.Outputs.end(),
                [&](const StageVariable& output) { return read.contains(output.Location); }))
            return module;
        return Finish([&] { return DropOutputs(module, read); }, interface);
    }

    TargetProgram Write(const SpirvWords& module, CompileTarget target)
    {
        TargetProgram result{target, _stage, {}, std::string(GetEntryPoint(target, _stage)), {}};
        try {
            if (target == CompileTarget::Spirv) {
                WriteModule(module, result);
            } else {
                NamedText named = _names.ShowNames(CrossCompile(module, target, _stage), target);
                result.Bytes = std::move(named.Text);
                result.Names = std::move(named.Names);
            }
        } catch (const std::exception& error) {
            ReportInternal(GetTargetName(target), error.what());
        }
        return result;
    }

    void ReportInternal(std::string_view where, const std::string& text)
    {
        _problems.Fail(rule, Place(_file),
                       Compose("internal error of the compiler, ", GetStageName(_stage), " stage, ",
                               where, ": ", text));
    }

private:
    /// @param optimise makes the module
    template <class Optimise>
    SpirvWords Finish(Optimise optimise, StageInterface& interface)
    {
        try {
            OptimisedModule optimised = optimise();
            if (!optimised.Failure.empty())
                throw std::runtime_error(optimised.Failure);
            interface = ReadStageInterface(optimised.Module, _names);
            return std::move(optimised.Module);
        } catch (const std::exception& error) {
            ReportInternal("spirv", error.what());
            return {};
        }
    }

    void WriteModule(const SpirvWords& module, TargetProgram& result) const
    {
        result.Names.resize(_names.Parameters().size());
        const SpirvWords words = RenameModule(module, [&](const std::string& name) {
            const auto parameter = _names.Find(name);
            if (!parameter)
                return name;
            return result.Names[*parameter] = _names.GetReflectedName(*parameter);
        });
        result.Bytes.assign(reinterpret_cast<const char*>(words.data()), words.size() * 4);
    }

    void Report(const FrontEndMessage& message)
    {
        Place where(_file);
        const auto line = static_cast<std::size_t>(message.Line);
        if (line > 0 && line <= _program.Lines.size())
            where.Node = _program.Lines[line - 1].Node;
        std::string text = Compose("does not compile for the ", GetStageName(_stage),
                                   " stage: ", _names.ShowCgNames(message.Text));
        if (line > 0)
            text += Compose(", in \"", LineOf(_program.Text, message.Line), "\"");
        _problems.Fail(rule, where, text);
    }

    const StageProgram& _program;
    ProgramStage _stage;
    const ParameterNames& _names;
    const std::string& _file;
    ProblemList& _problems;
};

/// The first interpolant that the fragment stage reads and the vertex stage does not write.
const StageVariable* FindMissingInterpolant(const CompiledProgram& program)
{
    for (const StageVariable& input : program.Fragment.Inputs) {
        const auto isSame = [&](const StageVariable& output) {
            return output.Location == input.Location;
        };
        if (std::none_of(program.Vertex.Outputs.begin(), program.Vertex.Outputs.end(), isSame))
            return &input;
    }
    return nullptr;
}

/// Samplers follow one another from the first binding, in the order of the parameters.
std::map<std::string, std::uint32_t> AssignSamplerBindings(const CgProgram& program,
                                                           const ParameterNames& names)
{
    std::map<std::string, std::uint32_t> bindings;
    std::uint32_t next = firstSamplerBinding;
    for (std::size_t i = 0; i < program.Plan.Parameters.size(); ++i)
        if (program.Plan.Parameters[i].Kind == ParameterKind::Sampler)
            bindings[names.GetAlias(i)] = next++;
    return bindings;
}

} // namespace

CompiledProgram ProgramCompiler::Compile(const CgProgram& program,
                                         const std::vector<CompileTarget>& targets,
                                         const std::string& file, ProblemList& problems) const
{
    const ParameterNames names(program.Plan.Parameters);
    const auto samplerBindings = AssignSamplerBindings(program, names);
    StageCompiler vertex(program.Vertex, ProgramStage::Vertex, names, file, problems);
    StageCompiler fragment(program.Fragment, ProgramStage::Fragment, names, file, problems);
    CompiledProgram result;
    result.Parameters = program.Plan.Parameters;
    SpirvWords vertexModule = vertex.MakeModule(_frontEnd, samplerBindings, result.Vertex);
    const SpirvWords fragmentModule =
        fragment.MakeModule(_frontEnd, samplerBindings, result.Fragment);
    if (vertexModule.empty() || fragmentModule.empty())
        return result;
    if (const StageVariable* missing = FindMissingInterpolant(result)) {
        fragment.ReportInternal("link", Compose("nobody writes \"", missing->Name, "\""));
        return result;
    }
    vertexModule = vertex.DropUnread(vertexModule, result.Fragment, result.Vertex);
    if (vertexModule.empty())
        return result;
    for (const CompileTarget target : targets) {
        result.Programs.push_back(vertex.Write(vertexModule, target));
        result.Programs.push_back(fragment.Write(fragmentModule, target));
    }
    return result;
}

void ProgramCompiler::Check(const CgProgram& program, const std::string& file,
                            ProblemList& problems) const
{
    const ParameterNames names(program.Plan.Parameters);
    StageCompiler(program.Vertex, ProgramStage::Vertex, names, file, problems).Read(_frontEnd);
    StageCompiler(program.Fragment, ProgramStage::Fragment, names, file, problems).Read(_frontEnd);
}

} // namespace Mox::Host
