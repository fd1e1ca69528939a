// GPExcelWorkSheet and GPExcelChart: the scan of a worksheet's cells, and the focus of both.

#include <zpbase/spreadsheet.h>

#include <memory>

#include <zpbase/messages.h>

#include "spreadsheet/session_internal.h"

namespace {

// The block that a scan reads: "A1" to "CV50".
constexpr int scannedRows = 50;
constexpr int scannedColumns = 100;

constexpr int growthStep = 50;

using RangeCallback = void (*)(GPExcelWorkSheet &, GPRange &);

// One cell of the scan; 0 if the server has no range for it.
int scanCell(GPExcelWorkSheet & sheet, RangeCallback callback, GPCell & cell)
{
  GPRange range;
  range.AttachDispatch(sheet.m_Link.GetCell(COleVariant(cell.GetName())));
  if (range.HasOLELink() == 0) return 0;
  COleVariant value;
  VARIANT answer = range.GetValue();
  value.Attach(answer);
  if (value.vt != VT_EMPTY) {
    auto filled = std::make_unique<GPCell>(cell);
    filled->SetValue(value);
    int const place = sheet.m_List1.Add(nullptr);
    sheet.m_List1.SetAt(place, filled.release());
  }
  if (callback != nullptr) callback(sheet, range);
  return 1;
}

}  // namespace

GPExcelWorkSheet::GPExcelWorkSheet(CString const & name) : m_strName(name)
{
  m_List1.SetSize(0, growthStep);
  m_List2.SetSize(0, growthStep);
}

int GPExcelWorkSheet::SetFocus()
{
  return zp::Guarded([this] { m_Link.Select(); });
}

int GPExcelWorkSheet::EnumRanges(void (*callback)(GPExcelWorkSheet &, GPRange &), CString const & bookName)
{
  int count = 0;
  m_List1.Empty();
  for (int row = 1; row <= scannedRows; ++row) {
    for (int column = 0; column < scannedColumns; ++column) {
      GPCell cell(column, row);
      if (scanCell(*this, callback, cell) == 0) {
        PrintfMsgBox(zp::cellWithoutRangeId, cell.GetName(), m_strName, bookName);
        break;
      }
      ++count;
    }
  }
  return count;
}

void GPExcelWorkSheet::ProcessRanges(GPExcelWorkSheet &, GPRange &) {}

int GPExcelWorkSheet::BuildWorkSheet(void (*callback)(GPExcelWorkSheet &, GPRange &), CString const & bookName)
{
  EnumRanges(callback, bookName);
  return 1;
}

int GPExcelChart::SetFocus()
{
  int const done = zp::Guarded([this] { m_Link.Select(); });
  if (done == 0) PrintfMsgBox(zp::chartNotSelectedId, m_strName);
  return done;
}
