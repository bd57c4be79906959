#pragma once

#include <functional>
#include <string>
#include <vector>

/// Cg programs, each of which computes several expressions of the inputs "a", "b" and "c" (ATTR1 to
/// 3) and outputs the one selected by the input "k" (ATTR4).
struct CgCases
{
    std::vector<std::string> Names; ///< for messages, by index; the first line names the
                                    ///< expression, and what it calls follows
    std::string Vertex;
    std::string Fragment;
};

/// Cases for every function, operator and conversion with every type that it accepts, the functions
/// of all nodes and of the environment, and random bodies. Where inputs would be outside the
/// defined range, the expression maps them into it. In place of a texel, functions receive the
/// coordinates that they would read.
/// @param isExcluded whether to leave out the case with a name
std::vector<CgCases> MakeCgCases(const std::function<bool(const std::string&)>& isExcluded =
                                     [](const std::string&) { return false; });
