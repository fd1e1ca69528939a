// Options, and refusals.

#include "tools/sheet/sheet_arguments.h"

#include <filesystem>
#include <system_error>

#include <fmt/format.h>
#include <zpbase/messages.h>
#include <zpbase/platform/dispatch_exception.h>
#include <zpbase/platform/encoding.h>
#include <zpbase/platform/exceptions.h>
#include <zpbase/spreadsheet.h>

#include "tools/program.h"

namespace {

constexpr HRESULT serverUnavailable = static_cast<HRESULT>(0x800706BA);

// A warning comes in the code page; the name of the workbook's file, which may have other characters, is put back.
std::string warningOf(std::string_view text, std::string const & book)
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

[[noreturn]] void failWith(HRESULT code, std::string const & book)
{
  throw Failure(fmt::format("{}: the spreadsheet server fails with the code {:08X}", book, static_cast<unsigned int>(code)));
}

[[noreturn]] void failWith(COleDispatchException const & told, std::string const & book)
{
  if (told.m_strDescription.IsEmpty()) failWith(told.m_scError, book);
  auto const * const inWide = dynamic_cast<zp::WideDispatchException const *>(&told);
  std::string sentence;
  if (inWide != nullptr)
    zp::AppendUtf8(sentence, inWide->m_strWide);
  else
    sentence = zp::TextToUtf8(told.m_strDescription.View());
  if (told.m_scError == zp::contentsWouldBeLost) sentence += "; with --drop it is written without them";
  throw Failure(sentence);
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

ExitStatus Told(std::string const & book, std::function<void()> const & work)
{
  zp::WarningTaker const taker([&](std::string_view warning) { Tell("warning: " + warningOf(warning, book)); });
  try {
    work();
    return exitDone;
  } catch (COleDispatchException * told) {
    zp::ExceptionGuard const guard(told);
    failWith(*told, book);
  } catch (COleException * failed) {
    zp::ExceptionGuard const guard(failed);
    if (failed->m_sc == E_OUTOFMEMORY) throw std::bad_alloc();
    if (failed->m_sc == serverUnavailable)
      throw Failure(fmt::format("{}: the spreadsheet server ended before it was done; look at the file and try again", book));
    failWith(failed->m_sc, book);
  }
}
