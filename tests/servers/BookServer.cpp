#include "tests/servers/BookServer.h"

#include <bit>
#include <cstdio>

#include <zpbase/platform/exceptions.h>

GPWorkBook BookServer::NewBook()
{
  return Attached<GPWorkBook>(Attached<GPWorkBooks>(Application().GetWorkBooks()).Add());
}

GPWorkBook BookServer::OpenBook(CString const & fullName)
{
  return Attached<GPWorkBook>(Attached<GPWorkBooks>(Application().GetWorkBooks()).Open(COleVariant(fullName)));
}

GPWorkBook BookServer::FillBook(std::vector<Sheet> const & sheets)
{
  GPWorkBook book = NewBook();
  auto list = Attached<GPWorkSheets>(book.GetWorkSheets());
  for (size_t i = sheets.size(); i-- > 0;) {
    GPWorkSheet sheet = i + 1 == sheets.size() ? SheetOf(book, 1) : Attached<GPWorkSheet>(list.Add());
    sheet.SetName(sheets[i].name.c_str());
    for (auto const & [cell, value] : sheets[i].cells) Put(sheet, cell, value);
  }
  return book;
}

GPWorkSheet SheetOf(GPWorkBook & book, int index)
{
  return Attached<GPWorkSheet>(book.GetWorkSheet(COleVariant(static_cast<short>(index))));
}

COleVariant ValueOf(GPWorkSheet & sheet, std::string const & cells)
{
  VARIANT value = Attached<GPRange>(sheet.GetCell(COleVariant(cells.c_str()))).GetValue();
  COleVariant owned;
  owned.Attach(value);
  return owned;
}

void Put(GPWorkSheet & sheet, std::string const & cells, VARIANT const & value)
{
  Attached<GPRange>(sheet.GetCell(COleVariant(cells.c_str()))).SetValue(value);
}

std::string ShownValue(VARIANT const & value)
{
  char text[64];
  switch (value.vt) {
    case VT_EMPTY:
      return "empty";
    case VT_R8:
      std::snprintf(text, sizeof text, "number %016llX", std::bit_cast<unsigned long long>(value.dblVal));
      return text;
    case VT_BSTR:
      return "text " + std::string(zp::BstrToText(value.bstrVal).GetString());
    case VT_BOOL:
      return value.boolVal == VARIANT_TRUE ? "true" : "false";
    case VT_ERROR:
      return "error " + std::to_string(value.scode & 0xFFFF);
    default:
      return "type " + std::to_string(value.vt);
  }
}

COleVariant ErrorOf(int number)
{
  return COleVariant(static_cast<int>(0x800A0000u + static_cast<unsigned>(number)), VT_ERROR);
}

std::string WhatIsTold(std::function<void()> const & call)
{
  try {
    call();
    return {};
  } catch (COleDispatchException * told) {
    zp::ExceptionGuard const guard(told);
    return told->m_strDescription.GetString();
  } catch (COleException * failed) {
    zp::ExceptionGuard const guard(failed);
    char text[16];
    std::snprintf(text, sizeof text, "%08X", static_cast<unsigned>(failed->m_sc));
    return text;
  }
}
