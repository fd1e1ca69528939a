// zp inspect: what files are.

#include "tools/commands.h"

#include <memory>
#include <vector>

#include <fmt/format.h>

#include "tools/host_file.h"
#include "tools/inspect/folder_walk.h"
#include "tools/inspect/inspection.h"
#include "tools/json_pieces.h"
#include "tools/program.h"
#include "tools/store/store_names.h"

namespace {

void printParts(Inspection const & found)
{
  if (found.parts.empty()) return;
  PrintLine(fmt::format("  {:>10}  {:>10}  {}", "OFFSET", "LENGTH", "WHAT"));
  for (FilePart const & part : found.parts) PrintLine(fmt::format("  {:>10}  {:>10}  {}", part.offset, part.length, part.what));
  PrintLine(fmt::format("  {:>10}  {:>10}  {}", "", found.GetEnd(), "in all"));
}

void print(Inspection const & found)
{
  PrintLine(fmt::format("{}: {}{}{}, {}", found.file, found.kind, found.version.empty() ? "" : ", ", found.version,
                        Counted(found.bytes, "byte")));
  for (std::string const & each : found.holds) PrintLine("  holds   " + each);
  for (std::string const & each : found.isNot) PrintLine("  it is   " + each);
  for (std::string const & each : found.faults) PrintLine("  broken  " + each);
  if (found.faultCount > found.faults.size())
    PrintLine(fmt::format("  broken  and {} more", found.faultCount - found.faults.size()));
  for (std::string const & each : found.next) PrintLine("  next    " + each);
  printParts(found);
}

void printAsJson(Inspection const & found, bool withParts)
{
  JsonPieces json(Print);
  json.Member("file", found.file);
  json.Member("kind", found.kind);
  json.Member("version", found.version);
  json.Member("bytes", found.bytes);
  json.Member("holds", found.holds);
  json.Member("is_not", found.isNot);
  json.Member("faults", found.faults);
  json.Member("fault_count", found.faultCount);
  json.Member("next", found.next);
  if (withParts) {
    json.BeginList("parts");
    for (FilePart const & part : found.parts) {
      json.Element({{"offset", part.offset}, {"length", part.length}, {"what", part.what}});
    }
    json.EndList();
  }
  json.End();
}

// The files that an argument names: itself, or, where there is none, those of the store of which it is the stem. What can't be
// looked at is told as the file that was named.
std::vector<std::string> filesOf(std::string const & name)
{
  try {
    if (FileExists(name) || IsLink(name)) return {name};
    StoreNames const names = ResolveStore(name, "");
    std::vector<std::string> files = {names.index, names.record};
    std::erase_if(files, [](std::string const & file) { return !FileExists(file); });
    if (!files.empty()) return files;
  } catch (Failure const &) {
  }
  return {name};
}

struct InspectCommand {
  void AddOptions(CLI::App & command)
  {
    command.add_option("FILE", files, "Any files, and stores by their stems; with -r folders too")->required();
    command.add_flag("--bytes", bytes, "Account for all bytes: offset, length and what each part is");
    command.add_flag("-r,--recursive", recursive, "Look at all files below the folders");
    command.add_flag("--json", json, "Print JSON");
    AddExample(command, "zp inspect job.SR WARNINGS");
  }

  ExitStatus Run() const
  {
    bool isSound = true;
    size_t count = 0;
    auto const look = [&](std::string const & name) {
      Inspection const found = InspectFile(name, bytes);
      isSound &= found.faultCount == 0;
      if (json) {
        Print(count++ == 0 ? "[\n" : ",\n");
        printAsJson(found, bytes);
      } else {
        print(found);
      }
    };
    FolderWalk walk(look);
    for (std::string const & name : files) {
      for (std::string const & file : filesOf(name)) {
        if (recursive)
          walk.Walk(file);
        else
          look(file);
      }
    }
    if (json) Print(count == 0 ? "[]\n" : "\n]\n");
    return isSound && walk.GetUnread() == 0 ? exitDone : exitWanting;
  }

  std::vector<std::string> files;
  bool bytes = false;
  bool recursive = false;
  bool json = false;
};

}  // namespace

void AddInspectCommand(CLI::App & app, int & status)
{
  CLI::App * const command = app.add_subcommand("inspect", "Tell of any files what they are, what they hold and what is broken");
  auto const inspect = std::make_shared<InspectCommand>();
  inspect->AddOptions(*command);
  command->callback([inspect, &status] { status = inspect->Run(); });
}
