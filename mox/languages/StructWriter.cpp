#include "mox/languages/StructWriter.h"

#include "mox/Text.h"

namespace Mox::Languages {

using Cg::Element;
using Cg::Expression;
using Cg::ExpressionKind;
using Cg::Operator;
using Materials::Compose;

namespace {

/// Returns the swizzle for the used components of a stored four-component vector.
std::string_view LettersOf(const Cg::Type& type)
{
    const std::size_t count = type.IsMatrix() ? type.Rows : type.Columns;
    return std::string_view("xyzw").substr(0, count);
}

bool IsStored(const Cg::Variable& variable)
{
    return variable.Where == Cg::Storage::Uniform && !variable.Of.IsSampler();
}

} // namespace

std::string StructWriter::NameInputs()
{
    const std::string parameter = Names.Claim("input");
    for (const StageSlot& input : Program.Inputs) {
        const std::string name = MemberName(input.Name);
        SetMember(*input.Of, name, Compose(parameter, ".", name));
    }
    return parameter;
}

std::string StructWriter::OutputNames() const
{
    std::string names;
    for (const StageSlot& output : Program.Outputs)
        names += Compose(names.empty() ? "" : ", ", NameOf(*output.Of));
    return names;
}

Cg::Type StructWriter::Stored(const Cg::Type& type)
{
    return type.HasFloats() ? type.With(Element::Float) : type;
}

std::string StructWriter::PutBlockStruct(const UniformBlock& block, std::string_view separator)
{
    BlockNames names = DeclareMembers(block);
    Text += Compose("struct ", block.Name, " {\n");
    std::uint32_t end = 0;
    for (const BlockMember& member : block.Members) {
        const Cg::Type& type = member.Of->Of;
        constexpr std::uint32_t word = 4;
        for (; end < member.Offset; end += word)
            Text += Compose("\t", PaddingMember(names.Members.Claim("padding")), separator, "\n");
        Text += Compose("\t", StoredMember(type, NameOf(*member.Of)), separator, "\n");
        end += GetStd140(type).Size;
    }
    Text += "}";
    return names.Variable;
}

std::string StructWriter::TextOf(const Expression& expression)
{
    const std::size_t begin = Text.size();
    Put(expression);
    std::string text = Text.substr(begin);
    Text.resize(begin);
    return text;
}

/// @param index of the element; empty if the member is not an array
void StructWriter::PutStoredElement(const Cg::Type& element, const std::string& member,
                                    const std::string& index)
{
    const std::string_view letters = LettersOf(element);
    const auto selection = [&](const std::string& vector) {
        return Compose(member, "[", vector, "].", letters);
    };
    if (!element.IsMatrix()) {
        PutLoaded(element, selection(index));
        return;
    }
    Text += TypeName(element);
    Text += '(';
    for (int column = 0; column < element.Columns; ++column) {
        Text += column > 0 ? ", " : "";
        const Cg::Type vector = Cg::VectorType(element.Of, element.Rows);
        PutLoaded(vector, selection(index.empty() ? std::to_string(column)
                                                  : Compose("(", index, ") * ", element.Columns,
                                                            " + ", column)));
    }
    Text += ')';
}

void StructWriter::PutName(const Cg::Variable& variable)
{
    if (!IsStored(variable)) {
        Writer::PutName(variable);
        return;
    }
    const Cg::Type& type = variable.Of;
    const std::string& member = MemberText(variable);
    if (!type.IsArray()) {
        if (IsStoredAsVectors(type))
            PutStoredElement(type, member, {});
        else
            PutLoaded(type, member);
        return;
    }
    const auto [open, close] = ArrayBrackets();
    Text += TypeName(type);
    Text += open;
    for (int i = 0; i < type.Length; ++i) {
        Text += i > 0 ? ", " : "";
        if (IsStoredAsVectors(type))
            PutStoredElement(type.Selected(), member, std::to_string(i));
        else
            PutLoaded(type.Selected(), Compose(member, "[", i, "]"));
    }
    Text += close;
}

void StructWriter::PutIndex(const Expression& expression)
{
    const Expression& what = *expression.Operands[0];
    if (what.Kind != ExpressionKind::Name || !what.Of.IsArray() || !IsStored(*what.Refers)) {
        Writer::PutIndex(expression);
        return;
    }
    const std::string& member = MemberText(*what.Refers);
    const std::string index = TextOf(*expression.Operands[1]);
    if (IsStoredAsVectors(what.Of))
        PutStoredElement(expression.Of, member, index);
    else
        PutLoaded(expression.Of, Compose(member, "[", index, "]"));
}

void StructWriter::PutArgument(const Cg::Variable& parameter, const Expression& argument)
{
    Put(argument, Binding::Assign);
    if (parameter.Of.IsSampler())
        Text += Compose(", ", SamplerNames.at(argument.Refers));
}

void StructWriter::PutBinary(const Expression& expression, Binding around)
{
    const bool isMatrix = expression.Operands[0]->Of.IsMatrix();
    const bool isScaled =
        isMatrix && expression.Op == Operator::Multiply && expression.Operands[1]->Of.IsScalar();
    const bool isProduct = expression.Op == Operator::Multiply || expression.Op == Operator::Divide;
    if (isMatrix && isProduct && !isScaled)
        PutByVectors(expression, Symbol(expression.Op), expression.Of.Columns);
    else
        Writer::PutBinary(expression, around);
}

void StructWriter::PutSelectCall(const Expression& expression)
{
    Text += "select(";
    for (const std::size_t i : {2, 1, 0}) {
        Put(*expression.Operands[i], Binding::Assign);
        Text += i > 0 ? ", " : ")";
    }
}

void StructWriter::PutConstruct(const Expression& expression)
{
    const Cg::Type& type = expression.Of;
    if (type.IsMatrix()) {
        Cg::Type transposed = type;
        std::swap(transposed.Rows, transposed.Columns);
        Text += "transpose(";
        PutCall(TypeName(transposed), expression.Operands);
        Text += ')';
        return;
    }
    if (!type.IsArray() && !type.Structure) {
        Writer::PutConstruct(expression);
        return;
    }
    const auto [open, close] = ArrayBrackets();
    Text += TypeName(type);
    Text += open;
    for (const Expression* operand : expression.Operands) {
        Text += operand == expression.Operands[0] ? "" : ", ";
        Put(*operand, Binding::Assign);
    }
    Text += close;
}

void StructWriter::PutConvert(const Expression& expression, Binding around)
{
    const Expression& operand = *expression.Operands[0];
    const Cg::Type& type = expression.Of;
    const bool isCut = type.Rows != operand.Of.Rows || type.Columns != operand.Of.Columns;
    const bool isChanged = Computed(type.Of) != Computed(operand.Of.Of);
    if (!type.IsMatrix() || (!isCut && !isChanged)) {
        Writer::PutConvert(expression, around);
        return;
    }
    Text += TypeName(type);
    Text += '(';
    for (int column = 0; column < type.Columns; ++column) {
        Text += column > 0 ? ", " : "";
        if (isChanged)
            Text += TypeName(Cg::VectorType(type.Of, type.Rows)) + "(";
        PutSelected(operand);
        Text += Compose("[", column, "]");
        if (type.Rows != operand.Of.Rows)
            Text += Compose(".", LettersOf(type));
        Text += isChanged ? ")" : "";
    }
    Text += ')';
}

} // namespace Mox::Languages
