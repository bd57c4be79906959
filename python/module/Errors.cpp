#include "Errors.h"

#include "Convert.h"
#include "mox/graph/GraphChange.h"

#include <algorithm>
#include <filesystem>
#include <pybind11/stl.h>

namespace Mox::Python {

namespace {

const Host::Problem& FirstError(const Host::ProblemList& problems)
{
    return *std::ranges::find(problems.Problems(), Host::Severity::Error, &Host::Problem::Level);
}

void Raise(const char* name, const Host::HostError& error, const py::dict& more = {})
{
    const py::object type = py::module_::import("mox._errors").attr(name);
    const Host::Place& where = error.Where;
    const py::object exception = type(
        ToPython(error.Message), py::arg("file") = TextOrNone(where.File),
        py::arg("line") = NumberOrNone(where.Line), py::arg("column") = NumberOrNone(where.Column),
        py::arg("node") = TextOrNone(where.Node), py::arg("port") = TextOrNone(where.Port), **more);
    PyErr_SetObject(type.ptr(), exception.ptr());
}

/// Raises a Python exception for the C++ exception being handled.
void RaiseCurrent()
{
    using py::literals::operator""_a;
    try {
        throw;
    } catch (const StaleView& error) {
        Raise("StaleError", error);
    } catch (const FaultyMaterial& error) {
        Raise("Error", error, py::dict("problems"_a = py::cast(error.Problems.Problems())));
    } catch (const Host::RefusedStep& error) {
        Raise("RefusedError", error, py::dict("step"_a = error.Step));
    } catch (const Host::HostError& error) {
        Raise("Error", error);
    } catch (const std::filesystem::filesystem_error& error) {
        Raise("Error",
              Host::HostError(Host::Place(error.path1().string()), error.code().message()));
    }
}

/// Like RaiseCurrent, but if Python fails to create the exception, raises the reason in Python
/// instead of throwing it.
void RaiseSafely()
{
    try {
        RaiseCurrent();
    } catch (py::error_already_set& error) {
        error.restore();
    }
}

} // namespace

FaultyMaterial::FaultyMaterial(const Host::ProblemList& problems)
    : HostError(FirstError(problems).Where, FirstError(problems).Message), Problems(problems)
{}

void TranslateErrors()
{
    // pybind11 prescribes the type of the parameter.
    // NOLINTNEXTLINE(performance-unnecessary-value-param)
    py::register_local_exception_translator([](std::exception_ptr exception) {
        try {
            if (exception)
                std::rethrow_exception(exception);
        } catch (const Host::HostError&) {
            RaiseSafely();
        } catch (const std::filesystem::filesystem_error&) {
            RaiseSafely();
        }
    });
}

} // namespace Mox::Python
