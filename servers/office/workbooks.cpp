// The application, its workbooks, and one of them.
#include <com/sun/star/frame/XFrame.hpp>
#include <com/sun/star/frame/XModel.hpp>

#include "failure.h"
#include "objects.h"
#include "values.h"
#include "workbook_files.h"

namespace office {

using css::uno::UNO_QUERY_THROW;

std::span<Member<Application> const> Application::Members()
{
  static constexpr Member<Application> members[] = {
      {0x23C, u"Workbooks", DISPATCH_PROPERTYGET, &Application::Workbooks},
  };
  return members;
}

std::span<Member<WorkbookList> const> WorkbookList::Members()
{
  static constexpr Member<WorkbookList> members[] = {
      {0x76, u"Count", DISPATCH_PROPERTYGET, &WorkbookList::Count},
      {0xB5, u"Add", DISPATCH_METHOD, &WorkbookList::Add},
      {0x2AA, u"Open", DISPATCH_METHOD, &WorkbookList::Open},
  };
  return members;
}

std::span<Member<WorkbookObject> const> WorkbookObject::Members()
{
  static constexpr Member<WorkbookObject> members[] = {
      {0x79, u"Charts", DISPATCH_PROPERTYGET, &WorkbookObject::Charts},
      {0x1EE, u"Worksheets", DISPATCH_PROPERTYGET, &WorkbookObject::Worksheets},
      {0x121, u"FullName", DISPATCH_PROPERTYGET, &WorkbookObject::FullName},
      {0x115, u"Close", DISPATCH_METHOD, &WorkbookObject::Close},
      {0x11B, u"Save", DISPATCH_METHOD, &WorkbookObject::Save},
      {0x11C, u"SaveAs", DISPATCH_METHOD, &WorkbookObject::SaveAs},
      {0x130, u"Activate", DISPATCH_METHOD, &WorkbookObject::Activate},
  };
  return members;
}

Reference<css::container::XIndexAccess> SheetsOf(Workbook const & workbook)
{
  return Reference<css::container::XIndexAccess>(workbook->getSheets(), UNO_QUERY_THROW);
}

LONG CheckIndex(LONG index, size_t count)
{
  if (index < 1 || static_cast<size_t>(index) > count) Fail(DISP_E_BADINDEX);
  return index - 1;
}

void Application::Workbooks(Call & call)
{
  if (!call.Has(0)) return call.Return(new WorkbookList(ShareLink()));
  auto const workbooks = GetLink().ListWorkbooks();
  size_t const index = static_cast<size_t>(CheckIndex(call.GetNumber(0), workbooks.size()));
  call.Return(new WorkbookObject(ShareLink(), workbooks[index]));
}

void WorkbookList::Count(Call & call)
{
  call.Return(static_cast<LONG>(GetLink().ListWorkbooks().size()));
}

void WorkbookList::Add(Call & call)
{
  call.Return(new WorkbookObject(ShareLink(), CreateWorkbook(GetLink())));
}

void WorkbookList::Open(Call & call)
{
  call.Return(new WorkbookObject(ShareLink(), OpenWorkbook(GetLink(), call.GetText(0))));
}

void WorkbookObject::Charts(Call & call)
{
  if (!call.Has(0)) return call.Return(new ChartList(ShareLink(), m_Workbook));
  auto const charts = GetLink().GetCharts().List(m_Workbook);
  size_t const index = static_cast<size_t>(CheckIndex(call.GetNumber(0), charts.size()));
  call.Return(new ChartObject(ShareLink(), m_Workbook, charts[index]));
}

void WorkbookObject::Worksheets(Call & call)
{
  if (!call.Has(0)) return call.Return(new WorksheetList(ShareLink(), m_Workbook));
  auto const sheets = SheetsOf(m_Workbook);
  LONG const index = CheckIndex(call.GetNumber(0), static_cast<size_t>(sheets->getCount()));
  Reference<css::sheet::XSpreadsheet> const sheet(sheets->getByIndex(index), UNO_QUERY_THROW);
  call.Return(new WorksheetObject(ShareLink(), Sheet{sheet, m_Workbook}));
}

// Brings the workbook's window to the front; there is none in an office without a screen.
void WorkbookObject::Activate(Call &)
{
  Reference<css::frame::XController> const controller =
      Reference<css::frame::XModel>(m_Workbook, UNO_QUERY_THROW)->getCurrentController();
  if (controller.is() && controller->getFrame().is()) controller->getFrame()->activate();
}

void WorkbookObject::Close(Call & call)
{
  if (call.Has(0) && call.GetFlag(0)) SaveWorkbook(GetLink(), m_Workbook);
  CloseWorkbook(GetLink(), m_Workbook);
}

void WorkbookObject::FullName(Call & call)
{
  call.Return(TextValue(NameOfWorkbook(m_Workbook)));
}

void WorkbookObject::Save(Call &)
{
  SaveWorkbook(GetLink(), m_Workbook);
}

void WorkbookObject::SaveAs(Call & call)
{
  SaveWorkbookAs(GetLink(), m_Workbook, call.GetText(0));
}

}  // namespace office
