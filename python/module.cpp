// The native half of the Python package zpbase; the other half, zpbase/__init__.py, gives it the manners of Python's containers.

#include "python/bindings.h"
#include "tools/progress.h"

PYBIND11_MODULE(_native, module)
{
  module.doc() = "Stores, settings, numeric text and drawings of the Zephlow base library.";
  module.attr("__version__") = ZP_VERSION;
  Progress::Forbid();
  zp::python::AddErrors();
  zp::python::AddNumbers(module);
  zp::python::AddComponents(module);
  zp::python::AddStore(module);
  zp::python::AddColumns(module);
  zp::python::AddSettings(module);
  zp::python::AddDrawing(module);
  zp::python::RefuseUnmade(module);
  for (auto const & [name, value] : module.attr("__dict__").cast<pybind11::dict>()) {
    if (pybind11::hasattr(value, "__module__")) pybind11::setattr(value, "__module__", pybind11::str("zpbase"));
  }
}
