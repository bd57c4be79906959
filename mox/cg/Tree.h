#pragma once

#include "mox/cg/Arena.h"
#include "mox/cg/Lexer.h"
#include "mox/cg/Type.h"

#include <span>
#include <string_view>

namespace Mox::Cg {

struct Expression;
struct Statement;
struct Function;
struct Intrinsic;

enum class Storage : std::uint8_t
{
    Local,
    In,
    Out,
    InOut,
    Constant, ///< of the module, with an initial value
    Uniform,
};

struct Variable
{
    std::string_view Name;
    Type Of;
    Storage Where = Storage::Local;
    bool IsAssigned = false;     ///< assigned after its declaration
    std::string_view Semantic;   ///< of a parameter of "main" or a uniform, such as "TEXCOORD3"
    Expression* Value = nullptr; ///< for a constant
};

enum class Operator : std::uint8_t
{
    Multiply,
    Divide,
    Modulo,
    Add,
    Subtract,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    Equal,
    NotEqual,
    And,
    Or,
    Negate,
    Not,
};

enum class ExpressionKind : std::uint8_t
{
    Number,  ///< Text; the type may differ from that of the literal
    Boolean, ///< Text "true" or "false"
    Name,    ///< Variable
    Unary,   ///< Op, one operand
    Binary,  ///< Op, two operands of one type; component by component
    Select,  ///< condition, value if true, value if false; component by component
    Assign,  ///< target, value. For a compound assignment, the value is a Binary whose left operand
             ///< is the target node itself, possibly inside conversions
    PostStep,  ///< an Assign, but yields the previous value of its target
    Call,      ///< Callee
    Intrinsic, ///< Builtin
    Construct, ///< parts in sequence, or one scalar for every component; zero without operands
    Convert,   ///< one operand, to the type of the expression
    Swizzle,   ///< one scalar or vector; Text holds letters of "xyzw"
    Element,   ///< of a matrix, at Row and Column; when lowered: matrix, row, column
    Index,     ///< an element of an array or vector, or a row of a matrix: value, index
    Member,    ///< of a struct; Text holds its name
    Sequence,  ///< operands evaluated in order; the last one is the value
};

struct Expression
{
    ExpressionKind Kind = ExpressionKind::Number;
    Operator Op = Operator::Add;
    bool IsWeak = false;     ///< a number that takes on the precision of any other operand
    std::uint8_t Row = 0;    ///< of Element
    std::uint8_t Column = 0; ///< likewise
    std::uint8_t Depth = 1;  ///< height of the tree, including this node
    Type Of;
    Position Where;
    std::string_view Text;
    std::span<Expression*> Operands;
    union {
        Variable* Refers = nullptr; ///< of Name
        const Function* Callee;     ///< of Call
        const Intrinsic* Builtin;   ///< of Intrinsic
    };
};

enum class StatementKind : std::uint8_t
{
    Block,    ///< Body
    Declare,  ///< Refers, and Value if it is initialized
    Evaluate, ///< Value
    If,       ///< Value, Body, Else
    While,    ///< Value, Body
    Do,       ///< like While, but runs at least once
    For,      ///< Start, Value if there is one, Step, Body
    Return,   ///< Value if there is one
    Break,
    Continue,
    Discard,
};

using Statements = std::span<Statement*>;

struct Statement
{
    StatementKind Kind = StatementKind::Block;
    int Line = 0; ///< of the source; 0 for a statement that lowering adds inside another
    std::string_view Comment; ///< the comment above the statement
    Variable* Refers = nullptr;
    Expression* Value = nullptr;
    Statements Body;
    Statements Else;
    Statements Start; ///< of For: declarations and evaluations
    Statements Step;  ///< of For: evaluations. In lowered loops, also those that precede Value
    Statements Test;  ///< of lowered loops: evaluations before each test of Value
};

/// The side effects that calling a function may have, other than computing its outputs.
struct Effects
{
    bool HasOutputs = false;       ///< has output parameters
    bool Discards = false;         ///< may discard the fragment
    bool TakesDerivatives = false; ///< needs neighbouring fragments to take the same branches

    void Add(const Effects& other)
    {
        Discards |= other.Discards;
        TakesDerivatives |= other.TakesDerivatives;
    }
};

struct Function
{
    std::string_view Name;
    std::string_view Comment;
    Position Where;
    Type Result;
    std::span<Variable*> Parameters;
    Statements Body;
    Effects Does;
};

} // namespace Mox::Cg
