#include "tests/support/PlainStage.h"

#include "mox/Text.h"
#include "mox/host/HostError.h"
#include "mox/languages/BlockStorage.h"

#include <charconv>

namespace Mox::Languages {

namespace {

/// The number after a prefix; nothing if the string has another form.
int NumberAfter(std::string_view text, std::string_view word)
{
    if (!text.starts_with(word))
        return -1;
    int number = 0;
    if (text.size() > word.size() &&
        std::from_chars(text.data() + word.size(), text.data() + text.size(), number).ptr !=
            text.data() + text.size())
        return -1;
    return number;
}

StageSlot MakeSlot(const Cg::Variable& parameter, bool isVertex)
{
    const bool isOutput = parameter.Where != Cg::Storage::In;
    StageSlot slot{&parameter, std::string(parameter.Name), 0, false};
    const std::string_view word = !isOutput && isVertex  ? "ATTR"
                                  : isOutput != isVertex ? "COLOR"
                                                         : "TEXCOORD";
    const bool takesTexcoord = isOutput == isVertex;
    slot.IsPosition = isOutput && isVertex && parameter.Semantic == "POSITION";
    slot.Location = NumberAfter(parameter.Semantic, takesTexcoord ? "TEXCOORD" : word);
    if (slot.Location < 0 && !slot.IsPosition)
        throw Host::HostError({}, Materials::Compose("nothing in other languages corresponds to \"",
                                                     parameter.Semantic, "\""));
    return slot;
}

} // namespace

StageProgram MakeStage(const Cg::Module& code, bool isVertex)
{
    StageProgram stage{&code, isVertex, {}, {}, {}, {}, 1, 1, {}};
    for (const Cg::Variable* parameter : code.Main()->Parameters) {
        auto& slots = parameter->Where == Cg::Storage::In ? stage.Inputs : stage.Outputs;
        slots.push_back(MakeSlot(*parameter, isVertex));
    }
    UniformBlock block{"Uniforms", "uniforms", 1, {}};
    for (const Cg::Variable* uniform : code.Uniforms) {
        const std::string name(uniform->Name);
        if (uniform->Of.IsSampler()) {
            const int unit = NumberAfter(uniform->Semantic, "TEXUNIT");
            const int next = static_cast<int>(stage.Samplers.size());
            stage.Samplers.push_back({uniform, name, unit < 0 ? next : unit, false});
            continue;
        }
        AppendMember(block, *uniform, name);
    }
    if (!block.Members.empty())
        stage.Blocks.push_back(std::move(block));
    return stage;
}

} // namespace Mox::Languages
