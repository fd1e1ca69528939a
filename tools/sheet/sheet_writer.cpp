// Rows on their way into a worksheet.

#include "tools/sheet/sheet_writer.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/program.h"
#include "tools/sheet/cell_block.h"
#include "tools/sheet/workbook_link.h"

namespace {

constexpr size_t cellsAtOnce = 1 << 16;
constexpr size_t mostTextUnits = 32767;  // of 16 bits

COleVariant makeBlock(size_t rows, size_t columns)
{
  SAFEARRAYBOUND const bounds[] = {{static_cast<DWORD>(rows), 1}, {static_cast<DWORD>(columns), 1}};
  COleVariant block;
  block.parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
  if (block.parray == nullptr) throw std::bad_alloc();
  block.vt = VT_ARRAY | VT_VARIANT;
  return block;
}

}  // namespace

void SheetWriter::Add(std::vector<COleVariant> row)
{
  if (m_nRows == mostRows) throw Failure(fmt::format("a sheet has no more than {} rows; part the table", mostRows));
  if (row.size() > static_cast<size_t>(mostColumns))
    throw Failure(fmt::format("a sheet has no more than {} columns; part the table", mostColumns));
  for (COleVariant const & value : row) {
    if (value.vt == VT_BSTR && zp::ViewOf(value.bstrVal).size() > mostTextUnits)
      throw Failure(fmt::format("a cell holds no text of more than {} characters; shorten it", mostTextUnits));
  }
  size_t const widest = std::max({m_nWidest, row.size(), size_t{1}});
  if (widest * (m_Waiting.size() + 1) > cellsAtOnce) Finish();
  m_nWidest = std::max(m_nWidest, row.size());
  ++m_nRows;
  m_nColumns = std::max(m_nColumns, static_cast<int>(row.size()));
  for (size_t column = 0; column < row.size(); ++column) m_Print.Add(m_nRows, static_cast<int>(column) + 1, row[column]);
  m_Waiting.push_back(std::move(row));
}

void SheetWriter::Finish()
{
  if (!m_Waiting.empty()) Flush();
}

void SheetWriter::Flush()
{
  size_t const columns = std::max<size_t>(m_nWidest, 1);
  COleVariant block = makeBlock(m_Waiting.size(), columns);
  auto * const cells = static_cast<VARIANT *>(block.parray->pvData);
  for (size_t row = 0; row < m_Waiting.size(); ++row)
    for (size_t column = 0; column < m_Waiting[row].size(); ++column)
      cells[column * m_Waiting.size() + row] = m_Waiting[row][column].Detach();
  CellBlock const place = {m_nRows - static_cast<int>(m_Waiting.size()) + 1, 1, m_nRows, static_cast<int>(columns)};
  std::string const name = NameOfBlock(place);
  Attached<GPRange>(m_Sheet.GetCell(COleVariant(name.c_str()))).SetValue(block);
  m_Waiting.clear();
  m_nWidest = 0;
}
