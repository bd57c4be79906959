#pragma once

#include "mox/cg/Intrinsics.h"
#include "mox/languages/NameTable.h"
#include "mox/languages/Precision.h"
#include "mox/languages/StageProgram.h"

#include <string>
#include <string_view>
#include <unordered_map>

namespace Mox::Languages {

/// Operator precedence, from lowest to highest.
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

/// Writes a lowered program in one language. This class implements what languages with C syntax
/// have in common; a derived class for each language overrides the differences. An object writes
/// only one source.
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
    // What differs between languages. All of these functions append to Text.

    virtual std::string_view EntryPoint() const { return "main"; }

    /// Writes everything before the first function: version, types, inputs, outputs, uniforms.
    /// Claims their names.
    virtual void PutInterface() = 0;

    /// Writes the head of the entry point, including its opening brace, and the start of its body.
    virtual void PutMainHead(const Cg::Function& main) = 0;

    /// Writes the end of the entry point's body; if it returns its outputs, the return statement.
    virtual void PutMainEnd() {}
    virtual bool ReturnsOutputs() const { return false; }

    /// Whether the language's "%" is defined for negative integers.
    virtual bool HasRemainder() const { return true; }

    virtual std::string TypeName(const Cg::Type& type) const = 0;

    /// Writes the declaration of a variable or member, without qualifiers and initial value.
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

    /// Writes an expression that will be followed by an index, swizzle or member.
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

    /// The language's name for one of Cg's built-in functions.
    virtual std::string_view FunctionName(const Cg::Intrinsic& intrinsic) const
    {
        return intrinsic.Name;
    }

    // Tools for derived classes.

    void Put(const Cg::Expression& expression, Binding around = Binding::Comma);

    /// Writes values separated by commas, in parentheses.
    void PutList(std::span<Cg::Expression* const> values);

    /// Writes a name followed by arguments in parentheses.
    void PutCall(std::string_view name, std::span<Cg::Expression* const> arguments);

    /// Writes a binary operator and its operands.
    void PutInfix(const Cg::Expression& left, std::string_view symbol, const Cg::Expression& right,
                  Binding own, Binding around);

    /// Writes a matrix operation as one operation per vector of the matrix: "type(a[0] * b[0],
    /// ...)".
    void PutByVectors(const Cg::Expression& expression, std::string_view symbol, int count);

    /// Writes the comment at the top, if there is one.
    void PutHeader();

    void PutStatements(Cg::Statements statements);
    void PutBlock(Cg::Statements statements);

    /// Writes statements as one expression, separated by commas.
    void PutSequence(Cg::Statements statements);
    void StartLine();
    void PutLine(std::string_view line);
    void PutComment(std::string_view comment);

    /// The name of a member, which only has to avoid the reserved words.
    std::string MemberName(std::string_view name) const;

    /// Claims a name for a variable.
    const std::string& Declare(const Cg::Variable& variable, std::string_view wanted);
    const std::string& NameOf(const Cg::Variable& variable) const { return _names.at(&variable); }

    /// Claims names for the texture and the sampler of a language that separates the two.
    /// @returns the name of the texture and that of the sampler
    std::pair<std::string, std::string> DeclareSampler(const Cg::Variable& sampler,
                                                       std::string_view wanted);

    /// Sets the name of a member of a block or struct and the expression that reads it, neither of
    /// which has to be claimed.
    void SetMember(const Cg::Variable& variable, std::string name, std::string text);
    const std::string& MemberText(const Cg::Variable& member) const { return _texts.at(&member); }

    /// The names of a block's variable and of its members; the latter must only differ from one
    /// another.
    struct BlockNames
    {
        std::string Variable;
        NameTable Members;
    };

    /// Claims the name of a block's variable and sets the names of all members.
    BlockNames DeclareMembers(const UniformBlock& block);

    /// The element type used to compute a type: fixed and half may become float.
    virtual Cg::Element Computed(Cg::Element element) const;

    /// Returns the scalar that a vector repeats, or the expression itself.
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
    std::unordered_map<const Cg::Variable*, std::string> SamplerNames; ///< set by DeclareSampler

private:
    std::string Claim(std::string_view wanted);

    /// Notes that the text from here on comes from a line of the source. 0 changes nothing.
    void BeginSource(int line);
    std::vector<int> SourceLines() const;

    void PutFunction(const Cg::Function& function);
    void PutStatement(const Cg::Statement& statement);
    void PutIf(const Cg::Statement& statement);
    void PutUserCall(const Cg::Expression& call);
    void PutRemainder(const Cg::Expression& expression, Binding around);

    std::unordered_map<const Cg::Variable*, std::string> _names;
    std::unordered_map<const Cg::Variable*, std::string> _texts; ///< set by SetMember
    std::vector<std::string> _own; ///< names of inputs, outputs and uniforms
    bool _isInInterface = false;
    std::vector<std::pair<std::size_t, int>> _sources; ///< where in Text which source line begins
    std::unordered_map<const Cg::Function*, std::string> _functions;
};

/// Whether a value is a number, or a constructor of only numbers.
bool IsLiteral(const Cg::Expression& expression);

} // namespace Mox::Languages
