// Values one by one, and in blocks straight from the store.

#include "servers/embedded/sheet_values.h"

#include <cmath>

#include <zpbase/spreadsheet.h>

#include "servers/common/failure.h"
#include "servers/common/values.h"
#include "servers/common/wide_text.h"
#include "servers/embedded/limits.h"

namespace embedded {
namespace {

using servers::Block;

constexpr double daysTo1904 = 1462.0;

VARIANT valueOf(Cell const & cell)
{
  switch (cell.GetKind()) {
    case CellKind::Number:
      return servers::NumberValue(cell.GetNumber());
    case CellKind::Text:
      return servers::TextValue(cell.GetText());
    case CellKind::Boolean:
      return servers::BooleanValue(cell.GetBoolean());
    case CellKind::Error:
      return servers::ErrorValue(cell.GetError());
  }
  return servers::EmptyValue();
}

Cell errorOf(HRESULT code)
{
  auto const number = static_cast<uint16_t>(code & 0xFFFF);
  bool const isKnown = zp::cellErrorBase + number == code && zp::CellErrorText(number) != nullptr;
  return Cell::OfError(isKnown ? number : static_cast<uint16_t>(servers::notAvailableError));
}

void requireText(std::u16string_view text)
{
  if (text.size() > mostTextUnits)
    servers::Refuse("A cell holds no text of more than " + std::to_string(mostTextUnits) + " characters");
}

Cell textOf(std::u16string_view text)
{
  return Cell::OfText(SharedText(servers::FromWide(text)));
}

Cell numberOf(double number)
{
  return std::isfinite(number) ? Cell::OfNumber(number) : Cell::OfError(numberError);
}

// Nothing for an empty cell.
std::optional<Cell> cellOf(VARIANT const & value, bool from1904)
{
  switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
      return std::nullopt;
    case VT_BSTR:
      return textOf(zp::ViewOf(value.bstrVal));
    case VT_BOOL:
      return Cell::OfBoolean(value.boolVal != VARIANT_FALSE);
    case VT_ERROR:
      return errorOf(value.scode);
    case VT_DATE:
      return numberOf(value.date - (from1904 ? daysTo1904 : 0.0));
    case VT_R8:
      return numberOf(value.dblVal);
    default:
      return numberOf(servers::ChangedValue(value, VT_R8).dblVal);
  }
}

// All of them can be held by cells.
void requireValues(Block const & block, servers::GivenValues const & values)
{
  for (size_t row = 0; row < block.GetRows(); ++row) {
    for (size_t column = 0; column < block.GetColumns(); ++column) {
      VARIANT const & value = values.At(row, column);
      if (value.vt == VT_BSTR)
        requireText(zp::ViewOf(value.bstrVal));
      else if (value.vt != VT_R8 && value.vt != VT_EMPTY)
        cellOf(value, false);
    }
  }
}

}  // namespace

VARIANT ReadCell(CellStore const & cells, servers::Place const & place)
{
  Cell const * const cell = cells.Find(place.row, place.column);
  return cell != nullptr ? valueOf(*cell) : servers::EmptyValue();
}

void ReadBlock(CellStore const & cells, Block const & block, servers::MadeBlock & values)
{
  cells.ForEachFrom(block.firstRow, [&](Cell const & cell) {
    if (cell.GetRow() > block.lastRow) return false;
    if (cell.GetColumn() >= block.firstColumn && cell.GetColumn() <= block.lastColumn)
      values.At(cell.GetRow() - block.firstRow, cell.GetColumn() - block.firstColumn) = valueOf(cell);
    return true;
  });
}

void WriteBlock(Workbook const & book, CellStore & cells, Block const & block, servers::GivenValues const & values)
{
  requireValues(block, values);
  for (uint32_t row = block.firstRow; row <= block.lastRow; ++row) {
    for (uint32_t column = block.firstColumn; column <= block.lastColumn; ++column) {
      std::optional<Cell> cell = cellOf(values.At(row - block.firstRow, column - block.firstColumn), book.from1904);
      if (!cell) {
        cells.Clear(row, column);
        continue;
      }
      cell->SetPlace(row, column);
      cells.Put(std::move(*cell));
    }
  }
}

}  // namespace embedded
