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

// The host's name of a path: str, bytes or os.PathLike. Raises TypeError, and ValueError for a zero byte.
std::string HostNameOf(py::handle path);

// An array that takes the values over.
template <class Value>
py::array_t<Value> ArrayOf(std::vector<Value> && values, std::vector<py::ssize_t> shape)
{
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
void AddNumbers(py::module_ & module);     // Vector, IntVector, Matrix
void AddComponents(py::module_ & module);  // Component, Correlation, Constant, Column, Record
void AddStore(py::module_ & module);
void AddColumns(py::module_ & module);
void AddSettings(py::module_ & module);
void AddDrawing(py::module_ & module);

}  // namespace zp::python
