#pragma once

#include "mox/cg/Module.h"

namespace Mox::Cg {

/// Turns the tree of a module without errors into one that every language can spell as it is:
///
/// - An expression changes nothing and takes no output. Assignments and calls with outputs are
///   statements of their own; a call may also be the whole value of an assignment, a declaration or
///   a return.
/// - Operands of which a language evaluates one only ("?:", "&&", "||") neither take derivatives
/// nor
///   discard, so evaluating both or one makes no difference.
/// - An argument for an output is a variable of the very type, which no other output of the call
///   takes. A body assigns no "in" parameter.
/// - All variables and outputs are assigned as a whole before they are read or assigned in part.
/// - A conversion keeps the shape, or cuts a matrix. Scalars are repeated by constructors, vectors
///   cut by swizzles, no scalar is swizzled.
/// - A matrix is constructed from its rows; elements are selected by Element, whole rows read by
///   Index and never assigned. Products are calls of "mul"; the operator "*" is by components, and
///   has a scalar on the right where a matrix is scaled.
/// - Of texture reads there are those plain, biased, by level and by gradient, with coordinates
///   apart. Of the library's functions fmod, ldexp, lit, log10, modf, sincos, clip and all geometry
///   of scalars are spelled out.
/// - What a language without an operator would write several times is a number, a variable or a
///   selection from one: operands of matrix operators, of "%", of "&&" and "||" between vectors, of
///   choices between vectors that are not floats, and matrices that are cut.
/// - The start of "for" is at most one declaration or assignment; several steps follow one another.
void LowerModule(Module& module);

} // namespace Mox::Cg
