#pragma once

#include "mox/cg/Module.h"

namespace Mox::Cg {

/// Transforms the tree of a module without errors into one that every language can express
/// directly:
///
/// - Expressions have no side effects. Assignments and calls with outputs are separate statements;
///   a call may also be the entire value of an assignment, a declaration or a return.
/// - Operands that a language may skip ("?:", "&&", "||") neither take derivatives nor discard, so
///   it makes no difference whether they are evaluated.
/// - An argument for an output is a variable of exactly that type, and is passed to only one output
///   of the call. No "in" parameter is assigned.
/// - All variables and outputs are assigned as a whole before they are read or partly assigned.
/// - A conversion keeps the shape or truncates a matrix. Scalars are repeated by constructors and
///   vectors truncated by swizzles; scalars are never swizzled.
/// - A matrix is constructed from its rows. Elements are selected by Element; whole rows are read
///   by Index and never assigned. Products are calls of "mul"; the operator "*" works component by
///   component, and scales a matrix only if the scalar is the right operand.
/// - Texture reads are plain, biased, by level or by gradient, with separate coordinates. Of the
///   built-in functions, fmod, ldexp, lit, log10, modf, sincos, clip and all geometry of scalars
///   are expanded.
/// - What a language without a certain operator would have to write several times is a number, a
///   variable or a selection from one. This concerns the operands of matrix operators, of "%", of
///   "&&" and "||" between vectors, of selections between vectors other than floats, and matrices
///   that are truncated.
/// - "for" starts with at most one declaration or assignment; several steps follow one another.
void LowerModule(Module& module);

} // namespace Mox::Cg
