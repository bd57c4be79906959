#pragma once

#include "mox/cg/Tree.h"

#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace Mox::Cg {

/// One thing that is wrong with a source.
struct SourceError
{
    Position Where;
    std::string Message; ///< says what was expected, as far as that can be said
};

/// A source of Cg as a typed tree.
class Module
{
public:
    explicit Module(std::string source) : Source(std::move(source)) {}
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    /// The function "main"; null if there is none.
    const Function* Main() const;

    const std::string Source;
    Arena Nodes; ///< holds all that the members below point to
    std::deque<StructType> Structs;
    std::vector<Variable*> Constants;
    std::vector<Variable*> Uniforms;  ///< in order of declaration; samplers too
    std::vector<Function*> Functions; ///< each after those that it calls
    std::vector<SourceError>
        Errors; ///< at most one of each function; with any the rest is incomplete
};

class Parser;

/// Reads a source part by part, for callers that may not need all of it.
class ModuleReader
{
public:
    explicit ModuleReader(std::string source);
    ~ModuleReader();

    /// Reads on, up to a place in the source where a declaration begins, or its end.
    /// @returns what has been read so far; valid as long as this object
    const Module& ReadTo(std::size_t end);

    /// Reads what is left; the last call.
    std::unique_ptr<Module> ReadRest();

private:
    std::unique_ptr<Module> _module;
    std::unique_ptr<Parser> _parser;
    std::size_t _read = 0; ///< length of the parts that have been read
};

/// Reads a source. It never fails: what is wrong is in the result. Nesting, sizes and the number of
/// errors are bounded, so any input is safe to read, on a stack of 256 KiB too.
std::unique_ptr<Module> ReadModule(std::string source);

} // namespace Mox::Cg
