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

/// The value of a property, free of Python, so that it can be read without the interpreter's lock.
/// A reference to a node is its id, or nothing.
using Value =
    std::variant<std::monostate, bool, std::int32_t, float, std::string, std::array<float, 3>>;

py::object ToPython(const Value& value);
py::object ToPython(const Host::Json& value);

/// Text that need not be UTF-8, such as the name of a file in a message: other bytes become what
/// os.fsdecode makes of them.
py::str ToPython(const std::string& text);

/// None for an empty text, and for 0.
py::object TextOrNone(const std::string& text);
py::object NumberOrNone(int number);

/// The text of a Python value as documents have it: numbers in the shortest form that reads back as
/// the same float, sequences of numbers with a separator between them, "true" and "false", nothing
/// for None, the id of a node, the name of a path.
/// @throws py::type_error for any other value
std::string ToText(py::handle value, const char* separator);

/// A value for a property whose kind is not known yet.
struct GivenValue
{
    std::string Name;
    std::string Text;
    Materials::GuiPropertyKind Guess; ///< the kind that the Python value looks like
};

/// The values of a dictionary, in its order.
std::vector<GivenValue> ToGivenValues(const py::dict& values);

/// The same as pairs of texts.
std::vector<std::pair<std::string, std::string>> ToTexts(const py::dict& values,
                                                         const char* separator);

/// A dictionary of texts as Python has it.
template <class Pairs>
py::dict ToDict(const Pairs& pairs)
{
    py::dict dict;
    for (const auto& [name, value] : pairs)
        dict[ToPython(name)] = ToPython(value);
    return dict;
}

/// Lets a class make its objects by a function, whose first parameter is the class. Constructors of
/// pybind11 cannot be used: Python can call __new__ without __init__, and the object would have no
/// content.
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

/// Refuses to make objects of all classes for which DefineNew was not called.
/// @param type any class of the module
void RefuseNew(const py::object& type);

/// Gives a class whose objects never change what records of Python have: equality, a hash, a
/// representation, and fields for match statements.
void MakeRecord(const py::object& type, std::initializer_list<const char*> fields);

} // namespace Mox::Python
