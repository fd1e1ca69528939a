// zp store check: the report for people and machines.

#include "tools/json_output.h"
#include "tools/store/many_stores.h"
#include "tools/store/store_arguments.h"

#include <fmt/format.h>

#include "tools/program.h"
#include "tools/records/object_json.h"
#include "tools/store/store_check.h"

namespace {

void printReport(CheckReport const & report, StoreOutput & output)
{
  std::string file;
  for (StoreFault const & fault : report.faults) {
    if (fault.file != file) output.PrintLines(fault.file + "\n");
    file = fault.file;
    std::string const place = fault.offset < 0 ? "" : fmt::format("at {:>9}", fault.offset);
    output.PrintLines(fmt::format("  {:<12}  {}\n", place, fault.text));
  }
  if (report.faultCount > report.faults.size())
    output.PrintLines(fmt::format("  and {} more\n", report.faultCount - report.faults.size()));
  for (std::string const & note : report.notes) output.PrintLines("note: " + note + "\n");
  output.PrintLines(fmt::format("{}, {}, {}: {}\n", Counted(report.records, "record"), Counted(report.freeBlocks, "free block"),
                                Counted(report.survey.fileLength, "byte"),
                                report.faults.empty() ? "sound" : Counted(report.faultCount, "fault")));
}

void printReportAsJson(CheckReport const & report, StoreOutput & output)
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
  output.PrintJson(DumpJson(json, 2) + "\n");
}

struct CheckCommand : ManyStoresArguments {
  static constexpr char const * name = "check";
  static constexpr char const * help = "Report everything in which the files break their format; changes nothing";
  static constexpr char const * example = "zp store check job";

  ExitStatus Run() const
  {
    return ForEachStore([this](StoreNames const & names, StoreOutput & output) {
      OpenStore files(names, StoreAccess::Look);
      CheckReport const report = CheckStore(files);
      if (json)
        printReportAsJson(report, output);
      else
        printReport(report, output);
      return report.faults.empty() ? exitDone : exitWanting;
    });
  }
};

}  // namespace

void AddCheckCommand(CLI::App & family, int & status)
{
  AddCommand<CheckCommand>(family, status);
}
