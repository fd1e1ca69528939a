// Reading and writing cells, one by one and in blocks.

#include <algorithm>

#include <com/sun/star/beans/XPropertySet.hpp>
#include <com/sun/star/sheet/XCellRangeData.hpp>

#include "errors.h"
#include "number_formats.h"
#include "office_spreadsheet.h"
#include "office_text.h"
#include "servers/common/values.h"

namespace office {
namespace {

using css::uno::Any;
using css::uno::Sequence;
using css::uno::UNO_QUERY_THROW;

constexpr int32_t cellsAtOnce = 64 * 1024;  // of one fetch

// What goes to the office with the block: a number or a text, or a blank text for what is put down afterwards by itself.
Any dataOf(VARIANT const & value)
{
  switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_BOOL:
    case VT_ERROR:
      return Any(rtl::OUString());
    case VT_BSTR:
      return Any(FromWide(zp::ViewOf(value.bstrVal)));
    default:
      return Any(servers::ChangedValue(value, VT_R8).dblVal);
  }
}

void setBoolean(Sheet const & sheet, Reference<css::table::XCell> const & cell, bool isTrue)
{
  cell->setValue(isTrue ? 1 : 0);
  Reference<css::beans::XPropertySet>(cell, UNO_QUERY_THROW)
      ->setPropertyValue("NumberFormat", Any(NumberFormats(sheet.workbook).BooleanKey()));
}

// A number in a cell that showed a Boolean would be one.
void clearBooleans(Sheet const & sheet, Area const & area)
{
  auto const block = sheet.cells->getCellRangeByPosition(area.firstColumn, area.firstRow, area.lastColumn, area.lastRow);
  for (FormattedCells const & cells : NumberFormats(sheet.workbook).CellsByFormat(block)) {
    if (cells.meaning == FormatMeaning::Boolean)
      Reference<css::beans::XPropertySet>(cells.ranges, UNO_QUERY_THROW)->setPropertyValue("NumberFormat", Any(sal_Int32{0}));
  }
}

}  // namespace

void ReadBlock(Sheet const & sheet, Area const & area, servers::MadeBlock & values)
{
  int32_t const rowsAtOnce = std::max(1, cellsAtOnce / area.Columns());
  for (int32_t first = area.firstRow; first <= area.lastRow; first += rowsAtOnce) {
    Area const part{area.firstColumn, first, area.lastColumn, std::min(area.lastRow, first + rowsAtOnce - 1)};
    CellBlock const cells(sheet, part);
    for (int32_t row = part.firstRow; row <= part.lastRow; ++row)
      for (int32_t column = part.firstColumn; column <= part.lastColumn; ++column)
        values.At(static_cast<size_t>(row - area.firstRow), static_cast<size_t>(column - area.firstColumn)) =
            cells.GetValue(column, row);
  }
}

// Texts stay texts, whatever they look like.
void WriteBlock(Sheet const & sheet, Area const & area, servers::GivenValues const & values)
{
  auto const valueAt = [&values](int32_t row, int32_t column) -> VARIANT const & {
    return values.At(static_cast<size_t>(row), static_cast<size_t>(column));
  };
  Sequence<Sequence<Any>> data(area.Rows());
  for (int32_t row = 0; row < area.Rows(); ++row) {
    Sequence<Any> cells(area.Columns());
    for (int32_t column = 0; column < area.Columns(); ++column) cells.getArray()[column] = dataOf(valueAt(row, column));
    data.getArray()[row] = cells;
  }
  clearBooleans(sheet, area);
  Reference<css::sheet::XCellRangeData>(
      sheet.cells->getCellRangeByPosition(area.firstColumn, area.firstRow, area.lastColumn, area.lastRow), UNO_QUERY_THROW)
      ->setDataArray(data);
  for (int32_t row = 0; row < area.Rows(); ++row) {
    for (int32_t column = 0; column < area.Columns(); ++column) {
      VARIANT const & value = valueAt(row, column);
      if (value.vt != VT_BOOL && value.vt != VT_ERROR) continue;
      auto const cell = sheet.cells->getCellByPosition(area.firstColumn + column, area.firstRow + row);
      if (value.vt == VT_BOOL)
        setBoolean(sheet, cell, value.boolVal != VARIANT_FALSE);
      else
        cell->setFormula(ErrorFormula(value.scode));
    }
  }
}

}  // namespace office
