// Texts: settings, warnings, tables of components, exports of stores, numbers, reports, or only text.

#include <algorithm>
#include <array>
#include <filesystem>
#include <sstream>
#include <utility>

#include <fmt/format.h>
#include <zpbase/config.h>

#include "tools/inspect/each_line.h"
#include "tools/inspect/settings_files.h"
#include "tools/program.h"
#include "tools/records/component_columns.h"
#include "tools/records/table_text.h"
#include "tools/text/table_shape.h"
#include "tools/text_marks.h"

namespace {

size_t countLines(std::string_view text)
{
  size_t lines = 0;
  ForEachLine(text, [&](std::string_view, size_t) { ++lines; });
  return lines;
}

void addWhole(InspectedFile const & file, Inspection & found, std::string const & what)
{
  if (file.WantsParts()) found.AddPart(file.GetSize() - found.GetEnd(), what);
}

bool isWarnings(std::string_view text, InspectedFile const & file, Inspection & found)
{
  if (std::filesystem::path(file.GetName()).filename() != GetWarningsFileName()) return false;
  size_t numbered = 0;
  ForEachLine(text, [&](std::string_view line, size_t) { numbered += line.starts_with("Warning ") ? 1 : 0; });
  found.kind = "warnings of a job";
  found.holds.push_back(fmt::format("{}, {} of them with a number", Counted(countLines(text), "line"), numbered));
  addWhole(file, found, "warnings");
  found.GoOn("zp view %");
  return true;
}

bool isExport(std::string_view text, InspectedFile const & file, Inspection & found)
{
  constexpr size_t nearBegin = 200;
  std::string_view const begin = TrimBlanks(text.substr(0, nearBegin));
  if (!begin.starts_with('{') || begin.find("\"zp-store-records\"") == std::string_view::npos) return false;
  found.kind = "records of a store in JSON, as zp store export --json writes them";
  size_t const version = begin.find("\"version\":");
  if (version != std::string_view::npos) found.version = TrimBlanks(begin.substr(begin.find(':', version) + 1, 3)).substr(0, 1);
  addWhole(file, found, "JSON");
  found.GoOn("zp store import STORE %");
  return true;
}

// A row that names the column id and another one of a table of components.
bool isHeadOfTable(std::string_view line)
{
  bool hasID = false;
  size_t known = 0;
  char const delimiter = DelimiterOf(line);
  std::istringstream fields{std::string(line)};
  for (std::string field; std::getline(fields, field, delimiter);) {
    std::erase(field, '"');
    hasID |= field == "id";
    known += std::ranges::any_of(AllColumns(), [&](Column const & column) { return column.name == field; }) ? 1 : 0;
  }
  return hasID && known > 1;
}

// bytesOf tells how many of the file's bytes a piece of the text is.
bool isTable(std::string_view text, size_t (*bytesOf)(std::string_view), InspectedFile const & file, Inspection & found)
{
  bool isTable = false;
  size_t head = 0;
  size_t headLength = 0;
  size_t rows = 0;
  ForEachLine(text, [&](std::string_view line, size_t length) {
    bool const isComment = line.empty() || line.starts_with('#');
    if (head == 0 && !isComment) isTable = isHeadOfTable(line);
    if (head == 0) headLength += length;
    rows += head == 0 || line.empty() ? 0 : 1;
    head += head == 0 && isComment ? 0 : 1;
  });
  if (!isTable) return false;
  found.kind = "table of components";
  found.holds.push_back(Counted(rows, "row"));
  if (file.WantsParts()) found.AddPart(bytesOf(text.substr(0, headLength)), "comments and the names of the columns");
  addWhole(file, found, Counted(rows, "row"));
  found.GoOn("zp store import STORE %");
  return true;
}

bool isComponentTable(std::string_view text, InspectedFile const & file, Inspection & found)
{
  return isTable(
      text, [](std::string_view piece) { return piece.size(); }, file, found);
}

// A table in UTF-16, as spreadsheet programs write it.
bool isWideTable(InspectedFile & file, Inspection & found)
{
  if (!HasWideMark(file.GetHead()) || !file.CanBeRead()) return false;
  auto const bytesOf = [](std::string_view piece) {
    size_t units = 1;  // the mark
    for (char const c : piece) units += (c & 0xC0) == 0x80 ? 0 : (c & 0xF8) == 0xF0 ? 2 : 1;
    return 2 * units;
  };
  TableText text(file.GetName());
  return isTable(text.Take(file.GetBytes()), bytesOf, file, found);
}

// Lines of one kind from one on; blank ones go with those before.
struct Run {
  int first;
  std::string_view kind;
};

std::vector<Run> joined(std::vector<Run> runs, std::vector<Misfit> const & misfits)
{
  for (Misfit const & misfit : misfits) runs.push_back({misfit.line, "not numeric"});
  std::ranges::sort(runs, {}, &Run::first);
  auto const isSameKind = [](Run const & one, Run const & next) { return one.kind == next.kind; };
  runs.erase(std::unique(runs.begin(), runs.end(), isSameKind), runs.end());
  return runs;
}

void addRuns(std::string_view text, std::vector<Run> const & runs, Inspection & found)
{
  auto next = runs.begin();
  size_t length = 0;
  int line = 0;
  auto const end = [&] {
    if (next == runs.begin()) return found.AddPart(length, "blank lines");
    Run const & run = *std::prev(next);
    found.AddPart(length, fmt::format("lines {} to {}: {}", run.first, line, run.kind));
  };
  ForEachLine(text, [&](std::string_view, size_t bytes) {
    if (next != runs.end() && next->first == line + 1) {
      end();
      length = 0;
      ++next;
    }
    ++line;
    length += bytes;
  });
  end();
}

bool isNumeric(std::string_view text, InspectedFile const & file, Inspection & found)
{
  TextOptions options;
  options.file = file.GetName();
  options.json = true;  // keeps every misfit
  options.tellsLineEnds = false;
  TextLines lines(options, PassesOf(options));
  TextForm const form = FindForm(lines, options);
  TableShape shape = FindShape(lines, form, options);
  if (shape.headLine == 0) shape.texts.clear();  // words beside numbers are no table without names of columns
  std::vector<Run> runs;
  if (shape.headLine > 0) runs.push_back({shape.headLine, "names of the columns"});
  int former = 0;
  TextSurvey const survey = SurveyLines(lines, form, options, shape, [&](std::vector<Cell> const &) {
    if (lines.GetNumber() != former + 1) runs.push_back({lines.GetNumber(), "numbers"});
    former = lines.GetNumber();
  });
  if (survey.numeric == 0 || survey.numeric < survey.other) return false;
  auto const count = static_cast<size_t>(survey.lines);
  found.kind = "text of numbers";
  found.holds.push_back(fmt::format("{}, delimiter {}: {} numeric, {} blank, {} not numeric{}", Counted(count, "line"),
                                    NameOf(form.delimiter), survey.numeric, survey.blank, survey.other,
                                    survey.heads > 0 ? ", and the names of the columns" : ""));
  if (file.WantsParts() && countLines(text) == count) addRuns(text, joined(std::move(runs), survey.misfits), found);
  addWhole(file, found, "lines of text");
  found.GoOn(survey.other == 0 ? "zp text numbers %" : "zp text lines %");
  return true;
}

void tellText(std::string_view text, InspectedFile const & file, Inspection & found)
{
  auto const pages = static_cast<size_t>(std::ranges::count(text, '\f')) + 1;
  found.kind = pages > 1 ? "report in text" : "text";
  found.holds.push_back(Counted(countLines(text), "line") + (pages > 1 ? ", " + Counted(pages, "page") : ""));
  found.isNot.clear();
  addWhole(file, found, "text");
  found.GoOn("zp view %");
}

}  // namespace

bool IsText(InspectedFile & file, Inspection & found)
{
  if (!file.IsText()) return isWideTable(file, found);
  if (file.GetSize() == 0) {
    found.kind = "empty file";
    return true;
  }
  if (!file.CanBeRead()) {
    found.kind = "text, which is too long to be looked into";
    return true;
  }
  std::string_view text = file.GetBytes();
  if (text.starts_with(utf8Mark)) {
    text.remove_prefix(utf8Mark.size());
    if (file.WantsParts()) found.AddPart(utf8Mark.size(), "mark of UTF-8");
  }
  constexpr std::array kinds = {isWarnings, isExport, isComponentTable};
  bool const isKnown = std::ranges::any_of(kinds, [&](auto const is) { return is(text, file, found); }) ||
                       IsProfile(text, file, found) || isNumeric(text, file, found);
  if (!isKnown) tellText(text, file, found);
  return true;
}
