// Opening, adding and saving.

#include "tools/sheet/workbook_link.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include <fmt/format.h>
#include <zpbase/config.h>
#include <zpbase/messages.h>
#include <zpbase/platform/encoding.h>
#include <zpbase/platform/exceptions.h>

#include "tools/host_file.h"
#include "tools/program.h"

namespace {

constexpr DISPID memberName = 0x006E;

std::string programOf(std::string const & server)
{
  if (!server.empty()) return server;
  CString progId;
  if (GetSysString(progId, GetExcelSectionKey(), GetExcelRegFileTypeIDKey(), "") == 0) progId = GetExcelAppString();
  return zp::TextToUtf8(progId.View());
}

// The library's links give names in its code page; sheets have others.
std::string nameOf(COleDispatchDriver & object)
{
  VARIANT value{};
  object.InvokeHelper(memberName, DISPATCH_PROPERTYGET, VT_VARIANT, &value, nullptr);
  COleVariant owned;
  owned.Attach(value);
  std::string name;
  if (owned.vt == VT_BSTR) zp::AppendUtf8(name, zp::ViewOf(owned.bstrVal));
  return name;
}

// Whether the server takes the name.
bool setName(COleDispatchDriver & object, std::string const & name)
{
  constexpr BYTE variantParameter[] = {VT_VARIANT, 0};
  COleVariant const value = TextVariant(name);
  try {
    object.InvokeHelper(memberName, DISPATCH_PROPERTYPUT, VT_EMPTY, nullptr, variantParameter, &value);
  } catch (COleException * refused) {
    if (refused->m_sc != E_INVALIDARG) throw;
    zp::ExceptionGuard const guard(refused);
    return false;
  }
  return true;
}

bool isSameName(std::string_view one, std::string_view other)
{
  std::u16string left;
  std::u16string right;
  return zp::Utf8ToWide(one, left) && zp::Utf8ToWide(other, right) && zp::FoldCase(left) == zp::FoldCase(right);
}

template <class Item, class Fetch, class Take>
void forEach(long count, Fetch const & fetch, Take const & take)
{
  for (long i = 1; i <= count; ++i) {
    Item item = Attached<Item>(fetch(COleVariant(i)));
    take(nameOf(item), item);
  }
}

COleVariant insidePathOf(std::string const & name)
{
  return COleVariant(InsidePath(std::filesystem::absolute(name).string()));
}

}  // namespace

COleVariant TextVariant(std::string_view utf8)
{
  std::u16string wide;
  if (!zp::Utf8ToWide(utf8, wide)) throw Failure(fmt::format("\"{}\": is no UTF-8", utf8));
  COleVariant value;
  value.bstrVal = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  if (value.bstrVal == nullptr) throw std::bad_alloc();
  value.vt = VT_BSTR;
  return value;
}

SpreadsheetLink::SpreadsheetLink(std::string const & server)
{
  std::string const program = programOf(server);
  COleException problem;
  std::string reason;
  zp::WarningTaker const taker([&](std::string_view warning) { reason = zp::TextToUtf8(warning); });
  if (m_Excel.CreateDispatch(program.c_str(), &problem) != 0) return;
  if (problem.m_sc == CO_E_CLASSSTRING)
    throw Failure(
        fmt::format("there is no spreadsheet server \"{}\"; name one with --server, such as Zephlow.Workbooks", program));
  if (reason.empty()) reason = fmt::format("code {:08X}", static_cast<unsigned int>(problem.m_sc));
  throw Failure(fmt::format("the spreadsheet server \"{}\" doesn't start: {}", program, reason));
}

WorkbookLink::WorkbookLink(SpreadsheetLink & server, std::string const & name, Source source) : m_strName(name)
{
  m_bNew = source == Source::New || (source == Source::FileOrNew && !FileExists(name));
  auto books = Attached<GPWorkBooks>(server.GetExcel().GetWorkBooks());
  long const before = books.GetCount();
  m_Book.AttachDispatch(m_bNew ? books.Add() : books.Open(insidePathOf(name)));
  if (m_Book.HasOLELink() == 0) throw Failure(fmt::format("{}: the spreadsheet server gives no workbook", name));
  m_bWasOpen = books.GetCount() == before;
  m_bHasOwnSheet = m_bNew;
}

WorkbookLink::~WorkbookLink()
{
  if (m_bWasOpen || m_Book.HasOLELink() == 0) return;
  try {
    m_Book.Close(COleVariant(short{0}));
  } catch (CException * failed) {  // it has gone with its server
    zp::ExceptionGuard const guard(failed);
  }
}

std::vector<std::string> WorkbookLink::ListWorksheets()
{
  std::vector<std::string> names;
  ForEachWorksheet([&](std::string const & name, GPWorkSheet &) { names.push_back(name); });
  return names;
}

void WorkbookLink::ForEachWorksheet(std::function<void(std::string const & name, GPWorkSheet & sheet)> const & take)
{
  forEach<GPWorkSheet>(
      Attached<GPWorkSheets>(m_Book.GetWorkSheets()).GetCount(),
      [this](COleVariant const & index) { return m_Book.GetWorkSheet(index); }, take);
}

std::vector<std::string> WorkbookLink::ListCharts()
{
  std::vector<std::string> names;
  forEach<GPChart>(
      Attached<GPCharts>(m_Book.GetCharts()).GetCount(), [this](COleVariant const & index) { return m_Book.GetChart(index); },
      [&](std::string const & name, GPChart &) { names.push_back(name); });
  return names;
}

GPWorkSheet WorkbookLink::FindWorksheet(std::string_view name)
{
  std::vector<std::string> const names = ListWorksheets();
  auto const found = std::find_if(names.begin(), names.end(), [=](std::string const & each) { return isSameName(each, name); });
  if (found == names.end()) throw Failure(fmt::format("{}: there is no worksheet \"{}\"; see zp sheet list", m_strName, name));
  return Attached<GPWorkSheet>(m_Book.GetWorkSheet(COleVariant(static_cast<int>(found - names.begin()) + 1)));
}

void WorkbookLink::RequireFree(std::string const & name)
{
  for (auto const & names : {ListWorksheets(), ListCharts()}) {
    if (std::any_of(names.begin(), names.end(), [&](std::string const & each) { return isSameName(each, name); }))
      throw Failure(fmt::format("{}: there is a sheet \"{}\" already; name another one", m_strName, name));
  }
}

GPWorkSheet WorkbookLink::AddWorksheet(std::string const & name)
{
  bool const isOwn = std::exchange(m_bHasOwnSheet, false);
  if (!isOwn) RequireFree(name);
  auto sheet =
      Attached<GPWorkSheet>(isOwn ? m_Book.GetWorkSheet(COleVariant(1)) : Attached<GPWorkSheets>(m_Book.GetWorkSheets()).Add());
  if (!setName(sheet, name)) RefuseName(name);
  return sheet;
}

void WorkbookLink::AddChart(std::string const & name)
{
  RequireFree(name);
  auto chart = Attached<GPChart>(Attached<GPCharts>(m_Book.GetCharts()).Add());
  if (!setName(chart, name)) RefuseName(name);
}

// A name that was free may be taken by now.
void WorkbookLink::RefuseName(std::string const & name)
{
  RequireFree(name);
  throw Failure(fmt::format("\"{}\": no sheet can have this name; take 1 to 31 characters without : \\ / ? * [ ]", name));
}

void WorkbookLink::Save()
{
  if (m_bNew)
    m_Book.SaveAs(insidePathOf(m_strName));
  else
    m_Book.Save();
  m_bNew = false;
}
