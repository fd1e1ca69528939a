// What the rooms of the Python module share: texts, names of files, arrays, and the parts that the module is made of.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

namespace zp::python {

namespace py = pybind11;

// A sentence, with the bytes of file names that are no UTF-8 as os.fsdecode has them.
py::str TextOf(std::string_view utf8);

// The text of a str in UTF-8. Raises ValueError for lone surrogates, of which files' names that are no UTF-8 have some.
std::string Utf8Of(py::str const & text);

// The host's name of a path: str, bytes or os.PathLike. Raises TypeError, and ValueError for a zero byte.
std::string HostNameOf(py::handle path);

// Comes before any use of an array: pybind11 looks for NumPy once, and threads that waited for that with the interpreter's lock
// would keep it from the one that imports. Raises ModuleNotFoundError.
inline void LoadNumPy()
{
  py::module_::import("numpy");
}

// The array that values make, a sequence or an array of another kind. Raises TypeError with the sentence.
template <class Array>
Array ArrayFrom(py::handle values, char const * sentence)
{
  LoadNumPy();
  try {
    return Array(py::reinterpret_borrow<py::object>(values));
  } catch (py::error_already_set const & refusal) {
    if (refusal.matches(PyExc_MemoryError) || !refusal.matches(PyExc_Exception)) throw;
  }
  throw py::type_error(sentence);
}

// An array that takes the values over.
template <class Value>
py::array_t<Value> ArrayOf(std::vector<Value> && values, std::vector<py::ssize_t> shape)
{
  LoadNumPy();
  auto owned = std::make_unique<std::vector<Value>>(std::move(values));
  Value * const first = owned->data();
  py::capsule const owner(owned.get(), [](void * all) { delete static_cast<std::vector<Value> *>(all); });
  static_cast<void>(owned.release());
  return py::array_t<Value>(std::move(shape), first, owner);
}

template <class Value>
py::array_t<Value> ArrayOf(std::vector<Value> && values)
{
  auto const count = static_cast<py::ssize_t>(values.size());
  return ArrayOf(std::move(values), {count});
}

void AddErrors();
void RefuseUnmade(py::module_ const & module);  // see unmade_objects.cpp
void AddNumbers(py::module_ & module);          // Vector, IntVector, Matrix
void AddComponents(py::module_ & module);       // Component, Correlation, Constant, Column, Record
void AddStore(py::module_ & module);
void AddColumns(py::module_ & module);
void AddSettings(py::module_ & module);
void AddDrawing(py::module_ & module);

}  // namespace zp::python
