// Blocks of cells: their names, and their values some rows at a time.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include <zpbase/spreadsheet.h>

// Counted from 1; the last ones belong to it.
struct CellBlock {
  int firstRow;
  int firstColumn;
  int lastRow;
  int lastColumn;

  int Columns() const { return lastColumn - firstColumn + 1; }
  int64_t CountCells() const { return int64_t{lastRow - firstRow + 1} * Columns(); }
};

constexpr int mostRows = 1048576;
constexpr int mostColumns = 16384;

// "CV50", "A1:CV50", in either case, without dollar signs. Raises a usage failure for anything else, and beyond "XFD1048576".
CellBlock ParseBlock(std::string_view name);
std::string NameOfBlock(CellBlock const & block);

// The smallest block with all filled cells; that of an empty sheet is its first cell.
CellBlock UsedBlock(GPWorkSheet & sheet);

// The values of a row of a block, from the left. Borrowed for the call.
class RowValues {
 public:
  RowValues(VARIANT const * first, size_t rows, size_t columns) : m_pFirst(first), m_nRows(rows), m_nColumns(columns) {}

  size_t Count() const { return m_nColumns; }
  VARIANT const & operator[](size_t column) const { return m_pFirst[column * m_nRows]; }

 private:
  VARIANT const * m_pFirst;
  size_t m_nRows;
  size_t m_nColumns;
};

// Gives take the rows of a block one after the other, fetched so many at a time that memory stays small.
void ForEachRow(GPWorkSheet & sheet, CellBlock const & block, std::function<void(RowValues const & row)> const & take);
