// A block of cells as the office gave it in a few remote calls, and the values that it means.
#pragma once

#include <cstdint>
#include <vector>

#include <com/sun/star/sheet/XSpreadsheet.hpp>
#include <com/sun/star/sheet/XSpreadsheetDocument.hpp>
#include <com/sun/star/table/CellRangeAddress.hpp>

#include <zpbase/platform/variants.h>

#include "area.h"
#include "number_formats.h"

namespace office {

namespace css = com::sun::star;
using css::uno::Reference;

// A worksheet and the workbook that it belongs to.
struct Sheet {
  Reference<css::sheet::XSpreadsheet> cells;
  Reference<css::sheet::XSpreadsheetDocument> workbook;
};

class CellBlock {
 public:
  CellBlock() = default;

  // Fetches a block. What UNO raises passes.
  CellBlock(Sheet const & sheet, Area const & area);

  Area const & GetArea() const { return m_Area; }

  // The value of a cell of the block, which the caller owns: empty, VT_R8 (numbers, dates and currency alike), VT_BSTR, VT_BOOL,
  // or VT_ERROR with the code that a spreadsheet's automation has for it. An error and a formula's 0 or 1 ask the office once
  // more.
  VARIANT GetValue(int32_t column, int32_t row) const;

 private:
  enum class Kind : uint8_t { Number, Text, Empty, Boolean, Error, FormulaNumber };

  void FindKinds();
  void TellEmptyTexts(Reference<css::uno::XInterface> const & range);
  void TellBooleans(Reference<css::uno::XInterface> const & range);
  void Mark(css::uno::Sequence<css::table::CellRangeAddress> const & areas, Kind from, Kind to);
  void MarkByFormat(FormatMeaning meaning, css::uno::Sequence<css::table::CellRangeAddress> const & areas);
  VARIANT GetFormulaNumber(int32_t column, int32_t row, double number) const;
  size_t IndexOf(int32_t column, int32_t row) const
  {
    return static_cast<size_t>(row - m_Area.firstRow) * static_cast<size_t>(m_Area.Columns()) +
           static_cast<size_t>(column - m_Area.firstColumn);
  }

  Sheet m_Sheet;
  Area m_Area{0, 0, -1, -1};
  css::uno::Sequence<css::uno::Sequence<css::uno::Any>> m_Data;
  std::vector<Kind> m_Kinds;
};

}  // namespace office
