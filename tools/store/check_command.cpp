// zp store check: the report for people and machines.

#include "tools/json_output.h"
#include "tools/store/store_arguments.h"

#include <fmt/format.h>

#include "tools/program.h"
#include "tools/records/object_json.h"
#include "tools/store/store_check.h"

namespace {

void printReport(CheckReport const & report)
{
  std::string file;
  for (StoreFault const & fault : report.faults) {
    if (fault.file != file) PrintShown(fault.file + "\n");
    file = fault.file;
    std::string const place = fault.offset < 0 ? "" : fmt::format("at {:>9}", fault.offset);
    PrintShown(fmt::format("  {:<12}  {}\n", place, fault.text));
  }
  if (report.faultCount > report.faults.size())
    PrintShown(fmt::format("  and {} more\n", report.faultCount - report.faults.size()));
  for (std::string const & note : report.notes) PrintShown("note: " + note + "\n");
  PrintShown(fmt::format("{}, {}, {}: {}\n", Counted(report.records, "record"), Counted(report.freeBlocks, "free block"),
                         Counted(report.survey.fileLength, "byte"),
                         report.faults.empty() ? "sound" : Counted(report.faultCount, "fault")));
}

void printReportAsJson(CheckReport const & report)
{
  Json json = {{"sound", report.faults.empty()},
               {"records", report.records},
               {"free_blocks", report.freeBlocks},
               {"bytes", report.survey.fileLength},
               {"fault_count", report.faultCount},
               {"faults", Json::array()},
               {"notes", report.notes}};
  for (StoreFault const & fault : report.faults) {
    json["faults"].push_back(
        {{"file", fault.file}, {"offset", fault.offset < 0 ? Json() : Json(fault.offset)}, {"text", fault.text}});
  }
  Print(DumpJson(json, 2) + "\n");
}

struct CheckCommand : StoreArguments {
  static constexpr char const * name = "check";
  static constexpr char const * help = "Report everything in which the files break their format; changes nothing";
  static constexpr char const * example = "zp store check job";

  ExitStatus Run() const
  {
    OpenStore files(GetNames(), StoreAccess::Look);
    CheckReport const report = CheckStore(files);
    if (json) {
      printReportAsJson(report);
    } else {
      printReport(report);
    }
    return report.faults.empty() ? exitDone : exitWanting;
  }
};

}  // namespace

void AddCheckCommand(CLI::App & family, int & status)
{
  AddCommand<CheckCommand>(family, status);
}
