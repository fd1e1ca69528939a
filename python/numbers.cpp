// Vectors and matrices, which NumPy sees through the buffer protocol: the array and the vector are the same numbers. A size is
// never changed here, so that a view stays good for as long as it holds its owner.

#include <climits>
#include <new>

#include <zpbase/numeric.h>

#include "python/bindings.h"

namespace zp::python {

namespace {

using Doubles = py::array_t<double, py::array::c_style | py::array::forcecast>;
using Ints = py::array_t<int, py::array::c_style | py::array::forcecast>;

constexpr size_t shownElements = 20;

int sizeOf(py::ssize_t size)
{
  if (size < 0) throw py::value_error("a size is 0 or more");
  if (size > INT_MAX) throw std::bad_alloc();
  return static_cast<int>(size);
}

Doubles doublesOf(py::handle values)
{
  return ArrayFrom<Doubles>(values, "a Vector takes numbers");
}

// Raises TypeError for numbers that aren't whole, and ValueError for those beyond 32 bits.
Ints intsOf(py::handle values)
{
  constexpr char const * sentence = "an IntVector takes whole numbers";
  auto const given = ArrayFrom<py::array>(values, sentence);
  if (given.size() > 0 && std::string_view("biu").find(given.dtype().kind()) == std::string_view::npos)
    throw py::type_error(sentence);
  Ints narrow = Ints::ensure(given);
  if (!py::cast<bool>(given.attr("__eq__")(narrow).attr("all")())) throw py::value_error("a number doesn't fit 32 bits");
  return narrow;
}

template <class Values>
int lengthOf(Values const & values)
{
  if (values.ndim() != 1) throw py::value_error("a vector takes values in one dimension");
  return sizeOf(values.shape(0));
}

int placeOf(py::ssize_t index, py::ssize_t size, char const * what)
{
  if (index < -size || index >= size) throw py::index_error(std::string(what) + " out of range");
  return static_cast<int>(index < 0 ? index + size : index);
}

// What both kinds of vector have.
template <class Vector, class Value, class Array>
py::class_<Vector, std::shared_ptr<Vector>> addVector(py::module_ & module, Array (*arrayOf)(py::handle), char const * name,
                                                      char const * doc)
{
  using Class = py::class_<Vector, std::shared_ptr<Vector>>;
  return Class(module, name, py::buffer_protocol(), doc)
      .def(py::init([](py::ssize_t size, Value value) { return std::make_shared<Vector>(sizeOf(size), value); }), py::arg("size"),
           py::arg("value") = Value(0), "size elements, each of them value.")
      .def(py::init([arrayOf](py::object const & given) {
             Array const values = arrayOf(given);
             return std::make_shared<Vector>(lengthOf(values), values.data());
           }),
           py::arg("values"), "A copy of values: a sequence or an array of one dimension.")
      .def_buffer([](Vector & vector) {
        return py::buffer_info(vector.ArrayPtr(), sizeof(Value), py::format_descriptor<Value>::format(), 1, {vector.GetSize()},
                               {sizeof(Value)});
      })
      .def("__len__", &Vector::GetSize)
      .def("__getitem__",
           [](Vector const & vector, py::ssize_t index) { return vector[placeOf(index, vector.GetSize(), "index")]; })
      .def("__setitem__",
           [](Vector & vector, py::ssize_t index, Value value) { vector[placeOf(index, vector.GetSize(), "index")] = value; })
      .def(
          "__eq__", [](Vector const & one, Vector const & other) { return (one == other) != 0; }, py::is_operator())
      .def("__repr__", [name](py::object const & vector) {
        bool const isShort = py::len(vector) <= shownElements;
        return isShort ? py::str("{}({})").format(name, py::list(vector))
                       : py::str("<{} of {} elements>").format(name, py::len(vector));
      });
}

double dot(GPVector const & one, GPVector const & other)
{
  if (one.GetSize() != other.GetSize()) throw py::value_error("the vectors have different sizes");
  return one.DotProduct(other);
}

void requireFit(int columns, int rows)
{
  if (columns != rows) throw py::value_error("the sizes don't fit: " + std::to_string(columns) + " and " + std::to_string(rows));
}

std::shared_ptr<GPMatrix> matrixOf(py::ssize_t rows, py::ssize_t columns, double value)
{
  int const height = sizeOf(rows);
  int const width = sizeOf(columns);
  if (static_cast<long long>(height) * width > PTRDIFF_MAX / static_cast<py::ssize_t>(sizeof(double))) throw std::bad_alloc();
  return std::make_shared<GPMatrix>(height, width, value);
}

using Place = std::pair<py::ssize_t, py::ssize_t>;

double & elementOf(GPMatrix & matrix, Place const & place)
{
  int const row = placeOf(place.first, matrix.GetRows(), "row");
  return matrix(row, placeOf(place.second, matrix.GetCols(), "column"));
}

void addMatrix(py::module_ & module)
{
  py::class_<GPMatrix, std::shared_ptr<GPMatrix>>(module, "Matrix", py::buffer_protocol(),
                                                  "A matrix of doubles, row by row. numpy.asarray(matrix) shares its numbers.")
      .def(py::init(&matrixOf), py::arg("rows"), py::arg("columns"), py::arg("value") = 0.0,
           "rows times columns elements, each of them value.")
      .def(py::init([](py::object const & given) {
             auto const values = ArrayFrom<Doubles>(given, "a Matrix takes rows of numbers");
             if (values.ndim() != 2) throw py::value_error("a matrix takes values in two dimensions");
             return std::make_shared<GPMatrix>(sizeOf(values.shape(0)), sizeOf(values.shape(1)), values.data());
           }),
           py::arg("values"), "A copy of values: rows, or an array of two dimensions.")
      .def_buffer([](GPMatrix & matrix) {
        auto const width = static_cast<py::ssize_t>(sizeof(double)) * matrix.GetCols();
        return py::buffer_info(matrix.ArrayPtr(), sizeof(double), py::format_descriptor<double>::format(), 2,
                               {matrix.GetRows(), matrix.GetCols()}, {width, static_cast<py::ssize_t>(sizeof(double))});
      })
      .def_property_readonly(
          "shape", [](GPMatrix const & matrix) { return py::make_tuple(matrix.GetRows(), matrix.GetCols()); }, "(rows, columns)")
      .def("__len__", &GPMatrix::GetRows)
      .def("__getitem__", [](GPMatrix & matrix, Place const & place) { return elementOf(matrix, place); })
      .def("__setitem__", [](GPMatrix & matrix, Place const & place, double value) { elementOf(matrix, place) = value; })
      .def(
          "__eq__", [](GPMatrix const & one, GPMatrix const & other) { return (one == other) != 0; }, py::is_operator())
      .def(
          "__matmul__",
          [](GPMatrix const & one, GPMatrix const & other) {
            requireFit(one.GetCols(), other.GetRows());
            return std::make_shared<GPMatrix>(one * other);
          },
          py::is_operator(), "The product with a matrix or a vector, every sum in ascending order of index.")
      .def(
          "__matmul__",
          [](GPMatrix const & matrix, GPVector const & vector) {
            requireFit(matrix.GetCols(), vector.GetSize());
            return std::make_shared<GPVector>(matrix * vector);
          },
          py::is_operator())
      .def("__repr__", [](GPMatrix const & matrix) {
        return "<Matrix of " + std::to_string(matrix.GetRows()) + " times " + std::to_string(matrix.GetCols()) + ">";
      });
}

}  // namespace

void AddNumbers(py::module_ & module)
{
  addVector<GPVector, double>(module, &doublesOf, "Vector",
                              "A vector of doubles. numpy.asarray(vector) shares its numbers. Two are equal when their "
                              "sizes and bits are.")
      .def("sum", &GPVector::Sum, "The sum, in ascending order of index.")
      .def("norm", &GPVector::Norm, "The root of the sum of squares.")
      .def("dot", &dot, py::arg("other"), "The sum of the products, in ascending order of index.");
  addVector<GPIntVector, int>(module, &intsOf, "IntVector",
                              "A vector of 32-bit integers. numpy.asarray(vector) shares its numbers. A store keeps the low "
                              "16 bits of each.");
  addMatrix(module);
}

}  // namespace zp::python
