// zp text: what a numeric text file holds, where its columns stand, and its values as CSV.

#include "tools/commands.h"

#include <climits>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <zpbase/platform/terminal.h>
#include <zpbase/text.h>
#include <nlohmann/json.hpp>

#include "tools/json_output.h"
#include "tools/number_option.h"
#include "tools/program.h"
#include "tools/shown_text.h"
#include "tools/text/csv_output.h"
#include "tools/text/line_survey.h"
#include "tools/text/misfit_report.h"
#include "tools/text/table_shape.h"

namespace {

constexpr int standardOutput = 1;

CLI::Validator const wholeNumber = WholeNumber(0, INT_MAX);

std::vector<size_t> textColumns(TableShape const & shape)
{
  std::vector<size_t> columns;
  for (size_t i = 0; i < shape.texts.size(); ++i) {
    if (shape.texts[i]) columns.push_back(i + 1);
  }
  return columns;
}

std::string descriptionOf(TextForm const & form, TextOptions const & options)
{
  return NameOf(form.delimiter) + (form.decimalComma && !options.decimalComma ? " with decimal commas" : "");
}

ExitStatus showLines(TextOptions const & options)
{
  TextLines text(options, PassesOf(options));
  TextForm const form = FindForm(text, options);
  TableShape const shape = FindShape(text, form, options);
  TextSurvey const found = SurveyLines(text, form, options, shape, [](std::vector<Cell> const &) {});
  ExitStatus const status = found.other == 0 && found.numeric > 0 ? exitDone : exitWanting;
  if (options.json) {
    nlohmann::json const all = {{"lines", found.lines},
                                {"numeric", found.numeric},
                                {"blank", found.blank},
                                {"comments", found.comments},
                                {"longest", found.longest},
                                {"delimiter", NameOf(form.delimiter)},
                                {"decimal_comma", form.decimalComma},
                                {"head_line", shape.headLine},
                                {"text_columns", textColumns(shape)},
                                {"hints", JsonOfHints(found)},
                                {"not_numeric", JsonOfMisfits(found)}};
    Print(DumpJson(all, 2) + "\n");
    return status;
  }
  std::string const comments = options.comment.empty() ? "" : Counted(static_cast<unsigned>(found.comments), "comment") + ", ";
  PrintShown(fmt::format("{}, delimiter {}: {} numeric, {} blank, {}{} not numeric; the longest has {}\n",
                         Counted(static_cast<unsigned>(found.lines), "line"), descriptionOf(form, options), found.numeric,
                         found.blank, comments, found.other, Counted(static_cast<unsigned>(found.longest), "character")));
  if (found.numeric == 0) PrintShown(WhyNone(text, options, found) + "\n");
  if (shape.headLine > 0)
    Print(fmt::format("head in line {}: {}\n", shape.headLine, Visible(fmt::format("{}", fmt::join(shape.head, ", ")))));
  if (!shape.texts.empty()) PrintShown(fmt::format("texts in column {}\n", fmt::join(textColumns(shape), ", ")));
  ReportMisfits(stdout, options, found);
  return status;
}

struct Column {
  unsigned int first;  // characters, from 1
  unsigned int last;
};

// A line in which digits stand wherever a cell has characters, and blanks elsewhere.
void appendPicture(std::string & pictures, std::vector<Cell> const & cells)
{
  size_t const begin = pictures.size();
  for (Cell const & cell : cells) {
    if (cell.text.empty()) continue;
    pictures.resize(begin + static_cast<size_t>(cell.column) - 1, ' ');
    pictures.append(cell.text.size(), '0');
  }
  pictures += "\r\n";
}

std::vector<Column> findColumns(std::string const & pictures, TextOptions const & options)
{
  CUIntArray starts;
  CUIntArray ends;
  ParseCopy(pictures, options.Name())->GetColumnPositions(starts, ends);
  std::vector<Column> columns;
  columns.reserve(static_cast<size_t>(starts.GetSize()));
  for (int i = 0; i < starts.GetSize(); ++i) columns.push_back({starts[i] + 1, ends[i] + 1});
  return columns;
}

void printColumns(TextSurvey const & found, std::string const & delimiter, std::vector<Column> const & columns)
{
  PrintShown(fmt::format("delimiter: {}\nvalues on a line: {}\n", delimiter, ValueCounts(found)));
  if (columns.empty()) Print("columns: none, the values of different lines don't stand below each other\n");
  int number = 0;
  for (Column const & column : columns)
    PrintShown(fmt::format("column {}: characters {} to {}\n", ++number, column.first, column.last));
  if (number > found.mostValues)
    Print("more columns than values on a line: some lack values, or they don't stand below each other\n");
  if (found.other > 0) {
    PrintShown(fmt::format("{} not numeric; zp text lines shows {}\n",
                           found.other == 1 ? "1 line is" : fmt::format("{} lines are", found.other),
                           found.other == 1 ? "it" : "them"));
  }
}

ExitStatus showColumns(TextOptions const & options)
{
  TextLines text(options, PassesOf(options));
  TextForm const form = FindForm(text, options);
  TableShape const shape = FindShape(text, form, options);
  std::string pictures;
  TextSurvey const found =
      SurveyLines(text, form, options, shape, [&](std::vector<Cell> const & cells) { appendPicture(pictures, cells); });
  std::vector<Column> const columns = findColumns(pictures, options);
  if (options.json) {
    nlohmann::json places = nlohmann::json::array();
    for (Column const & column : columns) places.push_back({column.first, column.last});
    nlohmann::json const all = {{"delimiter", NameOf(form.delimiter)},
                                {"fewest_values", found.fewestValues},
                                {"most_values", found.mostValues},
                                {"not_numeric", found.other},
                                {"columns", places}};
    Print(DumpJson(all, 2) + "\n");
  } else if (found.numeric > 0) {
    printColumns(found, descriptionOf(form, options), columns);
  } else {
    PrintShown(WhyNone(text, options, found) + (found.other > 0 ? "; zp text lines shows why\n" : "\n"));
  }
  return found.numeric > 0 ? exitDone : exitWanting;
}

ExitStatus showNumbers(TextOptions const & options)
{
  TextLines text(options, PassesOf(options));
  TextForm const form = FindForm(text, options);
  TableShape const shape = FindShape(text, form, options);
  if (IsTerminal(standardOutput)) text.EndProgress();
  CsvOutput csv(form, options, shape);
  csv.AddHead();
  TextSurvey const found = SurveyLines(text, form, options, shape, [&](std::vector<Cell> const & cells) { csv.Add(cells); });
  csv.Flush();
  FlushOutput();
  ReportMisfits(stderr, options, found);
  if (found.numeric == 0) throw Failure(WhyNone(text, options, found));
  if (found.fewestValues != found.mostValues) {
    Tell(fmt::format("{}: lines have {} values; {}", options.Name(), ValueCounts(found),
                     form.delimiter == blankDelimiter ? "where one is missing between blanks, those behind it have moved up"
                                                      : "short ones were not filled up"));
  }
  return found.other == 0 ? exitDone : exitWanting;
}

struct TextArguments : TextOptions {
  void AddOptions(CLI::App & command)
  {
    command.add_option("FILE", file, "A text file or a pipe, or - for standard input")->required();
    command.add_option("--skip", skip, "Lines at the begin, such as a header, that aren't looked at")->transform(wholeNumber);
    command.add_option("--delimiter", delimiter,
                       "comma, tab, semicolon, blank (blanks and tabs in any mixture) or another character; by default the one "
                       "that makes most lines numeric");
    command.add_option("--comment", comment, "Leave out the rest of a line from this text on");
    command.add_flag("--decimal-comma", decimalComma,
                     "Numbers have a comma where others have a point; between semicolons or tabs that is found");
    command.add_option("--missing", missing, "Words of missing values, WORD,WORD, beside NA, nan, NaN and -")
        ->delimiter(',')
        ->allow_extra_args(false);
  }

