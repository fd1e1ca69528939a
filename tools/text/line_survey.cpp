// Finding the delimiter and telling the kinds of lines.

#include "tools/text/line_survey.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>

#include <fmt/format.h>

#include "tools/program.h"

namespace {

struct NamedDelimiter {
  char character;
  std::string_view name;
};

// In the order in which they are preferred.
constexpr NamedDelimiter delimiters[] = {{',', "comma"}, {'\t', "tab"}, {';', "semicolon"}, {blankDelimiter, "blank"}};

class LineReader {
 public:
  explicit LineReader(TextOptions const & options) : m_Numbers(options.decimalComma) {}

  // The first cell of the line that is no number, or null.
  Cell const * FindMisfit(std::string_view line, char delimiter)
  {
    CutCells(line, delimiter, m_Cells);
    m_nNumbers = 0;
    for (Cell const & cell : m_Cells) {
      if (!m_Numbers.Read(cell)) return &cell;
      m_nNumbers += !m_Numbers.IsMissing();
    }
    return nullptr;
  }

  std::vector<Cell> const & Cells() const { return m_Cells; }
  int CountNumbers() const { return m_nNumbers; }  // in front of the misfit

  // 0 for a line of one cell, and for one that is cut inside of numbers and leaves several in a cell.
  int CountNumbersIn(std::string_view line, char delimiter)
  {
    CutCells(line, delimiter, m_Cells);
    auto const hasSeveral = [](Cell const & cell) { return HintFor(cell.text, false) == Hint::MixedDelimiters; };
    if (m_Cells.size() < 2 || std::any_of(m_Cells.begin(), m_Cells.end(), hasSeveral)) return 0;
    auto const isNumber = [&](Cell const & cell) { return m_Numbers.Read(cell) && !m_Numbers.IsMissing(); };
    return static_cast<int>(std::count_if(m_Cells.begin(), m_Cells.end(), isNumber));
  }

 private:
  NumberReader m_Numbers;
  std::vector<Cell> m_Cells;
  int m_nNumbers = 0;
};

// A comma between unquoted cells can't be told from a decimal one.
bool mayCut(std::string_view line, char delimiter, bool decimalComma)
{
  if (delimiter == blankDelimiter) return true;
  if (delimiter == ',' && decimalComma && !TrimBlanks(line).starts_with('"')) return false;
  return line.find(delimiter) != std::string_view::npos;
}

// A line of one cell speaks for no delimiter, and neither does one without a number.
int speaksFor(LineReader & reader, std::string_view line, char delimiter)
{
  return reader.FindMisfit(line, delimiter) == nullptr && reader.Cells().size() > 1 && reader.CountNumbers() > 0;
}

int countNumbers(LineReader & reader, std::string_view line, char delimiter)
{
  return reader.CountNumbersIn(line, delimiter);
}

using Weigh = int (*)(LineReader & reader, std::string_view line, char delimiter);
using Weights = std::array<long long, std::size(delimiters)>;

Weights weighDelimiters(TextLines & text, TextOptions const & options, Weigh weigh)
{
  LineReader reader(options);
  Weights weights = {};
  for (text.Rewind(); text.Next();) {
    std::string_view const line = text.Get();
    if (TrimBlanks(line).empty()) continue;
    for (size_t i = 0; i < weights.size(); ++i) {
      char const delimiter = delimiters[i].character;
      if (mayCut(line, delimiter, options.decimalComma)) weights[i] += weigh(reader, line, delimiter);
    }
  }
  return weights;
}

// Where no line is numeric, the delimiter with most numbers between it shows best why; of equal ones it isn't the comma, which
// may be a decimal one.
char findDelimiter(TextLines & text, TextOptions const & options)
{
  Weights const lines = weighDelimiters(text, options, speaksFor);
  auto most = std::max_element(lines.begin(), lines.end());
  if (*most > 0) return delimiters[most - lines.begin()].character;
  Weights const numbers = weighDelimiters(text, options, countNumbers);
  most = std::prev(numbers.end());
  for (auto each = numbers.begin(); each != std::prev(numbers.end()); ++each) {
    if (*each >= *most) most = each;
  }
  return *most == 0 ? '\0' : delimiters[most - numbers.begin()].character;
}

char delimiterNamed(std::string const & name)
{
  for (NamedDelimiter const & each : delimiters) {
    if (name == each.name) return each.character;
  }
  if (name == "\\t") return '\t';
  constexpr std::string_view numberCharacters = "0123456789+-.eEdD\"";
  if (name.size() == 1 && name[0] >= ' ' && numberCharacters.find(name[0]) == std::string_view::npos) return name[0];
  if (name == "\t") return '\t';
  throw Failure(
      fmt::format("--delimiter \"{}\": is comma, tab, semicolon, blank, or one character that no number has in it", name),
      exitUsage);
}

void note(TextSurvey & found, TextLines const & text, Cell const & misfit, size_t keep, bool decimalComma)
{
  ++found.other;
  found.lastOther = text.GetNumber();
  found.hints.set(static_cast<size_t>(HintFor(misfit.text, decimalComma)));
  if (found.misfits.size() < keep) found.misfits.push_back({text.GetNumber(), misfit.column, std::string(misfit.text)});
}

void noteNumeric(TextSurvey & found, TextLines const & text, size_t cells)
{
  auto const values = static_cast<int>(cells);
  if (found.numeric++ == 0) {
    found.firstNumeric = text.GetNumber();
    found.fewestValues = values;
  }
  found.fewestValues = std::min(found.fewestValues, values);
  found.mostValues = std::max(found.mostValues, values);
}

}  // namespace

int PassesOf(TextOptions const & options)
{
  return options.delimiter.empty() ? 2 : 1;
}

char ChooseDelimiter(TextLines & text, TextOptions const & options)
{
  return options.delimiter.empty() ? findDelimiter(text, options) : delimiterNamed(options.delimiter);
}

std::string NameOf(char delimiter)
{
  if (delimiter == '\0') return "none";
  for (NamedDelimiter const & each : delimiters) {
    if (delimiter == each.character) return std::string(each.name);
  }
  return std::string(1, delimiter);
}

TextSurvey SurveyLines(TextLines & text, char delimiter, TextOptions const & options, TakeCells const & take)
{
  if (delimiter == '\0') delimiter = blankDelimiter;
  size_t const keep = options.json ? std::numeric_limits<size_t>::max() : static_cast<size_t>(options.report);
  LineReader reader(options);
  TextSurvey found;
  found.lines = text.GetCount();
  for (text.Rewind(); text.Next();) {
    found.longest = std::max(found.longest, text.GetLength());
    if (TrimBlanks(text.Get()).empty()) {
      ++(text.IsComment() ? found.comments : found.blank);
    } else if (Cell const * const misfit = reader.FindMisfit(text.Get(), delimiter)) {
      note(found, text, *misfit, keep, options.decimalComma);
    } else {
      noteNumeric(found, text, reader.Cells().size());
      take(reader.Cells());
    }
  }
  text.EndProgress();
  return found;
}
