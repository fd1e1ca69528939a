// Components on their way into a table.

#include "tools/records/components.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

#include <fmt/compile.h>
#include <fmt/format.h>
#include <zpbase/data.h>
#include <zpbase/platform/encoding.h>

#include "tools/program.h"
#include "tools/records/component_columns.h"
#include "tools/records/data_ids.h"
#include "tools/records/payload.h"

namespace {

// The fewest digits that give the bits back. False for a number that no table can have.
bool putNumber(std::string & cell, float value)
{
  if (!std::isfinite(value)) return false;
  fmt::format_to(std::back_inserter(cell), FMT_COMPILE("{}"), value);
  return true;
}

void writeGroups(std::string & cell, Column const & column, std::vector<AreaNumber> const & groups)
{
  for (AreaNumber const & group : groups)
    fmt::format_to(std::back_inserter(cell), "{}{}:{}", cell.empty() ? "" : " ", group.name, group.whole);
  RequireCell(column, cell);
}

// The cells of a packed area: one for each number, but one for all groups.
bool writeArea(Cells & cells, size_t column, GPv const & item, DataMeaning const & meaning)
{
  std::vector<AreaNumber> const numbers = DecodeArea(item, meaning);
  if (meaning.kind == DataKind::Groups) {
    writeGroups(cells[column], AllColumns()[column], numbers);
    return true;
  }
  for (AreaNumber const & number : numbers) {
    std::string & cell = cells[column++];
    if (!number.isReal)
      cell = std::to_string(number.whole);
    else if (!putNumber(cell, number.real))
      return false;
  }
  return true;
}

bool writeItem(Cells & cells, GPData const & item)
{
  DataMeaning const * const meaning = FindDataMeaning(item.GetDataID());
  if (meaning == nullptr) return false;
  size_t const column = FirstColumnOf(*meaning);
  CRuntimeClass const * const its = item.GetRuntimeClass();
  if (its == RUNTIME_CLASS(GPf)) return putNumber(cells[column], static_cast<GPf const &>(item).GetValue());
  if (its == RUNTIME_CLASS(GPv)) return writeArea(cells, column, static_cast<GPv const &>(item), *meaning);
  if (its == RUNTIME_CLASS(GPs)) cells[column] = zp::TextToUtf8(static_cast<GPs const &>(item).GetValue().View());
  return true;
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

bool givesBack(Cells const & cells, std::span<BYTE const> bytes)
{
  GPDataArray data;
  LoadComponent(data, cells);
  std::vector<BYTE> const again = EncodeObject(data);
  return std::equal(again.begin(), again.end(), bytes.begin(), bytes.end());
}

// What each cell has is what its column takes, but for items of a class that it isn't for: they are stored otherwise again.
bool isTold(Cells & cells, Payload const & payload, std::span<BYTE const> bytes)
{
  try {
    return tell(cells, payload) && givesBack(cells, bytes);
  } catch (Failure const &) {
    return false;
  }
}

constexpr size_t tablePieceBytes = 0x40000;

}  // namespace

bool ComponentTable::Add(int id, std::span<BYTE const> bytes)
{
  m_Used.resize(AllColumns().size());
  m_Row.resize(AllColumns().size());
  m_Row[0] = std::to_string(id);
  bool const keeps = isTold(m_Row, DecodePayload(bytes), bytes);
  if (keeps && (m_Pieces.empty() || m_Pieces.back().size() > tablePieceBytes)) {
    m_Pieces.emplace_back().reserve(tablePieceBytes + tablePieceBytes / 8);
  }
  for (size_t i = 0; i < m_Row.size(); ++i) {
    if (m_Row[i].empty()) continue;
    if (keeps) {
      keepCell(m_Pieces.back(), i, m_Row[i]);
      m_Used[i] = true;
    }
    m_Row[i].clear();
  }
  return keeps;
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
  for (std::string_view cells : m_Pieces) {
    while (!cells.empty()) {
      std::fill(fields.begin(), fields.end(), std::string_view());
      do {
        size_t column = 0;
        std::string_view const text = takeCell(cells, column);
        fields[places[column]] = text;
      } while (!cells.empty() && cells.front() != 0);
      take(fields);
    }
  }
}
