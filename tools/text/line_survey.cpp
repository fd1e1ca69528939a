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

// In the order in which they are preferred, which is that of FindForm.
constexpr NamedDelimiter delimiters[] = {{',', "comma"}, {'\t', "tab"}, {';', "semicolon"}, {blankDelimiter, "blank"}};

// A way to cut lines and read their cells.
struct Candidate {
  char delimiter;
  bool decimalComma;
};

// Decimal commas that the options don't name come last, and not with commas or blanks, where they make two readings likely.
std::vector<Candidate> candidatesFor(std::string_view delimiterList, bool decimalComma)
{
  std::vector<Candidate> candidates;
  for (char const each : delimiterList) candidates.push_back({each, decimalComma});
  for (char const each : delimiterList) {
    if (!decimalComma && (each == '\t' || each == ';')) candidates.push_back({each, true});
  }
  return candidates;
}

class LineWeigher {
 public:
  LineWeigher(Candidate const & candidate, TextOptions const & options)
      : m_Candidate(candidate), m_Numbers(candidate.decimalComma, options.missing)
  {
  }

  // A comma between unquoted cells can't be told from a decimal one.
  bool MayCut(std::string_view line) const
  {
    if (m_Candidate.delimiter == blankDelimiter) return true;
    if (m_Candidate.delimiter == ',' && m_Candidate.decimalComma && !TrimBlanks(line).starts_with('"')) return false;
    return line.find(m_Candidate.delimiter) != std::string_view::npos;
  }

  // A line of one cell speaks for no delimiter, and neither does one without a number.
  int SpeaksFor(std::string_view line)
  {
    CutCells(line, m_Candidate.delimiter, m_Cells);
    int numbers = 0;
    for (Cell const & cell : m_Cells) {
      if (!m_Numbers.Read(cell)) return 0;
      numbers += !m_Numbers.IsMissing();
    }
    return m_Cells.size() > 1 && numbers > 0;
  }

  // 0 for a line of one cell, and for one that is cut inside of numbers and leaves several in a cell.
  int CountNumbers(std::string_view line)
  {
    CutCells(line, m_Candidate.delimiter, m_Cells);
    auto const hasSeveral = [](Cell const & cell) { return HintFor(cell.text, false) == Hint::MixedDelimiters; };
    if (m_Cells.size() < 2 || std::any_of(m_Cells.begin(), m_Cells.end(), hasSeveral)) return 0;
    return static_cast<int>(
        std::count_if(m_Cells.begin(), m_Cells.end(), [&](Cell const & cell) { return m_Numbers.IsNumber(cell); }));
  }

 private:
  Candidate m_Candidate;
  NumberReader m_Numbers;
  std::vector<Cell> m_Cells;
};

using Weigh = int (LineWeigher::*)(std::string_view line);

struct Weights {
  std::vector<long long> of;
  long long lines = 0;  // that aren't blank
};

Weights weighCandidates(TextLines & text, TextOptions const & options, std::vector<Candidate> const & candidates, Weigh weigh)
{
  std::vector<LineWeigher> weighers;
  weighers.reserve(candidates.size());
  for (Candidate const & each : candidates) weighers.emplace_back(each, options);
  Weights weights = {std::vector<long long>(candidates.size()), 0};
  for (text.Rewind(); text.Next();) {
    std::string_view const line = text.Get();
    if (TrimBlanks(line).empty()) continue;
    ++weights.lines;
    for (size_t i = 0; i < weighers.size(); ++i) {
      if (weighers[i].MayCut(line)) weights.of[i] += (weighers[i].*weigh)(line);
    }
  }
  return weights;
}

// Of equal ones it is the last but the blank, thus not the comma, which may be a decimal one; those with decimal commas must have
// more.
size_t mostNumbers(std::vector<long long> const & numbers, std::vector<Candidate> const & candidates)
{
  size_t most = 0;
  auto const isBetter = [&](size_t i) {
    if (numbers[i] != numbers[most]) return numbers[i] > numbers[most];
    bool const isComma = candidates[most].delimiter == ',';
    return candidates[i].delimiter != blankDelimiter && (isComma || candidates[i].decimalComma == candidates[most].decimalComma);
  };
  for (size_t i = 1; i < numbers.size(); ++i) {
    if (isBetter(i)) most = i;
  }
  return most;
}

