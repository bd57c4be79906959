#include "mox/cg/Parser.h"

#include "mox/Text.h"
#include "mox/cg/ConstantValue.h"

#include <algorithm>
#include <charconv>

namespace Mox::Cg {

namespace {

using Materials::Compose;

constexpr std::size_t longestSource = std::size_t(1) << 30;
constexpr int deepestNesting = 64;
constexpr std::size_t mostErrors = 100;
constexpr std::size_t mostParts = 256; ///< in a struct, a parameter list or an initial value
constexpr int longestArray = 1024;

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

/// Whether a word is a keyword, which cannot be used as a name.
bool IsKeyword(std::string_view word)
{
    constexpr std::string_view keywords[] = {
        "break", "const",   "continue", "discard", "do",    "else",   "false",  "for",
        "if",    "in",      "inline",   "inout",   "out",   "return", "static", "struct",
        "true",  "typedef", "uniform",  "varying", "while", "switch", "case",   "default",
    };
    return std::find(std::begin(keywords), std::end(keywords), word) != std::end(keywords);
}

/// Whether the end of a function cannot be reached.
bool Returns(Statements statements)
{
    if (statements.empty())
        return false;
    const Statement& last = *statements.back();
    switch (last.Kind) {
    case StatementKind::Return:
        return true;
    case StatementKind::Block:
        return Returns(last.Body);
    case StatementKind::If:
        return Returns(last.Body) && Returns(last.Else);
    default:
        return false;
    }
}

} // namespace

class Parser::Nesting
{
public:
    explicit Nesting(Parser& parser) : _parser(parser)
    {
        if (_parser._nesting >= deepestNesting)
            throw Failure(_parser._token.Where, "the code is nested too deeply");
        ++_parser._nesting;
    }
    ~Nesting() { --_parser._nesting; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

private:
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
            throw Failure(where, Compose(Quote(variable.Name), " is declared twice"));
        _shadowed.emplace_back(variable.Name, entry);
        entry = {&variable, this};
    }

private:
    Parser& _parser;
    Scope* _outer;
    std::vector<std::pair<std::string_view, Binding>> _shadowed;
};

Parser::Parser(Module& module) : _module(module), _typing(module.Nodes)
{}

const Function* Module::Main() const
{
    const auto main = std::find_if(Functions.begin(), Functions.end(),
                                   [](const Function* f) { return f->Name == "main"; });
    return main == Functions.end() ? nullptr : *main;
}

ModuleReader::ModuleReader(std::string source)
{
    const bool isTooLong = source.size() > longestSource;
    _module = std::make_unique<Module>(isTooLong ? std::string() : std::move(source));
    if (isTooLong)
        _module->Errors.push_back({{}, "the source is too long"});
    _parser = std::make_unique<Parser>(*_module);
}

ModuleReader::~ModuleReader() = default;

const Module& ModuleReader::ReadTo(std::size_t end)
{
    const std::string_view source = _module->Source;
    end = std::clamp(end, _read, source.size());
    _parser->Parse(source.substr(_read, end - _read));
    _read = end;
    return *_module;
}

std::unique_ptr<Module> ModuleReader::ReadRest()
{
    ReadTo(_module->Source.size());
    return std::move(_module);
}

std::unique_ptr<Module> ReadModule(std::string source)
{
    return ModuleReader(std::move(source)).ReadRest();
}

// ---- tokens

bool Parser::Is(std::string_view symbol) const
{
    return _token.Kind != TokenKind::End && _token.Text[0] == symbol[0] && _token.Text == symbol;
}

bool Parser::Accept(std::string_view symbol)
{
    if (!Is(symbol))
        return false;
    Take();
    return true;
}

void Parser::Expect(std::string_view symbol)
{
    if (!Accept(symbol))
        FailExpected(Quote(symbol));
}

Token Parser::ExpectName(const char* what)
{
    Type type;
    if (_token.Kind != TokenKind::Word || IsKeyword(_token.Text) ||
        FindBuiltInType(_token.Text, type))
        FailExpected(what);
    return Take();
}

Token Parser::Take()
{
    const Token token = _token;
    if (token.Kind == TokenKind::Symbol)
        _braces += token.Text == "{" ? 1 : token.Text == "}" ? -1 : 0;
    _token = _next;
    _next = _next.Kind == TokenKind::End && token.Kind == TokenKind::End ? _next : _lexer.Next();
    return token;
}

void Parser::FailExpected(std::string_view what) const
{
    throw Failure(_token.Where, Compose("expected ", what, ", not ",
                                        _token.Kind == TokenKind::End ? "the end of the source"
                                                                      : Quote(_token.Text)));
}

// ---- declarations

void Parser::Parse(std::string_view part)
{
    try {
        _lexer.Append(part);
        _token = _lexer.Next();
        _next = _lexer.Next();
        while (_token.Kind != TokenKind::End)
            ParseGlobal();
    } catch (const Failure& failure) {
        Report(failure);
    }
}

/// Reports an error once: an error that stops the lexer in a function stops it again while the
/// function is skipped.
void Parser::Report(const Failure& failure)
{
    const auto& errors = _module.Errors;
    if (errors.empty() || errors.back().Where.Line != failure.Where.Line ||
        errors.back().Where.Column != failure.Where.Column)
        _module.Errors.push_back({failure.Where, failure.what()});
}

void Parser::ParseGlobal()
{
    if (Accept(";"))
        return;
    const std::string_view comment = _token.Comment;
    if (Is("struct"))
        return ParseStruct();
    const Specifiers specifiers = ParseSpecifiers();
    const Type type = ParseType();
    const Token name = ExpectName("a name");
    if (Is("("))
        ParseFunction(type, name, comment);
    else
        ParseGlobals(specifiers, type, name);
}

void Parser::ParseStruct()
{
    Take();
    const Token name = ExpectName("the name of a struct");
    StructType structure{name.Text, {}};
    Expect("{");
    while (!Accept("}")) {
        const Type type = ParseType();
        if (!type.IsNumeric())
            throw Failure(_token.Where, Compose("a member cannot be of type ", type.Format()));
        do {
            const Token member = ExpectName("the name of a member");
            const auto& members = structure.Members;
            if (std::any_of(members.begin(), members.end(),
                            [&](const auto& other) { return other.Name == member.Text; }))
                throw Failure(member.Where, Compose(Quote(member.Text), " is declared twice"));
            if (members.size() == mostParts)
                throw Failure(member.Where, "a struct has too many members");
            structure.Members.push_back({member.Text, type});
            ParseSemantic();
        } while (Accept(","));
        Expect(";");
    }
    Expect(";");
    if (structure.Members.empty())
        throw Failure(name.Where, "a struct needs at least one member");
    _module.Structs.push_back(std::move(structure));
    if (!_structs.emplace(name.Text, &_module.Structs.back()).second)
        throw Failure(name.Where, Compose(Quote(name.Text), " is declared twice"));
}

void Parser::ParseGlobals(const Specifiers& specifiers, const Type& type, Token name)
{
    if (specifiers.IsStatic && !specifiers.IsConst)
        throw Failure(name.Where, "a global variable must be uniform or const");
    for (;;) {
        Variable variable;
        variable.Name = name.Text;
        variable.Of = type;
        variable.Where = specifiers.IsConst ? Storage::Constant : Storage::Uniform;
        ParseLength(variable.Of);
        if (specifiers.IsConst) {
            Expect("=");
            variable.Value = ParseInitializer(variable.Of);
            if (!IsConstantValue(*variable.Value))
                throw Failure(variable.Value->Where, "expected numbers as the value of a constant");
        } else {
            variable.Semantic = ParseSemantic();
        }
        Variable* global = _module.Nodes.Make(variable);
        Binding& entry = _variables[global->Name];
        if (entry.Known)
            throw Failure(name.Where, Compose(Quote(global->Name), " is declared twice"));
        entry.Known = global;
        (specifiers.IsConst ? _module.Constants : _module.Uniforms).push_back(global);
        if (!Accept(","))
            break;
        name = ExpectName("a name");
    }
    Expect(";");
}

void Parser::ParseFunction(const Type& result, const Token& name, std::string_view comment)
{
    Scope scope(*this);
    if (result.IsArray() || result.IsSampler())
        throw Failure(name.Where, Compose("a function cannot return ", result.Format()));
    Function function;
    function.Name = name.Text;
    function.Comment = comment;
    function.Where = name.Where;
    function.Result = result;
    std::vector<Variable*> parameters;
    Expect("(");
    if (!(Is("void") && _next.Text == ")" && Accept("void"))) {
        while (!Is(")") && (parameters.empty() || (Expect(","), true))) {
            if (parameters.size() == mostParts)
                throw Failure(_token.Where, "a function has too many parameters");
            parameters.push_back(ParseParameter());
            function.Does.HasOutputs |= parameters.back()->Where != Storage::In;
        }
    }
    Expect(")");
    ParseSemantic();
    function.Parameters = _module.Nodes.Copy(parameters);
    Function* made = _module.Nodes.Make(function);
    if (!Is("{"))
        FailExpected("\"{\"");
    try {
        _function = made;
        _typing.Does = function.Does;
        made->Body = ParseBody();
        made->Does = _typing.Does;
        if (result.Of != Element::Void && !Returns(made->Body))
            throw Failure(name.Where,
                          Compose(Quote(name.Text), " can end without returning a value"));
    } catch (const Failure& failure) {
        // Continue with the other functions, so that all errors are found at once.
        Report(failure);
        if (_module.Errors.size() == mostErrors)
            throw Failure(_token.Where, "there are too many errors");
        SkipBody();
    }
    _nesting = 0;
    _loops = 0;
    std::vector<Function*>& overloads = _functions[name.Text];
    for (const Function* other : overloads) {
        if (std::equal(parameters.begin(), parameters.end(), other->Parameters.begin(),
                       other->Parameters.end(),
                       [](const auto* a, const auto* b) { return a->Of == b->Of; }))
            throw Failure(name.Where, Compose("function ", Quote(name.Text), " is defined twice"));
    }
    overloads.push_back(made);
    _module.Functions.push_back(made);
}

/// Skips to the end of the function after an error.
void Parser::SkipBody()
{
    while (_token.Kind != TokenKind::End && _braces > 0)
        Take();
}

Variable* Parser::ParseParameter()
{
    Variable parameter;
    parameter.Where = Storage::In;
    bool isConst = false;
    for (;; Take()) {
        if (Is("out"))
            parameter.Where = Storage::Out;
        else if (Is("inout"))
            parameter.Where = Storage::InOut;
        else if (Is("const"))
            isConst = true;
        else if (!Is("in") && !Is("uniform") && !Is("varying"))
            break;
    }
    parameter.Of = ParseType();
    const Token name = ExpectName("the name of a parameter");
    parameter.Name = name.Text;
    ParseLength(parameter.Of);
    parameter.Semantic = ParseSemantic();
    const bool isOut = parameter.Where != Storage::In;
    if (parameter.Of.Of == Element::Void || (parameter.Of.IsSampler() && parameter.Of.IsArray()) ||
        (isOut && (parameter.Of.IsSampler() || isConst)))
        throw Failure(name.Where, Compose("a parameter cannot be of type ", isOut ? "out " : "",
                                          parameter.Of.Format()));
    Variable* made = _module.Nodes.Make(parameter);
    _scope->Declare(*made, name.Where);
    return made;
}

/// Parses ": TEXCOORD0" or ": register( c0 )".
std::string_view Parser::ParseSemantic()
{
    if (!Accept(":"))
        return {};
    const Token word = ExpectName("a semantic");
    if (!Accept("("))
        return word.Text;
    const Token place = ExpectName("a register");
    Expect(")");
    return place.Text;
}

Parser::Specifiers Parser::ParseSpecifiers()
{
    Specifiers specifiers;
    for (;; Take()) {
        if (Is("const"))
            specifiers.IsConst = true;
        else if (Is("static"))
            specifiers.IsStatic = true;
        else if (Is("uniform"))
            specifiers.IsUniform = true;
        else if (!Is("inline"))
            return specifiers;
    }
}

bool Parser::FindType(std::string_view word, Type& type) const
{
    if (FindBuiltInType(word, type))
        return true;
    const auto structure = _structs.find(word);
    if (structure == _structs.end())
        return false;
    type = Type();
    type.Of = Element::Struct;
    type.Structure = structure->second;
    return true;
}

Type Parser::ParseType()
{
    Type type;
    if (_token.Kind != TokenKind::Word || !FindType(_token.Text, type))
        FailExpected("a type");
    if (type.IsMatrix() && !type.HasFloats())
        throw Failure(_token.Where,
                      Compose(Quote(_token.Text),
                              " is not supported: the elements of a matrix must be floats"));
    Take();
    return type;
}

void Parser::ParseLength(Type& type)
{
    if (!Accept("["))
        return;
    const Token size = Take();
    Token number = size;
    const auto constant = _variables.find(size.Text);
    if (constant != _variables.end() && constant->second.Known && constant->second.Known->Value)
        number.Text = constant->second.Known->Value->Text;
    int length = 0;
    std::from_chars(number.Text.data(), number.Text.data() + number.Text.size(), length);
    if (length < 1 || length > longestArray || type.Of == Element::Void)
        throw Failure(size.Where, Compose("expected the length of an array, from 1 to ",
                                          longestArray, ", not ", Quote(size.Text)));
    type.Length = static_cast<std::uint16_t>(length);
    Expect("]");
    if (Is("["))
        throw Failure(_token.Where, "an array of arrays is not supported");
}

Expression* Parser::ParseInitializer(const Type& type)
{
    if (!Is("{"))
        return _typing.Convert(ParseAssignment(), type);
    const Position where = Take().Where;
    std::vector<Expression*> parts = ParseArguments("}");
    return _typing.Aggregate(type, std::move(parts), where);
}

// ---- statements

Statement* Parser::Make(StatementKind kind)
{
    Statement statement;
    statement.Kind = kind;
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

// ---- expressions

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
