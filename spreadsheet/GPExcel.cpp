// GPExcel: the link to the spreadsheet program, and its workbooks.

#include <zpbase/spreadsheet.h>

#include <zpbase/config.h>
#include <zpbase/messages.h>
#include <zpbase/platform/encoding.h>
#include <zpbase/platform/windows.h>

#include "spreadsheet/session_internal.h"

using zp::Guarded;

namespace {

// The running server, if there is one; 0 if there is none.
int attachRunning(GPExcel & excel, CLSID const & id, CString const & displayName)
{
  IUnknown * running = nullptr;
  if (FAILED(GetActiveObject(id, nullptr, &running)) || running == nullptr) return 0;
  void * object = nullptr;
  HRESULT const code = running->QueryInterface(IID_IDispatch, &object);
  running->Release();
  if (FAILED(code) || object == nullptr) {
    PrintfMsgBox(zp::noInterfaceId, displayName);
  } else {
    excel.AttachDispatch(static_cast<IDispatch *>(object));
  }
  return 1;
}

}  // namespace

GPExcel * GPExcel::excel = nullptr;

GPExcel * GPExcel::GetExcel()
{
  if (excel == nullptr) excel = new GPExcel;
  return excel;
}

int GPExcel::InitOLELink()
{
  CWaitCursor const waiting;
  zp::Unlink(*this);
  CString displayName;
  displayName.LoadString(zp::spreadsheetNameId);
  CString progId;
  if (GetSysString(progId, GetExcelSectionKey(), GetExcelRegFileTypeIDKey(), "") == 0) progId = GetExcelAppString();
  CLSID id;
  if (FAILED(CLSIDFromProgID(zp::TextToWide(progId.View()).c_str(), &id))) {
    PrintfMsgBox(zp::notRegisteredId, displayName);
    return 0;
  }
  if (attachRunning(*this, id, displayName) != 0) return HasOLELink();
  COleException problem;
  if (!CreateDispatch(id, &problem)) PrintfMsgBox(zp::notStartedId, displayName, problem.m_sc);
  return HasOLELink();
}

int GPExcel::InitWorkBooks(GPWorkBooks & books)
{
  IDispatch * answer = nullptr;
  auto const ask = [&] { answer = GetWorkBooks(); };
  Guarded(ask);
  if (answer == nullptr && InitOLELink() != 0) Guarded(ask);
  if (answer != nullptr) books.AttachDispatch(answer);
  return books.HasOLELink();
}

int GPExcel::FindWorkBook(GPExcelWorkBook & book)
{
  GPWorkBooks books;
  if (InitWorkBooks(books) != 0) {
    zp::FindByName(
        book, books.GetCount(), book.m_strName, [this](COleVariant const & index) { return GetWorkBook(index); },
        [&book] { return book.GetFullName(); });
  }
  return book.HasOLELink();
}

int GPExcel::CreateWorkBook(GPExcelWorkBook & book)
{
  GPWorkBooks books;
  if (InitWorkBooks(books) != 0) Guarded([&] { book.AttachDispatch(books.Add()); });
  if (book.HasOLELink() == 0) PrintfMsgBox(zp::workBookNotCreatedId, book.m_strName);
  return book.HasOLELink();
}

int GPExcel::LoadWorkBook(GPExcelWorkBook & book)
{
  GPWorkBooks books;
  if (InitWorkBooks(books) != 0) {
    COleVariant const name(book.m_strName);
    IDispatch * opened = nullptr;
    Guarded<COleDispatchException>([&] { opened = books.Open(name); });
    book.AttachDispatch(opened);
  }
  if (book.HasOLELink() == 0) PrintfMsgBox(zp::workBookNotLoadedId, book.m_strName);
  return book.HasOLELink();
}

int GPExcel::CloseWorkBook(GPExcelWorkBook & book)
{
  COleVariant const saveNothing(short{0});
  int const closed = Guarded([&] { book.Close(saveNothing); });
  if (closed == 0) PrintfMsgBox(zp::workBookNotClosedId, book.m_strName);
  return closed;
}

int AttachExcel()
{
  return GPExcel::GetExcel()->InitOLELink();
}

int DetachExcel()
{
  if (GPExcel::excel == nullptr) return 1;
  zp::Unlink(*GPExcel::excel);
  return GPExcel::excel->HasOLELink() == 0;
}
