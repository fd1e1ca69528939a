// GPExcelWorkBook: a workbook's worksheets and charts, and the walk over the worksheets.

#include <zpbase/spreadsheet.h>

#include <memory>

#include <zpbase/messages.h>

#include "spreadsheet/session_internal.h"

using zp::Guarded;

int GPExcelWorkBook::SetFocus()
{
  return Guarded([this] { Activate(); });
}

int GPExcelWorkBook::InitWorkSheets(GPWorkSheets & sheets)
{
  Guarded([&] { sheets.AttachDispatch(GetWorkSheets()); });
  return sheets.HasOLELink();
}

int GPExcelWorkBook::InitCharts(GPCharts & charts)
{
  Guarded([&] { charts.AttachDispatch(GetCharts()); });
  return charts.HasOLELink();
}

int GPExcelWorkBook::FindWorkSheet(GPExcelWorkSheet & sheet)
{
  GPWorkSheets sheets;
  if (InitWorkSheets(sheets) != 0) {
    zp::FindByName(
        sheet.m_Link, sheets.GetCount(), sheet.m_strName, [this](COleVariant const & index) { return GetWorkSheet(index); },
        [&sheet] { return sheet.m_Link.GetName(); });
  }
  return sheet.m_Link.HasOLELink();
}

int GPExcelWorkBook::CreateWorkSheet(GPExcelWorkSheet & sheet)
{
  GPWorkSheets sheets;
  if (InitWorkSheets(sheets) != 0) {
    Guarded([&] {
      sheet.m_Link.AttachDispatch(sheets.Add());
      sheet.m_Link.SetName(sheet.m_strName);
    });
  }
  if (sheet.m_Link.HasOLELink() == 0) PrintfMsgBox(zp::workSheetNotCreatedId, sheet.m_strName, m_strName);
  return sheet.m_Link.HasOLELink();
}

int GPExcelWorkBook::FindChart(GPExcelChart & chart)
{
  GPCharts charts;
  if (InitCharts(charts) != 0) {
    zp::FindByName(
        chart.m_Link, charts.GetCount(), chart.m_strName, [this](COleVariant const & index) { return GetChart(index); },
        [&chart] { return chart.m_Link.GetName(); });
  }
  return chart.m_Link.HasOLELink();
}

int GPExcelWorkBook::CreateChart(GPExcelChart & chart)
{
  GPCharts charts;
  if (InitCharts(charts) != 0) {
    Guarded([&] {
      chart.m_Link.AttachDispatch(charts.Add());
      chart.m_Link.SetName(chart.m_strName);
    });
  }
  if (chart.m_Link.HasOLELink() == 0) PrintfMsgBox(zp::chartNotCreatedId, chart.m_strName, m_strName);
  return chart.m_Link.HasOLELink();
}

int GPExcelWorkBook::EnumWorkSheets(void (*callback)(GPExcelWorkBook &, IDispatch *))
{
  GPWorkSheets sheets;
  if (callback == nullptr || InitWorkSheets(sheets) == 0) return 0;
  int const count = zp::ReachOf(sheets.GetCount());
  for (int i = 1; i <= count; ++i) callback(*this, GetWorkSheet(zp::IndexOf(i)));
  return count;
}

void GPExcelWorkBook::ProcessWorkSheet(GPExcelWorkBook & book, IDispatch * sheet)
{
  COleDispatchDriver held(sheet);
  auto owned = std::make_unique<GPExcelWorkSheet>();
  book.m_WorkSheets.Add(owned.get());
  GPExcelWorkSheet & made = *owned.release();
  zp::ScopedLink const linked(made.m_Link);
  made.m_Link.AttachDispatch(held.DetachDispatch());
  made.m_strName = made.m_Link.GetName();
  made.BuildWorkSheet(&GPExcelWorkSheet::ProcessRanges, book.m_strName);
}

int GPExcelWorkBook::BuildWorkBook(void (*callback)(GPExcelWorkBook &, IDispatch *))
{
  GPExcel server;
  if (server.InitOLELink() == 0) return 0;
  if (server.FindWorkBook(*this) == 0 && server.LoadWorkBook(*this) == 0) return 0;
  return EnumWorkSheets(callback) >= 1;
}
