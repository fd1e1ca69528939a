// Reading and writing cells, one by one and in blocks.
#include <algorithm>
#include <array>
#include <memory>
#include <new>

#include <com/sun/star/beans/XPropertySet.hpp>
#include <com/sun/star/sheet/CellFlags.hpp>
#include <com/sun/star/sheet/XCellRangeData.hpp>
#include <com/sun/star/sheet/XSheetOperation.hpp>
#include <com/sun/star/text/XTextRange.hpp>

#include "failure.h"
#include "objects.h"
#include "office_text.h"
#include "values.h"

namespace office {
namespace {

using css::uno::Any;
using css::uno::Sequence;
using css::uno::UNO_QUERY_THROW;

constexpr int64_t mostCells = 20'000'000;   // of one block of values
constexpr int32_t cellsAtOnce = 64 * 1024;  // of one fetch

struct BlockDestroyer {
  void operator()(SAFEARRAY * block) const { SafeArrayDestroy(block); }
};
using OwnedBlock = std::unique_ptr<SAFEARRAY, BlockDestroyer>;

void * elementAt(SAFEARRAY const * block, LONG row, LONG column)
{
  std::array<LONG, 2> const place = {row, column};
  void * element = nullptr;
  HRESULT const code = SafeArrayPtrOfIndex(block, place.data(), &element);
  if (FAILED(code)) Fail(code);
  return element;
}

// The values of a block by rows and columns, both from 1, fetched some rows at a time.
VARIANT readBlock(Sheet const & sheet, Area const & area)
{
  if (int64_t{area.Rows()} * area.Columns() > mostCells) Refuse("The block has more cells than can be read at once");
  std::array const bounds = {SAFEARRAYBOUND{static_cast<DWORD>(area.Rows()), 1},
                             SAFEARRAYBOUND{static_cast<DWORD>(area.Columns()), 1}};
  OwnedBlock block(SafeArrayCreate(VT_VARIANT, 2, bounds.data()));
  if (block == nullptr) throw std::bad_alloc();
  int32_t const rowsAtOnce = std::max(1, cellsAtOnce / area.Columns());
  for (int32_t first = area.firstRow; first <= area.lastRow; first += rowsAtOnce) {
    Area const part{area.firstColumn, first, area.lastColumn, std::min(area.lastRow, first + rowsAtOnce - 1)};
    CellBlock const cells(sheet, part);
    for (int32_t row = part.firstRow; row <= part.lastRow; ++row)
      for (int32_t column = part.firstColumn; column <= part.lastColumn; ++column)
        *static_cast<VARIANT *>(elementAt(block.get(), row - area.firstRow + 1, column - area.firstColumn + 1)) =
            cells.GetValue(column, row);
  }
  VARIANT value = EmptyValue();
  value.vt = VT_ARRAY | VT_VARIANT;
  value.parray = block.release();
  return value;
}

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
      return Any(ChangedValue(value, VT_R8).dblVal);
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

// Texts stay texts, whatever they look like.
template <class ValueAt>
void writeBlock(Sheet const & sheet, Area const & area, ValueAt const & valueAt)
{
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

// The values of a block that a caller gives; locked while it is read.
class GivenBlock {
 public:
  explicit GivenBlock(SAFEARRAY * block) : m_pBlock(block)
  {
    if (block == nullptr || SafeArrayGetDim(block) != 2) Fail(DISP_E_TYPEMISMATCH);
    void * data = nullptr;
    HRESULT const code = SafeArrayAccessData(block, &data);
    if (FAILED(code)) Fail(code);
    SafeArrayGetLBound(block, 1, &m_nFirstRow);
    SafeArrayGetLBound(block, 2, &m_nFirstColumn);
    SafeArrayGetUBound(block, 1, &m_nLastRow);
    SafeArrayGetUBound(block, 2, &m_nLastColumn);
  }
  ~GivenBlock() { SafeArrayUnaccessData(m_pBlock); }
  GivenBlock(GivenBlock const &) = delete;
  GivenBlock & operator=(GivenBlock const &) = delete;

  // Cells beyond the block get #N/A.
  VARIANT const & ValueAt(int32_t row, int32_t column) const
  {
    static VARIANT const missing = ErrorValue(notAvailableError);
    if (row > m_nLastRow - m_nFirstRow || column > m_nLastColumn - m_nFirstColumn) return missing;
    return *static_cast<VARIANT const *>(elementAt(m_pBlock, m_nFirstRow + row, m_nFirstColumn + column));
  }

 private:
  static constexpr int notAvailableError = 32767;  // as the office numbers it

  SAFEARRAY * m_pBlock;
  LONG m_nFirstRow = 0;
  LONG m_nFirstColumn = 0;
  LONG m_nLastRow = -1;
  LONG m_nLastColumn = -1;
};

}  // namespace

std::span<Member<RangeObject> const> RangeObject::Members()
{
  static constexpr Member<RangeObject> members[] = {
      {0x6, u"Value", DISPATCH_PROPERTYGET, &RangeObject::GetValue, true},
      {0x6, u"Value", DISPATCH_PROPERTYPUT, &RangeObject::SetValue},
      {0x76, u"Count", DISPATCH_PROPERTYGET, &RangeObject::Count},
      {0x101, u"Row", DISPATCH_PROPERTYGET, &RangeObject::Row},
      {0xF0, u"Column", DISPATCH_PROPERTYGET, &RangeObject::Column},
      {0x102, u"Rows", DISPATCH_PROPERTYGET, &RangeObject::Rows},
      {0xF1, u"Columns", DISPATCH_PROPERTYGET, &RangeObject::Columns},
  };
  return members;
}

void RangeObject::GetValue(Call & call)
{
  if (m_Area.IsCell()) return call.Return(GetLink().GetReadAhead().Read(*m_pSheet, m_Area.firstColumn, m_Area.firstRow));
  GetLink().GetReadAhead().Drop();
  call.Return(readBlock(*m_pSheet, m_Area));
}

void RangeObject::SetValue(Call & call)
{
  VARIANT const & value = call.Get(0);
  if (int64_t{m_Area.Rows()} * m_Area.Columns() > mostCells) Refuse("The block has more cells than can be written at once");
  if (value.vt != (VT_ARRAY | VT_VARIANT))
    return writeBlock(*m_pSheet, m_Area, [&value](int32_t, int32_t) -> VARIANT const & { return value; });
  GivenBlock const block(value.parray);
  writeBlock(*m_pSheet, m_Area, [&block](int32_t row, int32_t column) -> VARIANT const & { return block.ValueAt(row, column); });
}

void RangeObject::Count(Call & call)
{
  int64_t const rows = m_Unit == Unit::Columns ? 1 : m_Area.Rows();
  int64_t const columns = m_Unit == Unit::Rows ? 1 : m_Area.Columns();
  if (rows * columns > INT32_MAX) Fail(DISP_E_OVERFLOW);
  call.Return(static_cast<LONG>(rows * columns));
}

}  // namespace office
