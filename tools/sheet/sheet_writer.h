// Puts rows of values into a new worksheet, some rows at a time, and looks afterwards whether they are there.
#pragma once

#include <vector>

#include "tools/sheet/sheet_print.h"

class SheetWriter {
 public:
  explicit SheetWriter(GPWorkSheet const & sheet) : m_Sheet(sheet) {}

  // The next row, from column A on. Raises Failure for more rows or columns than a sheet has, and more text than a cell.
  void Add(std::vector<COleVariant> row);

  // Puts what is left.
  void Finish();

  int CountRows() const { return m_nRows; }
  int CountColumns() const { return m_nColumns; }

  // What was put.
  SheetPrint const & GetPrint() const { return m_Print; }

 private:
  void Flush();

  GPWorkSheet m_Sheet;
  std::vector<std::vector<COleVariant>> m_Waiting;
  size_t m_nWidest = 0;  // of them, in cells
  int m_nRows = 0;
  int m_nColumns = 0;  // of the longest row
  SheetPrint m_Print;
};
