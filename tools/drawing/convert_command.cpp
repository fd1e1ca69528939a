// zp dxf: metafiles into drawings.

#include "tools/drawing/dxf_commands.h"

#include <filesystem>
#include <memory>

#include <fmt/format.h>
#include <zpbase/platform/exceptions.h>

#include "tools/drawing/conversion.h"
#include "tools/drawing/drawing_file.h"
#include "tools/drawing/dxf_report.h"
#include "tools/drawing/file_names.h"
#include "tools/drawing/metafile_input.h"
#include "tools/drawing/record_names.h"
#include "tools/host_file.h"
#include "tools/json_output.h"
#include "tools/output_names.h"
#include "tools/program.h"
#include "tools/progress.h"
#include "tools/shown_text.h"

namespace {

// One drawing that was written, and what was read back of it where that was asked for.
struct Result {
  DxfTask task;
  Conversion conversion;
  unsigned long long bytes = 0;
  std::unique_ptr<DxfInspection> inspection;
};

// The drawing is looked at and drawn before it takes its place, so that one that can't be leaves the old file alone.
Result convert(DxfTask const & task, DxfOptions const & options)
{
  PictureNames const names = {options.svg, options.png};
  bool const draws = !names.svg.empty() || !names.png.empty();
  Result result;
  result.task = task;
  Metafile const metafile = OpenMetafile(task.input);
  DrawingFile file(task.output);
  result.conversion = ConvertMetafile(metafile.get(), file, options.height);
  file.Finish();
  result.bytes = file.GetBytes();
  if (options.stats || draws) result.inspection = std::make_unique<DxfInspection>(file.GetWrittenName());
  std::unique_ptr<DxfPictures> pictures;
  if (draws) pictures = std::make_unique<DxfPictures>(file.GetWrittenName(), result.inspection->GetCover(), names);
  file.Replace();
  if (pictures) pictures->Replace();
  return result;
}

void tellNote(std::string const & file, std::string const & note)
{
  Tell(fmt::format("{}: {}", file, note));
}

void tellNotes(Result const & result, bool stats)
{
  Conversion const & conversion = result.conversion;
  std::string const & file = result.task.input;
  if (!conversion.whole) tellNote(file, "ends inside a record; what stands before it is converted");
  if (conversion.upwards) tellNote(file, "counts y upwards, so the drawing stands on its head");
  if (conversion.brokenTexts > 0)
    tellNote(file, Counted(conversion.brokenTexts, "text") + " held characters that end a line; blanks stand for them");
  if (conversion.sizelessTexts > 0)
    tellNote(file, Counted(conversion.sizelessTexts, "text") + " left out, in a font of no height");
  if (conversion.fillings > 0)
    tellNote(file, Counted(conversion.fillings, "shape") + " without a pen left out; a drawing has outlines alone");
  if (conversion.skippedDrawing > 0 && !stats)
    tellNote(file, Counted(conversion.skippedDrawing, "record") + " that would draw left out; --stats names them");
}

void print(Result const & result, DxfOptions const & options)
{
  Conversion const & conversion = result.conversion;
  if (result.task.output != "-")
    PrintShown(fmt::format("{}: {}, {}, height {}\n", Visible(result.task.output), Counted(conversion.records, "record"),
                           Counted(result.bytes, "byte"), conversion.height));
  if (!options.stats) return;
  PrintShown(fmt::format("  written: {}\n", result.inspection->Counts()));
  for (auto const & [function, count] : conversion.skipped) {
    bool const draws = metafile::FunctionOf(function).use == metafile::Use::Drawing;
    PrintShown(fmt::format("  skipped: {:>8}  {}{}\n", count, metafile::NameOf(function), draws ? ", which would draw" : ""));
  }
  result.inspection->PrintProblems(result.task.output);
}

nlohmann::json asJson(Result const & result)
{
  Conversion const & conversion = result.conversion;
  nlohmann::json json = {{"input", result.task.input},
                         {"output", result.task.output},
                         {"records", conversion.records},
                         {"bytes", result.bytes},
                         {"height", conversion.height},
                         {"whole", conversion.whole},
                         {"y_upwards", conversion.upwards},
                         {"texts_with_line_ends", conversion.brokenTexts},
                         {"texts_without_size", conversion.sizelessTexts},
                         {"shapes_without_pen", conversion.fillings},
                         {"skipped_drawing_records", conversion.skippedDrawing},
                         {"skipped", nlohmann::json::array()}};
  for (auto const & [function, count] : conversion.skipped)
    json["skipped"].push_back({{"function", function}, {"name", metafile::NameOf(function)}, {"count", count}});
  if (result.inspection) {
    json["entities"] = result.inspection->CountsAsJson();
    json["faults"] = result.inspection->ProblemsAsJson();
  }
  return json;
}

// Counts what becomes of several files; a failure of one doesn't stop the others.
class Batch {
 public:
  explicit Batch(DxfOptions const & options) : m_Options(options) {}

