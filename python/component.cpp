// Components: look-up and change of values by their names, and what Python sees of them.

#include "python/component.h"

#include <algorithm>

#include <pybind11/stl.h>

#include "tools/program.h"
#include "tools/records/payload.h"

namespace zp::python {

namespace {

// Null for a name that is none, or no str.
DataMeaning const * meaningOf(py::handle name)
{
  if (!py::isinstance<py::str>(name)) return nullptr;
  auto const all = GetDataMeanings();
  auto const found = std::find_if(all.begin(), all.end(), [&](DataMeaning const & each) {
    return PyUnicode_CompareWithASCIIString(name.ptr(), each.column) == 0;
  });
  return found != all.end() ? &*found : nullptr;
}

DataMeaning const & requireMeaning(py::handle key)
{
  DataMeaning const * const meaning = meaningOf(key);
  if (meaning != nullptr) return *meaning;
  throw py::key_error(py::str("there is no value {!r} of a component; zpbase.columns() lists them").format(key));
}

py::object keyOf(GPData const & item)
{
  DataMeaning const * const meaning = FindDataMeaning(item.GetDataID());
  return meaning != nullptr ? py::object(py::str(meaning->column)) : py::int_(item.GetDataID());
}

}  // namespace

GPData const * Component::Find(py::handle key) const
{
  DataMeaning const * const meaning = meaningOf(key);
  if (meaning != nullptr) return GetData().GetData(meaning->dataID, 0);
  if (!py::isinstance<py::int_>(key)) return nullptr;
  int overflow = 0;
  long const id = PyLong_AsLongAndOverflow(key.ptr(), &overflow);
  return overflow == 0 && id >= 0 && id <= UINT16_MAX ? GetData().GetData(static_cast<unsigned int>(id), 0) : nullptr;
}

py::list Component::GetKeys() const
{
  py::list keys;
  py::set known;
  for (int i = 0; i < GetData().GetSize(); ++i) {
    GPData const * const item = GetData().GetAt(i);
    if (item == nullptr) continue;
    py::object const key = keyOf(*item);
    if (known.contains(key)) continue;
    known.add(key);
    keys.append(key);
  }
  return keys;
}

py::object Component::Get(py::handle key) const
{
  if (GPData const * const item = Find(key)) return ValueOf(*item);
  throw py::key_error(py::str("the component has no value {!r}").format(key));
}

py::object Component::GetOrNone(char const * name) const
{
  GPData const * const item = Find(py::str(name));
  return item != nullptr ? ValueOf(*item) : py::none();
}

void Component::Set(py::handle key, py::handle value)
{
  DataMeaning const & meaning = requireMeaning(key);
  std::unique_ptr<GPData> item = MakeItem(meaning, value);
  m_pData->DeleteData(meaning.dataID);
  if (item) m_pData->AddData(item.release());
}

void Component::Delete(py::handle key)
{
  GPData const * const item = Find(key);
  if (item == nullptr) throw py::key_error(py::str("the component has no value {!r}").format(key));
  m_pData->DeleteData(item->GetDataID());
}

namespace {

struct Constant {
  double value;
  DataMeaning const * meaning;
};

}  // namespace

py::dict Component::GetConstants() const
{
  py::dict constants;
  for (DataMeaning const & meaning : GetDataMeanings()) {
    if (meaning.kind != DataKind::Number) continue;
    py::object const value = GetOrNone(meaning.column);
    if (py::isinstance<py::float_>(value)) constants[meaning.column] = Constant{value.cast<double>(), &meaning};
  }
  return constants;
}

py::dict Component::GetCorrelations() const
{
  py::dict correlations;
  for (DataMeaning const & meaning : GetDataMeanings()) {
    if (meaning.kind != DataKind::Floats && meaning.kind != DataKind::Equation) continue;
    py::object const value = GetOrNone(meaning.column);
    if (py::isinstance<Correlation>(value)) correlations[meaning.column] = value;
  }
  return correlations;
}

namespace {

char const * nameOf(DataKind kind)
{
  constexpr char const * names[] = {"text", "number", "correlation", "equation", "groups"};
  return names[static_cast<size_t>(kind)];
}

Correlation makeCorrelation(py::object const & given, std::optional<int> equation)
{
  auto const values = ArrayFrom<py::array_t<double, py::array::forcecast>>(given, "coefficients are numbers");
  if (values.ndim() != 1) throw py::value_error("coefficients stand in one dimension");
  if (equation && (*equation < 0 || *equation > UINT16_MAX)) throw py::value_error("an equation number is from 0 to 65535");
  Correlation correlation;
  correlation.equation = equation;
  correlation.coefficients.reserve(static_cast<size_t>(values.shape(0)));
  for (py::ssize_t i = 0; i < values.shape(0); ++i) correlation.coefficients.push_back(Narrowed(values.at(i)));
  return correlation;
}

// Shares the correlation's numbers and keeps it; nobody changes them.
py::array coefficientsOf(py::object const & self)
{
  auto const & correlation = self.cast<Correlation const &>();
  LoadNumPy();
  py::array_t<float> array(static_cast<py::ssize_t>(correlation.coefficients.size()), correlation.coefficients.data(), self);
  array.attr("flags").attr("writeable") = false;
  return array;
}

template <char const * DataMeaning::*field, class Value>
char const * meant(Value const & value)
{
  return value.meaning != nullptr ? value.meaning->*field : nullptr;
}

void addDescriptions(py::module_ & module)
{
  py::class_<DataMeaning>(module, "Column", "What a component keeps under a name.")
      .def_readonly("name", &DataMeaning::column, "The name, also that of the column in tables.")
      .def_readonly("label", &DataMeaning::label, "The name for people.")
      .def_readonly("unit", &DataMeaning::unit, "The unit of the number, or of what the correlation gives; may be empty.")
      .def_readonly("data_id", &DataMeaning::dataID, "The data id in records.")
      .def_readonly("coefficients", &DataMeaning::coefficients, "The most that a correlation has, else 0.")
      .def_property_readonly(
          "kind", [](DataMeaning const & meaning) { return nameOf(meaning.kind); },
          "text, number, correlation, equation (a correlation with an equation number) or groups")
      .def("__repr__", [](DataMeaning const & meaning) {
        return py::str("<Column {}: {} [{}]>").format(meaning.column, meaning.label, meaning.unit);
      });
  module.def(
      "columns",
      [] {
        py::list all;
        for (DataMeaning const & meaning : GetDataMeanings()) all.append(py::cast(&meaning, py::return_value_policy::reference));
        return all;
      },
      "All values that a component can have by a name, in the order of tables.");
  py::class_<Constant>(module, "Constant", "A number with its unit; float(constant) is the number.")
      .def_readonly("value", &Constant::value, "The number, in unit.")
      .def_property_readonly("unit", &meant<&DataMeaning::unit, Constant>, "The unit, such as K; empty for a ratio.")
      .def_property_readonly("label", &meant<&DataMeaning::label, Constant>, "The name for people.")
      .def("__float__", [](Constant const & constant) { return constant.value; })
      .def("__repr__", [](Constant const & constant) {
        return py::str("{!r} {}").format(constant.value, constant.meaning->unit).attr("rstrip")();
      });
}

void addCorrelation(py::module_ & module)
{
  py::class_<Correlation>(module, "Correlation", "The coefficients of a property correlation over the temperature in K.")
      .def(py::init(&makeCorrelation), py::arg("coefficients"), py::arg("equation") = py::none(),
           "Coefficients, kept in 32 bits each, and for the kinds that have one the equation number.")
      .def_property_readonly("coefficients", &coefficientsOf, "A read-only float32 array, A first, that shares the numbers.")
      .def_readonly("equation", &Correlation::equation, "The equation number, or None.")
      .def_property_readonly("name", &meant<&DataMeaning::column, Correlation>, "The name in its component, or None.")
      .def_property_readonly("label", &meant<&DataMeaning::label, Correlation>, "The name for people, or None.")
      .def_property_readonly("unit", &meant<&DataMeaning::unit, Correlation>, "The unit of what it gives, or None.")
      .def(
          "__eq__",
          [](Correlation const & one, Correlation const & other) {
            return one.coefficients == other.coefficients && one.equation == other.equation;
          },
          py::is_operator())
      .def("__repr__", [](Correlation const & correlation) {
        py::list values;
        for (float const each : correlation.coefficients) values.append(ShortestDouble(each));
        return correlation.equation ? py::str("Correlation({}, equation={})").format(values, *correlation.equation)
                                    : py::str("Correlation({})").format(values);
      });
}

}  // namespace

void AddComponents(py::module_ & module)
{
  addDescriptions(module);
  addCorrelation(module);
  py::class_<Record>(module, "Record", "An object of a class that has no form of its own here.")
      .def_readonly("class_name", &Record::className, "The class that the bytes name.")
      .def("__bytes__", [](Record const & record) { return py::bytes(record.bytes); })
      .def("__repr__",
           [](Record const & record) { return py::str("<Record {}, {} bytes>").format(record.className, record.bytes.size()); });
  py::class_<Component>(module, "Component",
                        "A component: a mapping of names, such as \"tc_K\", to texts, numbers, correlations and groups. Items\n"
                        "whose data id has no name stand under its number. What isn't there has no value: a blank text and 0\n"
                        "remove one.")
      .def(py::init([](py::kwargs const & values) {
             Component component;
             for (auto const & [key, value] : values) component.Set(key, value);
             return component;
           }),
           "A component of the values given by name.")
      .def("__getitem__", &Component::Get)
      .def("__setitem__", &Component::Set)
      .def("__delitem__", &Component::Delete)
      .def("clear", &Component::Clear, "Removes all values.")
      .def("__contains__", &Component::Has)
      .def("__len__", [](Component const & component) { return component.GetKeys().size(); })
      .def("__iter__", [](Component const & component) { return py::iter(component.GetKeys()); })
      .def_property_readonly(
          "name", [](Component const & component) { return component.GetOrNone("name"); }, "The name, or None.")
      .def_property_readonly(
          "formula", [](Component const & component) { return component.GetOrNone("formula"); }, "The formula, or None.")
      .def_property_readonly(
          "cas", [](Component const & component) { return component.GetOrNone("cas"); }, "The CAS number, or None.")
      .def_property_readonly("constants", &Component::GetConstants, "The numbers by name, each with its unit.")
      .def_property_readonly("correlations", &Component::GetCorrelations, "The correlations by name.")
      .def(
          "__eq__",
          [](Component const & one, Component const & other) {
            return EncodeObject(one.GetData()) == EncodeObject(other.GetData());
          },
          py::is_operator())
      .def("__repr__", [](Component const & component) {
        return py::str("<Component {!r} with {} values>").format(component.GetOrNone("name"), component.GetKeys().size());
      });
}

}  // namespace zp::python
