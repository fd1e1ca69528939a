// zp store check: the report for people and machines.

#include <fmt/format.h>
#include <zpbase/platform/paths.h>

#include "tools/program.h"
#include "tools/records/object_json.h"
#include "tools/store/check.h"
#include "tools/store/exchange.h"
#include "tools/store/session.h"
#include "tools/store/store_commands.h"

namespace {

void printReport(CheckReport const & report)
{
  std::string file;
  for (StoreFault const & fault : report.m_Faults) {
    if (fault.m_strFile != file) Print(fault.m_strFile + "\n");
    file = fault.m_strFile;
    std::string const place = fault.m_nOffset < 0 ? "" : fmt::format("at {:>9}", fault.m_nOffset);
    Print(fmt::format("  {:<12}  {}\n", place, fault.m_strText));
  }
  for (std::string const & note : report.m_Notes) Print("note: " + note + "\n");
  Print(fmt::format("{}, {}, {}: {}\n", Counted(report.m_nRecords, "record"), Counted(report.m_nFree, "free block"),
                    Counted(report.m_Survey.m_nFileLength, "byte"),
                    report.m_Faults.empty() ? "sound" : Counted(report.m_Faults.size(), "fault")));
}

void printReportAsJson(CheckReport const & report)
{
  Json json = {{"sound", report.m_Faults.empty()},       {"records", report.m_nRecords}, {"free_blocks", report.m_nFree},
               {"bytes", report.m_Survey.m_nFileLength}, {"faults", Json::array()},      {"notes", report.m_Notes}};
  for (StoreFault const & fault : report.m_Faults) {
    json["faults"].push_back(
        {{"file", fault.m_strFile}, {"offset", fault.m_nOffset < 0 ? Json() : Json(fault.m_nOffset)}, {"text", fault.m_strText}});
  }
  Print(json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
}

void check(StoreArguments const & arguments, int & status)
{
  StoreNames const names = arguments.GetNames();
  RequireNoSwap(names);
  CFile file;
  OpenRecordFile(file, names, StoreAccess::Read);
  CheckReport const report = CheckStore(names, file);
  arguments.m_bJson ? printReportAsJson(report) : printReport(report);
  status = report.m_Faults.empty() ? exitDone : exitWanting;
}

}  // namespace

void AddCheckCommand(CLI::App & store, int & status)
{
  auto const arguments = std::make_shared<StoreArguments>();
  CLI::App * const command =
      AddStoreCommand(store, *arguments, "check", "Report everything in which the files break their format; changes nothing");
  command->callback([arguments, &status] { check(*arguments, status); });
}
