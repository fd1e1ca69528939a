#include "tests/office/OfficeServer.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include <zpbase/platform/exceptions.h>
#include <zpbase/platform/paths.h>

namespace {

GPApplication g_office;

// The office ends before the program does, and takes its folder along.
class EndOfOffice : public testing::Environment {
 public:
  void TearDown() override { ForgetSharedOffice(); }
};
testing::Environment * const environment = testing::AddGlobalTestEnvironment(new EndOfOffice);

std::string commandLineOf(pid_t process)
{
  std::ifstream file("/proc/" + std::to_string(process) + "/cmdline", std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

COleVariant indexOf(int index)
{
  return COleVariant(static_cast<short>(index));
}

}  // namespace

GPApplication & SharedOffice()
{
  COleException problem;
  if (g_office.HasOLELink() == 0 && g_office.CreateDispatch("Zephlow.Office", &problem) == 0)
    throw std::runtime_error("no office can be started");
  return g_office;
}

void ForgetSharedOffice()
{
  g_office.ReleaseDispatch();
}

std::string OfficeServer::WhyNot() const
{
  for (char const * part : {"/soffice.bin", "/libsclo.so"})
    if (!std::filesystem::exists(std::string(OFFICE_PROGRAM_FOLDER) + part)) return "LibreOffice Calc is not installed";
  return {};
}

void OfficeServer::MakeBook(CString const & fullName, std::vector<Sheet> const & sheets)
{
  GPWorkBook book = NewBook();
  auto list = Attached<GPWorkSheets>(book.GetWorkSheets());
  for (size_t i = sheets.size(); i-- > 0;) {
    GPWorkSheet sheet = i + 1 == sheets.size() ? SheetOf(book, 1) : Attached<GPWorkSheet>(list.Add());
    sheet.SetName(sheets[i].name.c_str());
    for (auto const & [cell, value] : sheets[i].cells) Put(sheet, cell, value);
  }
  // In .xlsx the office keeps 15 digits of a number, in .xls all bits; and it knows a workbook by its content.
  CString const binary = fullName + ".xls";
  book.SaveAs(COleVariant(binary));
  book.Close(indexOf(0));
  std::string from, to;
  ToHostPath(binary.View(), from);
  ToHostPath(fullName.View(), to);
  std::filesystem::rename(from, to);
}

GPWorkBook NewBook()
{
  return Attached<GPWorkBook>(Attached<GPWorkBooks>(SharedOffice().GetWorkBooks()).Add());
}

GPWorkBook OpenBook(CString const & fullName)
{
  return Attached<GPWorkBook>(Attached<GPWorkBooks>(SharedOffice().GetWorkBooks()).Open(COleVariant(fullName)));
}

GPWorkSheet SheetOf(GPWorkBook & book, int index)
{
  return Attached<GPWorkSheet>(book.GetWorkSheet(indexOf(index)));
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

std::string SharedPipe()
{
  std::string const mark = "--accept=pipe,name=";
  for (pid_t const process : ProcessesWith(mark + "zephlow-" + std::to_string(getpid()) + "-")) {
    std::string const line = commandLineOf(process);
    size_t const begin = line.find(mark) + mark.size();
    return line.substr(begin, line.find(';', begin) - begin);
  }
  return {};
}

std::vector<pid_t> ProcessesWith(std::string const & text)
{
  std::vector<pid_t> found;
  for (auto const & entry : std::filesystem::directory_iterator("/proc")) {
    std::string const name = entry.path().filename().string();
    if (name.find_first_not_of("0123456789") != std::string::npos) continue;
    if (commandLineOf(std::stoi(name)).find(text) != std::string::npos) found.push_back(std::stoi(name));
  }
  return found;
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
