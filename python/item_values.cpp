// Items of a component as values of Python's, and back.

#include <cfloat>
#include <charconv>
#include <climits>
#include <cmath>

#include <zpbase/numeric.h>
#include <zpbase/platform/collections.h>
#include <zpbase/platform/encoding.h>

#include "python/component.h"
#include "tools/program.h"
#include "tools/records/component_columns.h"
#include "tools/records/payload.h"

namespace zp::python {

double ShortestDouble(float value)
{
  if (!std::isfinite(value)) return static_cast<double>(value);
  char text[32];
  char const * const end = std::to_chars(text, text + sizeof text, value).ptr;
  double exact = 0.0;
  std::from_chars(text, end, exact);
  return exact;
}

namespace {

py::object recordOf(CObject const & object)
{
  std::vector<BYTE> const bytes = EncodeObject(object);
  return py::cast(Record{object.GetRuntimeClass()->m_lpszClassName, {bytes.begin(), bytes.end()}});
}

py::object areaOf(GPv const & item)
{
  return py::bytes(reinterpret_cast<char const *>(item.GetArea()), static_cast<size_t>(item.GetSize()));
}

// The area in the layout that its data id names, or as bytes where it doesn't fit that.
py::object packedOf(GPv const & item)
{
  DataMeaning const * const meaning = FindDataMeaning(item.GetDataID());
  std::vector<AreaNumber> const numbers = meaning != nullptr ? DecodeArea(item, *meaning) : std::vector<AreaNumber>();
  if (numbers.empty()) return areaOf(item);
  if (meaning->kind == DataKind::Groups) {
    py::dict groups;
    for (AreaNumber const & number : numbers) {
      py::str const name(number.name);
      groups[name] = py::int_(number.whole) + groups.attr("get")(name, 0);
    }
    return groups;
  }
  Correlation correlation;
  correlation.meaning = meaning;
  for (AreaNumber const & number : numbers) {
    if (number.isReal)
      correlation.coefficients.push_back(number.real);
    else
      correlation.equation = number.whole;
  }
  return py::cast(std::move(correlation));
}

}  // namespace

py::object ValueOf(GPData const & item)
{
  CRuntimeClass const * const itemClass = item.GetRuntimeClass();
  if (itemClass == RUNTIME_CLASS(GPs)) return TextOf(TextToUtf8(static_cast<GPs const &>(item).GetValue().View()));
  if (itemClass == RUNTIME_CLASS(GPf)) return py::float_(ShortestDouble(static_cast<GPf const &>(item).GetValue()));
  if (itemClass == RUNTIME_CLASS(GPd)) return py::float_(static_cast<GPd const &>(item).GetValue());
  if (itemClass == RUNTIME_CLASS(GPw)) return py::int_(static_cast<int>(static_cast<GPw const &>(item).GetValue()));
  if (itemClass == RUNTIME_CLASS(GPdw)) return py::int_(static_cast<GPdw const &>(item).GetValue());
  if (itemClass == RUNTIME_CLASS(GPxy)) {
    auto const & pair = static_cast<GPxy const &>(item);
    return py::make_tuple(pair.GetX(), pair.GetY());
  }
  return itemClass == RUNTIME_CLASS(GPv) ? packedOf(static_cast<GPv const &>(item)) : recordOf(item);
}

float Narrowed(double value)
{
  auto const narrow = static_cast<float>(value);
  if (std::isfinite(narrow) && (narrow != 0.0F || value == 0.0)) return narrow;
  throw py::value_error(py::str("{!r} doesn't fit a 32-bit number").format(value));
}

namespace {

std::unique_ptr<GPData> makeText(DataMeaning const & meaning, py::handle value)
{
  if (!py::isinstance<py::str>(value)) throw py::type_error(py::str("{} is a text").format(meaning.column));
  CString const text = ToText(Utf8Of(py::reinterpret_borrow<py::str>(value)), meaning.column);
  if (text.View().find_first_not_of(' ') == std::string_view::npos) return nullptr;
  return std::make_unique<GPs>(meaning.dataID, text);
}

std::unique_ptr<GPData> makeNumber(DataMeaning const & meaning, py::handle value)
{
  double const number = PyFloat_AsDouble(value.ptr());
  if (PyErr_Occurred() != nullptr) throw py::error_already_set();
  float const narrow = Narrowed(number);
  return narrow != 0.0F ? std::make_unique<GPf>(meaning.dataID, narrow) : nullptr;
}

Correlation correlationOf(py::handle value)
{
  if (py::isinstance<Correlation>(value)) return value.cast<Correlation>();
  return py::type::of<Correlation>()(value).cast<Correlation>();
}

std::unique_ptr<GPData> makeFloats(DataMeaning const & meaning, Correlation const & from)
{
  if (from.equation) throw py::value_error(py::str("{} has no equation number").format(meaning.column));
  auto item = std::make_unique<GPv>(meaning.dataID);
  bool const isHeld = item->PutFloatData(from.coefficients.data(), static_cast<int>(from.coefficients.size())) > 0;
  return isHeld ? std::move(item) : nullptr;
}

std::unique_ptr<GPData> makeEquation(DataMeaning const & meaning, Correlation const & from)
{
  if (!from.equation)
    throw py::value_error(py::str("{} needs an equation number: Correlation(values, equation=105)").format(meaning.column));
  double c[GPDippr::maxCoefficients] = {};
  std::copy(from.coefficients.begin(), from.coefficients.end(), c);
  GPDippr record(meaning.dataID);
  record.Load(static_cast<unsigned int>(*from.equation), c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7], c[8]);
  return std::make_unique<GPv>(record);
}

std::unique_ptr<GPData> makeCorrelation(DataMeaning const & meaning, Correlation const & from)
{
  if (from.coefficients.size() > static_cast<size_t>(meaning.coefficients))
    throw py::value_error(py::str("{} has at most {} coefficients").format(meaning.column, meaning.coefficients));
  return meaning.kind == DataKind::Equation ? makeEquation(meaning, from) : makeFloats(meaning, from);
}

std::unique_ptr<GPData> makeGroups(DataMeaning const & meaning, py::handle value)
{
  if (!py::isinstance<py::dict>(value)) throw py::type_error(py::str("{} is a dict of groups and counts").format(meaning.column));
  std::string cell;
  CStringArray names;
  std::vector<int> counts;
  for (auto const & [key, count] : value.cast<py::dict>()) {
    if (PyIndex_Check(count.ptr()) == 0) throw py::type_error(py::str("{} counts groups in integers").format(meaning.column));
    std::string const group = Utf8Of(py::str(key));
    cell += (cell.empty() ? "" : " ") + group + ":" + Utf8Of(py::str(count));
    names.Add(CString(group.c_str()));
  }
  RequireCell(AllColumns()[FirstColumnOf(meaning)], cell);
  for (auto const & each : value.cast<py::dict>()) counts.push_back(each.second.cast<int>());
  GPUnifac groups;
  bool const isHeld = groups.Load(names, GPIntVector(static_cast<int>(counts.size()), counts.data())) > 0;
  return isHeld ? std::make_unique<GPv>(groups) : nullptr;
}

}  // namespace

std::unique_ptr<GPData> MakeItem(DataMeaning const & meaning, py::handle value)
{
  switch (meaning.kind) {
    case DataKind::Text:
      return makeText(meaning, value);
    case DataKind::Number:
      return makeNumber(meaning, value);
    case DataKind::Groups:
      return makeGroups(meaning, value);
    default:
      return makeCorrelation(meaning, correlationOf(value));
  }
}

}  // namespace zp::python
