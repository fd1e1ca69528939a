// Options, and refusals.

#include "tools/sheet/sheet_arguments.h"

#include <zpbase/messages.h>
#include <zpbase/platform/encoding.h>
#include <zpbase/platform/exceptions.h>
#include <zpbase/spreadsheet.h>

#include "tools/program.h"

void SheetArguments::AddBook(CLI::App & command)
{
  command.add_option("BOOK", book, "A workbook's file, such as job.xlsx")->required();
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

void AddServerOption(CLI::App & command, std::string & server)
{
  command.add_option(
      "--server", server,
      "Program identifier of the spreadsheet server, such as Zephlow.Workbooks or Zephlow.Office; by default that of "
      "the settings, else Excel.Application");
}

void AddDropOption(CLI::App & command, bool & drop)
{
  command.add_flag("--drop", drop, "Overwrite the workbook although it holds what the spreadsheet server can't keep");
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
