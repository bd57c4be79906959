#pragma once

#include "mox/cg/Module.h"
#include "mox/cg/Typing.h"

#include <unordered_map>

namespace Mox::Cg {

/// Parses declarations, statements and expressions, with one token of lookahead.
class Parser
{
public:
    explicit Parser(Module& module);

    /// Parses the next part of the module's source, which must end between two declarations.
    void Parse(std::string_view part);

private:
    /// Counts a level of nesting, which is limited.
    class Nesting;

    /// A block scope: names declared in it become invalid at its end.
    class Scope;

    /// The meaning of a name at the current position.
    struct Binding
    {
        Variable* Known = nullptr;
        const Scope* In = nullptr; ///< null at global scope
    };

    struct Specifiers
    {
        bool IsConst = false;
        bool IsStatic = false;
        bool IsUniform = false;
    };

    static constexpr std::size_t mostParts = 256; ///< in a struct or a list of values
    static constexpr int longestArray = 1024;

    // Tokens
    bool Is(std::string_view symbol) const;
    bool Accept(std::string_view symbol);
    void Expect(std::string_view symbol);
    Token ExpectName(const char* what);

    /// Whether a word cannot be used as a name.
    static bool IsKeyword(std::string_view word);

    Token Take();
    [[noreturn]] void FailExpected(std::string_view what) const;

    // Declarations
    void ParseGlobal();
    void ParseStruct();
    void ParseGlobals(const Specifiers& specifiers, const Type& type, Token name);
    void ParseFunction(const Type& result, const Token& name, std::string_view comment);
    Variable* ParseParameter();
    std::string_view ParseSemantic();
    Specifiers ParseSpecifiers();
    bool FindType(std::string_view word, Type& type) const;
    Type ParseType();
    void ParseLength(Type& type);
    Expression* ParseInitializer(const Type& type);
    void Declare(Variable& variable, Position where);
    void SkipBody();
    void Report(const Failure& failure);

    // Statements
    Statement* ParseStatement();
    Statements ParseBody();
    Statements ParseBranch();
    Statement* ParseIf();
    Statement* ParseWhile();
    Statement* ParseDo();
    Statement* ParseFor();
    Statement* ParseReturn();
    void ParseDeclaration(std::vector<Statement*>& statements);
    Statement* ParseEvaluation();
    Statement* Make(StatementKind kind);
    void ParseStatements(std::vector<Statement*>& statements);

    // Expressions
    Expression* ParseExpression();
    Expression* ParseAssignment();
    Expression* ParseConditional();
    Expression* ParseBinary(int lowest);
    Expression* ParseUnary();
    Expression* ParseOperand();
    Expression* ParsePostfix(Expression* value);
    Expression* ParsePrimary();
    Expression* ParseCall(const Token& name);
    std::vector<Expression*> ParseArguments(std::string_view end);

    Module& _module;
    Typing _typing;
    Lexer _lexer;
    Token _token;
    Token _next;
    int _nesting = 0;
    int _loops = 0;
    int _braces = 0; ///< number of open braces
    const Function* _function = nullptr;
    std::unordered_map<std::string_view, Binding> _variables;
    std::unordered_map<std::string_view, std::vector<Function*>> _functions;
    std::unordered_map<std::string_view, const StructType*> _structs;
    Scope* _scope = nullptr;
};

} // namespace Mox::Cg
