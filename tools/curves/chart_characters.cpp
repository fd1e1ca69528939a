// A chart in characters.

#include <algorithm>
#include <cmath>
#include <string_view>

#include <fmt/format.h>

#include "tools/curves/chart.h"
#include "tools/shown_text.h"

namespace {

// Without letters and digits that look like others of them.
constexpr std::string_view curveMarks = "*+xo#@%&ABCDEFGHJKLMNPQRSTUVWYZabcdefghijkmnpqrstuvwyz23456789";
constexpr char outsideMark = '.';
constexpr int labelWidth = 12;

class ChartCells {
 public:
  ChartCells(int columns, int rows)
      : m_nRows(rows), m_Lines(static_cast<size_t>(rows), std::string(static_cast<size_t>(columns), ' '))
  {
  }

  // x and y are shares of the width and the height, from the left and from below.
  void Put(double x, double y, char mark)
  {
    auto const columns = static_cast<double>(m_Lines[0].size());
    auto const column = static_cast<size_t>(std::clamp(std::floor(x * columns), 0.0, columns - 1));
    m_Lines[RowOf(y)][column] = mark;
  }
  size_t RowOf(double y) const
  {
    return static_cast<size_t>(std::clamp(std::floor((1 - y) * m_nRows), 0.0, static_cast<double>(m_nRows - 1)));
  }
  std::vector<std::string> const & GetLines() const { return m_Lines; }

 private:
  int m_nRows;
  std::vector<std::string> m_Lines;
};

std::string temperatureLine(Chart const & chart, int columns)
{
  std::string line(static_cast<size_t>(columns), ' ');
  size_t free = 0;
  for (double const tick : chart.temperature.ticks) {
    std::string const text = TickText(tick);
    auto const place = static_cast<size_t>(chart.temperature.ShareOf(tick) * (columns - 1));
    size_t const start = std::min(place - std::min(place, text.size() / 2), line.size() - std::min(line.size(), text.size()));
    if (start < free || start + text.size() > line.size()) continue;
    line.replace(start, text.size(), text);
    free = start + text.size() + 1;
  }
  return line.substr(0, line.find_last_not_of(' ') + 1);
}

char markOf(size_t curve)
{
  return curveMarks[curve % curveMarks.size()];
}

ChartCells cellsOf(Chart const & chart, int width, int rows)
{
  ChartCells cells(width, rows);
  for (size_t i = 0; i < chart.lines.size(); ++i) {
    for (auto const & piece : chart.lines[i]) {
      for (ChartPoint const & point : piece)
        cells.Put(chart.temperature.ShareOf(point.temperature), chart.value.ShareOf(point.value),
                  point.isOutside ? outsideMark : markOf(i));
    }
  }
  return cells;
}

std::string legendLine(char mark, std::string const & text, int columns)
{
  std::string const head = fmt::format("{:>{}} {}  ", "", labelWidth, mark);
  auto const isLead = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };  // of a character in UTF-8
  auto const fits = [&](std::string const & name) {
    return std::ranges::count_if(name, isLead) + static_cast<int>(head.size()) <= columns;
  };
  return head + ShortenedText(text, fits) + "\n";
}

std::string legendOf(Chart const & chart, int columns)
{
  std::string legend;
  for (size_t i = 0; i < chart.names.size(); ++i) legend += legendLine(markOf(i), Visible(chart.names[i]), columns);
  if (chart.LeavesRange()) legend += legendLine(outsideMark, "outside of the known range", columns);
  size_t const marks = curveMarks.size();
  if (chart.names.size() > marks) legend += legendLine(' ', fmt::format("marks repeat after {} names", marks), columns);
  return legend;
}

}  // namespace

std::string ChartInCharacters(Chart const & chart, int columns, int rows)
{
  int const width = columns - labelWidth - 2;
  ChartCells const cells = cellsOf(chart, width, rows);
  std::vector<std::string> labels(static_cast<size_t>(rows));
  for (double const tick : chart.value.ticks) labels[cells.RowOf(chart.value.ShareOf(tick))] = TickText(tick);
  std::string text = fmt::format("{}\n", chart.GetTitle());
  for (size_t row = 0; row < labels.size(); ++row) {
    std::string const line = fmt::format("{:>{}} |{}", labels[row], labelWidth, cells.GetLines()[row]);
    text += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
  }
  text += fmt::format("{:>{}} +{}\n", "", labelWidth, std::string(static_cast<size_t>(width), '-'));
  text += fmt::format("{:>{}}  {}  T [K]\n", "", labelWidth, temperatureLine(chart, width - 7));
  return text + legendOf(chart, columns);
}
