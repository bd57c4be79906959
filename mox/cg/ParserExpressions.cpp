#include "mox/Text.h"
#include "mox/cg/ParserScope.h"

#include <algorithm>
#include <iterator>

namespace Mox::Cg {

namespace {

using Materials::Compose;

struct BinarySymbol
{
    std::string_view Symbol;
    Operator Op;
    int Precedence;
};

constexpr BinarySymbol binarySymbols[] = {
    {"||", Operator::Or, 1},        {"&&", Operator::And, 2},
    {"==", Operator::Equal, 3},     {"!=", Operator::NotEqual, 3},
    {"<=", Operator::LessEqual, 4}, {">=", Operator::GreaterEqual, 4},
    {"<", Operator::Less, 4},       {">", Operator::Greater, 4},
    {"+", Operator::Add, 5},        {"-", Operator::Subtract, 5},
    {"*", Operator::Multiply, 6},   {"/", Operator::Divide, 6},
    {"%", Operator::Modulo, 6},
};

const BinarySymbol* FindBinary(const Token& token)
{
    if (token.Kind != TokenKind::Symbol)
        return nullptr;
    const auto* found = std::find_if(std::begin(binarySymbols), std::end(binarySymbols),
                                     [&](const auto& s) { return s.Symbol == token.Text; });
    return found == std::end(binarySymbols) ? nullptr : found;
}

} // namespace

Expression* Parser::ParseExpression()
{
    Expression* value = ParseAssignment();
    while (Is(",")) {
        const Position where = Take().Where;
        value = _typing.Sequence(value, ParseAssignment(), where);
    }
    return value;
}

Expression* Parser::ParseAssignment()
{
    const Nesting nesting(*this);
    Expression* left = ParseConditional();
    if (_token.Kind != TokenKind::Symbol || !_token.Text.ends_with('=') || FindBinary(_token))
        return left;
    if (Is("=")) {
        const Position where = Take().Where;
        return _typing.Assign(nullptr, left, ParseAssignment(), where);
    }
    for (const BinarySymbol& binary : binarySymbols) {
        if (binary.Symbol.size() != 1 || _token.Text != Compose(binary.Symbol, "=") ||
            binary.Precedence < 5)
            continue;
        const Position where = Take().Where;
        return _typing.Assign(&binary.Op, left, ParseAssignment(), where);
    }
    throw Failure(_token.Where, Compose("operator ", Quote(_token.Text), " is not supported"));
}

Expression* Parser::ParseConditional()
{
    Expression* condition = ParseBinary(1);
    if (!Is("?"))
        return condition;
    const Nesting nesting(*this);
    const Position where = Take().Where;
    Expression* yes = ParseAssignment();
    Expect(":");
    return _typing.Select(condition, yes, ParseConditional(), where);
}

/// Parses operators of at least the given precedence; all are left-associative.
Expression* Parser::ParseBinary(int lowest)
{
    Expression* left = ParseUnary();
    for (;;) {
        const BinarySymbol* symbol = FindBinary(_token);
        if (!symbol || symbol->Precedence < lowest)
            return left;
        const Position where = Take().Where;
        left = _typing.Binary(symbol->Op, left, ParseBinary(symbol->Precedence + 1), where);
    }
}

/// Parses the operand of a prefix operator.
Expression* Parser::ParseOperand()
{
    const Nesting nesting(*this);
    return ParseUnary();
}

Expression* Parser::ParseUnary()
{
    const Position where = _token.Where;
    Type type;
    if (Accept("-"))
        return _typing.Unary(Operator::Negate, ParseOperand(), where);
    if (Accept("!"))
        return _typing.Unary(Operator::Not, ParseOperand(), where);
    if (Accept("+"))
        return ParseOperand();
    if (Accept("++"))
        return _typing.Step(Operator::Add, ParseOperand(), false, where);
    if (Accept("--"))
        return _typing.Step(Operator::Subtract, ParseOperand(), false, where);
    if (!Accept("("))
        return ParsePostfix(ParsePrimary());
    if (_next.Text == ")" && _token.Kind == TokenKind::Word && FindType(_token.Text, type)) {
        type = ParseType();
        Take();
        return _typing.Construct(type, {ParseOperand()}, where);
    }
    Expression* value = ParseExpression();
    Expect(")");
    return ParsePostfix(value);
}

Expression* Parser::ParsePostfix(Expression* value)
{
    for (;;) {
        const Position where = _token.Where;
        if (Accept(".")) {
            if (_token.Kind != TokenKind::Word)
                FailExpected("components or a member");
            value = _typing.Dot(value, Take());
        } else if (Accept("[")) {
            Expression* at = ParseExpression();
            Expect("]");
            value = _typing.Index(value, at, where);
        } else if (Accept("++")) {
            value = _typing.Step(Operator::Add, value, true, where);
        } else if (Accept("--")) {
            value = _typing.Step(Operator::Subtract, value, true, where);
        } else {
            return value;
        }
    }
}

Expression* Parser::ParsePrimary()
{
    if (_token.Kind == TokenKind::Number)
        return _typing.Number(Take());
    if (Is("true") || Is("false"))
        return _typing.Boolean(Take());
    Type type;
    if (_token.Kind == TokenKind::Word && FindType(_token.Text, type)) {
        const Position where = _token.Where;
        type = ParseType();
        Expect("(");
        return _typing.Construct(type, ParseArguments(")"), where);
    }
    if (_token.Kind != TokenKind::Word || IsKeyword(_token.Text))
        FailExpected("a value");
    const Token name = Take();
    if (Is("("))
        return ParseCall(name);
    const auto variable = _variables.find(name.Text);
    if (variable == _variables.end() || !variable->second.Known)
        throw Failure(name.Where, Compose("there is no variable ", Quote(name.Text)));
    if (variable->second.Known->Where == Storage::Uniform && _function && _function->Name != "main")
        throw Failure(name.Where, Compose("only \"main\" can read the uniform ", Quote(name.Text)));
    return _typing.Name(*variable->second.Known, name.Where);
}

Expression* Parser::ParseCall(const Token& name)
{
    Take();
    std::vector<Expression*> arguments = ParseArguments(")");
    const auto overloads = _functions.find(name.Text);
    if (overloads != _functions.end())
        return _typing.Call(overloads->second, std::move(arguments), name);
    if (Expression* call = _typing.CallLibrary(std::move(arguments), name))
        return call;
    throw Failure(name.Where, Compose("there is no function ", Quote(name.Text)));
}

/// Parses values up to and including a closing bracket.
std::vector<Expression*> Parser::ParseArguments(std::string_view end)
{
    std::vector<Expression*> arguments;
    while (!Is(end)) {
        if (!arguments.empty())
            Expect(",");
        if (arguments.size() == std::max<std::size_t>(mostParts, longestArray))
            throw Failure(_token.Where, "there are too many values");
        arguments.push_back(ParseAssignment());
    }
    Take();
    return arguments;
}

} // namespace Mox::Cg
