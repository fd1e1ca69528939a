// zp text: what the file parser finds in a numeric text file, and the values as CSV.

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <zpbase/platform/paths.h>
#include <zpbase/text.h>
#include <nlohmann/json.hpp>

#include "tools/commands.h"
#include "tools/program.h"

namespace {

struct Options {
  std::string file;
  int skip = 0;
  int report = 20;
  bool json = false;
};

std::unique_ptr<ParseFile> load(Options const & options)
{
  if (!FileExists(options.file)) throw Failure(fmt::format("{}: there is no such file; check the name", options.file));
  auto file = std::make_unique<ParseFile>(FromHostPath(options.file));
  if (file->GetLineCount() == 0 && !GPFile::IsEmpty(FromHostPath(options.file))) {
    throw Failure(
        fmt::format("{}: its lines end in LF alone, where CR LF is expected; convert a copy, as by unix2dos", options.file));
  }
  return file;
}

// Sets the delimiters that the file's numeric lines use, and gives the one found, 0 for blanks and tabs in any mixture. Between
// commas and tabs a value may be missing.
char adoptDelimiter(ParseFile & file)
{
  char const delimiter = static_cast<char>(file.GetDelimeter());
  if (delimiter == ',' || delimiter == '\t') {
    file.SetTokenDelimeters(CString(delimiter));
    file.SetDelimeterLimit(1);
  }
  return delimiter;
}

std::string nameOf(char delimiter)
{
  switch (delimiter) {
    case ',':
      return "comma";
    case '\t':
      return "tab";
    case ' ':
      return "blank";
    default:
      return "none";
  }
}

// A line that isn't numeric: where its first token that is no value starts, from 1, and that token.
struct Misfit {
  int line;
  int column;
  CString token;
};

// The first misfit of the current line; a blank line has none.
std::optional<Misfit> findMisfit(ParseFile & file)
{
  for (int type; (type = file.GetNextTokenType()) != noToken; file.DiscardNextToken()) {
    if (type == emptyToken || type == integerToken || type == realToken) continue;
    Misfit misfit = {file.GetCurLineNumber(), 0, CString()};
    file.DiscardDelimeters();
    misfit.column = file.GetLength() - static_cast<int>(std::string_view(file).size()) + 1;
    file.GetNextString(misfit.token);
    return misfit;
  }
  return std::nullopt;
}

bool isBlank(ParseFile const & file)
{
  return static_cast<CString const &>(file).View().find_first_not_of(" \t\n\x1A") == std::string_view::npos;
}

struct Survey {
  int lines = 0;
  int numeric = 0;
  int blank = 0;
  int longest = 0;
  int mostValues = 0;
  std::vector<Misfit> misfits;
};

Survey survey(ParseFile & file, int skip)
{
  Survey found;
  found.lines = file.GetLineCount();
  file.GotoLineNumber(1);
  for (int length; (length = file.ReadLine()) != -1;) {
    found.longest = std::max(found.longest, length);
    if (file.GetCurLineNumber() <= skip) continue;
    found.mostValues = std::max(found.mostValues, file.GetValueCount());
    if (isBlank(file)) {
      ++found.blank;
    } else if (auto misfit = findMisfit(file)) {
      found.misfits.push_back(std::move(*misfit));
    } else {
      ++found.numeric;
    }
  }
  file.GotoLineNumber(1);
  return found;
}

std::string sentenceOf(Misfit const & misfit)
{
  std::string const token = zp::TextToUtf8(misfit.token.Left(40).View());
  return fmt::format("line {}, column {}: \"{}\" is no number", misfit.line, misfit.column, token);
}

void reportMisfits(std::FILE * to, Options const & options, std::vector<Misfit> const & misfits)
{
  int shown = 0;
  for (Misfit const & misfit : misfits) {
    if (shown++ == options.report) break;
    fmt::print(to, "{}: {}\n", options.file, sentenceOf(misfit));
  }
  if (shown > options.report) fmt::print(to, "{}: {} such lines in all; --report N shows more\n", options.file, misfits.size());
}

nlohmann::json jsonOf(std::vector<Misfit> const & misfits)
{
  nlohmann::json list = nlohmann::json::array();
  for (Misfit const & misfit : misfits) {
    list.push_back({{"line", misfit.line}, {"column", misfit.column}, {"text", zp::TextToUtf8(misfit.token.View())}});
  }
  return list;
}

void showLines(Options const & options, int & status)
{
  auto const file = load(options);
  adoptDelimiter(*file);
  Survey const found = survey(*file, options.skip);
  status = found.misfits.empty() ? exitDone : exitWanting;
  if (options.json) {
    nlohmann::json const all = {{"lines", found.lines},
                                {"numeric", found.numeric},
                                {"blank", found.blank},
                                {"longest", found.longest},
                                {"notNumeric", jsonOf(found.misfits)}};
    Print(all.dump(2) + "\n");
    return;
  }
  Print(fmt::format("{} lines: {} numeric, {} blank, {} not numeric; the longest has {} characters\n", found.lines, found.numeric,
                    found.blank, found.misfits.size(), found.longest));
  reportMisfits(stdout, options, found.misfits);
}

void showColumns(Options const & options, int & status)
{
  auto const file = load(options);
  char const delimiter = adoptDelimiter(*file);
  int const mostValues = file->GetMaxValuesPerLine();
  CUIntArray starts;
  CUIntArray ends;
  file->GetColumnPositions(starts, ends);
  status = mostValues != 0 ? exitDone : exitWanting;
  if (options.json) {
    nlohmann::json columns = nlohmann::json::array();
    for (int i = 0; i < starts.GetSize(); ++i) columns.push_back({starts[i] + 1, ends[i] + 1});
    nlohmann::json const all = {{"delimiter", nameOf(delimiter)}, {"mostValues", mostValues}, {"columns", columns}};
    Print(all.dump(2) + "\n");
    return;
  }
  Print(fmt::format("delimiter: {}\nvalues on a line: {} at most\n", nameOf(delimiter), mostValues));
  if (starts.GetSize() == 0) Print("columns: none, the values of different lines don't stand below each other\n");
  for (int i = 0; i < starts.GetSize(); ++i) {
    if (ends[i] + 1 != starts[i]) Print(fmt::format("column {}: characters {} to {}\n", i + 1, starts[i] + 1, ends[i] + 1));
  }
}

// The current line's values, each in the shortest form that reads back the same, between commas. A missing one is empty; blanks
// at the end of a line are none.
std::string csvLine(ParseFile & file, bool keepsEmpty)
{
  std::string line;
  bool first = true;
  for (int type; (type = file.GetNextTokenType()) != noToken; first = false) {
    double const value = file.GetNext_Double();
    if (type == emptyToken && !keepsEmpty) continue;
    if (!first) line += ',';
    if (type != emptyToken) line += fmt::format("{}", value);
  }
  return line + '\n';
}

void showNumbers(Options const & options, int & status)
{
  auto const file = load(options);
  char const delimiter = adoptDelimiter(*file);
  bool const keepsEmpty = delimiter == ',' || delimiter == '\t';
  std::vector<Misfit> misfits;
  int written = 0;
  while (file->ReadLine() != -1) {
    if (file->GetCurLineNumber() <= options.skip || isBlank(*file)) continue;
    if (file->GetValueCount() != 0) {
      Print(csvLine(*file, keepsEmpty));
      ++written;
    } else if (auto misfit = findMisfit(*file)) {
      misfits.push_back(std::move(*misfit));
    }
  }
  FlushOutput();
  reportMisfits(stderr, options, misfits);
  if (written == 0) throw Failure(fmt::format("{}: no line is numeric; zp text lines shows why", options.file));
  status = misfits.empty() ? exitDone : exitWanting;
}

using Action = void (*)(Options const & options, int & status);

void addCommand(CLI::App & text, char const * name, char const * about, Action action, int & status)
{
  auto const options = std::make_shared<Options>();
  CLI::App * const command = text.add_subcommand(name, about);
  command->add_option("FILE", options->file, "A text file with CR LF line ends")->required();
  if (action != showColumns) {
    command->add_option("--skip", options->skip, "Lines at the begin, such as a header, that aren't looked at")
        ->check(CLI::NonNegativeNumber);
    command->add_option("--report", options->report, "How many lines that aren't numeric are shown (20)")
        ->check(CLI::NonNegativeNumber);
  }
  if (action != showNumbers) command->add_flag("--json", options->json, "Print JSON");
  command->callback([options, action, &status] { action(*options, status); });
}

}  // namespace

void AddTextCommands(CLI::App & app, int & status)
{
  CLI::App * const text = app.add_subcommand("text", "Look into numeric text files");
  text->require_subcommand(1);
  addCommand(*text, "lines", "Count numeric, blank and other lines, and show the others; status 1 if there are any", showLines,
             status);
  addCommand(*text, "columns", "Show the delimiter or the character columns of the values", showColumns, status);
  addCommand(*text, "numbers", "Print the values as CSV; lines that aren't numeric are reported, with status 1", showNumbers,
             status);
}
