#pragma once

#include "mox/cg/Tree.h"

#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace Mox::Cg {

/// An error in a source.
struct SourceError
{
    Position Where;
    std::string Message; ///< states what was expected, where possible
};

/// A Cg source as a typed tree.
class Module
{
public:
    explicit Module(std::string source) : Source(std::move(source)) {}
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    /// The function "main"; null if there is none.
    const Function* Main() const;

    const std::string Source;
    Arena Nodes; ///< owns everything that the members below point to
    std::deque<StructType> Structs;
    std::vector<Variable*> Constants;
    std::vector<Variable*> Uniforms;  ///< in order of declaration; includes samplers
    std::vector<Function*> Functions; ///< each after all functions that it calls
    std::vector<SourceError>
        Errors; ///< at most one per function; if there are any, the rest is incomplete
};

class Parser;

/// Reads a source part by part, for callers that may not need all of it.
class ModuleReader
{
public:
    explicit ModuleReader(std::string source);
    ~ModuleReader();

    /// Continues reading up to an offset in the source, which must be the start of a declaration or
    /// the end.
    /// @returns what has been read so far; valid as long as this object
    const Module& ReadTo(std::size_t end);

    /// Reads the rest; no other function may be called afterwards.
    std::unique_ptr<Module> ReadRest();

private:
    std::unique_ptr<Module> _module;
    std::unique_ptr<Parser> _parser;
    std::size_t _read = 0; ///< length of what has been read
};

/// Reads a source. It does not throw on invalid input: errors are part of the result. Nesting,
/// sizes and the number of errors are limited, so any input can be read safely, even on a stack of
/// 256 KiB.
std::unique_ptr<Module> ReadModule(std::string source);

} // namespace Mox::Cg
