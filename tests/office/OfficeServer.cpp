#include "tests/office/OfficeServer.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
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

}  // namespace

GPApplication & OfficeServer::Application()
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
  GPWorkBook book = FillBook(sheets);
  // In .xlsx the office keeps 15 digits of a number, in .xls all bits; and it knows a workbook by its content.
  CString const binary = fullName + ".xls";
  book.SaveAs(COleVariant(binary));
  book.Close(COleVariant(short{0}));
  std::string from, to;
  ToHostPath(binary.View(), from);
  ToHostPath(fullName.View(), to);
  std::filesystem::rename(from, to);
}

// .xls keeps no Booleans and one error for all, .ods and .xlsx 15 digits of a number.
std::string OfficeServer::KeptIn(std::string const & extension, VARIANT const & value) const
{
  if (extension == "xls") {
    if (value.vt == VT_BOOL) return ShownValue(COleVariant(value.boolVal == VARIANT_TRUE ? 1.0 : 0.0));
    return ShownValue(value.vt == VT_ERROR ? ErrorOf(2042) : COleVariant(value));
  }
  if (value.vt != VT_R8) return ShownValue(value);
  char digits[64];
  std::snprintf(digits, sizeof digits, "%.14e", value.dblVal);
  return ShownValue(COleVariant(std::strtod(digits, nullptr)));
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
