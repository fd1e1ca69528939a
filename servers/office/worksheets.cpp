// A workbook's worksheets and charts.
#include <com/sun/star/container/XNamed.hpp>
#include <com/sun/star/frame/XModel.hpp>
#include <com/sun/star/lang/DisposedException.hpp>
#include <com/sun/star/sheet/XCellRangeAddressable.hpp>
#include <com/sun/star/sheet/XSheetCellCursor.hpp>
#include <com/sun/star/sheet/XSpreadsheetView.hpp>
#include <com/sun/star/sheet/XUsedAreaCursor.hpp>

#include "failure.h"
#include "objects.h"
#include "office_text.h"
#include "values.h"

namespace office {

using css::uno::UNO_QUERY;
using css::uno::UNO_QUERY_THROW;

std::span<Member<WorksheetList> const> WorksheetList::Members()
{
  static constexpr Member<WorksheetList> members[] = {
      {0x76, u"Count", DISPATCH_PROPERTYGET, &WorksheetList::Count},
      {0xB5, u"Add", DISPATCH_METHOD, &WorksheetList::Add},
  };
  return members;
}

std::span<Member<WorksheetObject> const> WorksheetObject::Members()
{
  static constexpr Member<WorksheetObject> members[] = {
      {0xC5, u"Range", DISPATCH_PROPERTYGET, &WorksheetObject::Range, true},
      {0x6E, u"Name", DISPATCH_PROPERTYGET, &WorksheetObject::GetName},
      {0x6E, u"Name", DISPATCH_PROPERTYPUT, &WorksheetObject::SetName},
      {0x19C, u"UsedRange", DISPATCH_PROPERTYGET, &WorksheetObject::UsedRange},
      {0xEB, u"Select", DISPATCH_METHOD, &WorksheetObject::Select},
  };
  return members;
}

std::span<Member<ChartList> const> ChartList::Members()
{
  static constexpr Member<ChartList> members[] = {
      {0x76, u"Count", DISPATCH_PROPERTYGET, &ChartList::Count},
      {0xB5, u"Add", DISPATCH_METHOD, &ChartList::Add},
  };
  return members;
}

std::span<Member<ChartObject> const> ChartObject::Members()
{
  static constexpr Member<ChartObject> members[] = {
      {0x6E, u"Name", DISPATCH_PROPERTYGET, &ChartObject::GetName},
      {0x6E, u"Name", DISPATCH_PROPERTYPUT, &ChartObject::SetName},
      {0xEB, u"Select", DISPATCH_METHOD, &ChartObject::Select},
  };
  return members;
}

void WorksheetList::Count(Call & call)
{
  call.Return(static_cast<LONG>(SheetsOf(m_Workbook)->getCount()));
}

// A new worksheet in front of the others, with the first free name of "Sheet1", "Sheet2", ...
void WorksheetList::Add(Call & call)
{
  auto const sheets = m_Workbook->getSheets();
  sal_Int32 number = 1;
  auto const nameOf = [&number] { return rtl::OUString("Sheet") + rtl::OUString::number(number); };
  while (sheets->hasByName(nameOf())) ++number;
  sheets->insertNewByName(nameOf(), 0);
  Reference<css::sheet::XSpreadsheet> const sheet(sheets->getByName(nameOf()), UNO_QUERY_THROW);
  call.Return(new WorksheetObject(ShareLink(), Sheet{sheet, m_Workbook}));
}

void WorksheetObject::GetName(Call & call)
{
  call.Return(TextValue(Reference<css::container::XNamed>(m_pSheet->cells, UNO_QUERY_THROW)->getName()));
}

// The office leaves a name that it refuses as it was, without a word.
void WorksheetObject::SetName(Call & call)
{
  rtl::OUString const name = call.GetText(0);
  Reference<css::container::XNamed> const named(m_pSheet->cells, UNO_QUERY_THROW);
  named->setName(name);
  if (named->getName() != name) Fail(E_INVALIDARG);
}

void WorksheetObject::Range(Call & call)
{
  VARIANT const & name = call.Get(0);
  std::optional<Area> area = name.vt == VT_BSTR ? ParseArea(zp::ViewOf(name.bstrVal)) : std::nullopt;
  if (!area) {
    Reference<css::sheet::XCellRangeAddressable> range;
    try {
      range.set(m_pSheet->cells->getCellRangeByName(call.GetText(0)), UNO_QUERY_THROW);
    } catch (css::lang::DisposedException const &) {
      throw;
    } catch (css::uno::RuntimeException const &) {
      Refuse("There are no cells of the name \"" + ToUtf8(call.GetText(0)) + "\"");
    }
    css::table::CellRangeAddress const place = range->getRangeAddress();
    area = Area{place.StartColumn, place.StartRow, place.EndColumn, place.EndRow};
  }
  call.Return(new RangeObject(ShareLink(), m_pSheet, *area));
}

void WorksheetObject::UsedRange(Call & call)
{
  auto const cursor = m_pSheet->cells->createCursor();
  Reference<css::sheet::XUsedAreaCursor> const used(cursor, UNO_QUERY_THROW);
  used->gotoStartOfUsedArea(false);
  used->gotoEndOfUsedArea(true);
  css::table::CellRangeAddress const place =
      Reference<css::sheet::XCellRangeAddressable>(cursor, UNO_QUERY_THROW)->getRangeAddress();
  call.Return(new RangeObject(ShareLink(), m_pSheet, Area{place.StartColumn, place.StartRow, place.EndColumn, place.EndRow}));
}

// Shows the worksheet in the workbook's window, if it has one.
void WorksheetObject::Select(Call &)
{
  Reference<css::sheet::XSpreadsheetView> const view(
      Reference<css::frame::XModel>(m_pSheet->workbook, UNO_QUERY_THROW)->getCurrentController(), UNO_QUERY);
  if (view.is()) view->setActiveSheet(m_pSheet->cells);
}

void ChartList::Count(Call & call)
{
  call.Return(static_cast<LONG>(GetLink().GetCharts().List(m_Workbook).size()));
}

void ChartList::Add(Call & call)
{
  call.Return(new ChartObject(ShareLink(), m_Workbook, GetLink().GetCharts().Add(m_Workbook)));
}

void ChartObject::GetName(Call & call)
{
  call.Return(TextValue(m_pChart->name));
}

void ChartObject::SetName(Call & call)
{
  GetLink().GetCharts().Rename(m_Workbook, *m_pChart, call.GetText(0));
}

// There is no sheet of the chart's own to be shown; a chart of a workbook that was closed is told.
void ChartObject::Select(Call &)
{
  SheetsOf(m_Workbook)->getCount();
}

}  // namespace office