// Where no line is numeric, the delimiter with most numbers between it shows best why.
TextForm findForm(TextLines & text, TextOptions const & options, std::vector<Candidate> const & candidates)
{
  Weights const lines = weighCandidates(text, options, candidates, &LineWeigher::SpeaksFor);
  auto const most = std::max_element(lines.of.begin(), lines.of.end());
  Candidate const & best = candidates[static_cast<size_t>(most - lines.of.begin())];
  bool const mayHaveTexts = 2 * *most <= lines.lines;
  if (*most > 0) return {best.delimiter, best.decimalComma, mayHaveTexts};
  Weights const numbers = weighCandidates(text, options, candidates, &LineWeigher::CountNumbers);
  size_t const next = mostNumbers(numbers.of, candidates);
  if (numbers.of[next] == 0) return {'\0', options.decimalComma, mayHaveTexts};
  return {candidates[next].delimiter, candidates[next].decimalComma, mayHaveTexts};
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

void note(TextSurvey & found, TextLines const & text, Cell const & misfit, bool decimalComma)
{
  ++found.other;
  found.lastOther = text.GetNumber();
  found.hints.set(static_cast<size_t>(HintFor(misfit.text, decimalComma)));
}

void noteNumeric(TextSurvey & found, TextLines const & text, size_t cells)
{
  auto const values = static_cast<int>(cells);
  if (found.numeric++ == 0) {
    found.firstNumeric = text.GetNumber();
    if (found.heads == 0) found.firstOfTable = found.firstNumeric;
    found.fewestValues = values;
  }
  found.fewestValues = std::min(found.fewestValues, values);
  found.mostValues = std::max(found.mostValues, values);
}

}  // namespace

LineReader::LineReader(TextForm const & form, TextOptions const & options, TableShape const & shape)
    : m_Form(form), m_Shape(shape), m_Numbers(form.decimalComma, options.missing)
{
}

Cell const * LineReader::FindMisfit(std::string_view line)
{
  CutCells(line, m_Form.Delimiter(), m_Cells);
  if (!m_Shape.chosen.empty()) Choose();
  m_nNumbers = 0;
  bool hasText = false;
  for (Cell const & cell : m_Cells) {
    if (!m_Shape.texts.empty() && m_Shape.IsText(m_Shape.ColumnOf(static_cast<size_t>(&cell - m_Cells.data())))) {
      hasText |= !cell.text.empty();
      continue;
    }
    if (!m_Numbers.Read(cell)) return &cell;
    m_nNumbers += !m_Numbers.IsMissing();
  }
  bool const isTextAlone = hasText && m_nNumbers == 0 && m_Shape.chosen.empty() && m_Cells.size() < m_Shape.texts.size();
  return isTextAlone ? &m_Cells.front() : nullptr;
}

// Columns that the line doesn't have are missing.
void LineReader::Choose()
{
  m_All.swap(m_Cells);
  m_Cells.clear();
  for (size_t const column : m_Shape.chosen) m_Cells.push_back(column < m_All.size() ? m_All[column] : Cell{});
}

int PassesOf(TextOptions const & options)
{
  return options.delimiter.empty() ? 2 : 1;
}

TextForm FindForm(TextLines & text, TextOptions const & options)
{
  bool const isNamed = !options.delimiter.empty();
  std::vector<Candidate> const candidates =
      candidatesFor(isNamed ? std::string(1, delimiterNamed(options.delimiter)) : ",\t; ", options.decimalComma);
  if (candidates.size() == 1) return {candidates.front().delimiter, options.decimalComma, true};
  TextForm form = findForm(text, options, candidates);
  if (isNamed) form.delimiter = candidates.front().delimiter;
  return form;
}

std::string NameOf(char delimiter)
{
  if (delimiter == '\0') return "none";
  for (NamedDelimiter const & each : delimiters) {
    if (delimiter == each.character) return std::string(each.name);
  }
  return std::string(1, delimiter);
}

TextSurvey SurveyLines(TextLines & text, TextForm const & form, TextOptions const & options, TableShape const & shape,
                       TakeCells const & take)
{
  size_t const keep = options.json ? std::numeric_limits<size_t>::max() : static_cast<size_t>(options.report);
  LineReader reader(form, options, shape);
  TextSurvey found;
  found.lines = text.GetCount();
  for (text.Rewind(); text.Next();) {
    found.longest = std::max(found.longest, text.GetLength());
    if (TrimBlanks(text.Get()).empty()) {
      ++(text.IsComment() ? found.comments : found.blank);
    } else if (text.GetNumber() == shape.headLine) {
      ++found.heads;
      found.firstOfTable = text.GetNumber();
    } else if (Cell const * const misfit = reader.FindMisfit(text.Get())) {
      note(found, text, *misfit, form.decimalComma);
      if (found.misfits.size() < keep)
        found.misfits.push_back({text.GetNumber(), misfit->column, std::string(misfit->text), reader.CountNumbers() > 0});
    } else {
      noteNumeric(found, text, reader.Cells().size());
      take(reader.Cells());
    }
  }
  text.EndProgress();
  return found;
}
