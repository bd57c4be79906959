#include "mox/Text.h"
#include "mox/cg/ParserScope.h"

namespace Mox::Cg {

namespace {

using Materials::Compose;

}

Statement* Parser::Make(StatementKind kind)
{
    Statement statement;
    statement.Kind = kind;
    statement.Line = _token.Where.Line;
    statement.Comment = _token.Comment;
    return _module.Nodes.Make(statement);
}

/// Parses the statements between braces.
Statements Parser::ParseBody()
{
    const Nesting nesting(*this);
    Scope scope(*this);
    Expect("{");
    std::vector<Statement*> statements;
    while (!Is("}")) {
        if (_token.Kind == TokenKind::End)
            FailExpected("\"}\"");
        ParseStatements(statements);
    }
    Take();
    return _module.Nodes.Copy(statements);
}

/// Parses one statement, or one line of declarations.
void Parser::ParseStatements(std::vector<Statement*>& statements)
{
    Type type;
    const bool isDeclaration =
        Is("const") || Is("static") ||
        (_token.Kind == TokenKind::Word && FindType(_token.Text, type) && _next.Text != "(");
    if (isDeclaration)
        ParseDeclaration(statements);
    else if (!Accept(";"))
        statements.push_back(ParseStatement());
}

/// Parses the statements controlled by a condition.
Statements Parser::ParseBranch()
{
    if (Is("{"))
        return ParseBody();
    const Nesting nesting(*this);
    Scope scope(*this);
    std::vector<Statement*> statements;
    ParseStatements(statements);
    return _module.Nodes.Copy(statements);
}

Statement* Parser::ParseStatement()
{
    if (Is("{")) {
        Statement* block = Make(StatementKind::Block);
        block->Body = ParseBody();
        return block;
    }
    if (Is("if"))
        return ParseIf();
    if (Is("while"))
        return ParseWhile();
    if (Is("do"))
        return ParseDo();
    if (Is("for"))
        return ParseFor();
    if (Is("return"))
        return ParseReturn();
    for (const auto& [word, kind] :
         {std::pair("break", StatementKind::Break), std::pair("continue", StatementKind::Continue),
          std::pair("discard", StatementKind::Discard)}) {
        if (!Is(word))
            continue;
        if (kind != StatementKind::Discard && _loops == 0)
            throw Failure(_token.Where, Compose(Quote(word), " is not inside a loop"));
        _typing.Does.Discards |= kind == StatementKind::Discard;
        Statement* statement = Make(kind);
        Take();
        Expect(";");
        return statement;
    }
    Statement* statement = ParseEvaluation();
    Expect(";");
    return statement;
}

Statement* Parser::ParseIf()
{
    Statement* statement = Make(StatementKind::If);
    Take();
    Expect("(");
    statement->Value = _typing.Condition(ParseExpression());
    Expect(")");
    statement->Body = ParseBranch();
    if (Accept("else"))
        statement->Else = ParseBranch();
    return statement;
}

Statement* Parser::ParseWhile()
{
    Statement* statement = Make(StatementKind::While);
    Take();
    Expect("(");
    statement->Value = _typing.Condition(ParseExpression());
    Expect(")");
    ++_loops;
    statement->Body = ParseBranch();
    --_loops;
    return statement;
}

Statement* Parser::ParseDo()
{
    Statement* statement = Make(StatementKind::Do);
    Take();
    ++_loops;
    statement->Body = ParseBranch();
    --_loops;
    Expect("while");
    Expect("(");
    statement->Value = _typing.Condition(ParseExpression());
    Expect(")");
    Expect(";");
    return statement;
}

Statement* Parser::ParseFor()
{
    Statement* statement = Make(StatementKind::For);
    Scope scope(*this);
    Take();
    Expect("(");
    std::vector<Statement*> start;
    Type type;
    if (_token.Kind == TokenKind::Word && (Is("const") || FindType(_token.Text, type))) {
        ParseDeclaration(start);
    } else if (!Accept(";")) {
        start.push_back(ParseEvaluation());
        Expect(";");
    }
    statement->Start = _module.Nodes.Copy(start);
    if (!Is(";"))
        statement->Value = _typing.Condition(ParseExpression());
    Expect(";");
    if (!Is(")"))
        statement->Step = _module.Nodes.Copy(std::vector<Statement*>{ParseEvaluation()});
    Expect(")");
    ++_loops;
    statement->Body = ParseBranch();
    --_loops;
    return statement;
}

Statement* Parser::ParseReturn()
{
    Statement* statement = Make(StatementKind::Return);
    const Position where = Take().Where;
    if (!Is(";"))
        statement->Value = ParseExpression();
    const bool returnsNothing = _function->Result.Of == Element::Void;
    if (returnsNothing != (statement->Value == nullptr))
        throw Failure(where, returnsNothing ? "this function cannot return a value"
                                            : "this function must return a value");
    if (statement->Value)
        statement->Value = _typing.Convert(statement->Value, _function->Result);
    Expect(";");
    return statement;
}

void Parser::ParseDeclaration(std::vector<Statement*>& statements)
{
    Statement* first = Make(StatementKind::Declare);
    const Specifiers specifiers = ParseSpecifiers();
    if (specifiers.IsStatic && !specifiers.IsConst)
        throw Failure(_token.Where, "a static variable must be const");
    const Type type = ParseType();
    do {
        const Token name = ExpectName("a name");
        Variable variable;
        variable.Name = name.Text;
        variable.Of = type;
        ParseLength(variable.Of);
        if (type.Of == Element::Void || type.IsSampler())
            throw Failure(name.Where,
                          Compose("a variable cannot be of type ", variable.Of.Format()));
        Statement* statement =
            statements.empty() || statements.back() != first ? first : Make(StatementKind::Declare);
        if (Accept("="))
            statement->Value = ParseInitializer(variable.Of);
        else if (specifiers.IsConst)
            FailExpected("\"=\"");
        statement->Refers = _module.Nodes.Make(variable);
        if (specifiers.IsConst)
            statement->Refers->Value = statement->Value;
        _scope->Declare(*statement->Refers, name.Where);
        statements.push_back(statement);
        first = statement;
    } while (Accept(","));
    Expect(";");
}

Statement* Parser::ParseEvaluation()
{
    Statement* statement = Make(StatementKind::Evaluate);
    statement->Value = ParseExpression();
    return statement;
}

} // namespace Mox::Cg
