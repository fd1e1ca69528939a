// What the cells of a sheet hold, as bits with their places: to see whether they are the same after the workbook was saved.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <zpbase/spreadsheet.h>

#include "tools/sheet/cell_block.h"

class SheetPrint {
 public:
  // Nothing for a sheet whose filled cells lie too far apart to be looked at all.
  static SheetPrint Of(GPWorkSheet & sheet);

  // The next filled cell, row by row and from the left; rows and columns count from 1. Empty values aren't kept.
  void Add(int row, int column, VARIANT const & value);

  // The name of the first cell that a sheet has otherwise, bit for bit; empty for none, and where nothing was looked at.
  std::string FindDifference(GPWorkSheet & sheet) const;

 private:
  struct Cell {
    static Cell Of(int row, int column, VARIANT const & value);

    uint64_t place;  // in the order of rows, then columns
    uint64_t value;

    bool operator==(Cell const &) const = default;
  };
  using Place = std::vector<Cell>::const_iterator;
  struct Band {
    Place end;
    CellBlock block;
  };
  Band BandFrom(Place first) const;
  std::string FindSurplus(CellBlock const & used) const;

  std::vector<Cell> m_Cells;
  bool m_bWhole = true;
};

// Sheets by their names.
using SheetPrints = std::vector<std::pair<std::string, SheetPrint>>;

class WorkbookLink;

// All worksheets of a workbook; none of a new one, whose only sheet is nobody's.
SheetPrints PrintSheets(WorkbookLink & workbook);

// Looks into a workbook that was saved. Raises Failure where one of the new sheets doesn't hold what was put, and warns where one
// that was there before isn't what it was.
void RequireSaved(WorkbookLink & saved, SheetPrints const & added, SheetPrints const & former);
