// Components on their way into a table.

#include "tools/records/components.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include <fmt/format.h>
#include <zpbase/data.h>
#include <zpbase/platform/encoding.h>

#include "tools/program.h"
#include "tools/records/component_columns.h"
#include "tools/records/data_ids.h"
#include "tools/records/payload.h"

namespace {

// Nine digits give a 32-bit number back.
std::string numberText(float value)
{
  constexpr int digits = 9;
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, value, std::chars_format::general, digits).ptr};
}

// The cells of a packed area: one for each number, but one for all groups.
void writeArea(std::string * cell, GPv const & item, DataMeaning const & meaning)
{
  for (AreaNumber const & number : DecodeArea(item, meaning)) {
    if (meaning.kind == DataKind::Groups) {
      *cell += fmt::format("{}{}:{}", cell->empty() ? "" : " ", number.name, number.whole);
    } else {
      *cell++ = number.isReal ? numberText(number.real) : std::to_string(number.whole);
    }
  }
}

bool writeItem(Cells & cells, GPData const & item)
{
  DataMeaning const * const meaning = FindDataMeaning(item.GetDataID());
  if (meaning == nullptr) return false;
  std::string * cell = &cells[FirstColumnOf(*meaning)];
  if (item.GetRuntimeClass() == RUNTIME_CLASS(GPs)) {
    *cell = zp::TextToUtf8(static_cast<GPs const &>(item).GetValue().View());
  } else if (item.GetRuntimeClass() == RUNTIME_CLASS(GPf)) {
    *cell = numberText(static_cast<GPf const &>(item).GetValue());
  } else if (item.GetRuntimeClass() == RUNTIME_CLASS(GPv)) {
    writeArea(cell, static_cast<GPv const &>(item), *meaning);
  }
  return true;
}

bool givesBack(Cells const & cells, std::span<BYTE const> bytes)
{
  try {
    GPDataArray data;
    for (size_t i = 1; i < cells.size(); ++i) RequireCell(AllColumns()[i], cells[i]);
    LoadComponent(data, cells);
    std::vector<BYTE> const again = EncodeObject(data);
    return std::equal(again.begin(), again.end(), bytes.begin(), bytes.end());
  } catch (Failure const &) {
    return false;
  }
}

// A kept cell is its column, its length and its text; the length takes a byte, or behind this mark four.
constexpr unsigned char longMark = 0xFF;

void keepCell(std::string & cells, size_t column, std::string const & text)
{
  cells += static_cast<char>(column);
  if (text.size() < longMark) {
    cells += static_cast<char>(text.size());
  } else {
    auto const bytes = static_cast<DWORD>(text.size());
    cells += static_cast<char>(longMark);
    cells.append(reinterpret_cast<char const *>(&bytes), sizeof bytes);
  }
  cells += text;
}

// The cell at the begin of those that are left, which is taken off them.
std::string_view takeCell(std::string_view & cells, size_t & column)
{
  column = static_cast<unsigned char>(cells[0]);
  DWORD bytes = static_cast<unsigned char>(cells[1]);
  cells.remove_prefix(2);
  if (bytes == longMark) {
    std::memcpy(&bytes, cells.data(), sizeof bytes);
    cells.remove_prefix(sizeof bytes);
  }
  std::string_view const text = cells.substr(0, bytes);
  cells.remove_prefix(bytes);
  return text;
}

// Fills the cells; false for what has no place in a table.
bool tell(Cells & cells, Payload const & payload)
{
  if (payload.state != Payload::Object || payload.object->GetRuntimeClass() != RUNTIME_CLASS(GPDataArray)) return false;
  auto const & data = static_cast<GPDataArray const &>(*payload.object);
  for (int i = 0; i < data.GetSize(); ++i) {
    if (data.GetAt(i) == nullptr || !writeItem(cells, *data.GetAt(i))) return false;
  }
  return true;
}

}  // namespace

bool ComponentTable::Add(int id, std::span<BYTE const> bytes)
{
  m_Used.resize(AllColumns().size());
  m_Row.resize(AllColumns().size());
  m_Row[0] = std::to_string(id);
  bool const isTold = tell(m_Row, DecodePayload(bytes)) && givesBack(m_Row, bytes);
  for (size_t i = 0; i < m_Row.size(); ++i) {
    if (m_Row[i].empty()) continue;
    if (isTold) {
      keepCell(m_Cells, i, m_Row[i]);
      m_Used[i] = true;
    }
    m_Row[i].clear();
  }
  return isTold;
}

std::vector<Column const *> ComponentTable::GetColumns() const
{
  std::vector<Column const *> columns = {&AllColumns().front()};
  for (size_t i = 1; i < m_Used.size(); ++i) {
    if (m_Used[i]) columns.push_back(&AllColumns()[i]);
  }
  return columns;
}

std::vector<std::string_view> ComponentTable::GetHead() const
{
  std::vector<std::string_view> names;
  for (Column const * column : GetColumns()) names.emplace_back(column->name);
  return names;
}

void ComponentTable::ForEachRow(std::function<void(std::vector<std::string_view> const & fields)> const & take) const
{
  std::vector<size_t> places(AllColumns().size());
  size_t count = 0;
  for (size_t i = 0; i < m_Used.size(); ++i) places[i] = m_Used[i] ? count++ : 0;
  std::vector<std::string_view> fields(count);
  bool isFirst = true;
  for (std::string_view cells = m_Cells; !cells.empty();) {
    size_t column = 0;
    std::string_view const text = takeCell(cells, column);
    if (column == 0 && !isFirst) {
      take(fields);
      std::fill(fields.begin(), fields.end(), std::string_view());
    }
    isFirst = false;
    fields[places[column]] = text;
  }
  if (!m_Cells.empty()) take(fields);
}
