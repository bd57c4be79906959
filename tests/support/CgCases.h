#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

/// Programs in Cg, each of which computes some expressions of the inputs "a", "b" and "c" (ATTR1 to
/// 3) and hands out the one whose number is the input "k" (ATTR4).
struct CgCases
{
    std::vector<std::string> Names; ///< for people, by number
    std::string Vertex;
    std::string Fragment;
};

/// The functions of all compiled node types in all their modes.
std::set<std::string> NodeFunctions();

struct CgParameter
{
    bool IsOut;
    std::string Type;
    std::string Name;
};

/// Of the head of a node's function.
std::vector<CgParameter> ParametersOf(const std::string& function);

/// Every function, operator and conversion at every type that it takes, the functions of nodes that
/// read no textures and divide by no zero, and random bodies. Where inputs would be outside of what
/// is defined, the expression moves them inside.
/// @param isExcluded by name, of those to leave out
std::vector<CgCases> MakeCgCases(const std::function<bool(const std::string&)>& isExcluded =
                                     [](const std::string&) { return false; });
