#pragma once

#include "mox/Text.h"
#include "mox/cg/Parser.h"

#include <string_view>
#include <utility>
#include <vector>

namespace Mox::Cg {

class Parser::Nesting
{
public:
    explicit Nesting(Parser& parser) : _parser(parser)
    {
        if (_parser._nesting >= deepest)
            throw Failure(_parser._token.Where, "the code is nested too deeply");
        ++_parser._nesting;
    }
    ~Nesting() { --_parser._nesting; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

private:
    static constexpr int deepest = 64;

    Parser& _parser;
};

class Parser::Scope
{
public:
    explicit Scope(Parser& parser) : _parser(parser), _outer(parser._scope)
    {
        parser._scope = this;
    }
    ~Scope()
    {
        for (auto shadowed = _shadowed.rbegin(); shadowed != _shadowed.rend(); ++shadowed)
            _parser._variables[shadowed->first] = shadowed->second;
        _parser._scope = _outer;
    }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

    void Declare(Variable& variable, Position where)
    {
        Binding& entry = _parser._variables[variable.Name];
        if (entry.Known && entry.In == this)
            throw Failure(where, Materials::Compose(Quote(variable.Name), " is declared twice"));
        _shadowed.emplace_back(variable.Name, entry);
        entry = {&variable, this};
    }

private:
    Parser& _parser;
    Scope* _outer;
    std::vector<std::pair<std::string_view, Binding>> _shadowed;
};

} // namespace Mox::Cg
