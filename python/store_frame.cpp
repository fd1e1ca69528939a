// The components of a store as columns for pandas.

#include <cmath>
#include <limits>

#include <zpbase/platform/encoding.h>

#include "python/component.h"
#include "python/library_call.h"
#include "python/store.h"
#include "tools/program.h"
#include "tools/records/component_columns.h"
#include "tools/records/payload.h"

namespace zp::python {

namespace {

// One column; of the three kinds of cells one is used, as long as the table, or none.
struct FrameColumn {
  std::vector<float> reals;
  std::vector<int> wholes;
  std::vector<std::string> texts;

  bool IsUsed() const { return !reals.empty() || !wholes.empty() || !texts.empty(); }
};

constexpr int noEquation = -1;

class FrameBuilder {
 public:
  explicit FrameBuilder(size_t rows) : m_nRows(rows), m_Columns(AllColumns().size()) {}

  void Add(int id, GPDataArray const & data)
  {
    size_t const row = m_IDs.size();
    m_IDs.push_back(id);
    for (int i = 0; i < data.GetSize(); ++i) {
      if (data.GetAt(i) != nullptr) AddItem(row, *data.GetAt(i));
    }
  }

  // The columns in use by their names, and the ids. Leaves nothing behind.
  std::pair<py::dict, py::array> Take()
  {
    py::dict columns;
    for (size_t i = 0; i < m_Columns.size(); ++i) {
      if (m_Columns[i].IsUsed()) columns[AllColumns()[i].name.c_str()] = ArrayOfColumn(m_Columns[i]);
    }
    return {columns, ArrayOf(std::move(m_IDs))};
  }

 private:
  template <class Value>
  Value & CellOf(std::vector<Value> & cells, size_t row, Value const & none)
  {
    if (cells.empty()) cells.resize(m_nRows, none);
    return cells[row];
  }

  void SetReal(size_t column, size_t row, float value)
  {
    CellOf(m_Columns[column].reals, row, std::numeric_limits<float>::quiet_NaN()) = value;
  }

  void AddItem(size_t row, GPData const & item)
  {
    DataMeaning const * const meaning = FindDataMeaning(item.GetDataID());
    if (meaning == nullptr) return;
    size_t const column = FirstColumnOf(*meaning);
    if (item.GetRuntimeClass() == RUNTIME_CLASS(GPs))
      CellOf(m_Columns[column].texts, row, {}) = TextToUtf8(static_cast<GPs const &>(item).GetValue().View());
    else if (item.GetRuntimeClass() == RUNTIME_CLASS(GPf))
      SetReal(column, row, static_cast<GPf const &>(item).GetValue());
    else if (item.GetRuntimeClass() == RUNTIME_CLASS(GPv))
      AddArea(column, row, DecodeArea(static_cast<GPv const &>(item), *meaning), meaning->kind == DataKind::Groups);
  }

  void AddArea(size_t column, size_t row, std::vector<AreaNumber> const & numbers, bool areGroups)
  {
    for (AreaNumber const & number : numbers) {
      if (areGroups) {
        std::string & cell = CellOf(m_Columns[column].texts, row, {});
        cell += (cell.empty() ? "" : " ") + number.name + ":" + std::to_string(number.whole);
      } else if (number.isReal) {
        SetReal(column++, row, number.real);
      } else {
        CellOf(m_Columns[column++].wholes, row, noEquation) = number.whole;
      }
    }
  }

  py::object ArrayOfColumn(FrameColumn & column) const
  {
    size_t const rows = m_IDs.size();
    if (!column.reals.empty()) {
      column.reals.resize(rows);
      return ArrayOf(std::move(column.reals));
    }
    if (!column.texts.empty()) {
      py::list texts(rows);
      for (size_t i = 0; i < rows; ++i) texts[i] = column.texts[i].empty() ? py::object(py::none()) : TextOf(column.texts[i]);
      return texts;
    }
    column.wholes.resize(rows);
    py::array const values = ArrayOf(std::move(column.wholes));
    py::object const isMissing = values.attr("__eq__")(noEquation);
    return py::module_::import("pandas").attr("arrays").attr("IntegerArray")(values, isMissing);
  }

  size_t m_nRows;
  std::vector<int> m_IDs;
  std::vector<FrameColumn> m_Columns;  // as AllColumns
};

FrameBuilder gather(Store const & store)
{
  std::vector<int> const ids = store.GetIDs();
  FrameBuilder builder(ids.size());
  for (int const id : ids) {
    try {
      Payload const payload = DecodePayload(store.Load(id));
      if (payload.state == Payload::Damaged)
        Tell(store.GetName() + ": record " + std::to_string(id) + ": is no sound " + payload.className + ": " + payload.problem);
      else if (payload.object != nullptr && payload.object->GetRuntimeClass() == RUNTIME_CLASS(GPDataArray))
        builder.Add(id, static_cast<GPDataArray const &>(*payload.object));
    } catch (Failure const & failure) {
      Tell(failure.what());
    }
  }
  return builder;
}

py::dict unitsOf(py::dict const & columns)
{
  py::dict units;
  for (DataMeaning const & meaning : GetDataMeanings()) {
    if (meaning.kind == DataKind::Number && columns.contains(meaning.column)) units[meaning.column] = meaning.unit;
  }
  return units;
}

}  // namespace

py::object FrameOf(Store const & store)
{
  py::module_ const pandas = py::module_::import("pandas");
  auto const [columns, ids] = InLibrary([&] { return gather(store); }).Take();
  py::object const index = pandas.attr("Index")(ids, py::arg("name") = "id");
  py::object frame = pandas.attr("DataFrame")(columns, py::arg("index") = index, py::arg("copy") = false);
  frame.attr("attrs")["units"] = unitsOf(columns);
  return frame;
}

}  // namespace zp::python
