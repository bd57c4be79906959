#pragma once

#include "mox/cg/Arena.h"
#include "mox/cg/Lexer.h"
#include "mox/cg/Type.h"

#include <deque>
#include <span>
#include <string_view>
#include <vector>

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
    Constant, ///< of the module, with a value
    Uniform,
};

struct Variable
{
    std::string_view Name;
    Type Of;
    Storage Where = Storage::Local;
    bool IsAssigned = false;     ///< after its declaration
    std::string_view Semantic;   ///< of a parameter of "main" or a uniform, such as "TEXCOORD3"
    Expression* Value = nullptr; ///< of a constant
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
    Number,  ///< Text; its Type may differ from what the text alone would mean
    Boolean, ///< Text "true" or "false"
    Name,    ///< Variable
    Unary,   ///< Op, one operand
    Binary,  ///< Op, two operands of one type; component by component
    Select,  ///< condition, value if true, value if false; component by component
    Assign, ///< target, value. The value of a compound one is a Binary whose left operand is, under
            ///< conversions, the very target
    PostStep,  ///< an Assign, whose value is that of the target before
    Call,      ///< Callee
    Intrinsic, ///< Builtin
    Construct, ///< parts one after another, or one scalar for every component; without operands
               ///< zero
    Convert,   ///< one operand, to Type
    Swizzle,   ///< one operand that is a scalar or vector; Text holds letters of "xyzw"
    Element,   ///< of a matrix, at Row and Column; lowered: matrix, row, column
    Index,     ///< of an array, vector or matrix (its row): what, where
    Member,    ///< of a struct; Text
    Sequence,  ///< operands one after another, of which the last is the value
};

struct Expression
{
    ExpressionKind Kind = ExpressionKind::Number;
    Operator Op = Operator::Add;
    bool IsWeak = false;     ///< a number whose precision gives way to that of any other operand
    std::uint8_t Row = 0;    ///< of Element
    std::uint8_t Column = 0; ///< likewise
    std::uint8_t Depth = 1;  ///< of the tree below, itself included
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
    Declare,  ///< Refers, and Value if it has an initial one
    Evaluate, ///< Value
    If,       ///< Value, Body, Else
    While,    ///< Value, Body
    Do,       ///< the same, at least once
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
    std::string_view Comment; ///< the comment above it
    Variable* Refers = nullptr;
    Expression* Value = nullptr;
    Statements Body;
    Statements Else;
    Statements Start; ///< of For: declarations and evaluations
    Statements Step;  ///< of For: evaluations. In lowered loops also what comes before Value
    Statements Test;  ///< of lowered loops: evaluations before each test of Value
};

/// What running a function may do beside computing its outputs.
struct Effects
{
    bool HasOutputs = false;       ///< has out parameters
    bool Discards = false;         ///< may discard the fragment
    bool TakesDerivatives = false; ///< and so needs neighbouring fragments in the same flow

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
