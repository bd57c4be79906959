#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace Mox::Host {

/// Where in a material something is wrong. Empty fields and line 0 mean "not known" or "the whole".
struct Place
{
    Place() = default;

    /// What is left out is not known.
    Place(std::string file, int line = 0, std::string node = {}, std::string port = {},
          int column = 0)
        : File(std::move(file)), Line(line), Node(std::move(node)), Port(std::move(port)),
          Column(column)
    {}

    Place(std::string file, int line, int column)
        : File(std::move(file)), Line(line), Column(column)
    {}

    std::string File;
    int Line = 0;     ///< 1-based
    std::string Node; ///< id of the node in the document
    std::string Port; ///< Cg name of the port
    int Column = 0;   ///< 1-based

    /// "file:line:column: node "id": port "name": ", as far as known.
    std::string Format() const;
};

/// A failure of the host, with the place of its cause. what() is place and message in one line.
class HostError : public std::runtime_error
{
public:
    HostError(const Place& where, const std::string& message);

    Place Where;
    std::string Message; ///< without the place
};

/// Turns the exception that is being handled into a HostError at a place. Call it in a catch block.
/// @param callee what failed, such as "GetTitle of the type "Rim""; it appears in the message of
///        failures that the library does not raise itself. May be empty.
/// @throws HostError for ShaderErrors, for the plain string of a duplicate parameter name, for an
///         edge that has gone, and for any exception of a plug-in's own; HostErrors and
///         std::bad_alloc leave as what they are. None of them refers to the code of a plug-in.
[[noreturn]] void ThrowAsHostError(const Place& where, const std::string& callee = {});

/// Calls into the library and gives every failure its place.
/// @throws as ThrowAsHostError
template <class Call>
decltype(auto) CallLibrary(const Place& where, Call call)
{
    try {
        return call();
    } catch (...) {
        ThrowAsHostError(where);
    }
}

} // namespace Mox::Host