  void AddJson(CLI::App & command) { command.add_flag("--json", json, "Print JSON"); }

  void AddReport(CLI::App & command)
  {
    command.add_option("--report", report, "How many lines that aren't numeric are shown")
        ->transform(wholeNumber)
        ->capture_default_str();
  }
};

struct LinesCommand : TextArguments {
  static constexpr char const * name = "lines";
  static constexpr char const * help = "Count numeric, blank and other lines, and show the others; status 1 if there are any";
  static constexpr char const * example = "zp text lines result.txt";

  void AddOptions(CLI::App & command)
  {
    TextArguments::AddOptions(command);
    AddJson(command);
    AddReport(command);
  }
  ExitStatus Run() const { return showLines(*this); }
};

struct ColumnsCommand : TextArguments {
  static constexpr char const * name = "columns";
  static constexpr char const * help = "Show the delimiter and the character columns of the values";
  static constexpr char const * example = "zp text columns result.txt --skip 1";

  void AddOptions(CLI::App & command)
  {
    TextArguments::AddOptions(command);
    AddJson(command);
  }
  ExitStatus Run() const { return showColumns(*this); }
};

struct NumbersCommand : TextArguments {
  static constexpr char const * name = "numbers";
  static constexpr char const * help =
      "Print the values as CSV, with head, names and dates; lines that aren't numeric are reported, with status 1";
  static constexpr char const * example = "zp text numbers result.txt --columns T,3-5 > result.csv";

  void AddOptions(CLI::App & command)
  {
    TextArguments::AddOptions(command);
    command
        .add_option("--columns", columns, "Look at these alone, in this order: numbers from 1, ranges as 3-5, names of the head")
        ->delimiter(',')
        ->allow_extra_args(false);
    AddReport(command);
  }
  ExitStatus Run() const { return showNumbers(*this); }
};

}  // namespace

void AddTextCommands(CLI::App & app, int & status)
{
  CLI::App * const family = app.add_subcommand("text", "Look into numeric text files");
  family->require_subcommand(1);
  AddCommand<LinesCommand>(*family, status);
  AddCommand<ColumnsCommand>(*family, status);
  AddCommand<NumbersCommand>(*family, status);
}
