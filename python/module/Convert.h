#pragma once

#include "mox/authoring/GuiProperty.h"
#include "mox/json/JsonText.h"

#include <array>
#include <cstdint>
#include <initializer_list>
#include <pybind11/pybind11.h>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace Mox::Python {

namespace py = pybind11;

/// The value of a property without Python objects, so that it can be read without holding the
/// interpreter's lock. A reference to a node is its id, or nothing.
using Value =
    std::variant<std::monostate, bool, std::int32_t, float, std::string, std::array<float, 3>>;

/// @returns nothing for a reference to a node
Value ReadValue(const Materials::GuiProperty& property);

py::object ToPython(const Value& value);
py::object ToPython(const Host::Json& value);

/// Converts a dictionary of strings, numbers, lists and further dictionaries.
/// @param source name of the dictionary, for messages
/// @throws HostError if a value cannot be part of a JSON document
Host::Json FromPython(const py::dict& dict, const std::string& source);

/// Converts a string that need not be UTF-8, such as a file name in a message; other bytes are
/// decoded as os.fsdecode does.
py::str ToPython(const std::string& text);

/// Return None for an empty string or for 0.
py::object TextOrNone(const std::string& text);
py::object NumberOrNone(int number);

/// Formats a Python value as documents store it: numbers in the shortest form that reads back as
/// the same float, sequences of numbers joined by a separator, "true" and "false", an empty string
/// for None, the id of a node, the name of a path.
/// @throws py::type_error for any other value
std::string ToText(py::handle value, const char* separator);

/// Returns the id of a node that an argument identifies: a node or its id.
std::string ToId(const py::object& node);

/// A value for a property whose kind is not yet known.
struct GivenValue
{
    std::string Name;
    std::string Text;
    Materials::GuiPropertyKind Guess; ///< the kind suggested by the Python value
};

/// The values of a dictionary, in its order.
std::vector<GivenValue> ToGivenValues(const py::dict& values);

/// Converts a dictionary to pairs of strings.
std::vector<std::pair<std::string, std::string>> ToTexts(const py::dict& values,
                                                         const char* separator);

/// Converts pairs of strings to a Python dictionary.
template <class Pairs>
py::dict ToDict(const Pairs& pairs)
{
    py::dict dict;
    for (const auto& [name, value] : pairs)
        dict[ToPython(name)] = ToPython(value);
    return dict;
}

/// Uses a function, whose first parameter is the class, as the constructor of a class. pybind11's
/// own constructors are unsuitable: Python can call __new__ without __init__, which would leave the
/// object without content.
/// @param extra names of the parameters
template <class Make, class... Extra>
void DefineNew(py::object type, Make make, const Extra&... extra)
{
    type.attr("__new__") =
        py::cpp_function(make, py::name("__new__"), py::scope(type), py::arg("type"), extra...);
    reinterpret_cast<PyTypeObject*>(type.ptr())->tp_init = [](PyObject*, PyObject*, PyObject*) {
        return 0;
    };
}

/// Prevents instantiation of all classes for which DefineNew was not called.
/// @param type any class of the module
void RefuseNew(const py::object& type);

/// Gives a class of immutable objects the behaviour of a Python record: equality, a hash, a
/// representation, and fields for match statements.
void MakeRecord(const py::object& type, std::initializer_list<const char*> fields);

} // namespace Mox::Python
