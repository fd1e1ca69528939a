// Counting what stands in columns, and finding the head.

#include "tools/text/table_shape.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <map>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/text/cell_text.h"
#include "tools/text/character_set.h"

namespace {

struct ColumnCounts {
  size_t numbers = 0;
  size_t texts = 0;
};

struct LinesOfOneWidth {
  size_t count = 0;
  std::vector<ColumnCounts> columns;
};

enum class CellKind { Missing, Number, Text };

CellKind kindOf(NumberReader & reader, Cell const & cell)
{
  if (!reader.Read(cell)) return CellKind::Text;
  return reader.IsMissing() ? CellKind::Missing : CellKind::Number;
}

bool hasNumber(NumberReader & reader, std::vector<Cell> const & cells)
{
  return std::any_of(cells.begin(), cells.end(), [&](Cell const & cell) { return kindOf(reader, cell) == CellKind::Number; });
}

// What was meant for a number is no text.
bool isFaultyNumber(Cell const & cell, bool decimalComma)
{
  constexpr std::array faults = {Hint::DecimalComma, Hint::DigitGroups, Hint::PointInsteadOfComma, Hint::MixedDelimiters,
                                 Hint::NotFinite,    Hint::TooLarge,    Hint::RunTogether,         Hint::Overflowed};
  return std::find(faults.begin(), faults.end(), HintFor(cell.text, decimalComma)) != faults.end();
}

void countLine(LinesOfOneWidth & lines, NumberReader & reader, std::vector<Cell> const & cells, bool decimalComma)
{
  ++lines.count;
  lines.columns.resize(cells.size());
  for (size_t i = 0; i < cells.size(); ++i) {
    CellKind const kind = kindOf(reader, cells[i]);
    bool const isText = kind == CellKind::Text && !isFaultyNumber(cells[i], decimalComma);
    lines.columns[i].texts += isText;
    lines.columns[i].numbers += !isText && kind != CellKind::Missing;
  }
}

// None if no column would be left for numbers.
std::vector<bool> findTexts(TextLines & text, TextForm const & form, NumberReader & reader)
{
  std::map<size_t, LinesOfOneWidth> widths;
  std::vector<Cell> cells;
  for (text.Rewind(); text.Next();) {
    CutCells(text.Get(), form.Delimiter(), cells);
    if (hasNumber(reader, cells)) countLine(widths[cells.size()], reader, cells, form.decimalComma);
  }
  auto const most = std::max_element(widths.begin(), widths.end(),
                                     [](auto const & a, auto const & b) { return a.second.count < b.second.count; });
  if (most == widths.end()) return {};
  std::vector<bool> texts;
  for (ColumnCounts const & column : most->second.columns) texts.push_back(column.texts > column.numbers);
  bool const areAll = std::find(texts.begin(), texts.end(), false) == texts.end();
  bool const isAny = std::find(texts.begin(), texts.end(), true) != texts.end();
  return isAny && !areAll ? texts : std::vector<bool>();
}

bool beginsComment(std::string_view line)
{
  constexpr CharacterSet marks("#%!@");
  return !line.empty() && (marks.Has(line.front()) || line.starts_with("//"));
}

// The names in the line, for columns of numbers that first is the first line of; none if it is no head.
std::vector<std::string> namesIn(std::string const & line, TextForm const & form, NumberReader & reader, TableShape const & shape,
                                 std::vector<Cell> const & first)
{
  std::vector<Cell> cells;
  CutCells(line, form.Delimiter(), cells);
  bool const namesRows = shape.IsText(0) || first.front().text.starts_with('"');
  bool const isNarrower = namesRows && cells.size() + 1 == first.size();
  bool const isHead = (cells.size() == first.size() || isNarrower) && !beginsComment(CellText(cells.front())) &&
                      std::none_of(cells.begin(), cells.end(), [&](Cell const & cell) { return reader.IsNumber(cell); }) &&
                      std::any_of(cells.begin(), cells.end(), [&](Cell const & cell) { return !reader.Read(cell); });
  std::vector<std::string> names;
  if (!isHead) return names;
  if (isNarrower) names.emplace_back();
  for (Cell const & cell : cells) names.push_back(CellText(cell));
  return names;
}

// A line that holds a number isn't the head, but may be one of numbers with a fault. The result is how many cells the first line
// of numbers has.
size_t findHead(TextLines & text, TextForm const & form, TextOptions const & options, TableShape & shape)
{
  LineReader reader(form, options, shape);
  NumberReader numbers(form.decimalComma, options.missing);
  std::string former;
  int formerLine = 0;
  for (text.Rewind(); text.Next();) {
    std::string_view const line = text.Get();
    if (TrimBlanks(line).empty()) continue;
    if (reader.FindMisfit(line) == nullptr && reader.CountNumbers() > 0) {
      if (formerLine > 0) shape.head = namesIn(former, form, numbers, shape, reader.Cells());
      shape.headLine = shape.head.empty() ? 0 : formerLine;
      return reader.Cells().size();
    }
    if (hasNumber(numbers, reader.Cells())) continue;
    former = line;
    formerLine = text.GetNumber();
  }
  return 0;
}

class Chooser {
 public:
  Chooser(TableShape const & shape, size_t width) : m_Shape(shape), m_nWidth(width) {}

  // A number from 1, a range of them, or a name.
  void Add(std::string_view word, std::vector<size_t> & chosen) const
  {
    size_t const dash = word.find('-');
    size_t const first = NumberIn(word.substr(0, dash));
    size_t const last = dash == std::string_view::npos ? first : NumberIn(word.substr(dash + 1));
    if (first == 0 || last < first) {
      chosen.push_back(PlaceOf(word));
    } else {
      if (last > m_nWidth)
        throw Failure(fmt::format("--columns {}: a line has {}", word, Counted(m_nWidth, "column")), exitUsage);
      for (size_t i = first; i <= last; ++i) chosen.push_back(i - 1);
    }
  }

 private:
  static size_t NumberIn(std::string_view word)
  {
    size_t number = 0;
    auto const end = std::from_chars(word.data(), word.data() + word.size(), number);
    return end.ec == std::errc() && end.ptr == word.data() + word.size() ? number : 0;
  }

  size_t PlaceOf(std::string_view name) const
  {
    auto const found = std::find(m_Shape.head.begin(), m_Shape.head.end(), name);
    if (found != m_Shape.head.end()) return static_cast<size_t>(found - m_Shape.head.begin());
    std::string const there = m_Shape.head.empty() ? "the file has no head, so columns have numbers alone"
                                                   : fmt::format("there are {}", fmt::join(m_Shape.head, ", "));
    throw Failure(fmt::format("--columns {}: is no column; {}", name, there), exitUsage);
  }

  TableShape const & m_Shape;
  size_t m_nWidth;
};

}  // namespace

TableShape FindShape(TextLines & text, TextForm const & form, TextOptions const & options)
{
  TableShape shape;
  NumberReader reader(form.decimalComma, options.missing);
  if (form.mayHaveTexts) shape.texts = findTexts(text, form, reader);
  size_t const width = findHead(text, form, options, shape);
  if (width == 0) return shape;
  for (std::string const & word : options.columns) Chooser(shape, width).Add(word, shape.chosen);
  return shape;
}
