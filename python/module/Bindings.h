#pragma once

#include <pybind11/pybind11.h>

namespace Mox::Python {

/// Each function adds classes and functions to the module. Classes used by others are added first.
void BindRecords(pybind11::module_& module);
void BindLibrary(pybind11::module_& module);
void BindPrograms(pybind11::module_& module);
void BindMaterial(pybind11::module_& module);
void BindViews(pybind11::module_& module);
void BindEdit(pybind11::module_& module);
void BindPreview(pybind11::module_& module);

} // namespace Mox::Python
