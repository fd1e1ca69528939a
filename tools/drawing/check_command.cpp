// zp dxf --check: drawings read back.

#include "tools/drawing/dxf_commands.h"

#include <fmt/format.h>

#include "tools/drawing/dxf_report.h"
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

}  // namespace

void CheckDrawings(DxfOptions const & options, int & status)
{
  PictureNames const pictures = {options.svg, options.png};
  bool const draws = !pictures.svg.empty() || !pictures.png.empty();
  if (draws && (options.files.size() != 1 || options.files.front() == "-"))
    throw Failure("--svg and --png go with one drawing that lies in a file", exitUsage);
  if (draws) RefuseOverwriting(options.files, {pictures.svg, pictures.png, "-"});
  nlohmann::json all = nlohmann::json::array();
  for (std::string const & file : options.files) {
    DxfInspection const inspection(file);
    if (!inspection.IsSound()) status = exitWanting;
    if (options.json)
      all.push_back(asJson(file, inspection));
    else
      print(file, inspection);
    if (!draws) continue;
    DxfPictures(file, inspection.GetCover(), pictures).Replace();
  }
  if (options.json) Print(DumpJson(all, 2) + "\n");
}
