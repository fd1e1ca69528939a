// zp store check: the report for people and machines.

#include "tools/shown_text.h"
#include "tools/store/many_stores.h"
#include "tools/store/store_arguments.h"

#include <fmt/format.h>

#include "tools/json_pieces.h"
#include "tools/program.h"
#include "tools/records/object_json.h"
#include "tools/store/store_check.h"

namespace {

void printReport(CheckReport const & report, StoreOutput & output)
{
  std::string file;
  for (StoreFault const & fault : report.faults) {
    if (fault.file != file) output.PrintLines(Visible(fault.file) + "\n");
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
  std::string text;
  JsonPieces json([&](std::string_view piece) { text += piece; });
  json.Member("sound", report.faults.empty());
  json.Member("records", report.records);
  json.Member("free_blocks", report.freeBlocks);
  json.Member("bytes", report.survey.fileLength);
  json.Member("fault_count", report.faultCount);
  json.BeginList("faults");
  for (StoreFault const & fault : report.faults) {
    json.Element({{"file", fault.file}, {"offset", fault.offset < 0 ? Json() : Json(fault.offset)}, {"text", fault.text}});
  }
  json.EndList();
  json.BeginList("notes");
  for (std::string const & note : report.notes) json.Element(note);
  json.EndList();
  json.End();
  output.PrintJson(text + "\n");
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
