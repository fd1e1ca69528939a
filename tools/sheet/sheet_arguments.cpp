// Options, and refusals.

#include "tools/sheet/sheet_arguments.h"

#include <zpbase/messages.h>
#include <zpbase/platform/encoding.h>
#include <zpbase/platform/exceptions.h>
#include <zpbase/spreadsheet.h>

#include "tools/program.h"

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

ExitStatus Told(std::function<void()> const & work)
{
  zp::WarningTaker const taker([](std::string_view warning) { Tell("warning: " + zp::TextToUtf8(warning)); });
  try {
    work();
    return exitDone;
  } catch (COleDispatchException * told) {
    zp::ExceptionGuard const guard(told);
    char const * const advice = told->m_scError == zp::contentsWouldBeLost ? "; with --drop it is written without them" : "";
    throw Failure(zp::TextToUtf8(told->m_strDescription.View()) + advice);
  }
}
