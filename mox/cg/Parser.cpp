#include "mox/cg/Parser.h"

#include "mox/Text.h"
#include "mox/cg/ConstantValue.h"
#include "mox/cg/ParserScope.h"

#include <algorithm>
#include <charconv>

namespace Mox::Cg {

namespace {

using Materials::Compose;

constexpr std::size_t longestSource = std::size_t(1) << 30;
constexpr std::size_t mostErrors = 100;

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

bool Parser::IsKeyword(std::string_view word)
{
    constexpr std::string_view keywords[] = {
        "break", "const",   "continue", "discard", "do",    "else",   "false",  "for",
        "if",    "in",      "inline",   "inout",   "out",   "return", "static", "struct",
        "true",  "typedef", "uniform",  "varying", "while", "switch", "case",   "default",
    };
    return std::find(std::begin(keywords), std::end(keywords), word) != std::end(keywords);
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

} // namespace Mox::Cg
