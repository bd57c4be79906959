#pragma once

#include "mox/cg/Intrinsics.h"
#include "mox/languages/NameTable.h"
#include "mox/languages/Precision.h"
#include "mox/languages/StageProgram.h"

#include <string>
#include <string_view>
#include <unordered_map>

namespace Mox::Languages {

/// How tightly operators bind, from the loosest on.
enum class Binding
{
    Comma,
    Assign,
    Select,
    Or,
    And,
    Equality,
    Relation,
    Sum,
    Product,
    Unary,
    Postfix,
    Primary,
};

/// Spells a lowered program in one language. This class knows what languages with the syntax of C
/// share; a language is a class derived from it, which overrides what it says differently. Objects
/// are for one text each.
class Writer
{
public:
    Writer(const StageProgram& program, Precision precision, const Words& reserved)
        : Program(program), IsRelaxed(precision == Precision::Relaxed), Reserved(reserved),
          Names(reserved)
    {}
    virtual ~Writer() = default;
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    WrittenStage Write();

protected:
    // What a language says in its own way. All of these append to Text.

    virtual std::string_view EntryPoint() const { return "main"; }

    /// What is before the first function: version, types, inputs, outputs, uniforms. Claims the
    /// names of all these.
    virtual void PutInterface() = 0;

    /// The entry point's head, up to and with its opening brace, and what its body begins with.
    virtual void PutMainHead(const Cg::Function& main) = 0;

    /// What the entry point's body ends with: where it returns its outputs, the return.
    virtual void PutMainEnd() {}
    virtual bool ReturnsOutputs() const { return false; }

    virtual std::string TypeName(const Cg::Type& type) const = 0;

    /// A declaration of a variable or member, without qualifiers and initial value.
    virtual void PutDeclarator(const Cg::Type& type, std::string_view name);
    virtual void PutVariable(const Cg::Statement& declaration);
    virtual void PutConstant(const Cg::Variable& constant, std::string_view name);
    virtual void PutStruct(const Cg::StructType& structure, std::string_view name);
    virtual void PutParameter(const Cg::Variable& parameter) = 0;
    virtual void PutFunctionHead(const Cg::Function& function, std::string_view name);
    virtual void PutFor(const Cg::Statement& loop);
    virtual void PutWhile(const Cg::Statement& loop);
    virtual void PutDo(const Cg::Statement& loop);
    virtual void PutAssign(const Cg::Expression& assignment);
    virtual void PutDiscard() { Text += "discard;"; }

    virtual void PutNumber(const Cg::Expression& number);
    virtual void PutName(const Cg::Variable& variable);

    /// The same where a selection from it follows.
    virtual void PutSelected(const Cg::Expression& expression);
    virtual void PutArgument(const Cg::Variable& parameter, const Cg::Expression& argument);
    virtual void PutBinary(const Cg::Expression& expression, Binding around);
    virtual void PutUnary(const Cg::Expression& expression, Binding around);
    virtual void PutSelect(const Cg::Expression& expression, Binding around);
    virtual void PutConstruct(const Cg::Expression& expression);
    virtual void PutZero(const Cg::Type& type) = 0;
    virtual void PutConvert(const Cg::Expression& expression, Binding around);
    virtual void PutElement(const Cg::Expression& expression);
    virtual void PutIndex(const Cg::Expression& expression);
    virtual void PutIntrinsic(const Cg::Expression& call, Binding around);
    virtual void PutProduct(const Cg::Expression& call, Binding around);
    virtual void PutRead(const Cg::Expression& call) = 0;

    /// What the language calls a function of Cg's library.
    virtual std::string_view FunctionName(const Cg::Intrinsic& intrinsic) const
    {
        return intrinsic.Name;
    }

    // Tools for them.

    void Put(const Cg::Expression& expression, Binding around = Binding::Comma);

    /// Values with commas between them, in brackets.
    void PutList(std::span<Cg::Expression* const> values);

    /// A name and arguments in brackets.
    void PutCall(std::string_view name, std::span<Cg::Expression* const> arguments);

    /// An operator between two operands.
    void PutInfix(const Cg::Expression& left, std::string_view symbol, const Cg::Expression& right,
                  Binding own, Binding around);

    /// A matrix operation as one for each of the vectors that it consists of: "type(a[0] * b[0],
    /// ...)".
    void PutByVectors(const Cg::Expression& expression, std::string_view symbol, int count);

    /// The comment at the top, if there is to be one.
    void PutHeader();

    void PutStatements(Cg::Statements statements);
    void PutBlock(Cg::Statements statements);

    /// Statements as one expression with commas.
    void PutSequence(Cg::Statements statements);
    void StartLine();
    void PutLine(std::string_view line);
    void PutComment(std::string_view comment);

    /// A member's name, which needs to be none of the reserved words alone.
    std::string MemberName(std::string_view name) const;

    /// Claims a name for a variable.
    const std::string& Declare(const Cg::Variable& variable, std::string_view wanted);
    const std::string& NameOf(const Cg::Variable& variable) const { return _names.at(&variable); }

    /// Claims names for a sampler in a language that keeps the texture apart from the way it is
    /// read.
    /// @returns the names of the two
    std::pair<std::string, std::string> DeclareSampler(const Cg::Variable& sampler,
                                                       std::string_view wanted);

    /// Gives a member of a block or of a struct its name, and the text that reads it, which needs
    /// no claim.
    void SetMember(const Cg::Variable& variable, std::string name, std::string text);
    const std::string& MemberText(const Cg::Variable& member) const { return _texts.at(&member); }

    /// What a text calls a block's variable, and its members, which only have to differ from one
    /// another.
    struct BlockNames
    {
        std::string Variable;
        NameTable Members;
    };

    /// Claims the name of a block's variable and sets all members.
    BlockNames DeclareMembers(const UniformBlock& block);

    /// The elements in which a type is computed here: fixed and half may be float.
    virtual Cg::Element Computed(Cg::Element element) const;

    /// A scalar that is repeated in all components, or the expression itself.
    static const Cg::Expression& Unrepeated(const Cg::Expression& expression);
    static std::string_view Symbol(Cg::Operator op);

    const StageProgram& Program;
    const bool IsRelaxed;
    const Words& Reserved;
    NameTable Names;
    std::string Text;
    int Indentation = 0;
    bool IsInMain = false;
    std::unordered_map<const Cg::StructType*, std::string> StructNames;
    std::unordered_map<const Cg::Variable*, std::string> SamplerNames; ///< of DeclareSampler

private:
    std::string Claim(std::string_view wanted);
    void PutFunction(const Cg::Function& function);
    void PutStatement(const Cg::Statement& statement);
    void PutIf(const Cg::Statement& statement);
    void PutUserCall(const Cg::Expression& call);

    std::unordered_map<const Cg::Variable*, std::string> _names;
    std::unordered_map<const Cg::Variable*, std::string> _texts; ///< of SetMember
    std::vector<std::string> _own; ///< names of inputs, outputs and uniforms
    bool _isInInterface = false;
    std::unordered_map<const Cg::Function*, std::string> _functions;
};

/// Whether a value is the number or constructor of numbers alone.
bool IsLiteral(const Cg::Expression& expression);

} // namespace Mox::Languages
