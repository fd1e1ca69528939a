// Fetching a block: its data, and by a few more questions what the data alone don't tell.
#include "cell_block.h"

#include <algorithm>

#include <com/sun/star/lang/IndexOutOfBoundsException.hpp>
#include <com/sun/star/sheet/CellFlags.hpp>
#include <com/sun/star/sheet/XCellRangeData.hpp>
#include <com/sun/star/sheet/XCellRangesQuery.hpp>
#include <com/sun/star/sheet/XSheetCellRanges.hpp>
#include <com/sun/star/table/XCell.hpp>
#include <com/sun/star/text/XTextRange.hpp>

#include "errors.h"
#include "office_text.h"
#include "servers/common/values.h"

namespace office {

using css::table::CellRangeAddress;
using css::uno::Any;
using css::uno::Sequence;
using css::uno::TypeClass_DOUBLE;
using css::uno::TypeClass_STRING;
using css::uno::UNO_QUERY_THROW;

CellBlock::CellBlock(Sheet const & sheet, Area const & area) : m_Sheet(sheet), m_Area(area)
{
  Reference<css::sheet::XCellRangeData> const range(
      sheet.cells->getCellRangeByPosition(area.firstColumn, area.firstRow, area.lastColumn, area.lastRow), UNO_QUERY_THROW);
  m_Data = range->getDataArray();
  bool isWhole = m_Data.getLength() == area.Rows();
  for (Sequence<Any> const & row : m_Data) isWhole = isWhole && row.getLength() == area.Columns();
  if (!isWhole) throw css::lang::IndexOutOfBoundsException();
  FindKinds();
  auto const has = [this](Kind kind) { return std::find(m_Kinds.begin(), m_Kinds.end(), kind) != m_Kinds.end(); };
  if (has(Kind::Empty)) TellEmptyTexts(range);
  if (has(Kind::Boolean)) TellBooleans(range);
}

// At first every blank text is an empty cell, and every 0 and 1 a Boolean.
void CellBlock::FindKinds()
{
  m_Kinds.reserve(static_cast<size_t>(m_Area.Columns()) * static_cast<size_t>(m_Area.Rows()));
  for (Sequence<Any> const & row : m_Data) {
    for (Any const & cell : row) {
      Kind kind = Kind::Error;
      if (cell.getValueTypeClass() == TypeClass_DOUBLE) {
        double const number = *static_cast<double const *>(cell.getValue());
        kind = number == 0 || number == 1 ? Kind::Boolean : Kind::Number;
      } else if (cell.getValueTypeClass() == TypeClass_STRING) {
        kind = static_cast<rtl::OUString const *>(cell.getValue())->isEmpty() ? Kind::Empty : Kind::Text;
      }
      m_Kinds.push_back(kind);
    }
  }
}

void CellBlock::Mark(Sequence<CellRangeAddress> const & areas, Kind from, Kind to)
{
  for (CellRangeAddress const & area : areas) {
    for (sal_Int32 row = area.StartRow; row <= area.EndRow; ++row) {
      for (sal_Int32 column = area.StartColumn; column <= area.EndColumn; ++column) {
        if (!m_Area.Holds(column, row)) continue;
        Kind & kind = m_Kinds[IndexOf(column, row)];
        if (kind == from) kind = to;
      }
    }
  }
}

void CellBlock::TellEmptyTexts(Reference<css::uno::XInterface> const & range)
{
  Reference<css::sheet::XCellRangesQuery> const query(range, UNO_QUERY_THROW);
  constexpr sal_Int16 texts = css::sheet::CellFlags::STRING | css::sheet::CellFlags::FORMULA;
  Mark(query->queryContentCells(texts)->getRangeAddresses(), Kind::Empty, Kind::Text);
}

// A 0 or 1 is a Boolean if its format says so, or if a formula without a format of its own gives one, which is told by how it is
// shown: that is looked at when the value is asked for.
void CellBlock::TellBooleans(Reference<css::uno::XInterface> const & range)
{
  Reference<css::sheet::XCellRangesQuery> const query(range, UNO_QUERY_THROW);
  Mark(query->queryContentCells(css::sheet::CellFlags::FORMULA)->getRangeAddresses(), Kind::Boolean, Kind::FormulaNumber);
  for (FormattedCells const & cells : NumberFormats(m_Sheet.workbook).CellsByFormat(range))
    MarkByFormat(cells.meaning, cells.ranges->getRangeAddresses());
}

void CellBlock::MarkByFormat(FormatMeaning meaning, Sequence<CellRangeAddress> const & areas)
{
  if (meaning == FormatMeaning::Boolean) Mark(areas, Kind::FormulaNumber, Kind::Boolean);
  if (meaning == FormatMeaning::Number) Mark(areas, Kind::FormulaNumber, Kind::Number);
  if (meaning != FormatMeaning::Boolean) Mark(areas, Kind::Boolean, Kind::Number);
}

VARIANT CellBlock::GetValue(int32_t column, int32_t row) const
{
  Any const & data = m_Data[row - m_Area.firstRow][column - m_Area.firstColumn];
  switch (m_Kinds[IndexOf(column, row)]) {
    case Kind::Number:
      return servers::NumberValue(*static_cast<double const *>(data.getValue()));
    case Kind::Text:
      return servers::TextValue(ViewOf(*static_cast<rtl::OUString const *>(data.getValue())));
    case Kind::Boolean:
      return servers::BooleanValue(*static_cast<double const *>(data.getValue()) != 0);
    case Kind::FormulaNumber:
      return GetFormulaNumber(column, row, *static_cast<double const *>(data.getValue()));
    case Kind::Error:
      return ErrorValueOf(m_Sheet.cells->getCellByPosition(column, row)->getError());
    case Kind::Empty:
      break;
  }
  return servers::EmptyValue();
}

// A Boolean is shown as a word, in whatever language; a number as a digit.
VARIANT CellBlock::GetFormulaNumber(int32_t column, int32_t row, double number) const
{
  rtl::OUString const shown =
      Reference<css::text::XTextRange>(m_Sheet.cells->getCellByPosition(column, row), UNO_QUERY_THROW)->getString();
  bool const isDigit = shown == "0" || shown == "1";
  return isDigit || shown.isEmpty() ? servers::NumberValue(number) : servers::BooleanValue(number != 0);
}

}  // namespace office
