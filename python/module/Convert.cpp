#include "Convert.h"

#include "Views.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace Mox::Python {

namespace {

using Materials::GuiPropertyKind;

template <class Number>
std::string FormatShortest(Number value)
{
    std::array<char, 32> buffer;
    return {buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr};
}

/// Converts a float via its shortest decimal form: 0.1 instead of 0.10000000149011612.
double ToDouble(float value)
{
    if (!std::isfinite(value))
        return value;
    const std::string text = FormatShortest(value);
    double result = value;
    std::from_chars(text.data(), text.data() + text.size(), result);
    return result;
}

std::string FormatNumber(double value)
{
    // A value outside the range of float is kept unchanged, so that the error message shows what
    // was given.
    return std::abs(value) <= std::numeric_limits<float>::max()
               ? FormatShortest(static_cast<float>(value))
               : FormatShortest(value);
}

std::string ReadNumber(py::handle value)
{
    const double number = PyFloat_AsDouble(value.ptr());
    if (PyErr_Occurred())
        throw py::error_already_set();
    return FormatNumber(number);
}

bool IsSequence(py::handle value)
{
    return PySequence_Check(value.ptr()) && !py::isinstance<py::str>(value) &&
           !py::isinstance<py::bytes>(value);
}

GuiPropertyKind GuessKind(py::handle value)
{
    if (py::isinstance<py::bool_>(value))
        return GuiPropertyKind::Bool;
    if (py::isinstance<py::int_>(value))
        return GuiPropertyKind::Integer;
    if (py::isinstance<NodeView>(value) || value.is_none())
        return GuiPropertyKind::Node;
    if (py::isinstance<py::str>(value))
        return GuiPropertyKind::String;
    return IsSequence(value) ? GuiPropertyKind::Colour : GuiPropertyKind::Float;
}

} // namespace

Value ReadValue(const Materials::GuiProperty& property)
{
    switch (property.Kind) {
    case GuiPropertyKind::Bool:
        return property.Integer == 1;
    case GuiPropertyKind::Integer:
        return property.Integer;
    case GuiPropertyKind::Float:
        return property.Floats[0];
    case GuiPropertyKind::Colour:
        return std::array{property.Floats[0], property.Floats[1], property.Floats[2]};
    case GuiPropertyKind::String:
    case GuiPropertyKind::Enum:
        return property.Text;
    case GuiPropertyKind::Node:
        break;
    }
    return {};
}

py::object ToPython(const Value& value)
{
    struct Visitor
    {
        py::object operator()(std::monostate) const { return py::none(); }
        py::object operator()(bool flag) const { return py::bool_(flag); }
        py::object operator()(std::int32_t number) const { return py::int_(number); }
        py::object operator()(float number) const { return py::float_(ToDouble(number)); }
        py::object operator()(const std::string& text) const { return ToPython(text); }
        py::object operator()(const std::array<float, 3>& colour) const
        {
            return py::make_tuple(ToDouble(colour[0]), ToDouble(colour[1]), ToDouble(colour[2]));
        }
    };
    return std::visit(Visitor(), value);
}

py::object ToPython(const Host::Json& value)
{
    switch (value.type()) {
    case Host::Json::value_t::boolean:
        return py::bool_(value.get<bool>());
    case Host::Json::value_t::number_integer:
        return py::int_(value.get<std::int64_t>());
    case Host::Json::value_t::number_unsigned:
        return py::int_(value.get<std::uint64_t>());
    case Host::Json::value_t::number_float:
        return py::float_(value.get<double>());
    case Host::Json::value_t::string:
        return ToPython(value.get_ref<const std::string&>());
    case Host::Json::value_t::array: {
        py::list list;
        for (const Host::Json& item : value)
            list.append(ToPython(item));
        return list;
    }
    case Host::Json::value_t::object: {
        py::dict dict;
        for (const auto& [name, member] : value.items())
            dict[ToPython(name)] = ToPython(member);
        return dict;
    }
    default:
        return py::none();
    }
}

Host::Json FromPython(const py::dict& dict, const std::string& source)
{
    const auto text = py::module_::import("json").attr("dumps")(dict).cast<std::string>();
    const py::gil_scoped_release release;
    Host::JsonLimits limits;
    limits.Bytes = limits.Values = text.size(); // the dictionary is in memory anyway
    return Host::ParseJson(text, source, limits);
}

