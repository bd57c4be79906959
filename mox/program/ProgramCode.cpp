#include "mox/program/ProgramCode.h"

#include "mox/Text.h"
#include "mox/cg/Liveness.h"
#include "mox/cg/Lowering.h"

#include <charconv>
#include <set>
#include <stdexcept>

namespace Mox::Host {

using Materials::Compose;

int LocationOf(const Cg::Variable& variable, std::string_view semantic)
{
    int number = 0;
    const std::string_view text = variable.Semantic;
    if (text.starts_with(semantic)) {
        const std::string_view digits = text.substr(semantic.size());
        if (digits.empty() ||
            std::from_chars(digits.data(), digits.data() + digits.size(), number).ptr ==
                digits.data() + digits.size())
            return number;
    }
    throw std::logic_error(Compose("no language supports the register ", text));
}

bool IsPosition(const Cg::Variable& variable)
{
    return variable.Semantic == "POSITION";
}

ProgramCode::ProgramCode(const StageProgram& vertex, const StageProgram& fragment)
{
    for (const ProgramStage stage : bothStages) {
        const auto index = static_cast<std::size_t>(stage);
        const StageProgram& program = stage == ProgramStage::Vertex ? vertex : fragment;
        _readers[index] = std::make_unique<Cg::ModuleReader>(program.Text);
        _errors[index] = _readers[index]->ReadTo(program.MainBegin).Errors;
    }
}

const Cg::Module& ProgramCode::StageOf(ProgramStage stage) const
{
    std::call_once(_isComplete, [this] {
        try {
            Complete();
        } catch (const std::logic_error& error) {
            _failure = error.what();
        }
    });
    if (!_failure.empty())
        throw std::logic_error(_failure);
    return *_modules[static_cast<std::size_t>(stage)];
}

void ProgramCode::Complete() const
{
    for (const ProgramStage stage : bothStages) {
        const auto index = static_cast<std::size_t>(stage);
        _modules[index] = _readers[index]->ReadRest();
        _readers[index].reset();
        Cg::Module& module = *_modules[index];
        if (!module.Errors.empty())
            throw std::logic_error(Compose(GetStageName(stage), " stage, line ",
                                           module.Errors[0].Where.Line, ": ",
                                           module.Errors[0].Message));
        if (!module.Main())
            throw std::logic_error("a stage has no entry point");
        Cg::LowerModule(module);
    }
    DropDead();
}

/// Removes from the vertex stage everything that the fragment stage does not read.
void ProgramCode::DropDead() const
{
    Cg::Module& vertex = *_modules[static_cast<std::size_t>(ProgramStage::Vertex)];
    Cg::Module& fragment = *_modules[static_cast<std::size_t>(ProgramStage::Fragment)];
    Cg::DropDead(fragment, [](const Cg::Variable&) { return true; });
    std::set<int> read;
    for (const Cg::Variable* parameter : fragment.Main()->Parameters) {
        if (parameter->Where == Cg::Storage::In)
            read.insert(LocationOf(*parameter, "TEXCOORD"));
    }
    Cg::DropDead(vertex, [&](const Cg::Variable& output) {
        return IsPosition(output) || read.erase(LocationOf(output, "TEXCOORD")) > 0;
    });
    if (!read.empty())
        throw std::logic_error(Compose("nothing writes TEXCOORD", *read.begin()));
}

} // namespace Mox::Host