  void Run(std::vector<DxfTask> const & tasks, int & status)
  {
    Progress progress("converting", tasks.size());
    for (size_t i = 0; i < tasks.size(); ++i) {
      ConvertOne(tasks[i]);
      progress.Reach(i + 1);
    }
    if (m_nFailed > 0 || m_bFaults) status = exitWanting;
  }

  void PrintSummary() const
  {
    if (m_Options.json)
      Print(DumpJson(nlohmann::json{{"converted", m_nDone}, {"failed", m_nFailed}, {"files", m_Files}}, 2) + "\n");
    else if (!m_Options.to.empty())
      PrintShown(fmt::format("{} converted, {} failed\n", m_nDone, m_nFailed));
  }

 private:
  void ConvertOne(DxfTask const & task)
  {
    std::string problem;
    try {
      return Take(convert(task, m_Options));
    } catch (Failure const & failure) {
      problem = failure.what();
    } catch (CException * caught) {
      zp::ExceptionGuard const guard(caught);
      problem = fmt::format("{}: {}", task.input, Describe(*caught));
    } catch (std::bad_alloc const &) {
      problem = fmt::format("{}: memory ran out", task.input);
    }
    ++m_nFailed;
    std::fflush(stdout);
    Tell(fmt::format("{}", problem));
    if (m_Options.json) m_Files.push_back({{"input", task.input}, {"output", task.output}, {"failure", problem}});
  }

  void Take(Result const & result)
  {
    ++m_nDone;
    if (result.inspection && !result.inspection->IsSound()) m_bFaults = true;
    tellNotes(result, m_Options.stats);
    if (m_Options.json)
      m_Files.push_back(asJson(result));
    else
      print(result, m_Options);
  }

  DxfOptions const & m_Options;
  size_t m_nDone = 0;
  size_t m_nFailed = 0;
  bool m_bFaults = false;
  nlohmann::json m_Files = nlohmann::json::array();
};

std::vector<DxfTask> tasksOf(DxfOptions const & options)
{
  bool const draws = !options.svg.empty() || !options.png.empty();
  if (options.to.empty()) {
    if (options.files.size() != 2) throw Failure("name a metafile and a drawing, or a folder with --to", exitUsage);
    bool const readsBack = draws || options.stats;
    std::string const & output = options.files[1];
    if (IsFolder(output)) throw Failure(output + ": is a folder; name it with --to", exitUsage);
    bool const isRegular = output != "-" && (!FileExists(output) || IsRegularFile(output));
    if (readsBack && !isRegular) throw Failure("--stats, --svg and --png need a drawing that lies in a file", exitUsage);
    return {{options.files[0], output}};
  }
  if (draws) throw Failure("--svg and --png go with one metafile", exitUsage);
  return TasksInto(options.to, options.files);
}

void makeFolder(std::string const & folder)
{
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) throw Failure(fmt::format("{}: can't be made: {}", folder, error.message()));
}

}  // namespace

void ConvertFiles(DxfOptions const & options, int & status)
{
  std::vector<DxfTask> const tasks = tasksOf(options);
  std::vector<std::string> inputs;
  bool const draws = !options.svg.empty() || !options.png.empty();
  std::vector<std::string> outputs = {options.svg, options.png, draws ? "-" : ""};  // with the report
  for (DxfTask const & task : tasks) {
    inputs.push_back(task.input);
    outputs.push_back(task.output);
  }
  RefuseOverwriting(inputs, outputs);
  if (!options.to.empty()) makeFolder(options.to);
  Batch batch(options);
  batch.Run(tasks, status);
  batch.PrintSummary();
}