py::str ToPython(const std::string& text)
{
    PyObject* string =
        PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape");
    if (!string)
        throw py::error_already_set();
    return py::reinterpret_steal<py::str>(string);
}

py::object TextOrNone(const std::string& text)
{
    return text.empty() ? py::object(py::none()) : ToPython(text);
}

py::object NumberOrNone(int number)
{
    return number == 0 ? py::object(py::none()) : py::int_(number);
}

std::string ToText(py::handle value, const char* separator)
{
    if (value.is_none())
        return {};
    if (py::isinstance<py::bool_>(value))
        return value.cast<bool>() ? "true" : "false";
    if (py::isinstance<py::str>(value))
        return value.cast<std::string>();
    if (py::isinstance<py::int_>(value))
        return py::str(value).cast<std::string>();
    if (py::isinstance<NodeView>(value))
        return value.cast<const NodeView&>().Id;
    if (py::hasattr(value, "__fspath__")) {
        const auto path = py::reinterpret_steal<py::object>(PyOS_FSPath(value.ptr()));
        if (!path)
            throw py::error_already_set();
        return path.cast<std::string>();
    }
    if (IsSequence(value)) {
        std::string text;
        for (const py::handle number : value.cast<py::sequence>())
            text += (text.empty() ? "" : separator) + ReadNumber(number);
        return text;
    }
    if (PyNumber_Check(value.ptr()))
        return ReadNumber(value);
    throw py::type_error(
        "expected a number, a string, a bool, a sequence of numbers, a path or a node, not " +
        py::str(py::type::of(value).attr("__name__")).cast<std::string>());
}

std::string ToId(const py::object& node)
{
    return py::isinstance<NodeView>(node) ? node.cast<const NodeView&>().Id
                                          : node.cast<std::string>();
}

std::vector<GivenValue> ToGivenValues(const py::dict& values)
{
    std::vector<GivenValue> given;
    for (const auto& [name, value] : values)
        given.push_back({name.cast<std::string>(), ToText(value, " "), GuessKind(value)});
    return given;
}

std::vector<std::pair<std::string, std::string>> ToTexts(const py::dict& values,
                                                         const char* separator)
{
    std::vector<std::pair<std::string, std::string>> texts;
    for (const auto& [name, value] : values)
        texts.emplace_back(name.cast<std::string>(), ToText(value, separator));
    return texts;
}

void RefuseNew(const py::object& type)
{
    // The base class shared by all classes of this module and no others: see PYBIND11_BUILD_TYPE.
    const py::object base = type.attr("__base__");
    base.attr("__new__") = py::cpp_function(
        [](const py::handle& of, const py::args&, const py::kwargs&) -> py::object {
            throw py::type_error("objects of " + py::str(of).cast<std::string>() +
                                 " cannot be created directly");
        },
        py::name("__new__"), py::scope(base));
}

void MakeRecord(const py::object& type, std::initializer_list<const char*> fields)
{
    py::tuple names(fields.size());
    std::size_t index = 0;
    for (const char* field : fields)
        names[index++] = field;
    type.attr("__match_args__") = names;
    const auto valuesOf = [names](py::handle record) {
        py::tuple values(names.size());
        for (std::size_t i = 0; i < names.size(); ++i)
            values[i] = record.attr(names[i]);
        return values;
    };
    const auto define = [&type](const char* name, auto function) {
        type.attr(name) = py::cpp_function(function, py::name(name), py::is_method(type));
    };
    define("__eq__", [valuesOf](py::handle left, py::handle right) -> py::object {
        if (!py::type::of(left).is(py::type::of(right)))
            return py::reinterpret_borrow<py::object>(Py_NotImplemented);
        return py::bool_(valuesOf(left).equal(valuesOf(right)));
    });
    define("__hash__", [valuesOf](py::handle record) { return py::hash(valuesOf(record)); });
    define("__repr__", [names, valuesOf](py::handle record) {
        std::string text = py::str(py::type::of(record).attr("__name__")).cast<std::string>() + "(";
        const py::tuple values = valuesOf(record);
        py::list parts;
        for (std::size_t i = 0; i < names.size(); ++i)
            parts.append(py::str("{}={!r}").format(names[i], values[i]));
        return py::str(text) + py::str(", ").attr("join")(parts) + py::str(")");
    });
}

} // namespace Mox::Python
