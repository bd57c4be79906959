#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace Mox::Host {

/// The location of an error in a material. Empty fields and line 0 mean that the value is unknown
/// or that the error concerns the whole.
struct Place
{
    Place() = default;

    /// Omitted arguments are unknown.
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

    /// Formats the known fields as "file:line:column: node "id": port "name": ".
    std::string Format() const;
};

/// An error of the host with its location. what() returns the location and the message on one line.
class HostError : public std::runtime_error
{
public:
    HostError(const Place& where, const std::string& message);

    Place Where;
    std::string Message; ///< without the location
};

/// Converts the exception that is being handled into a HostError with a location. Must be called in
/// a catch block.
/// @param callee the operation that failed, such as "GetTitle of the type "Rim""; it appears in the
///        message unless the library itself raised the error. May be empty.
/// @throws HostError for ShaderErrors, for the plain string of a duplicate parameter name, for an
///         edge that no longer exists, and for any exception of a plug-in; HostErrors and
///         std::bad_alloc are passed on. The exceptions thrown do not refer to the code of a
///         plug-in.
[[noreturn]] void ThrowAsHostError(const Place& where, const std::string& callee = {});

/// Calls the library and adds the location to every error.
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
