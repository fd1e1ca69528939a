// zp dxf --check: drawings read back.

#include "tools/drawing/dxf_commands.h"

#include <cstdio>

#include <fmt/format.h>

#include "tools/drawing/dxf_report.h"
#include "tools/host_file.h"
#include "tools/json_output.h"
#include "tools/output_names.h"
#include "tools/program.h"

namespace {

void print(std::string const & file, DxfInspection const & inspection)
{
  inspection.PrintProblems(file);
  std::string const verdict = inspection.IsSound() ? "sound" : Counted(inspection.GetProblemCount(), "fault");
  PrintLine(fmt::format("{}: {} of text, {}: {}", file, Counted(inspection.GetLines(), "line"), inspection.Counts(), verdict));
}

nlohmann::json asJson(std::string const & file, DxfInspection const & inspection)
{
  return {{"file", file},
          {"sound", inspection.IsSound()},
          {"file_lines", inspection.GetLines()},
          {"entities", inspection.CountsAsJson()},
          {"fault_count", inspection.GetProblemCount()},
          {"faults", inspection.ProblemsAsJson()}};
}

// Reads one drawing back, tells what is broken in it, and draws it where that is asked for.
void check(std::string const & file, DxfOptions const & options, nlohmann::json & all, int & status)
{
  PictureNames const pictures = {options.svg, options.png};
  DxfInspection const inspection(file);
  if (!inspection.IsSound()) status = exitWanting;
  if (options.json)
    all.push_back(asJson(file, inspection));
  else
    print(file, inspection);
  if (!pictures.svg.empty() || !pictures.png.empty()) DxfPictures(file, inspection.GetCover(), pictures).Replace();
}

// What gives its bytes once.
bool isPipeOrDevice(std::string const & name)
{
  return FileExists(name) && !IsRegularFile(name) && !IsFolder(name);
}

}  // namespace

void CheckDrawings(DxfOptions const & options, int & status)
{
  bool const draws = !options.svg.empty() || !options.png.empty();
  if (draws && (options.files.size() != 1 || options.files.front() == "-" || isPipeOrDevice(options.files.front())))
    throw Failure("--svg and --png go with one drawing that lies in a file", exitUsage);
  if (draws) RefuseOverwriting(options.files, {options.svg, options.png, "-"});
  nlohmann::json all = nlohmann::json::array();
  for (std::string const & file : options.files) {
    try {
      check(file, options, all, status);
    } catch (Failure const & failure) {
      if (options.files.size() == 1) throw;
      std::fflush(stdout);
      Tell(failure.what());
      status = exitWanting;
      if (options.json) all.push_back({{"file", file}, {"sound", false}, {"failure", failure.what()}});
    }
  }
  if (options.json) Print(DumpJson(all, 2) + "\n");
}
