// Options, and refusals.

#include "tools/sheet/sheet_arguments.h"

#include <filesystem>
#include <system_error>

#include <fmt/format.h>
#include <zpbase/messages.h>
#include <zpbase/platform/encoding.h>
#include <zpbase/platform/exceptions.h>
#include <zpbase/spreadsheet.h>

#include "tools/program.h"

namespace {

constexpr HRESULT serverUnavailable = static_cast<HRESULT>(0x800706BA);

// The server's words come in the code page; the name of the workbook's file, which may have other characters, is put back.
std::string sentenceOf(std::string_view text, std::string const & book)
{
  std::string sentence = zp::TextToUtf8(text);
  std::error_code error;
  std::string const path = std::filesystem::absolute(book, error).lexically_normal().string();
  std::u16string wide;
  if (!zp::Utf8ToWide(path, wide)) return sentence;
  std::string name;
  zp::AppendWide(name, wide);
  std::string const shown = zp::TextToUtf8(name);
  if (size_t const at = sentence.find(shown); at != std::string::npos) sentence.replace(at, shown.size(), path);
  return sentence;
}

}  // namespace

void SheetArguments::AddBook(CLI::App & command)
{
  RequireNamed(command.add_option("BOOK", book, "A workbook's file, such as job.xlsx")->required());
  AddServerOption(command, server);
}

void SheetArguments::AddJson(CLI::App & command)
{
  command.add_flag("--json", json, "Print JSON");
}

void SheetArguments::AddDrop(CLI::App & command)
{
  AddDropOption(command, drop);
}

CLI::Option * AddServerOption(CLI::App & command, std::string & server)
{
  return command.add_option(
      "--server", server,
      "Program identifier of the spreadsheet server, such as Zephlow.Workbooks or Zephlow.Office; by default that of "
      "the settings, else Excel.Application");
}

CLI::Option * AddDropOption(CLI::App & command, bool & drop)
{
  return command.add_flag("--drop", drop, "Overwrite the workbook although it holds what the spreadsheet server can't keep");
}

CLI::Option * RequireNamed(CLI::Option * option)
{
  return option->check([](std::string const & name) { return std::string(name.empty() ? "a file must be named" : ""); });
}

ExitStatus Told(std::string const & book, std::function<void()> const & work)
{
  zp::WarningTaker const taker([&](std::string_view warning) { Tell("warning: " + sentenceOf(warning, book)); });
  try {
    work();
    return exitDone;
  } catch (COleDispatchException * told) {
    zp::ExceptionGuard const guard(told);
    char const * const advice = told->m_scError == zp::contentsWouldBeLost ? "; with --drop it is written without them" : "";
    throw Failure(sentenceOf(told->m_strDescription.View(), book) + advice);
  } catch (COleException * failed) {
    zp::ExceptionGuard const guard(failed);
    if (failed->m_sc == E_OUTOFMEMORY) throw std::bad_alloc();
    if (failed->m_sc == serverUnavailable)
      throw Failure(fmt::format("{}: the spreadsheet server ended before it was done; look at the file and try again", book));
    throw Failure(
        fmt::format("{}: the spreadsheet server fails with the code {:08X}", book, static_cast<unsigned int>(failed->m_sc)));
  }
}
