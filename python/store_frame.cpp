// The components of a store as columns for pandas.

#include <functional>
#include <limits>
#include <unordered_map>

#include <zpbase/platform/encoding.h>

#include "python/component.h"
#include "python/library_call.h"
#include "python/store.h"
#include "tools/program.h"
#include "tools/records/component_columns.h"
#include "tools/records/payload.h"

namespace zp::python {

namespace {

constexpr int nothing = -1;

// The different texts of a column, each once by what it is made of: a name's bytes, an area.
class TextTable {
 public:
  // The text's place; make gives it in UTF-8. nothing for a blank one.
  template <class Make>
  int PlaceOf(std::string_view source, Make const & make)
  {
    auto const known = m_Places.find(source);
    if (known != m_Places.end()) return known->second;
    std::string text = make();
    int const place = text.empty() ? nothing : static_cast<int>(m_Texts.size());
    if (!text.empty()) m_Texts.push_back(std::move(text));
    m_Places.emplace(source, place);
    return place;
  }

  std::vector<std::string> const & GetTexts() const { return m_Texts; }

 private:
  // It isn't noexcept: the table keeps each hash then.
  struct Hash {
    using is_transparent = void;
    size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };

  std::unordered_map<std::string, int, Hash, std::equal_to<>> m_Places;
  std::vector<std::string> m_Texts;
};

// One column; of the two kinds of cells the one that its meaning wants is used, as long as the table, or none.
struct FrameColumn {
  std::vector<float> reals;
  std::vector<int> wholes;  // equation numbers, or places of texts
  TextTable texts;
};

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
      FrameColumn & column = m_Columns[i];
      if (column.reals.empty() && column.wholes.empty()) continue;
      column.reals.resize(column.reals.empty() ? 0 : m_IDs.size());
      column.wholes.resize(column.wholes.empty() ? 0 : m_IDs.size());
      columns[AllColumns()[i].name.c_str()] = ArrayOfColumn(column);
    }
    return {columns, ArrayOf(std::move(m_IDs))};
  }

 private:
  template <class Value>
  void Set(std::vector<Value> & cells, size_t row, Value value, Value none)
  {
    if (cells.empty()) cells.resize(m_nRows, none);
    cells[row] = value;
  }

  void SetReal(FrameColumn & column, size_t row, float value)
  {
    Set(column.reals, row, value, std::numeric_limits<float>::quiet_NaN());
  }

  template <class Make>
  void SetText(FrameColumn & column, size_t row, std::string_view source, Make const & make)
  {
    int const place = column.texts.PlaceOf(source, make);
    if (place != nothing) Set(column.wholes, row, place, nothing);
  }

  // An item of another class than its meaning wants has no column.
  void AddItem(size_t row, GPData const & item)
  {
    DataMeaning const * const meaning = FindDataMeaning(item.GetDataID());
    if (meaning == nullptr) return;
    FrameColumn & column = m_Columns[FirstColumnOf(*meaning)];
    CRuntimeClass const * const its = item.GetRuntimeClass();
    if (its == RUNTIME_CLASS(GPf) && meaning->kind == DataKind::Number) {
      SetReal(column, row, static_cast<GPf const &>(item).GetValue());
    } else if (its == RUNTIME_CLASS(GPs) && meaning->kind == DataKind::Text) {
      CString const text = static_cast<GPs const &>(item).GetValue();
      SetText(column, row, text.View(), [&] { return TextToUtf8(text.View()); });
    } else if (its == RUNTIME_CLASS(GPv)) {
      AddArea(&column, row, static_cast<GPv const &>(item), *meaning);
    }
  }

  void AddArea(FrameColumn * column, size_t row, GPv const & item, DataMeaning const & meaning)
  {
    if (meaning.kind == DataKind::Groups) {
      std::string_view const area(reinterpret_cast<char const *>(item.GetArea()), static_cast<size_t>(item.GetSize()));
      SetText(*column, row, area, [&] { return GroupsText(item, meaning); });
      return;
    }
    AreaCoefficients const found = DecodeCoefficients(item, meaning);
    if (found.equation != AreaCoefficients::noEquation) Set((column++)->wholes, row, found.equation, nothing);
    for (int i = 0; i < found.count; ++i) SetReal(*column++, row, found.values[static_cast<size_t>(i)]);
  }

  static std::string GroupsText(GPv const & item, DataMeaning const & meaning)
  {
    std::string text;
    for (AreaNumber const & group : DecodeArea(item, meaning))
      text += (text.empty() ? "" : " ") + group.name + ":" + std::to_string(group.whole);
    return text;
  }

  static py::object ArrayOfColumn(FrameColumn & column)
  {
    if (!column.reals.empty()) return ArrayOf(std::move(column.reals));
    if (!column.texts.GetTexts().empty()) return TextsOf(column);
    py::array const values = ArrayOf(std::move(column.wholes));
    py::object const isMissing = values.attr("__eq__")(nothing);
    return py::module_::import("pandas").attr("arrays").attr("IntegerArray")(values, isMissing);
  }

  // Equal texts are one object, as pandas makes them of CSV.
  static py::list TextsOf(FrameColumn const & column)
  {
    std::vector<py::object> objects;
    objects.reserve(column.texts.GetTexts().size());
    for (std::string const & text : column.texts.GetTexts()) objects.push_back(TextOf(text));
    py::object const missing = py::float_(std::numeric_limits<double>::quiet_NaN());
    py::list cells(column.wholes.size());
    for (size_t i = 0; i < column.wholes.size(); ++i)
      cells[i] = column.wholes[i] == nothing ? missing : objects[static_cast<size_t>(column.wholes[i])];
    return cells;
  }

  size_t m_nRows;
  std::vector<int> m_IDs;
  std::vector<FrameColumn> m_Columns;  // as AllColumns
};

FrameBuilder gather(Store const & store)
{
  FrameBuilder builder(store.GetIDs().size());
  store.ForEach([&](int id, std::span<BYTE const> bytes) {
    Payload const payload = DecodePayload(bytes);
    if (payload.state == Payload::Damaged)
      Tell(store.GetName() + ": record " + std::to_string(id) + ": is no sound " + payload.className + ": " + payload.problem);
    else if (payload.object != nullptr && payload.object->GetRuntimeClass() == RUNTIME_CLASS(GPDataArray))
      builder.Add(id, static_cast<GPDataArray const &>(*payload.object));
  });
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
