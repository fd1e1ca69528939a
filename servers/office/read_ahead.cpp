// When a block is fetched ahead, and how long it serves.
#include "read_ahead.h"

#include <algorithm>

#include <com/sun/star/lang/IndexOutOfBoundsException.hpp>

namespace office {
namespace {

using namespace std::chrono_literals;

constexpr int32_t blockColumns = 128;  // from a multiple of it
constexpr int32_t blockRows = 64;      // from the row that is read
constexpr auto longestUse = 50ms;

}  // namespace

void ReadAhead::Drop()
{
  m_Sheet = Sheet();
  m_Block = CellBlock();
  m_nColumn = m_nRow = -1;
}

VARIANT ReadAhead::Read(Sheet const & sheet, int32_t column, int32_t row)
{
  if (m_Sheet.cells.get() != sheet.cells.get()) {
    Drop();
    m_Sheet = sheet;
  }
  if (!Serves(column, row)) Fetch(column, row);
  m_nColumn = column;
  m_nRow = row;
  return m_Block.GetValue(column, row);
}

// Whether a read goes on from the last one: to the right, or to a row below it.
bool ReadAhead::Follows(int32_t column, int32_t row) const
{
  return m_nRow >= 0 && (row == m_nRow ? column == m_nColumn + 1 : row == m_nRow + 1 && column <= m_nColumn);
}

bool ReadAhead::Serves(int32_t column, int32_t row)
{
  Area const & area = m_Block.GetArea();
  if (!area.Holds(column, row)) return false;
  size_t const index = static_cast<size_t>(row - area.firstRow) * static_cast<size_t>(area.Columns()) +
                       static_cast<size_t>(column - area.firstColumn);
  if (m_Served[index] || Clock::now() - m_Fetched > longestUse) return false;
  m_Served[index] = true;
  return true;
}

void ReadAhead::Fetch(int32_t column, int32_t row)
{
  Area area{column, row, column, row};
  if (Follows(column, row)) {
    area.firstColumn = column / blockColumns * blockColumns;
    area.lastColumn = area.firstColumn + blockColumns - 1;
    area.lastRow = std::min(row + blockRows, static_cast<int32_t>(servers::mostRows)) - 1;
  }
  Clock::time_point const before = Clock::now();
  try {
    m_Block = CellBlock(m_Sheet, area);
  } catch (css::lang::IndexOutOfBoundsException const &) {  // the sheets of some workbooks are smaller
    if (area.Columns() == 1) throw;
    area = {column, row, column, row};
    m_Block = CellBlock(m_Sheet, area);
  }
  m_Fetched = before;
  m_Served.assign(static_cast<size_t>(area.Columns()) * static_cast<size_t>(area.Rows()), false);
  Serves(column, row);
}

}  // namespace office
