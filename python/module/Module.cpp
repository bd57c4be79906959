#include "Bindings.h"
#include "Convert.h"
#include "Errors.h"

#include <libxml/parser.h>

PYBIND11_MODULE(_mox, module)
{
    xmlInitParser(); // only the first call is not thread-safe
    module.doc() = "The compiled part of the package mox.";
    module.attr("__version__") = MOX_VERSION;
    Mox::Python::TranslateErrors();
    Mox::Python::BindRecords(module);
    Mox::Python::BindLibrary(module);
    Mox::Python::BindPrograms(module);
    Mox::Python::BindMaterial(module);
    Mox::Python::BindPreview(module);
    Mox::Python::RefuseNew(module.attr("Problem"));
}
