// Objects that Python made by __new__ alone hold nothing of the library. pybind11 gives memory without an object to a method that
// is called on one; here it raises TypeError.

#include "python/bindings.h"

namespace zp::python {

namespace {

void * refuse(size_t)
{
  throw py::type_error("the object was made without __init__");
}

// Python's own code calls this one, through which no exception may pass.
int getBuffer(PyObject * object, Py_buffer * view, int flags) noexcept
{
  try {
    return py::detail::pybind11_getbuffer(object, view, flags);
  } catch (py::builtin_exception const & refusal) {
    refusal.set_error();
  } catch (...) {
    PyErr_NoMemory();  // nothing else fails there
  }
  return -1;
}

}  // namespace

void RefuseUnmade(py::module_ const & module)
{
  for (auto const & [name, value] : module.attr("__dict__").cast<py::dict>()) {
    if (!py::isinstance<py::type>(value)) continue;
    auto * const type = reinterpret_cast<PyTypeObject *>(value.ptr());
    py::detail::get_type_info(type)->operator_new = refuse;
    if (type->tp_as_buffer != nullptr) type->tp_as_buffer->bf_getbuffer = getBuffer;
  }
}

}  // namespace zp::python
