#include "mox/compile/ProgramCompiler.h"

namespace Mox::Host {

SpirvMaker ProgramCompiler::MakeSpirv() const
{
    return [compiler = _compiler, optimises = _optimises](const std::string& text,
                                                          ProgramStage stage) {
        SpirvWords words = compiler->Compile(text, stage);
        if (optimises)
            words = OptimiseModule(words);
        return std::string(reinterpret_cast<const char*>(words.data()),
                           words.size() * sizeof(std::uint32_t));
    };
}

} // namespace Mox::Host
