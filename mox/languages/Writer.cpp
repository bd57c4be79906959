#include "mox/languages/Writer.h"

#include "mox/Text.h"

#include <algorithm>

namespace Mox::Languages {

using Cg::Element;
using Cg::Expression;
using Cg::ExpressionKind;
using Cg::Statement;
using Cg::StatementKind;
using Cg::Statements;

WrittenStage Writer::Write()
{
    // Hosts identify blocks by these names, so they are claimed first.
    for (const UniformBlock& block : Program.Blocks)
        Names.Claim(block.Name);
    for (const Cg::StructType& structure : Program.Code->Structs)
        StructNames.emplace(&structure, Names.Claim(structure.Name));
    _isInInterface = true;
    PutInterface();
    _isInInterface = false;
    for (const Cg::StructType& structure : Program.Code->Structs)
        PutStruct(structure, StructNames.at(&structure));
    for (const Cg::Variable* constant : Program.Code->Constants)
        PutConstant(*constant, Declare(*constant, constant->Name));
    for (const Cg::Function* function : Program.Code->Functions) {
        const bool isMain = function->Name == "main";
        _functions.emplace(function,
                           isMain ? std::string(EntryPoint()) : Names.Claim(function->Name));
    }
    // Only the entry point sees inputs, outputs and uniforms, so other functions may have
    // parameters with the same names.
    Names.Hide(_own);
    for (const Cg::Function* function : Program.Code->Functions) {
        if (function->Name == "main")
            Names.Show(_own);
        PutFunction(*function);
    }
    std::vector<int> lines = SourceLines();
    WrittenStage written{std::move(Text), std::move(lines), std::string(EntryPoint()), {}};
    const auto note = [&](const Cg::Variable* variable) {
        const auto found = _names.find(variable);
        if (found != _names.end())
            written.Names.emplace_back(variable, found->second);
    };
    for (const auto* slots : {&Program.Inputs, &Program.Outputs, &Program.Samplers}) {
        for (const StageSlot& slot : *slots)
            note(slot.Of);
    }
    for (const UniformBlock& block : Program.Blocks) {
        for (const BlockMember& member : block.Members)
            note(member.Of);
    }
    return written;
}

void Writer::BeginSource(int line)
{
    if (line > 0)
        _sources.emplace_back(Text.size(), line);
}

std::vector<int> Writer::SourceLines() const
{
    std::vector<int> lines;
    auto next = _sources.begin();
    int source = 0;
    for (std::size_t i = 0; i < Text.size(); ++i) {
        for (; next != _sources.end() && next->first <= i; ++next)
            source = next->second;
        lines.push_back(source);
        i = std::min(Text.find('\n', i), Text.size());
    }
    return lines;
}

// ---- names

std::string Writer::Claim(std::string_view wanted)
{
    std::string name = Names.Claim(wanted);
    if (_isInInterface)
        _own.push_back(name);
    return name;
}

const std::string& Writer::Declare(const Cg::Variable& variable, std::string_view wanted)
{
    return _names.insert_or_assign(&variable, Claim(wanted)).first->second;
}

std::pair<std::string, std::string> Writer::DeclareSampler(const Cg::Variable& sampler,
                                                           std::string_view wanted)
{
    constexpr const char* suffix = "Sampler";
    // A parameter may have been declared already.
    if (!_names.contains(&sampler)) {
        while (!Names.IsFree(Declare(sampler, wanted) + suffix)) {
            // Hosts derive one name from the other, so both are claimed together.
        }
    }
    const std::string& texture = NameOf(sampler);
    const std::string& state =
        SamplerNames.insert_or_assign(&sampler, Claim(texture + suffix)).first->second;
    return {texture, state};
}

void Writer::SetMember(const Cg::Variable& variable, std::string name, std::string text)
{
    _names.insert_or_assign(&variable, std::move(name));
    _texts.insert_or_assign(&variable, std::move(text));
}

Writer::BlockNames Writer::DeclareMembers(const UniformBlock& block)
{
    BlockNames names{Claim(block.Variable), NameTable(Reserved)};
    for (const BlockMember& member : block.Members) {
        const std::string name = names.Members.Claim(member.Name);
        SetMember(*member.Of, name, Materials::Compose(names.Variable, ".", name));
    }
    return names;
}

std::string Writer::MemberName(std::string_view name) const
{
    return NameTable(Reserved).Claim(name);
}

Element Writer::Computed(Element element) const
{
    if (element != Element::Half && element != Element::Fixed)
        return element;
    return IsRelaxed ? Element::Half : Element::Float;
}

// ---- lines

void Writer::PutHeader()
{
    if (!Program.Header.empty())
        PutLine("// " + Program.Header);
}

void Writer::StartLine()
{
    Text.append(static_cast<std::size_t>(Indentation), '\t');
}

void Writer::PutLine(std::string_view line)
{
    StartLine();
    Text += line;
    Text += '\n';
}

/// Writes a comment, without the original indentation of its lines.
void Writer::PutComment(std::string_view comment)
{
    while (!comment.empty()) {
        const std::size_t end = std::min(comment.find('\n'), comment.size());
        std::string_view line = comment.substr(0, end);
        comment.remove_prefix(std::min(end + 1, comment.size()));
        while (!line.empty() && (line[0] == ' ' || line[0] == '\t'))
            line.remove_prefix(1);
        while (!line.empty() && (line.back() == ' ' || line.back() == '\r'))
            line.remove_suffix(1);
        if (!line.empty())
            PutLine(line.ends_with('\\') ? line.substr(0, line.size() - 1) : line);
    }
}

// ---- declarations

void Writer::PutDeclarator(const Cg::Type& type, std::string_view name)
{
    Cg::Type element = type;
    element.Length = 0;
    Text += TypeName(element);
    Text += ' ';
    Text += name;
    if (type.IsArray()) {
        Text += '[';
        Text += std::to_string(type.Length);
        Text += ']';
    }
}

void Writer::PutStruct(const Cg::StructType& structure, std::string_view name)
{
    Text += "struct ";
    Text += name;
    Text += "\n{\n";
    ++Indentation;
    for (const Cg::StructMember& member : structure.Members) {
        StartLine();
        PutDeclarator(member.Of, MemberName(member.Name));
        Text += ";\n";
    }
    --Indentation;
    Text += "};\n\n";
}

void Writer::PutConstant(const Cg::Variable& constant, std::string_view name)
{
    Text += "const ";
    PutDeclarator(constant.Of, name);
    Text += " = ";
    Put(*constant.Value, Binding::Assign);
    Text += ";\n\n";
}

void Writer::PutFunctionHead(const Cg::Function& function, std::string_view name)
{
    Text += TypeName(function.Result);
    Text += ' ';
    Text += name;
    Text += '(';
    bool isFirst = true;
    for (const Cg::Variable* parameter : function.Parameters) {
        Text += isFirst ? "" : ", ";
        isFirst = false;
        Declare(*parameter, parameter->Name);
        PutParameter(*parameter);
    }
    Text += ")\n{\n";
}

void Writer::PutFunction(const Cg::Function& function)
{
    constexpr std::size_t longestLine = 100;
    if (!Text.ends_with("\n\n"))
        Text += '\n';
    BeginSource(function.Where.Line);
    PutComment(function.Comment);
    Names.OpenScope();
    IsInMain = function.Name == "main";
    const std::size_t head = Text.size();
    if (IsInMain)
        PutMainHead(function);
    else
        PutFunctionHead(function, _functions.at(&function));
    // A long list of parameters is written with one per line.
    if (!IsInMain && Text.find('\n', head) - head > longestLine) {
        int depth = 0;
        for (std::size_t i = head; Text[i] != '\n'; ++i) {
            depth += Text[i] == '(' || Text[i] == '<' ? 1 : 0;
            depth -= Text[i] == ')' || Text[i] == '>' ? 1 : 0;
            if (Text[i] == '(' && depth == 1)
                Text.insert(i + 1, "\n\t"), i += 2;
            else if (Text[i] == ',' && depth == 1)
                Text.replace(i + 1, 1, "\n\t"), ++i;
        }
    }
    ++Indentation;
    PutStatements(function.Body);
    BeginSource(function.Where.Line);
    if (IsInMain)
        PutMainEnd();
    --Indentation;
    Text += "}\n";
    IsInMain = false;
    Names.CloseScope();
}

// ---- statements

void Writer::PutStatements(Statements statements)
{
    for (const Statement* statement : statements)
        PutStatement(*statement);
}

void Writer::PutBlock(Statements statements)
{
    Names.OpenScope();
    Text += "{\n";
    ++Indentation;
    PutStatements(statements);
    --Indentation;
    StartLine();
    Text += "}";
    Names.CloseScope();
}

void Writer::PutStatement(const Statement& statement)
{
    BeginSource(statement.Line);
    PutComment(statement.Comment);
    StartLine();
    switch (statement.Kind) {
    case StatementKind::Block:
        PutBlock(statement.Body);
        break;
    case StatementKind::Declare:
        PutVariable(statement);
        Text += ';';
        break;
    case StatementKind::Evaluate:
        if (statement.Value->Kind == ExpressionKind::Assign)
            PutAssign(*statement.Value);
        else
            Put(*statement.Value);
        Text += ';';
        break;
    case StatementKind::If:
        PutIf(statement);
        break;
    case StatementKind::While:
        PutWhile(statement);
        break;
    case StatementKind::Do:
        PutDo(statement);
        break;
    case StatementKind::For:
        Names.OpenScope();
        PutFor(statement);
        Names.CloseScope();
        break;
    case StatementKind::Return:
        if (IsInMain && ReturnsOutputs()) {
            Text.resize(Text.size() - static_cast<std::size_t>(Indentation));
            PutMainEnd();
            return;
        }
        Text += "return";
        if (statement.Value) {
            Text += ' ';
            Put(*statement.Value);
        }
        Text += ';';
        break;
    case StatementKind::Break:
        Text += "break;";
        break;
    case StatementKind::Continue:
        Text += "continue;";
        break;
    case StatementKind::Discard:
        PutDiscard();
        break;
    }
    Text += '\n';
}

void Writer::PutVariable(const Statement& declaration)
{
    PutDeclarator(declaration.Refers->Of, Declare(*declaration.Refers, declaration.Refers->Name));
    if (declaration.Value) {
        Text += " = ";
        Put(*declaration.Value, Binding::Assign);
    }
}

void Writer::PutIf(const Statement& statement)
{
    Text += "if (";
    Put(*statement.Value);
    Text += ") ";
    PutBlock(statement.Body);
    if (statement.Else.empty())
        return;
    Text += " else ";
    if (statement.Else.size() == 1 && statement.Else[0]->Kind == StatementKind::If &&
        statement.Else[0]->Comment.empty())
        PutIf(*statement.Else[0]);
    else
        PutBlock(statement.Else);
}

void Writer::PutSequence(Statements statements)
{
    for (const Statement* statement : statements) {
        if (statement != statements.front())
            Text += ", ";
        if (statement->Value->Kind == ExpressionKind::Assign)
            PutAssign(*statement->Value);
        else
            Put(*statement->Value, Binding::Assign);
    }
}

void Writer::PutWhile(const Statement& loop)
{
    Text += "while (";
    PutSequence(loop.Test);
    Text += loop.Test.empty() ? "" : ", ";
    Put(*loop.Value, Binding::Assign);
    Text += ") ";
    PutBlock(loop.Body);
}

void Writer::PutDo(const Statement& loop)
{
    Text += "do ";
    PutBlock(loop.Body);
    Text += " while (";
    PutSequence(loop.Test);
    Text += loop.Test.empty() ? "" : ", ";
    Put(*loop.Value, Binding::Assign);
    Text += ");";
}

void Writer::PutFor(const Statement& loop)
{
    Text += "for (";
    if (!loop.Start.empty()) {
        if (loop.Start[0]->Kind == StatementKind::Declare)
            PutVariable(*loop.Start[0]);
        else
            PutSequence(loop.Start);
    }
    Text += "; ";
    PutSequence(loop.Test);
    Text += loop.Test.empty() ? "" : ", ";
    if (loop.Value)
        Put(*loop.Value, Binding::Assign);
    Text += "; ";
    PutSequence(loop.Step);
    Text += ") ";
    PutBlock(loop.Body);
}

void Writer::PutAssign(const Expression& assignment)
{
    const Expression& target = *assignment.Operands[0];
    const Expression& value = *assignment.Operands[1];
    Put(target, Binding::Unary);
    const bool isCompound = value.Kind == ExpressionKind::Binary && value.Operands[0] == &target &&
                            value.Op <= Cg::Operator::Subtract && !value.Of.IsMatrix() &&
                            (value.Op != Cg::Operator::Modulo || HasRemainder());
    if (isCompound) {
        Text += ' ';
        Text += Symbol(value.Op);
        Text += "= ";
        Put(Unrepeated(*value.Operands[1]), Binding::Assign);
    } else {
        Text += " = ";
        Put(value, Binding::Assign);
    }
}

} // namespace Mox::Languages
